// The keyboard picture: building it for a model and the case colour it
// starts with.
#include "View/MainController.h"

#include "SQLite/LocalSQLite.h"
#include "View/KeyboardLayout/KeyboardLayouts.h"
#include "View/control/CaseColorButton.h"
#include "View/control/FlippedRect.h"
#include "View/control/KeyboardView.h"

namespace {
const QString kOwner = QString::fromLatin1(kLocalOwner);
}

void MainController::initKeyboardPicture()
{
    orvane_keyboardctrl = new KeyboardView(this);
    orvane_keyboardctrl->setObjectName(QStringLiteral("orvane_keyboardctrl"));
    orvane_keyboardctrl->setGeometry(flippedRect(kWindowHeight, 215, 310, 660, 235));

    newKBLayout = new QLabel(QStringLiteral("敬请期待"), this);
    newKBLayout->setGeometry(flippedRect(kWindowHeight, 215, 370, 660, 60));
    newKBLayout->setAlignment(Qt::AlignCenter);
    newKBLayout->setStyleSheet(QStringLiteral("QLabel { color: white; background: transparent; font-size: 50px; }"));

    const std::array<QColor, 4> swatches{QColor(0xf5, 0xf6, 0xf8), QColor(0x26, 0x28, 0x2d), QColor(0x3a, 0x5d, 0x8f),
                                         QColor(0x67, 0x4b, 0x92)};
    CaseColorButton** outlets[] = {&kb_whitecolor_btn, &kb_blackcolor_btn, &kb_bluecolor_btn, &kb_purplecolor_btn};
    for (int i = 0; i < 4; ++i) {
        auto* button = new CaseColorButton(kCaseColourFirstTag + i, swatches[size_t(i)], this);
        button->setGeometry(flippedRect(kWindowHeight, caseColourButtonX(kCaseColourFirstTag + i), 573, 20, 20));
        connect(button, &QAbstractButton::clicked, this, [this, button] { action_kbcolor_button(button); });
        *outlets[i] = button;
    }
    kb_blackcolor_btn->show();
    kb_bluecolor_btn->hide();
    kb_purplecolor_btn->hide();
    init61KLayout();
}

void MainController::init61KLayout() { buildKeyboardLayout(keyboardModel61k()); }
void MainController::init68KLayout() { buildKeyboardLayout(keyboardModel68k()); }
void MainController::initCNC61KLayout() { buildKeyboardLayout(keyboardModelCnc()); }

void MainController::runLayoutBuilder(int newKeyboardType)
{
    kb_blackcolor_btn->show();
    kb_bluecolor_btn->setVisible(newKeyboardType == 2);
    kb_purplecolor_btn->setVisible(newKeyboardType == 2);
    switch (newKeyboardType) {
    case 0: init68KLayout(); break;
    case 2: initCNC61KLayout(); break;
    default: init61KLayout(); break;
    }
}

QString MainController::storedCaseDigit(const KeyboardModelLayout& model)
{
    const StoreRead digit = localDB ? localDB->readLocalData(kOwner, model.localKey) : StoreRead{};
    if (!digit.value.isEmpty())
        return digit.value;
    // A model shown for the first time starts white; a colour that could not
    // be read is shown white too, but not stored over.
    if (localDB && !digit.failed())
        localDB->writeLocalData(kOwner, model.localKey, QStringLiteral("1"));
    return QStringLiteral("1");
}

void MainController::buildKeyboardLayout(const KeyboardModelLayout& model)
{
    resetKBColorRect(kCaseColourFirstTag);
    setCaseColourButtonSelected(kCaseColourFirstTag);
    selectKeyMaps(model.keyMaps, model.codeMapStart);
    keyboardLayout = model.keyboardLayout;
    if (newKBLayout)
        newKBLayout->hide();

    const QString digit = storedCaseDigit(model);
    if (orvane_keyboardctrl) {
        orvane_keyboardctrl->setFrameOrigin(model.frame.x, model.frame.y);
        orvane_keyboardctrl->setBoundsSize(QSizeF(model.frame.width, model.frame.height));
        orvane_keyboardctrl->initKeyboard(1, casePictureForDigit(model, digit),
                                          layoutKeys(*model.layout, *model.yPos, *model.sizes, G_KB_SuperKeyNameMap));
        // Black legends on the white case, white on every other.
        orvane_keyboardctrl->setKeyBackgroundColor(digit == QLatin1String("1") ? Qt::black : Qt::white);
    }
    // The type is set first, so the selection starts no slide.
    if (const auto colour = caseColourForDigit(model, digit)) {
        keyboardColorType = colour->type;
        keyboard_color_select(colour->tag);
    }
    // A profile's assignments reach the keys through loadKeyMacro when the
    // profile is loaded; until then each key shows its own name.
    if (orvane_keyboardctrl)
        orvane_keyboardctrl->resetKeyMacro();
}
