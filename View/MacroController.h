#pragma once
// MaroController: the macro window's content. It records key presses and
// releases, left mouse presses and releases on the window and the delays
// between them into a numbered step list, and saves the list as one macro
// of the connected keyboard's database, whole, in one transaction. A save
// posts "UpdateMacroInfo", on which the main window sends the macro store.
//
// Keys come from the application's own key events while recording (every
// window of the application, seen once each at the window before any widget)
// and are turned into HID usages by the key source; the step rules live in
// MacroRecorder. Nothing here waits: every step is added as its event comes.

#include "View/MacroRecorder.h"

#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class DeviceComm;
class DeviceSQLite;
class IconButton;
class MacroStepEditor;
class ImageButton;
class QCheckBox;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QSpinBox;

// The context the main window hands to the macro window before it opens it.
extern int64_t currentMacorId;             // 0 for a new macro
extern DeviceSQLite* currentDeviceDB;      // the connected model's database
extern std::weak_ptr<DeviceComm> currentDeviceComm;

class MaroController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 680;
    static constexpr int kHeight = 440;
    static constexpr int kMaxRepeatTimes = 255;  // the key table carries it in one byte
    static constexpr int kMaxNameLength = 64;    // longer names are refused, not cut

    // Turns a key event's native scan code into the key's HID usage; 0 for a
    // key it cannot name. Shared by every macro window; the host's key code
    // table unless replaced.
    using KeyUsageSource = std::function<int(quint32 nativeScanCode)>;
    static void setKeyUsageSource(KeyUsageSource source);
    // The clock of the delays, milliseconds since 1970.
    std::function<int64_t()> nowMs;

    explicit MaroController(QWidget* parent = nullptr);
    ~MaroController() override;

    void viewDidLoad();
    void viewDidAppear();
    void loadMacroRecordData(int64_t macroId);
    void action_macrorecord();
    void action_saverecord();
    void action_closewindow();
    // The keyboard came back: the window goes on with the store and the
    // transport of the new connection, keeping what it holds.
    void rebind(DeviceSQLite* store, std::weak_ptr<DeviceComm> transport);
    // True while the steps differ from the ones last loaded or saved.
    bool hasUnsavedSteps() const;

    QLineEdit* edit_newmacro = nullptr;
    IconButton* btn_newmacro = nullptr;
    IconButton* btn_saverecord = nullptr;
    ImageButton* btn_closewindow = nullptr;
    QCheckBox* radio_rec_keyboard = nullptr;
    QCheckBox* radio_rec_mouse = nullptr;
    QCheckBox* radio_rec_delay = nullptr;
    QSpinBox* edit_repeattimes = nullptr;
    QSpinBox* edit_repeatdalay = nullptr;
    QLabel* label_recordopt = nullptr;
    QLabel* label_excopt = nullptr;
    QLabel* label_repeattimes = nullptr;
    QLabel* label_repeattimes_desc = nullptr;
    QLabel* label_repeatdelay = nullptr;
    QLabel* label_repeatdelay_desc = nullptr;
    QLabel* label_status = nullptr;  // the recording hint, or why a save failed
    QLabel* label_namenote = nullptr;  // why the name was refused
    QListWidget* record_tableview = nullptr;
    MacroStepEditor* stepEditor = nullptr;  // holds record_tableview

    int64_t MacorId = 0;
    DeviceSQLite* deviceDB = nullptr;
    std::weak_ptr<DeviceComm> deviceComm;
    MacroRecorder recorder;
    const std::vector<MacroStep>& RecordListDatas() const { return recorder.steps(); }
    bool recordIng = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void buildControls();
    void buildOptions();
    void setRecordingControls(bool recording);
    void fillMacroRecord(const QKeyEvent& event);
    void mouseStep(bool down);
    void reloadList();
    // The name to save, or none with the reason beside the field.
    std::optional<QString> checkedName();
    std::vector<MacroStep> savedSteps_;
    // The macro's stored steps could not be read: what the editor shows is
    // not the macro, so a save would overwrite it with less.
    bool stepsUnread_ = false;

    QObject* eventHandler = nullptr;  // the key filter while recording
};
