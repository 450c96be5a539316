#pragma once
// MainController: the window's controller and the owner of the one session
// the application holds with a keyboard.
//
// Discovery tells it on the monitor thread that a keyboard came or went; it
// decides which model that is, which database belongs to it, when a
// transport exists, what goes to the keyboard at connection and which flags
// allow which work, and it polls the keyboard every two seconds for the
// profile chosen on the keyboard itself. Uploads are built here on the main
// thread and executed by the transport thread. The code is split by topic:
// MainControllerHID (connection), MainControllerSQLite (stores),
// MainControllerProfile (poll and profile), MainControllerUI (window),
// LanguageSwitch (texts and the language menu), MainControllerSystem (menu
// commands), MainControllerLight (the built-in light effects).

#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/HIDDeviceMonitor.h"
#include "HIDDevice/TransportQueue.h"

#include <QLabel>
#include <QList>
#include <QTimer>
#include <QVariantMap>
#include <QWidget>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

class DeviceSQLite;
class ImageButton;
class ImageTitleButton;
class LanguagePopoverViewController;
class LightTableItemView;
class LocalSQLite;
class QListWidget;

class MainController : public QWidget {
    Q_OBJECT
public:
    struct Environment {
        // Where HID devices come from; the demo and the tests put a virtual
        // bus here.
        HIDDeviceMonitor::ManagerFactory hidManagerFactory = createPlatformHidManager;
        // Pause between reports; tests may speed the transport up.
        DeviceComm::Sleeper transportSleeper;
    };

    static constexpr int kWindowWidth = 1160;
    static constexpr int kWindowHeight = 720;
    static constexpr int kPollIntervalMs = 2000;

    explicit MainController(Environment environment, QWidget* parent = nullptr);
    explicit MainController(QWidget* parent = nullptr) : MainController(Environment{}, parent) {}
    ~MainController() override;

    // ---- Lifecycle --------------------------------------------------------
    void viewDidLoad();
    void viewDidAppear();
    void viewDidDisappear();

    // ---- Session (MainControllerHID) -------------------------------------
    void deviceConnected(const QVariant& object);     // monitor thread
    void deviceDisconnected(const QVariant& object);  // monitor thread
    void refreshUI();
    void ConnectDevice();

    // ---- Stores (MainControllerSQLite) -----------------------------------
    void initLocalData();
    void initSQLite();

    // ---- Profile (MainControllerProfile) ---------------------------------
    void getKeyboardProfile();   // starts the poll timer
    void pollKeyboardProfile();  // one tick of it
    void swicthProfile(int profileId);

    // ---- Window (MainControllerUI) ---------------------------------------
    void InitUI();
    void setCurrentDevice(int curDevType);
    void registerNotification();
    // A platform problem in plain words (a missing permission, say); shown
    // once in the window.
    void showProblem(const QString& message);

    // Hands a sequence to the transport thread on the session's transport.
    // Does nothing without a session.
    void submitSequence(ReportSequence sequence, TransportQueue::ReplyHandler onReply = {});
    TransportQueue& transport() { return *transport_; }

    // Thread-safe views of the fields the monitor thread writes.
    std::optional<HIDDevice> connectedDevice() const;
    std::shared_ptr<DeviceComm> currentTransport() const;
    QString deviceName() const;

    // ---- Session fields ---------------------------------------------------
    qint64 timetickcount = 0;
    int keyboardType = 1;
    int viewType = 1;
    int keyboardLayout = 1;
    int keyboardColorType = 1;
    HIDDeviceMonitor rfDeviceMonitor;
    bool hidDeviceInit = false;
    std::unique_ptr<DeviceSQLite> deviceDB;
    QString deviceDBfile;
    std::unique_ptr<LocalSQLite> localDB;
    QString localDBfile;
    bool hidcomm_busy = false;            // mirrors the transport queue
    std::atomic<bool> deviceState = false;
    std::atomic<bool> isSendDevice = false;
    int currentProfile = 1;
    int currentKeyValue = 0;
    int currentLightMode = 1;
    int currentUserLightMode = 1;
    int currentKBUserLightMode = 1;

    // ---- Outlets -----------------------------------------------------------
    ImageButton* imgbtn_close = nullptr;
    ImageButton* imgbtn_min = nullptr;
    ImageButton* imgbtn_usb = nullptr;
    QLabel* label_problem = nullptr;

    // ---- Texts, language menu and light page (LanguageSwitch,
    //      MainControllerSystem, MainControllerLight) -----------------------
    void LanguageSwicth();
    void initLanguageButton();
    void action_language();
    void switchLanguage(int language);  // 1033 or 2052: stored, shown, applied
    void MenuItemMouseUpAction(const QVariant& object);
    void SystemMenuMsg(int msgId);

    void initLightPage();  // builds light_view and userlight_view
    void initLightTableData();
    void loadBacklightData();
    void resetLightModeTableView();
    void setHFDBackLightData(int profile);
    void tableViewSelectionDidChange(QListWidget* tableView);
    LightTableItemView* lightModeRowView(int row);  // made if needed
    void action_ligjhtmode_tab();
    void action_userlightmode_tab();

    ImageButton* imgbtn_language = nullptr;
    LanguagePopoverViewController* languagePopover = nullptr;  // made on first use
    QWidget* light_view = nullptr;
    QWidget* userlight_view = nullptr;
    ImageTitleButton* light_mode_tab = nullptr;
    ImageTitleButton* customlight_mode_tab = nullptr;
    QListWidget* light_mode_table = nullptr;       // identifier "lightmode"
    QWidget* light_mode_scrollview = nullptr;      // the list scrolls by itself: the same widget
    QList<QVariantMap> light_mode_datas;           // "icon_n", "icon_h", "icon_s", "text", "mode"
    bool userlightmode_show = false;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Environment environment_;

    // The monitor thread writes these; the main thread reads them. The
    // flags above are atomics; the rest is behind this lock.
    mutable std::mutex sessionMutex_;
    std::optional<HIDDevice> kbHIDdevice_;
    QString device_name_;
    std::shared_ptr<DeviceComm> deviceComm_;

    std::unique_ptr<TransportQueue> transport_;
    std::unique_ptr<HIDMonitorThread> monitorThread_;
    QTimer pollTimer_;
    bool problemShown_ = false;
    std::uint64_t menuItemObserver_ = 0;  // "MenuItemMouseUpAction", added once
};
