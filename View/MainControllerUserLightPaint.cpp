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
#include <QCursor>

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
        setUserLightRGB();
        return;
    }
    showMenuForClickedKey();
}

void MainController::setUserLightRGB()
{
    if (!colorPanel) {
        colorPanel = new QColorDialog(this);
        colorPanel->setObjectName(QStringLiteral("colorPanel"));
        colorPanel->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
        colorPanel->setModal(false);
        // A drag reports colours faster than a pass can store them: only the
        // newest waits, and one pass at a time is due.
        connect(colorPanel, &QColorDialog::currentColorChanged, this, [this](const QColor& color) {
            pendingPaintColour_ = color;
            if (paintPassDue_)
                return;
            paintPassDue_ = true;
            QMetaObject::invokeMethod(this, [this] { runPaintPass(); }, Qt::QueuedConnection);
        });
    }
    colorPanel->move(QCursor::pos() + QPoint(6, 6));
    colorPanel->show();
    colorPanel->raise();
    colorPanel->activateWindow();
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
    KeyboardView& view = *orvane_keyboardctrl;
    view.setCheckItemColor(color.toRgb());
    if (!deviceDB)
        return;
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
    // The slot gets the mode shown on the picture; rows of keys this model
    // lacks are left out.
    std::vector<RGBData> rows;
    // A read that fails is no empty mode: the slot keeps what it holds.
    if (deviceDB && !deviceDB->queryKeyRGB(1, currentUserLightMode, rows)) {
        showProblem(appText(AppText::LightColoursReadFailed),
                    QStringLiteral("userlight-save"));
        return;
    }
    std::vector<Protocol::LedColour> leds;
    for (const RGBData& row : rows)
        if (const auto entry = G_KB_SuperKeyCodeMap.find(row.keyvalue); entry != G_KB_SuperKeyCodeMap.end())
            leds.push_back({entry->second.light_index, uint32_t(row.rgbvalue)});
    // The colours, then the switch to the custom slots as its own sequence,
    // as setHFDUserLightModeData sends it.
    const auto modeBlock = Protocol::lightModeBlock(Protocol::kUserLightModeByte);
    for (ReportSequence& sequence : UploadSequences::userLightSave(currentKBUserLightMode,
                                                                   Protocol::userLightColorBlock(leds), currentProfile,
                                                                   modeBlock))
        submitSequence(std::move(sequence));
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
