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
// commands), MainControllerLight (the built-in light effects),
// MainControllerSystemPage (the key locks), MainControllerKeyTable (the
// key table of a profile), MainControllerKeyFunc (writing an assignment),
// MainControllerMacro (the macro page and the macro store),
// MainControllerUserLight and MainControllerUserLightPaint (user light modes),
// MainControllerLinks (the user guide and the web links), MainControllerPages
// (the function buttons and pages), MainControllerModelList (the model list),
// MainControllerExchange (the ".key" and ".light" files), MainControllerKeyMenu
// and MainControllerToolTip (the key menus and the key tool tip).

#include "Common/AppProfileRules.h"
#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/HIDDeviceMonitor.h"
#include "HIDDevice/TransportQueue.h"
#include "View/ExchangeDialog.h"
#include "View/control/MessagePanel.h"

#include <QColor>
#include <QLabel>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QVariantMap>
#include <QWidget>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace ExchangeFileCheck {
struct KeyFileInspection;
struct LightFileInspection;
}  // namespace ExchangeFileCheck

class AppRulesSection;
class UnfinishedUploads;
namespace Protocol {
struct LedColour;
}
class CaseColorButton;
class FocusSource;
class FuncButton;
class EmptyListHint;
class QAbstractAnimation;
class QAbstractButton;
class QUrl;
class DeviceSQLite;
class ImageButton;
class ImageTitleButton;
class KeyboardView;
struct KeyboardModelLayout;
class LanguagePopoverViewController;
class MenuPopoverViewController;
class PofilePopoverViewController;
class QMessageBox;
class LightTableItemView;
class LocalSQLite;
class IconButton;
class MacroWindowController;
struct ProfileKey;
class QListWidget;
class QColorDialog;
class UserLightTableItemView;
class FloatingWindowGroup;
struct StoreHealth;
struct StoreRead;
// Key menus and the key tool tip
class KeyMenuViewController;
class KeySubMenuViewController;
class KeySubMenuMacroViewController;
class KeySubMenuLightViewController;
class KBToolTipsViewController;

class MainController : public QWidget {
    Q_OBJECT
public:
    struct Environment {
        // Where HID devices come from; the demo and the tests put a virtual
        // bus here.
        HIDDeviceMonitor::ManagerFactory hidManagerFactory = createPlatformHidManager;
        // Pause between reports; tests may speed the transport up.
        DeviceComm::Sleeper transportSleeper;
        // Exchange files: asks for a file or a folder and answers its file:
        // URL, empty when cancelled. Empty: the file dialog. Tests answer here.
        std::function<QString(const ExchangeDialog&)> chooseExchangeFile;
        // The window in front. Empty: the source this session's desktop
        // offers (createFocusSource). Tests script one here.
        std::function<std::unique_ptr<FocusSource>()> focusSourceFactory;
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
    // A store's trouble, if it has any, as a message in the window.
    void reportStoreProblem(const StoreHealth& health, const QString& contents);
    // Says that a profile's settings could not be read and nothing was sent.
    void settingsUnread(const StoreRead& read);
    void watchStore(StoreHealth& health, bool local);
    void storeOperationFailed(const StoreHealth& seen, bool local);

    // ---- Profile (MainControllerProfile) ---------------------------------
    void getKeyboardProfile();   // starts the poll timer
    void pollKeyboardProfile();  // one tick of it
    void swicthProfile(int profileId);
    // The label, the picture and the keyboard on `profileId`, as stored.
    void enterProfile(int profileId);
    void switchToStoredProfile();
    // The user's choice of profile (the profile menu). Goes through
    // afterPollReply, so a choice made while a poll is out lands after it.
    void pickProfile(int profileId);
    // Runs `action` now, or, while a status poll's reply is still owed, right
    // after that reply has been acted on, in the order given: what the user
    // does during a poll then happens as if the poll had held the window, as
    // it would in a program with one thread. User actions that read or write
    // the active profile go through here.
    void afterPollReply(std::function<void()> action);
    bool pollReplyOwed() const { return pollReplyOwed_; }

    // ---- Profiles that follow the application in front (MainControllerAppRules)
    // Picks the focus source and builds the system page's section; needs
    // sysset_view and the local settings.
    void initAppRules();
    // The rules of the connected model, into the policy and the section.
    void loadAppRules();
    void setAppRules(const AppRuleSet& rules);  // stored, then loaded
    void setFollowingApplications(bool on);     // the section's switch
    void applicationInFront(const QString& app, bool ownWindow);
    // Switches when a rule's profile is due and nothing holds it back.
    void followApplication();
    // A key is being captured or a macro recorded.
    bool takingInput() const;
    ProfileFollower profileFollower;
    std::unique_ptr<FocusSource> focusSource;
    AppRulesSection* appRulesSection = nullptr;

