// The case colour selector under the keyboard picture.
#include "View/MainController.h"

#include "SQLite/LocalSQLite.h"
#include "View/KeyboardLayout/KeyboardLayouts.h"
#include "View/control/CaseColorButton.h"
#include "View/control/FlippedRect.h"
#include "View/control/KeyView.h"
#include "View/control/NamedImageView.h"
#include "View/control/KeyboardView.h"

int MainController::caseColourButtonX(int tag)
{
    return 230 + 30 * (tag - kCaseColourFirstTag);  // 230, 260, 290, 320
}

std::array<CaseColorButton*, 4> MainController::caseColourButtons() const
{
    return {kb_whitecolor_btn, kb_blackcolor_btn, kb_bluecolor_btn, kb_purplecolor_btn};
}

void MainController::setCaseColourButtonSelected(int tag)
{
    for (CaseColorButton* button : caseColourButtons())
        if (button && button->tag() == tag)
            button->setGeometry(flippedRect(kWindowHeight, caseColourButtonX(tag), 570, 26, 26));
}

void MainController::resetKBColorRect(int tag)
{
    if (tag < kCaseColourFirstTag || tag > kCaseColourFirstTag + 3)
        return;
    for (CaseColorButton* button : caseColourButtons())
        if (button && button->tag() != tag)
            button->setGeometry(flippedRect(kWindowHeight, caseColourButtonX(button->tag()), 573, 20, 20));
}

void MainController::action_kbcolor_button(CaseColorButton* sender)
{
    closeColorPanel();
    // A colour the store cannot keep is not shown: the picture stays as
    // stored, and the store's watch says why.
    const QString digit = QString::number(sender->tag() - kCaseColourFirstTag + 1);
    if (localDB
        && !localDB->updateLocalData(QString::fromLatin1(kLocalOwner), keyboardModelForLayout(keyboardLayout).localKey,
                                     digit))
        return;
    showCaseColour(sender->tag());
}

void MainController::keyboard_color_select(int tag)
{
    showCaseColour(tag);
    if (localDB)
        localDB->updateLocalData(QString::fromLatin1(kLocalOwner), keyboardModelForLayout(keyboardLayout).localKey,
                                 QString::number(keyboardColorType));
}

void MainController::showCaseColour(int tag)
{
    resetKBColorRect(tag);
    setCaseColourButtonSelected(tag);
    const KeyboardModelLayout& model = keyboardModelForLayout(keyboardLayout);
    const int type = tag - kCaseColourFirstTag + 1;
    if (orvane_keyboardctrl && orvane_keyboardctrl->kbImageView) {
        orvane_keyboardctrl->kbImageView->setImageName(casePictureForType(model, type));
        orvane_keyboardctrl->update();
        if (const auto move_type = caseColourSlide(keyboardColorType, type))
            orvane_keyboardctrl->animationMoveKBView(casePictureForType(model, type),
                                                     casePictureForType(model, keyboardColorType), *move_type);
        // Black legends on the white case, white on every other.
        orvane_keyboardctrl->setKeyBackgroundColor(tag == kCaseColourFirstTag ? Qt::black : Qt::white);
    }
    keyboardColorType = type;
}
