// The right-hand pages and the row of function buttons that switches them:
// keys and macros (1), light (2), system (3). Exactly one function button
// is selected, the one of the page on show; the store button opens a page
// on the web and selects nothing.
#include "View/MainController.h"

#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/control/EmptyListHint.h"
#include "View/control/FlippedRect.h"
#include "View/control/FuncButton.h"
#include "View/control/KeyboardView.h"

namespace {

// Four tiles under the keyboard picture, as wide together as the picture.
constexpr int kFuncButtonX = 215;
constexpr int kFuncButtonY = 98;  // bottom edges level with the page's
constexpr int kFuncButtonWidth = 154;
constexpr int kFuncButtonHeight = 140;
constexpr int kFuncButtonStep = 168;

struct FuncButtonEntry {
    FuncButton* MainController::*field;
    const char* name;   // object name and image stem
    const char* title;  // until the language's texts are set
    void (MainController::*action)();
};

constexpr FuncButtonEntry kFuncButtons[] = {
    {&MainController::func_keyset, "func_keyset", "按键设置", &MainController::action_func_key},
    {&MainController::func_light, "func_light", "灯效设置", &MainController::action_func_light},
    {&MainController::func_set, "func_set", "功能设置", &MainController::action_func_set},
    {&MainController::func_store, "func_store", "购买键盘", &MainController::action_func_store},
};

}  // namespace

void MainController::initFuncButtons()
{
    int x = kFuncButtonX;
    for (const FuncButtonEntry& entry : kFuncButtons) {
        const QString stem = QString::fromLatin1(entry.name);
        auto* button = new FuncButton(this);
        button->setObjectName(stem);
        button->setGeometry(flippedRect(kWindowHeight, x, kFuncButtonY, kFuncButtonWidth, kFuncButtonHeight));
        button->initControl(stem + QStringLiteral("_n"), stem + QStringLiteral("_h"), QString::fromUtf8(entry.title));
        connect(button, &QAbstractButton::clicked, this, entry.action);
        this->*entry.field = button;
        x += kFuncButtonStep;
    }
    func_keyset->setSelect(true);
}

FuncButton* MainController::funcButtonOfPage(int page) const
{
    switch (page) {
    case 1: return func_keyset;
    case 2: return func_light;
    case 3: return func_set;
    default: return nullptr;
    }
}

void MainController::removePreView()
{
    closeColorPanel();
    switch (viewType) {
    case 1: macro_view->hide(); break;
    case 2:
        light_view->hide();
        userlight_view->hide();
        userlightmode_show = false;
        break;
    case 3: sysset_view->hide(); break;
    default: return;
    }
    funcButtonOfPage(viewType)->setSelect(false);
}

void MainController::showPage(int page)
{
    // Menus opened on one page have nothing to do on the next.
    hideFloatingWindows();
    removePreView();
    switch (page) {
    case 1: macro_view->show(); break;
    case 2:
        buildLightModeRows();
        light_view->show();
        userlight_view->show();
        // Entering the page always shows the built-in effects.
        action_ligjhtmode_tab();
        break;
    case 3: sysset_view->show(); break;
    default: return;
    }
    funcButtonOfPage(page)->setSelect(true);
    viewType = page;
    // The caps say what the keys do on the key page; elsewhere the legends
    // show the light beneath them.
    if (orvane_keyboardctrl)
        orvane_keyboardctrl->setKeyCapTextsShown(page == 1);
    updateNoKeyboardState();
}

void MainController::action_func_key()
{
    if (viewType != 1)
        showPage(1);
}

void MainController::action_func_light()
{
    if (viewType != 2)
        showPage(2);
}

void MainController::action_func_set()
{
    if (viewType != 3)
        showPage(3);
}

void MainController::setEmptyListHints()
{
    if (macroListHint)
        macroListHint->setText(appText(AppText::MacroListEmpty).arg(languageText(350)));
    if (userLightListHint)
        userLightListHint->setText(appText(AppText::UserLightListEmpty).arg(languageText(573)));
}