    // ---- Window (MainControllerUI) ---------------------------------------
    void InitUI();
    void setCurrentDevice(int curDevType);
    void action_closewindow();
    void action_minwindow();
    void registerNotification();
    // A problem in plain words (a missing permission, a damaged or locked
    // file), with what to do. The window shows one message per topic, the
    // first one given; platform problems share the empty topic.
    void showProblem(const QString& message, const QString& topic = {});
    // The same for a message that follows a language switch: `text` gives
    // it in the language in force.
    void showProblem(std::function<QString()> text, const QString& topic);
    // The topic of "the keyboard is not answering", withdrawn at the next connection.
    static inline const QString kNotAnsweringTopic = QStringLiteral("keyboard-not-answering");

    // ---- Keyboard picture (MainControllerLayout, MainControllerKeyboard) ----
    // Each builder loads the model's key maps, sets `keyboardLayout`, places
    // the keys and shows the stored case colour; `keyboardType` is left to
    // the caller.
    void init61KLayout();
    void init68KLayout();
    void initCNC61KLayout();
    void keyboard_color_select(int tag);
    void resetKBColorRect(int tag);
    void action_kbcolor_button(CaseColorButton* sender);  // stores first, then shows
    // keyboard_color_select without the store: the picture and the buttons.
    void showCaseColour(int tag);
    KeyboardView* orvane_keyboardctrl = nullptr;
    QLabel* newKBLayout = nullptr;
    CaseColorButton* kb_whitecolor_btn = nullptr;   // tag 200
    CaseColorButton* kb_blackcolor_btn = nullptr;   // tag 201
    CaseColorButton* kb_bluecolor_btn = nullptr;    // tag 202, CNC only
    CaseColorButton* kb_purplecolor_btn = nullptr;  // tag 203, CNC only

    // Hands a sequence to the transport thread on the session's transport.
    // Does nothing without a session; false when nothing was handed over.
    bool submitSequence(ReportSequence sequence, TransportQueue::ReplyHandler onReply = {});
    TransportQueue& transport() { return *transport_; }
    // True from the hand-over of a sequence until its end.
    bool hidcomm_busy() const { return transport_->isBusy(); }

    // What the monitor thread announced, taken together under one lock: the
    // device, its product string and the model (`g_device_type`) it makes.
    struct Announcement {
        HIDDevice device;
        QString name;
        int deviceType = 1;
    };

    // Thread-safe views of the fields the monitor thread writes.
    std::optional<HIDDevice> connectedDevice() const;
    std::optional<Announcement> announcement() const;
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
    ImageButton* imgbtn_nofity = nullptr;  // shows, does nothing
    MessagePanel* label_problem = nullptr;  // the message panel
    // MainControllerNoKeyboard: the state over the page pane while no
    // keyboard is connected, with the reason when the platform gave one.
    void updateNoKeyboardState();
    void noteKeyboardUnreachable(const QString& reason);
    void makeNoKeyboardPane();
    QWidget* noKeyboardPane = nullptr;
    QLabel* noKeyboardTitle = nullptr;
    QLabel* noKeyboardWhy = nullptr;
    QString noKeyboardReason_;

    // ---- Pages (MainControllerPages) ----------------------------------------
    // `viewType` is the page on show: 1 keys and macros, 2 light, 3 system.
    // Each handler does nothing on its own page; the page's function button
    // is the one selected.
    void initFuncButtons();
    void removePreView();
    void action_func_key();
    void action_func_light();
    void action_func_set();
    FuncButton* func_keyset = nullptr;
    FuncButton* func_light = nullptr;
    FuncButton* func_set = nullptr;
    FuncButton* func_store = nullptr;
    // The notes in the macro and user light lists while they have no rows,
    // in the language of the moment.
    void setEmptyListHints();
    EmptyListHint* macroListHint = nullptr;
    EmptyListHint* userLightListHint = nullptr;

