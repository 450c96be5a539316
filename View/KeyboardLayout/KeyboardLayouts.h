#pragma once
// The static description of each model's keyboard picture: which keys, in
// which order, how wide, how spaced, at which height each row stands, and the
// frame of the picture. All numbers are picture units with y growing upward,
// as the tables give them; the view converts them once when it places keys.
//
// The key position rule (layoutKeys) turns a table into one rectangle per
// key. The case colour rules pick the picture for a stored colour digit.

#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <QRectF>
#include <QString>

#include <array>
#include <map>
#include <optional>
#include <vector>

class QWidget;

// One row of a layout table: one key of the picture.
struct LayoutRow {
    int width = 0;
    QString key_standard_name;
    int row_num = 0;            // 1 (top) to 5 (bottom)
    int left_extra_width = 0;
    int has_seperator = 0;      // 1: a gap of `key_separator` units stands left of the key
    bool first_key = false;     // the running position restarts here
    bool disabled = false;
};

using LayoutTable = std::vector<LayoutRow>;
using KeyWidthTable = std::map<QString, int>;
using RowYTable = std::map<int, int>;     // row_num -> y of the keys' lower edge
using SizeTable = std::map<QString, int>;

// Where the picture stands in the window and the size of its bounds.
struct PictureFrame {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

const LayoutTable& Orvane61kLayout();
const LayoutTable& Orvane68kLayout();
const LayoutTable& OrvaneCNC61kLayout();
const KeyWidthTable& Orvane61K_Key_Width();
const KeyWidthTable& Orvane68K_Key_Width();
const KeyWidthTable& OrvaneCNC61K_Key_Width();
const RowYTable& Orvane61K_Y_Pos();
const RowYTable& Orvane68K_Y_Pos();
const RowYTable& OrvaneCNC61K_Y_Pos();
const SizeTable& Orvane61K_Size_Conf();
const SizeTable& Orvane68K_Size_Conf();
const SizeTable& OrvaneCNC61K_Size_Conf();

// One drawn key.
struct KeyData {
    int index = 0;
    QRectF rect;               // picture units, y upward
    QWidget* view = nullptr;   // set by the keyboard view
    int keycode = 0;
    QString keyname;
    QString keyMacro;
};

// The position rule: one key per table row, with its code from `names`.
std::vector<KeyData> layoutKeys(const LayoutTable& table, const RowYTable& yPos, const SizeTable& sizes,
                                const KeyNameMap& names);

// Everything that differs between the three models when a picture is built.
struct KeyboardModelLayout {
    int keyboardLayout = 0;          // 1 61-key, 2 CNC, 3 68-key
    KeyMapModel keyMaps = KeyMapModel::Orvane61k;
    CodeMapStart codeMapStart = CodeMapStart::Empty;
    const LayoutTable* layout = nullptr;
    const RowYTable* yPos = nullptr;
    const SizeTable* sizes = nullptr;
    PictureFrame frame;
    QString localKey;                // where the case colour digit is stored
    // Pictures by colour type 1 white, 2 black, 3 blue, 4 purple; empty where
    // the model has no such colour.
    std::array<QString, 4> pictures;
};

const KeyboardModelLayout& keyboardModel61k();
const KeyboardModelLayout& keyboardModel68k();
const KeyboardModelLayout& keyboardModelCnc();
// By `keyboardLayout`; anything unknown is the 61-key model.
const KeyboardModelLayout& keyboardModelForLayout(int keyboardLayout);
// By `keyboardType` (0 68-key, 1 61-key, 2 CNC); anything unknown is the
// 61-key model.
const KeyboardModelLayout& keyboardModelForKeyboardType(int keyboardType);

// ---- Case colours ---------------------------------------------------------
// Colour types 1 to 4 go with the selector buttons tagged 200 to 203.
inline constexpr int kCaseColourFirstTag = 200;

struct CaseColour {
    int type = 1;
    int tag = kCaseColourFirstTag;
};

// The colour a stored digit names, or none when the model lists no such
// colour ("3" on the 61-key model, "x", "").
std::optional<CaseColour> caseColourForDigit(const KeyboardModelLayout& model, const QString& digit);
// The picture for a stored digit; a digit the model does not list gives white.
QString casePictureForDigit(const KeyboardModelLayout& model, const QString& digit);
// The picture for a colour type; an unknown type gives white.
QString casePictureForType(const KeyboardModelLayout& model, int type);
// The slide between two colours runs rightward (3) to a colour later in the
// order white, black, blue, purple, leftward (2) to an earlier one; none for
// the same colour.
std::optional<int> caseColourSlide(int oldType, int newType);
