// The language in force: the language button and menu, and bringing every
// text on screen up to the language.
#include "View/LanguageSwitch.h"

#include "Common/Globals.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "SQLite/LocalSQLite.h"
#include "View/MainController.h"
#include "View/AppRulesSection.h"
#include "View/control/AppFont.h"
#include "View/control/ButtonView.h"
#include "View/control/ImageTitleButton.h"
#include "View/popover/LanguagePopoverViewController.h"

#include <QApplication>
#include <QFont>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace {

constexpr LabelledControl kLabelledControls[] = {
    {"func_keyset", 520},
    {"func_light", 521},
    {"func_set", 522},
    {"func_store", 525},
    {"newKBLayout", 10},
    {"label_macro_caption", 350},
    {"btn_macro_newmacro", 350},
    {"light_mode_tab", 200},
    {"customlight_mode_tab", 571},
    {"label_sys_caption", 590},
    {"label_lock_win", 591},
    {"label_lock_alttab", 592},
    {"label_lock_altf4", 593},
};

QString languageButtonImage(bool hover)
{
    const QString stem = G_Language == kLanguageChinese ? QStringLiteral("sys_btn_cn") : QStringLiteral("sys_btn_en");
    return stem + (hover ? QStringLiteral("_h") : QStringLiteral("_n"));
}

}  // namespace

void useQtTranslations(int language)
{
    // Qt's own dialogs (file, colour, message box buttons) speak the
    // window's language; Debian ships their texts in qt6-translations-l10n.
    static std::unique_ptr<QTranslator> installed;
    if (installed) {
        QCoreApplication::removeTranslator(installed.get());
        installed.reset();
    }
    if (language != kLanguageChinese)
        return;
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(QStringLiteral("qtbase_zh_CN"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        return;  // without the package the dialogs stay in English
    QCoreApplication::installTranslator(translator.get());
    installed = std::move(translator);
}

std::span<const LabelledControl> labelledControls() { return kLabelledControls; }

void useChineseCapableFont()
{
    AppFont::registerFaces();
    QFont font = QApplication::font();
    font.setFamilies(AppFont::families());
    QApplication::setFont(font);
}

void MainController::initLanguageButton()
{
    imgbtn_language =
        addImageButton("imgbtn_language", languageButtonImage(false), languageButtonImage(true), QRect(952, 684, 24, 24));
    connect(imgbtn_language, &QAbstractButton::clicked, this, &MainController::action_language);
}

void MainController::action_language()
{
    if (!languagePopover)
        languagePopover = new LanguagePopoverViewController(this);
    languagePopover->showBelow(imgbtn_language);
}

void MainController::switchLanguage(int language)
{
    // A language the store cannot keep is not taken: the window stays in
    // the stored one, and the store's watch says why.
    const QString tag = language == kLanguageChinese ? QStringLiteral("zh-Hans-CN") : QStringLiteral("en-US");
    if (localDB && localDB->db
        && !localDB->updateLocalData(QString::fromLatin1(kLocalOwner), QStringLiteral("language"), tag))
        return;
    G_Language = language;
    imgbtn_language->initControl(languageButtonImage(false), languageButtonImage(true));
    LanguageSwicth();
}

void MainController::LanguageSwicth()
{
    useQtTranslations(G_Language);
    if (auto* profile = findChild<QWidget*>(QStringLiteral("imgbtn_profile")); profile && profileTextId(currentProfile))
        profile->setProperty("text", languageText(profileTextId(currentProfile)));
    for (const LabelledControl& control : kLabelledControls) {
        if (auto* widget = findChild<QWidget*>(QString::fromLatin1(control.objectName)))
            widget->setProperty("text", languageText(control.textId));
    }
    if (light_mode_tab)
        light_mode_tab->setTitleTextColor(Qt::black);
    if (customlight_mode_tab)
        customlight_mode_tab->setTitleTextColor(Qt::black);
    if (label_autostart)
        label_autostart->setText(appText(AppText::StartWithDesktop));
    initLightTableData();
    setEmptyListHints();
    reloadMacroTable();  // the step counts' words
    loadKeyMacro();      // the caps' words
    if (appRulesSection)
        appRulesSection->retranslate();
    // The guide and web link buttons' tool tips.
    setLinkToolTips();
    setWindowButtonToolTips();
    updateNoKeyboardState();
    updateUserLightNotice();
    if (label_problem)
        label_problem->retranslate();
}

void MainController::setWindowButtonToolTips()
{
    if (!imgbtn_close || !imgbtn_usb || !imgbtn_nofity)
        return;
    imgbtn_close->setToolTip(appText(AppText::Quit));
    // A keyboard's own name needs no translation.
    imgbtn_usb->setToolTip(connectedDevice() ? deviceName() : appText(AppText::NoKeyboardConnected));
    // The keyboard sends no news, so the bell has nothing to open.
    imgbtn_nofity->setToolTip(appText(AppText::NoNotifications));
    // The profile and main menus open only with a keyboard: without one,
    // the pointer says why nothing opens.
    const QString needsKeyboard = connectedDevice() ? QString() : languageText(502);
    for (QWidget* button : {static_cast<QWidget*>(imgbtn_profile), static_cast<QWidget*>(imgbtn_menu)})
        if (button)
            button->setToolTip(needsKeyboard);
}