    // ---- Model list (MainControllerModelList) -------------------------------
    // Shows another model's layout; the device and its data stay as they are.
    void initModelList();
    void action_device_select_up();       // 68-key
    void action_device_select_current();  // 61-key
    void action_device_select_down();     // CNC
    void action_device_toup();            // one model further down the list
    void action_device_todown();          // one model further up
    // Turns the list so `newkb_type` is in the centre and slides the
    // keyboard picture; reads the old `keyboardType`, so it runs before
    // that changes.
    void setDeviceListIconRect(int newkb_type, QAbstractButton* dev_btn);
    // The picture of a model in its stored case colour, for the slide.
    QString getNewAnimationImage(int newkb_type);
    QString getOldAnimationImage();
    ImageButton* modelListButton(int keyboardTypeOfButton) const;
    ImageButton* device_select_up = nullptr;       // index 0
    ImageButton* device_select_current = nullptr;  // index 1
    ImageButton* device_select_down = nullptr;     // index 2
    ImageButton* imgbtn_dev_up = nullptr;
    ImageButton* imgbtn_dev_down = nullptr;

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
    void showStoredLightMode();  // the list only, nothing sent
    void showLightModeRow();     // the row of currentLightMode
    void chooseLightMode(int mode);
    void resetLightModeTableView();
    void setHFDBackLightData(int profile);
    void tableViewSelectionDidChange(QListWidget* tableView);
    LightTableItemView* lightModeRowView(int row);  // made if needed
    void buildLightModeRows();                      // all of them, for the page on show
    void action_ligjhtmode_tab();
    void action_userlightmode_tab();

    // ---- System page (MainControllerSystemPage) ----------------------------
    void initSystemPage();  // builds sysset_view, hidden until its page is chosen
    void action_keylock_swicthbtn(QAbstractButton* sender);
    void lockGameModeKey(int tag, int btnstate);  // btnstate: 1 locked, 0 free
    void loadSystemSetData();
    void showStoredLockSwitches();  // the switches only, nothing sent
    void setHFDSystemSetData(int profile);
    QWidget* sysset_view = nullptr;
    // switch_lock_win (665), switch_lock_alttab (666), switch_lock_altf4 (667)
    std::array<QAbstractButton*, 3> lockSwitches{};
    // "Start with the desktop": the user's autostart entry, not a keyboard
    // setting, so it works with or without a keyboard.
    void initAutostartRow(int top);
    // Where the key locks sit on the system page, in the page's coordinates.
    QRect keyLockRowsRect() const;
    void action_autostart_switch();
    QLabel* label_autostart = nullptr;
    QAbstractButton* switch_autostart = nullptr;

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

    // ---- Key table (MainControllerKeyTable) --------------------------------
    // Builds the profile's whole key table from the stored assignments and
    // sends it; sends nothing when the assignments cannot be read.
    void setKeyMacroData(int profile);
    // The keys of the picture show the assignments of `currentProfile`.
    void loadKeyMacro();

    // ---- Profile menus and resets (MainControllerMenus, MainControllerReset)
    void initMenuButtons();  // imgbtn_profile and imgbtn_menu
    void action_switchprofile();  // needs a keyboard
    void action_menu();           // needs a keyboard
    void closePopovers();         // profile, language and main menu
    // The window-modal question before a reset (menu id 1002 or 1003);
    // only its "OK" resets.
    void askToReset(int msgId);
    void resetCurrent();
    void resetAllData();
    IconButton* imgbtn_profile = nullptr;
    QAbstractButton* imgbtn_menu = nullptr;
    PofilePopoverViewController* profilePopover = nullptr;  // made on first use
    MenuPopoverViewController* menuPopover = nullptr;       // made on first use
    QPointer<QMessageBox> resetAlert;                        // the question on show

