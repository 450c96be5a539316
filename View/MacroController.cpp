#include "View/MacroController.h"

#include "Common/InputKeyCodes.h"
#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "View/MacroStepEditor.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/TableItemView.h"
#include "View/control/Theme.h"

#include <QApplication>
#include <QCheckBox>
#include <QDateTime>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QSpinBox>
#include <QWindow>

int64_t currentMacorId = 0;
DeviceSQLite* currentDeviceDB = nullptr;
std::weak_ptr<DeviceComm> currentDeviceComm;

namespace {

MaroController::KeyUsageSource& keyUsageSource()
{
    static MaroController::KeyUsageSource source = [](quint32 nativeScanCode) {
        return hidUsageFromNativeScanCode(nativeScanCode).value_or(0);
    };
    return source;
}

// The window's frame, y up.
constexpr int kMargin = 24;
constexpr int kLeftWidth = 280;
constexpr int kListX = 328;
constexpr int kListWidth = MaroController::kWidth - kListX - kMargin;
constexpr int kButtonWidth = 164;
constexpr int kButtonHeight = 40;
constexpr int kFieldX = 136;
constexpr int kFieldWidth = 84;

QRect frame(int x, int y, int w, int h) { return flippedRect(MaroController::kHeight, x, y, w, h); }

QLabel* caption(QWidget* parent, const char* name, int y, bool bold)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setGeometry(frame(kMargin, y, kLeftWidth, 24));
    if (bold)
        label->setStyleSheet(QStringLiteral("font-weight: bold;"));
    return label;
}

QCheckBox* option(QWidget* parent, const char* name, int y)
{
    auto* check = new QCheckBox(parent);
    check->setObjectName(QString::fromLatin1(name));
    check->setGeometry(frame(kMargin + 8, y, kLeftWidth - 8, 26));
    check->setChecked(true);
    check->setFocusPolicy(Qt::NoFocus);
    return check;
}

QSpinBox* numberField(QWidget* parent, const char* name, int y, int maximum, int value)
{
    auto* field = new QSpinBox(parent);
    field->setObjectName(QString::fromLatin1(name));
    field->setGeometry(frame(kFieldX, y, kFieldWidth, 28));
    field->setRange(1, maximum);
    field->setValue(value);
    return field;
}

