#pragma once
// The records of the device database as plain values: one key assignment,
// one macro, one macro step. The stores fill them, the key table and macro
// blocks read them; they carry no behaviour of their own.

#include <QString>

#include <cstdint>

// One key assignment of one profile ("t_keyprofile"). A key without a row
// keeps its default function; `macroValue` 0 on an add removes the row.
struct ProfileKey {
    int64_t keyId = 0;     // row id; read back by a query, ignored by an add
    int layerId = 0;       // in memory only: the store has no key layers and reads back 0
    int profId = 0;
    int keyValue = 0;      // the reassigned key, by its key code
    int macroType = 0;     // kind of assignment; 12 is a macro
    int macroValue = 0;    // menu id, macro id or key code, by kind
    int macro2Value = 0;   // a modifier beside the key of a custom key
    int macro3Value = 0;
    QString macroDesc;     // what the key shows for the assignment

    bool operator==(const ProfileKey&) const = default;
};

// One macro ("t_macro_data"), shared by all profiles.
struct MacroInfo {
    int64_t macroId = 0;
    int64_t playTimes = 0;  // stored within 1 to 255: the key table carries it in one byte
    int64_t delayType = 0;
    int64_t delayTime = 0;
    QString macroName;

    bool operator==(const MacroInfo&) const = default;
};

// One step of a macro ("t_macrorecord").
struct RecordInfo {
    int64_t recordId = 0;     // row id; read back by a query, ignored by an add
    int64_t macroId = 0;
    int64_t recordType = 0;
    int64_t recordIndex = 0;  // place of the step in its macro, from 0
    int64_t recordValue = 0;
    QString recordDesc;

    bool operator==(const RecordInfo&) const = default;
};

// ---- User light modes ("t_userlightdata", "t_keyrgbdata") -----------------
// A user light mode: a named set of per-key colours. Speed and brightness are
// stored as 10 and never changed.
struct userLightData {
    int64_t lightId = 0;
    QString name;
    int speed = 10;
    int brightness = 10;

    bool operator==(const userLightData&) const = default;
};

// One key's colour in one mode. A key without a row has no colour there, so
// 0 (black) is never stored.
struct RGBData {
    int64_t rgbId = 0;    // row id; read back by a query, ignored by an insert
    int64_t lightId = 0;  // the mode
    int profile = 1;
    int keyvalue = 0;     // the key, by its key code
    int rgbvalue = 0;     // 0xRRGGBB

    bool operator==(const RGBData&) const = default;
};