    // ---- Macro page and macro store (MainControllerMacro) -------------------
    void initMacroPage();  // builds macro_view, hidden until its page is chosen
    void registerMacroNotifications();
    void loadMacroData();
    void UpdateMacroInfo();
    void MacroTableViewButton(const QVariant& object);    // "type" 1 delete (asks first), 2 edit; "index"
    // Asks whether to delete the macro, naming it and the keys that play it.
    void askToDeleteMacro(int64_t macroId, const QString& name);
    // Deletes the macro and the assignments that play it, and sends the
    // store and the key tables whose macro places moved or went.
    void deleteMacro(int64_t macroId);
    // Sends the key tables of the profiles with keys that play `macroId`.
    void sendKeyTablesPlaying(int64_t macroId);
    void SubMenuItemMacroAction(const QVariant& object);  // "type" 1 opens the window; "macroid"
    void MacroFunctionAction(const QVariant& object);     // the macro id: binds it to currentKeyValue
    void action_macro_newmacro();
    // The one write path of every key assignment (MainControllerKeyFunc):
    // stores `keydata` for currentKeyValue in the profile in use, shows it on
    // the key and uploads the profile's key table.
    void addCustomKey(ProfileKey& keydata);
    // Sends the whole store; refuses, with a note in the window, a library
    // that would not fit the keyboard.
    void SaveMacroToKeyboard();
    // Takes back the message of `topic`, so a newer one can be shown.
    void withdrawProblem(const QString& topic);
    QWidget* macro_view = nullptr;
    QLabel* label_macro_caption = nullptr;
    IconButton* btn_macro_newmacro = nullptr;
    QListWidget* macro_table = nullptr;   // identifier "macrotable"
    QList<QVariantMap> macro_datas;       // "macroid", "text"
    QPointer<MacroWindowController> macroWindow;
    // ---- User light modes (MainControllerUserLight, MainControllerUserLightPaint)
    // The list of the user light tab, painting the picture through the one
    // shared colour dialog, and saving a mode to a custom slot.
    void initUserLightPage();  // the list inside userlight_view
    void registerUserLightNotifications();
    void loadUserlightData();
    void loadUserLightData(int64_t UserlightId);  // shows a mode on the picture
    void addUserLight();
    void UserLightTableMenuMsg(int msgId);  // 166 add; 167 to 171 save to slot 1 to 5
    void UserLightTableViewMenu(const QVariant& object);
    void UserLightTableViewButton(const QVariant& object);
    void userLightSelectionDidChange();
    // MainControllerUserLightRows: each row's buttons act on that row's mode.
    int userLightRowOf(int64_t lightId) const;  // -1 when no row shows it
    void selectUserLightRow(int row);
    void renameUserLight(int row, const QString& name);
    void askToDeleteUserLight(int row);
    void deleteUserLight(int64_t mode);  // the mode and its colours
    // MainControllerUserLightState: painting and saving need the keyboard,
    // its model on the picture and a mode of the list.
    bool showsConnectedModel() const;
    QString userLightBlocker() const;  // why painting is off; empty when on
    bool paintingAllowed();            // and shows the reason on the tab
    void updateUserLightNotice();
    QLabel* userLightNotice = nullptr;
    UserLightTableItemView* userLightRowView(int row);  // made if needed
    void appendUserLightRow();
    void keyboardKeyAction(const QVariant& object);
    void setUserLightRGB();
    void changeUserLightColor(const QColor& color);
    void closeColorPanel();
    void setHFDUserLightData();
    void setHFDUserLightModeData(int profile);
    void resetUserLightData();
    QList<QVariantMap> userlightmode_datas;  // "mode" (lightId), "text"
    QListWidget* userlightmode_table = nullptr;  // identifier "userlightmode"
    QColorDialog* colorPanel = nullptr;          // shared, made on first use
    // Shows the light menu of the given type (2 on a row, 3 beside the rows)
    // at the pointer; set by the light menu window.
    std::function<void(int menuType)> showLightMenu;
    // ---- User guide and web links (MainControllerLinks) --------------------
    void initLinkButtons();  // imgbtn_doc, imgbtn_home, imgbtn_facebook, imgbtn_chat
    void setLinkToolTips();  // in the language of the moment
    // Opens the guide of the connected model (`g_device_type`), not of the
    // model on show; nothing when the app carries no such guide.
    void action_doc();
    void action_homewebsite();
    void action_fecebookwebsite();
    void action_chatwebsite();
    void action_func_store();
    // The resource of the guide for a `g_device_type`: the 68-key model has
    // its own, the 61-key and CNC models share one.
    static QString userGuideResource(int deviceType);
    // The guide copied to the cache folder, rewritten only when its bytes
    // differ; empty when the resource is missing or the copy fails.
    QString userGuideFile(const QString& resource);
    // Every address and guide opens through here; tests put a recorder in
    // `urlOpener` so nothing is launched. Empty: the desktop's default.
    void openLink(const QUrl& url);
    std::function<bool(const QUrl&)> urlOpener;
    ImageButton* imgbtn_doc = nullptr;
    ImageButton* imgbtn_home = nullptr;
    ImageButton* imgbtn_facebook = nullptr;
    ImageButton* imgbtn_chat = nullptr;

    // ---- Exchange files (MainControllerExchange) --------------------------
    // The main menu's profile export and import, and the user light list's
    // export and import. An import reads the chosen file without writing to
    // it, checks all of it first, and changes the database in one
    // transaction or not at all; it sends nothing to the keyboard. Each ends
    // with one line in the window, or a message saying what went wrong.
    void exportKeyProfile();
    void importKeyProfile();
    void exportLightData(int row);  // the mode of that row of the list
    void importLightData();
    QLabel* label_exchange = nullptr;  // made on first use