IconButton* iconButton(QWidget* parent, const char* name, int x)
{
    auto* button = new IconButton(parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setGeometry(frame(x, kMargin - 4, kButtonWidth, kButtonHeight));
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

}  // namespace

void MaroController::setKeyUsageSource(KeyUsageSource source)
{
    keyUsageSource() = std::move(source);
}

MaroController::MaroController(QWidget* parent)
    : QWidget(parent),
      nowMs([] { return QDateTime::currentMSecsSinceEpoch(); }),
      MacorId(currentMacorId),
      deviceDB(currentDeviceDB),
      deviceComm(currentDeviceComm)
{
    setObjectName(QStringLiteral("MaroController"));
    setFixedSize(kWidth, kHeight);
    buildControls();
}

MaroController::~MaroController()
{
    if (eventHandler)
        qApp->removeEventFilter(this);
}

void MaroController::buildControls()
{
    edit_newmacro = new QLineEdit(this);
    edit_newmacro->setObjectName(QStringLiteral("edit_newmacro"));
    edit_newmacro->setGeometry(frame(kMargin, 384, kLeftWidth, 32));
    label_namenote = new QLabel(this);
    label_namenote->setObjectName(QStringLiteral("label_namenote"));
    label_namenote->setGeometry(frame(kMargin, 362, kLeftWidth, 20));
    Theme::setTextColor(label_namenote, Theme::warningText());
    connect(edit_newmacro, &QLineEdit::textEdited, label_namenote, &QLabel::clear);
    buildOptions();

    btn_closewindow = new ImageButton(this);
    btn_closewindow->setObjectName(QStringLiteral("btn_closewindow"));
    btn_closewindow->setGeometry(frame(kWidth - 32, kHeight - 32, 24, 24));
    connect(btn_closewindow, &QAbstractButton::clicked, this, [this] { action_closewindow(); });

    record_tableview = new QListWidget(this);
    record_tableview->setObjectName(QStringLiteral("record_tableview"));
    record_tableview->setProperty("identifier", QStringLiteral("recordtable"));
    record_tableview->setGeometry(frame(kListX, 84, kListWidth, 332));
    record_tableview->setFocusPolicy(Qt::NoFocus);
    record_tableview->setSelectionMode(QAbstractItemView::NoSelection);
    record_tableview->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    record_tableview->setStyleSheet(QStringLiteral(
        "QListWidget { background: transparent; border: 1px solid #e3e6ea; border-radius: 8px; outline: 0; }"));
    // Clicks on the list are clicks in the window, recorded like any other.
    record_tableview->viewport()->installEventFilter(this);

    btn_newmacro = iconButton(this, "btn_newmacro", kListX);
    connect(btn_newmacro, &QAbstractButton::clicked, this, [this] { action_macrorecord(); });
    btn_saverecord = iconButton(this, "btn_saverecord", kListX + kButtonWidth);
    connect(btn_saverecord, &QAbstractButton::clicked, this, [this] { action_saverecord(); });

    label_status = new QLabel(this);
    label_status->setObjectName(QStringLiteral("label_status"));
    label_status->setGeometry(frame(kMargin, kMargin - 4, kLeftWidth, kButtonHeight + 20));
    label_status->setWordWrap(true);
    Theme::setTextColor(label_status, Theme::recordBlue());

    stepEditor = new MacroStepEditor(record_tableview, recorder, this);
    connect(stepEditor, &MacroStepEditor::stepsEdited, this, [this] { reloadList(); });
    connect(stepEditor, &MacroStepEditor::message, label_status, &QLabel::setText);
}

void MaroController::buildOptions()
{
    label_recordopt = caption(this, "label_recordopt", 336, true);
    radio_rec_keyboard = option(this, "radio_rec_keyboard", 306);
    radio_rec_mouse = option(this, "radio_rec_mouse", 278);
    radio_rec_delay = option(this, "radio_rec_delay", 250);

    label_excopt = caption(this, "label_excopt", 206, true);
    label_repeattimes = caption(this, "label_repeattimes", 172, false);
    edit_repeattimes = numberField(this, "edit_repeattimes", 170, kMaxRepeatTimes, 1);
    label_repeattimes_desc = caption(this, "label_repeattimes_desc", 172, false);
    label_repeatdelay = caption(this, "label_repeatdelay", 134, false);
    edit_repeatdalay = numberField(this, "edit_repeatdalay", 132, int(MacroRecorder::kMaxDelayMs), 10);
    label_repeatdelay_desc = caption(this, "label_repeatdelay_desc", 134, false);
    for (QLabel* unit : {label_repeattimes_desc, label_repeatdelay_desc})
        unit->setGeometry(frame(kFieldX + kFieldWidth + 8, unit == label_repeattimes_desc ? 172 : 134, 60, 24));
    for (QLabel* label : {label_repeattimes, label_repeatdelay})
        label->setFixedWidth(kFieldX - kMargin - 8);
}

void MaroController::viewDidLoad()
{
    btn_closewindow->hide();
    btn_closewindow->initControl(QStringLiteral("imgbtn_macro_close_n"), QStringLiteral("imgbtn_macro_close_h"));
    const QString background = QStringLiteral("btn_createmacro");
    btn_newmacro->initControl(background, background);
    btn_newmacro->setIcon(QStringLiteral("icon_macro_rec"), QStringLiteral("icon_macro_rec"), QRect(50, 12, 16, 16));
    btn_newmacro->setText(QRect(80, 12, 80, 16), {});
    btn_saverecord->initControl(background, background);
    btn_saverecord->setIcon(QStringLiteral("icon_macro_save"), QStringLiteral("icon_macro_save"), QRect(50, 11, 18, 18));
    btn_saverecord->setText(QRect(90, 11, 70, 16), {});
    if (MacorId >= 1 && deviceDB) {
        MacroInfo info;
        if (deviceDB->queryMacroInfo(MacorId, info)) {
            edit_newmacro->setText(info.macroName);
            // An edit shows, and a save keeps, how the macro plays.
            edit_repeattimes->setValue(int(info.playTimes));
            edit_repeatdalay->setValue(int(info.delayTime));
        }
        loadMacroRecordData(MacorId);
    }
    stepEditor->loadLibrary(deviceDB, MacorId);
}

void MaroController::viewDidAppear()
{
    btn_newmacro->setText(btn_newmacro->text_rect, languageText(recordIng ? 361 : 360));
    btn_saverecord->setText(btn_saverecord->text_rect, languageText(375));
    label_recordopt->setText(languageText(365));
    radio_rec_keyboard->setText(languageText(366));
    radio_rec_mouse->setText(languageText(367));
    radio_rec_delay->setText(languageText(368));
    label_excopt->setText(languageText(370));
    label_repeattimes->setText(languageText(371));
    label_repeattimes_desc->setText(languageText(373));
    label_repeatdelay->setText(languageText(372));
    label_repeatdelay_desc->setText(appText(AppText::MillisecondsUnit));
    edit_newmacro->setPlaceholderText(appText(AppText::MacroNamePlaceholder));
    if (recordIng)
        label_status->setText(appText(AppText::MacroRecordingHint));
    stepEditor->retranslate();
}

void MaroController::loadMacroRecordData(int64_t macroId)
{
    std::vector<RecordInfo> rows;
    stepsUnread_ = deviceDB && !deviceDB->readMacroSteps(macroId, rows);
    if (stepsUnread_)
        label_status->setText(appText(AppText::MacroStepsUnreadInEditor));
    std::vector<MacroStep> steps;
    for (const RecordInfo& row : rows)
        steps.push_back({int(row.recordType), row.recordDesc, row.recordValue});
    recorder.setSteps(std::move(steps));
    savedSteps_ = recorder.steps();
    reloadList();
}

void MaroController::rebind(DeviceSQLite* store, std::weak_ptr<DeviceComm> transport)
{
    deviceDB = store;
    deviceComm = std::move(transport);
}

bool MaroController::hasUnsavedSteps() const
{
    return recorder.steps() != savedSteps_;
}

void MaroController::reloadList()
{
    const std::vector<MacroStep>& steps = recorder.steps();
    // Rows are kept and only added or renamed: a step comes with every key.
    while (record_tableview->count() > int(steps.size()))
        delete record_tableview->takeItem(record_tableview->count() - 1);
    for (std::size_t row = 0; row < steps.size(); ++row) {
        auto* view = qobject_cast<RecordTableItemView*>(record_tableview->itemWidget(record_tableview->item(int(row))));
        if (!view) {
            auto* item = new QListWidgetItem(record_tableview);
            item->setSizeHint(QSize(kListWidth - 16, RecordTableItemView::kRowHeight));
            view = new RecordTableItemView;
            view->resize(kListWidth - 16, RecordTableItemView::kRowHeight);
            view->initView();
            record_tableview->setItemWidget(item, view);
        }
        view->textView->setText(steps[row].text);
    }
    if (recordIng)
        record_tableview->scrollToBottom();
    stepEditor->refresh();
}

void MaroController::action_macrorecord()
{
    if (!recordIng) {
        recorder.recordKeyboard = radio_rec_keyboard->isChecked();
        recorder.recordMouse = radio_rec_mouse->isChecked();
        recorder.recordDelay = radio_rec_delay->isChecked();
        recorder.start();
        reloadList();
        eventHandler = this;
        qApp->installEventFilter(this);
        recordIng = true;
    } else {
        qApp->removeEventFilter(this);
        eventHandler = nullptr;
        recordIng = false;
    }
    setRecordingControls(recordIng);
}

void MaroController::setRecordingControls(bool recording)
{
    edit_newmacro->setReadOnly(recording);
    for (QWidget* w : std::initializer_list<QWidget*>{btn_closewindow, radio_rec_keyboard, radio_rec_mouse,
                                                       radio_rec_delay, edit_repeattimes, edit_repeatdalay,
                                                       btn_saverecord})
        w->setEnabled(!recording);
    btn_newmacro->setIcon(recording ? QStringLiteral("icon_macro_stoprec") : QStringLiteral("icon_macro_rec"),
                          recording ? QStringLiteral("icon_macro_stoprec") : QStringLiteral("icon_macro_rec"),
                          btn_newmacro->icon_rect);
    btn_newmacro->setText(btn_newmacro->text_rect, languageText(recording ? 361 : 360));
    label_status->setText(recording ? appText(AppText::MacroRecordingHint) : QString());
    stepEditor->setRecording(recording);
    if (recording)
        setFocus();  // keys typed while recording must not edit the name
}

bool MaroController::eventFilter(QObject* watched, QEvent* event)
{
    // Each key event reaches its window first, once; the widgets it goes on
    // to would show it again.
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (recordIng && key && watched->isWindowType())
        fillMacroRecord(static_cast<const QKeyEvent&>(*event));
    // A click on the list while recording is a step, counted here once:
    // the list would keep it or hand it on to the window by chance.
    const bool click = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease;
    if (recordIng && click && watched == record_tableview->viewport() &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        mouseStep(event->type() == QEvent::MouseButtonPress);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void MaroController::fillMacroRecord(const QKeyEvent& event)
{
    // A held key repeats its press; the releases in between are not the user's.
    if (event.type() == QEvent::KeyRelease && event.isAutoRepeat())
        return;
    const KeyUsageSource& source = keyUsageSource();
    const int usage = source ? source(event.nativeScanCode()) : 0;
    if (recorder.keyEvent(usage, event.type() == QEvent::KeyPress, nowMs()))
        reloadList();
}

void MaroController::mouseStep(bool down)
{
    if (recordIng && recorder.mouseEvent(down, nowMs()))
        reloadList();
}

void MaroController::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        mouseStep(true);
    QWidget::mousePressEvent(event);
}

void MaroController::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        mouseStep(false);
    QWidget::mouseReleaseEvent(event);
}

void MaroController::hideEvent(QHideEvent* event)
{
    if (recordIng)
        action_macrorecord();
    QWidget::hideEvent(event);
}

std::optional<QString> MaroController::checkedName()
{
    const QString name = edit_newmacro->text().trimmed();
    if (name.isEmpty())
        label_namenote->setText(appText(AppText::MacroNameEmpty));
    else if (name.size() > kMaxNameLength)
        label_namenote->setText(appText(AppText::MacroNameTooLong).arg(kMaxNameLength));
    else
        return name;
    return std::nullopt;
}

void MaroController::action_saverecord()
{
    const std::optional<QString> name = checkedName();
    if (!name || !deviceDB)
        return;
    if (stepsUnread_) {
        label_status->setText(appText(AppText::MacroStepsUnreadInEditor));
        return;
    }
    if (const std::optional<QString> refusal = stepEditor->saveRefusal()) {
        label_status->setText(*refusal);
        return;
    }
    MacroInfo info{MacorId, edit_repeattimes->value(), 1, edit_repeatdalay->value(), *name};
    std::vector<RecordInfo> rows;
    for (const MacroStep& step : recorder.steps())
        rows.push_back({0, 0, step.type, int64_t(rows.size()), step.value, step.text});
    const int64_t id = deviceDB->saveMacro(info, rows);
    if (id < 1) {
        label_status->setText(appText(AppText::MacroSaveFailed));
        return;
    }
    MacorId = id;
    savedSteps_ = recorder.steps();
    label_status->clear();
    stepEditor->saved(deviceDB, MacorId);
    NotificationCenter::defaultCenter().post(QStringLiteral("UpdateMacroInfo"), QVariant::fromValue<qint64>(id));
}

void MaroController::action_closewindow()
{
    window()->close();
}
