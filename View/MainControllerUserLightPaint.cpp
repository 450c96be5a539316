// Painting user light modes and saving them to the keyboard: a click on the
// picture opens the shared colour dialog, each colour it reports is given to
// the selected keys and stored for every key of the picture in one
// transaction, and a save sends the shown mode's colours to a custom slot.
#include "View/MainController.h"

#include "Language/AppText.h"
#include "Protocol/LightModeBlock.h"
#include "Protocol/UploadSequences.h"
#include "Protocol/UserLightColorBlock.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/KeyView.h"
#include "View/control/KeyboardView.h"

#include <QColorDialog>
#include <QEvent>
#include <QListWidget>
#include <QSignalBlocker>
#include <QScreen>

#include <algorithm>
#include <functional>

namespace {

// The colour stored for a key: 0 for black (no colour of its own), else the
// 8-bit components as 0xRRGGBB.
int rgbValueOf(const QColor& color)
{
    const QColor rgb = color.toRgb();
    if (rgb == QColor(Qt::black))
        return 0;
    return (rgb.red() << 16) | (rgb.green() << 8) | rgb.blue();
}

// Reports each release of the mouse button over a part of the colour panel
// that picks a colour (the swatches, the colour field and its slider).
class ColourPickWatch : public QObject {
public:
    ColourPickWatch(QObject* parent, std::function<void()> picked) : QObject(parent), picked_(std::move(picked)) {}