    // ---- Restore points (MainControllerRestore) ------------------------------
    // A reset, an import and the delete of a macro or a light each copy the
    // device database aside first; their result line offers Undo, and the
    // main menu lists the copies of the model connected.
    // The copy, or none, with a message saying why: the change must then not
    // go ahead. `what` is a SnapshotKind; `spare` is kept by the pruning.
    std::optional<QString> snapshotBefore(const char* what, const QString& spare = {});
    // The result line's Undo: restores the copy that line offers.
    void undoLastChange();
    // Puts a copy back whole, after copying what is there now, and sends the
    // keyboard everything the database holds; the result line offers Undo.
    void restoreSnapshot(const QString& path);
    void showRestoreSettings();  // the main menu's "Restore settings…"
    void askToRestore(const QString& path, const QString& when);
    // The light saved to each custom slot ("UserLight1" to "UserLight5"),
    // 0 for none; noted when a slot is saved.
    std::array<int64_t, 5> savedUserLightSlots() const;
    void noteUserLightSlot(int slot, int64_t mode);
    QString snapshotModel() const;     // "61k" or "68k"
    QPointer<QWidget> restorePrompt;   // the list, or a question, on show

    // ---- Key menus and the key tool tip (MainControllerKeyMenu,
    //      MainControllerToolTip) ---------------------------------------------
    // A click on a key opens the key menu at the pointer, or the light menu
    // when two or more keys are checked; hovering a first-level entry opens
    // its second level beside it; a choice is dispatched and every floating
    // window closes. The windows are made once, then shown and hidden.
    void registerKeyMenuNotifications();
    // The menus' part of keyboardKeyAction, for a click outside the user
    // light tab: the light menu for two or more checked keys, else the key menu.
    void showMenuForClickedKey();
    void MenuItemEnteredAction(const QVariant& object);
    // The key menus' part of MenuItemMouseUpAction: assigns what `menuid`
    // stands for, and closes the floating windows whatever it is.
    void keyMenuMouseUpAction(int menuid);
    void showKeySubMenu(const QPointF& pt, int menuid);
    void showKeyMacroSubMenu(const QPointF& pt, int menuid);
    void showKeyFuncSubMenu(const QPointF& pt, int menuid);
    // Shows the light menu of `menuType` with its top-left corner at the pointer.
    void showKeyLightSubMenu(int menuType);
    void addMenuItem(int menuid);
    void ShowKeyboardToolTipWnd(const QVariant& object);
    // Hides every floating window and lets go of the key they worked on.
    // Escape, a press outside them, a page change and a model switch do it.
    void hideFloatingWindows();
    QPointer<KeyMenuViewController> keyboardKeyMenu;
    QPointer<KeySubMenuViewController> keyboardKeySubMenu;
    QPointer<KeySubMenuMacroViewController> kbKeyMacroSubMenu;
    QPointer<KeySubMenuLightViewController> kbKeyLightSubMenu;
    QPointer<KBToolTipsViewController> keyboardToolTips;

    // ---- Custom key (MainControllerKeyFunc) ---------------------------------
    // "CustomKeyFuncMsg" from the capture dialog: assigns the captured key
    // ("keyvalue" 0: the key's own function) through addCustomKey and closes
    // the menus.
    void CustomKeyFuncMsg(const QVariant& object);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    // ---- Keyboard picture -------------------------------------------------
    void initKeyboardPicture();
    void runLayoutBuilder(int newKeyboardType);
    void buildKeyboardLayout(const KeyboardModelLayout& model);
    // The case colour digit stored for a model; an empty one is stored as
    // "1" (white) and answered so.
    QString storedCaseDigit(const KeyboardModelLayout& model);

    // ---- Pages and model list -----------------------------------------------
    void initTitleButtons();  // close, minimise, notification, connection
    // An image button of the window, named as its outlet, at `frame` given
    // with y upward.
    ImageButton* addImageButton(const char* name, const QString& normal, const QString& hover, const QRect& frame);
    void showPage(int page);
    FuncButton* funcButtonOfPage(int page) const;
    void showModel(int newKeyboardType);
    // The running move of each model list button, by its index.
    std::array<QPointer<QAbstractAnimation>, 3> modelListMoves_;
    void setCaseColourButtonSelected(int tag);
    std::array<CaseColorButton*, 4> caseColourButtons() const;
    static int caseColourButtonX(int tag);

    Environment environment_;

    // Called with sessionMutex_ held: makes `device` the announced keyboard,
    // model and flags first, the handle last.
    void announceLocked(const HIDDevice& device);

    // The monitor thread writes these; the main thread reads them. The
    // flags above are atomics; the rest is behind this lock.
    mutable std::mutex sessionMutex_;
    std::optional<HIDDevice> kbHIDdevice_;
    QString device_name_;
    int announcedType_ = 1;
    std::shared_ptr<DeviceComm> deviceComm_;
    // Matching keyboards that arrived while another was in session, in order;
    // the first still plugged takes over when the one in session goes.
    std::vector<HIDDevice> waiting_;

    // Main thread: the announcement ConnectDevice set the session up from.
    std::optional<Announcement> session_;
    // Main thread: a status poll's reply is owed, and what waits for it.
    bool pollReplyOwed_ = false;
    bool inPollReply_ = false;
    std::vector<std::function<void()>> afterPollReply_;
    void runAfterPollReply();

    // ---- Uploads the keyboard may hold only in part (MainControllerUnfinished)
    UnfinishedUploads& unfinishedUploads();
    // Sends again, rebuilt from the store, every upload of this model that
    // did not finish; called after the connection's own uploads.
    void sendUnfinishedUploads();
    // The colours a stored user light mode puts on the keyboard; false when
    // its rows cannot be read.
    bool storedUserLightLeds(int64_t mode, std::vector<Protocol::LedColour>& leds);
    // Declared before the transport, which may still report to it while it goes.
    std::unique_ptr<UnfinishedUploads> unfinishedUploads_;

    // ---- Uploads the keyboard did not confirm (MainControllerUnfinished)
    // Says which upload (its header's command and target byte) the keyboard
    // reported another sum for, twice; withdrawn at the next connection.
    void uploadNotConfirmed(int header, int target);
    void withdrawUnconfirmed();
    QStringList unconfirmedTopics_;

    std::unique_ptr<TransportQueue> transport_;
    std::unique_ptr<HIDMonitorThread> monitorThread_;
    QTimer pollTimer_;
    // Messages given before the window was built, oldest first.
    std::vector<std::pair<QString, std::function<QString()>>> pendingProblems_;
    QTimer holdRetry_;  // a rule's switch waiting for a capture to end
    void layoutProblems();
    std::uint64_t menuItemObserver_ = 0;  // "MenuItemMouseUpAction", added once
    std::uint64_t customKeyObserver_ = 0;  // "CustomKeyFuncMsg", added once

    // Macro page
    void reloadMacroTable();
    void showMacroWindow(int64_t macroId);
    void showMacroStoreNote(const QString& message);
    bool macroObserversAdded_ = false;
    // User light painting: the newest colour not yet stored, and whether a
    // pass to store it is already due. Reports that come faster than the
    // passes are merged into the newest one.
    std::optional<QColor> pendingPaintColour_;
    bool colorPanelPlaced_ = false;  // placed once; then where the user puts it
    bool paintPassDue_ = false;
    void runPaintPass();
    void makeColorPanel();
    void queuePaint(const QColor& color);
    QPoint colorPanelPlace() const;
    bool userLightObserved_ = false;

    // ---- Exchange files ------------------------------------------------------
    QString chooseExchangeFile(const ExchangeDialog& dialog);
    void importCheckedKeyProfile(ExchangeFileCheck::KeyFileInspection inspection, const QString& fileName);
    void importCheckedLightData(const ExchangeFileCheck::LightFileInspection& inspection, const QString& fileName);
    // With `undoSnapshot`, the line offers Undo for as long as it shows.
    void showExchangeResult(const QString& line, const QString& undoSnapshot = {});
    void showExchangeRefusal(const QString& message);
    void showImportedUserLight(int lightId);
    // Restore points
    QString undoSnapshot_;  // what the result line's Undo restores
    void sendRestoredSettings(const std::array<int64_t, 5>& slotsBefore);
    void sendSavedUserLightSlots(const std::array<int64_t, 5>& slotsBefore);
    // Key menus
    bool keyMenuObserved_ = false;
    // Makes `window` one of the floating windows that close together.
    void trackFloatingWindow(QWidget* window, bool takesEscape = false);
    FloatingWindowGroup* floatingWindows_ = nullptr;

    // ---- Texts in the language in force ---------------------------------------
    void setWindowButtonToolTips();  // close, connection and bell
};