    static bool picksColour(const QObject* part)
    {
        for (const char* name : {"QtPrivate::QWellArray", "QtPrivate::QColorPicker", "QtPrivate::QColorLuminancePicker",
                                 "QWellArray", "QColorPicker", "QColorLuminancePicker"})
            if (part->inherits(name))
                return true;
        return false;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // Once the panel has taken the release and set its colour.
        if (event->type() == QEvent::MouseButtonRelease)
            QMetaObject::invokeMethod(this, picked_, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> picked_;
};

}  // namespace

void MainController::keyboardKeyAction(const QVariant& object)
{
    const QString name = object.toString();
    if (name.isEmpty())
        return;
    currentKeyValue = 0;
    if (const auto entry = G_KB_SuperKeyNameMap.find(name); entry != G_KB_SuperKeyNameMap.end())
        currentKeyValue = entry->second.key_code;
    // On the user light tab a click paints and opens no menu.
    if (userlightmode_show) {
        if (paintingAllowed())
            setUserLightRGB();
        else
            closeColorPanel();
        return;
    }
    showMenuForClickedKey();
}

void MainController::setUserLightRGB()
{
    if (!colorPanel)
        makeColorPanel();
    // The panel keeps the place it was given or moved to; a key click only
    // brings it forward.
    if (!colorPanelPlaced_) {
        colorPanelPlaced_ = true;
        colorPanel->move(colorPanelPlace());
    }
    colorPanel->show();
    colorPanel->raise();
    colorPanel->activateWindow();
}

void MainController::makeColorPanel()
{
    colorPanel = new QColorDialog(this);
    colorPanel->setObjectName(QStringLiteral("colorPanel"));
    colorPanel->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
    colorPanel->setModal(false);
    // A drag reports colours faster than a pass can store them: only the
    // newest waits, and one pass at a time is due.
    connect(colorPanel, &QColorDialog::currentColorChanged, this, [this](const QColor& color) { queuePaint(color); });
    // The dialog reports changes only: a click on the colour already chosen
    // must paint the keys selected since, so a click on a swatch or the
    // colour fields paints whatever it changed.
    auto* picks = new ColourPickWatch(colorPanel, [this] { queuePaint(colorPanel->currentColor()); });
    for (QWidget* part : colorPanel->findChildren<QWidget*>())
        if (ColourPickWatch::picksColour(part))
            part->installEventFilter(picks);
}

void MainController::queuePaint(const QColor& color)
{
    pendingPaintColour_ = color;
    if (paintPassDue_)
        return;
    paintPassDue_ = true;
    QMetaObject::invokeMethod(this, [this] { runPaintPass(); }, Qt::QueuedConnection);
}

// Beside the window, where the keys stay in sight; where the screen has no
// room there, under the keyboard picture, over the page pane's lower part.
QPoint MainController::colorPanelPlace() const
{
    const QWidget* top = window();
    const QRect frame = top->frameGeometry();
    const QSize panel = colorPanel->frameGeometry().size().expandedTo(colorPanel->sizeHint());
    const QScreen* screen = top->screen();
    const QRect room = screen ? screen->availableGeometry() : QRect();
    if (room.isEmpty() || frame.right() + 8 + panel.width() <= room.right())
        return QPoint(frame.right() + 8, frame.top());
    if (frame.left() - 8 - panel.width() >= room.left())
        return QPoint(frame.left() - 8 - panel.width(), frame.top());
    const int pictureBottom = orvane_keyboardctrl ? orvane_keyboardctrl->mapToGlobal(QPoint(0, orvane_keyboardctrl->height())).y()
                                                  : mapToGlobal(QPoint(0, kWindowHeight / 2)).y();
    const int right = std::min(room.right(), frame.right());
    return QPoint(std::max(room.left(), right - panel.width()),
                  std::min(pictureBottom + 8, std::max(room.top(), room.bottom() - panel.height())));
}

void MainController::runPaintPass()
{
    paintPassDue_ = false;
    if (!pendingPaintColour_)
        return;
    const QColor color = *pendingPaintColour_;
    pendingPaintColour_.reset();
    changeUserLightColor(color);
}

void MainController::closeColorPanel()
{
    if (colorPanel)
        colorPanel->hide();
}

void MainController::changeUserLightColor(const QColor& color)
{
    if (!orvane_keyboardctrl)
        return;
    // Colours go only to a mode of the list, and only on the keyboard's own
    // model: another model's keys would land on other LEDs.
    if (!paintingAllowed()) {
        if (!userlightmode_show)
            showProblem(userLightBlocker(), QStringLiteral("userlight-paint-off"));
        return;
    }
    KeyboardView& view = *orvane_keyboardctrl;
    view.setCheckItemColor(color.toRgb());
    // Every key of the picture: a coloured key gets its row, a black one
    // loses it.
    std::vector<RGBData> pass;
    pass.reserve(view.kbKeyArrayHover.size());
    for (int index = 0; index < int(view.kbKeyArrayHover.size()); ++index) {
        const auto entry = G_KB_SuperKeyNameMap.find(view.kbKeyArrayHover[size_t(index)].keyname);
        const KeyView* key = view.keyView(index);
        if (entry == G_KB_SuperKeyNameMap.end() || !key)
            continue;
        pass.push_back({0, currentUserLightMode, 1, entry->second.key_code, rgbValueOf(key->keyColor)});
    }
    if (!deviceDB->insertKeyRGBPass(pass))
        showProblem(appText(AppText::KeyColoursSaveFailed),
                    QStringLiteral("userlight-paint"));
}

void MainController::setHFDUserLightData()
{
    if (!isSendDevice)
        return;
    if (!paintingAllowed())
        return;
    // The slot gets the mode shown on the picture. A read that fails is no
    // empty mode: the slot keeps what it holds.
    std::vector<Protocol::LedColour> leds;
    if (deviceDB && !storedUserLightLeds(currentUserLightMode, leds)) {
        showProblem(appText(AppText::LightColoursReadFailed),
                    QStringLiteral("userlight-save"));
        return;
    }
    // The colours, then the switch to the custom slots as its own sequence,
    // as setHFDUserLightModeData sends it. The colours name the stored mode,
    // so that a slot left half-written can be rebuilt from it.
    const auto modeBlock = Protocol::lightModeBlock(Protocol::kUserLightModeByte);
    std::vector<ReportSequence> save = UploadSequences::userLightSave(
        currentKBUserLightMode, Protocol::userLightColorBlock(leds), currentProfile, modeBlock);
    save.front().mark.source = currentUserLightMode;
    for (ReportSequence& sequence : save)
        submitSequence(std::move(sequence));
    // Kept with the settings, so a restore can give the slot its colours back.
    noteUserLightSlot(currentKBUserLightMode, currentUserLightMode);
    // The keyboard now runs the custom slot: no built-in effect is marked,
    // and a click on any of them is a change that sends it.
    resetLightModeTableView();
    if (light_mode_table) {
        const QSignalBlocker blocker(light_mode_table);
        light_mode_table->setCurrentItem(nullptr);
        light_mode_table->clearSelection();
    }
    showExchangeResult(appText(AppText::UserLightSavedToSlot).arg(currentKBUserLightMode));
}

void MainController::setHFDUserLightModeData(int /*profile*/)
{
    // The custom slots run on the profile in use. The built-in effect stays
    // stored, and the list keeps its selection.
    if (!isSendDevice)
        return;
    submitSequence(UploadSequences::lightMode(currentProfile, Protocol::lightModeBlock(Protocol::kUserLightModeByte)));
}

void MainController::resetUserLightData()
{
    // Every slot, one more than the menu offers, is blanked.
    for (ReportSequence& sequence : UploadSequences::userLightReset(Protocol::userLightColorBlock({})))
        submitSequence(std::move(sequence));
}
