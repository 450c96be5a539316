// The user guide and the web links of the title row, and the shop button.
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/Globals.h"
#include "Common/ProductLinks.h"
#include "Language/AppText.h"
#include "View/control/ButtonView.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

namespace {

// The four link buttons stand left of the profile button, the guide a
// little apart from the three web links.
struct LinkButton {
    ImageButton* MainController::*field;
    const char* name;
    const char* tipEnglish;
    const char* tipChinese;
    const char* normal;
    const char* hover;
    int x;
    void (MainController::*action)();
};

constexpr LinkButton kLinkButtons[] = {
    {&MainController::imgbtn_doc, "imgbtn_doc", "User guide", "用户指南", "sysbtn_doc_n", "sysbtn_doc_h", 586,
     &MainController::action_doc},
    {&MainController::imgbtn_home, "imgbtn_home", "Orvane home page", "Orvane 官网", "btn_home_n", "btn_home_h", 628,
     &MainController::action_homewebsite},
    {&MainController::imgbtn_facebook, "imgbtn_facebook", "Orvane on Facebook", "Orvane Facebook 主页",
     "btn_facebook_n", "btn_facebook_h", 660, &MainController::action_fecebookwebsite},
    {&MainController::imgbtn_chat, "imgbtn_chat", "Orvane forum", "Orvane 论坛", "btn_chat_n", "btn_chat_h", 692,
     &MainController::action_chatwebsite},
};

}  // namespace

void MainController::initLinkButtons()
{
    for (const LinkButton& b : kLinkButtons) {
        ImageButton* button = addImageButton(b.name, QString::fromLatin1(b.normal), QString::fromLatin1(b.hover),
                                             QRect(b.x, 684, 24, 24));
        connect(button, &QAbstractButton::clicked, this, b.action);
        this->*b.field = button;
    }
    setLinkToolTips();
}

void MainController::setLinkToolTips()
{
    for (const LinkButton& b : kLinkButtons) {
        if (ImageButton* button = this->*b.field)
            button->setToolTip(QString::fromUtf8(G_Language == kLanguageChinese ? b.tipChinese : b.tipEnglish));
    }
}

QString MainController::userGuideResource(int deviceType)
{
    return deviceType == DeviceModel::kDeviceType68k ? QStringLiteral(":/guides/Orvane 68k User guide.pdf")
                                                     : QStringLiteral(":/guides/Orvane 61k User guide.pdf");
}

QString MainController::userGuideFile(const QString& resource)
{
    QFile source(resource);
    if (!source.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = source.readAll();
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    const QString path = QDir(folder).filePath(QFileInfo(resource).fileName());
    QFile existing(path);
    if (existing.open(QIODevice::ReadOnly) && existing.size() == bytes.size() && existing.readAll() == bytes)
        return path;
    // A viewer may hold the old copy open: write beside it, then swap.
    QSaveFile copy(path);
    if (!QDir().mkpath(folder) || !copy.open(QIODevice::WriteOnly) || copy.write(bytes) != bytes.size()
        || !copy.commit()) {
        showProblem(appText(AppText::GuideCopyFailed)
                        .arg(folder, copy.errorString()),
                    QStringLiteral("user guide"));
        return {};
    }
    return path;
}

void MainController::openLink(const QUrl& url)
{
    const bool opened = urlOpener ? urlOpener(url) : QDesktopServices::openUrl(url);
    if (!opened)
        showProblem(appText(AppText::LinkOpenFailed)
                        .arg(url.toDisplayString()),
                    QStringLiteral("link ") + url.toString());  // each link that fails says so
}

void MainController::action_doc()
{
    const QString path = userGuideFile(userGuideResource(g_device_type.load()));
    if (!path.isEmpty())
        openLink(QUrl::fromLocalFile(path));
}

void MainController::action_homewebsite() { openLink(QUrl(QString::fromLatin1(ProductLinks::kHomePage))); }
void MainController::action_fecebookwebsite() { openLink(QUrl(QString::fromLatin1(ProductLinks::kFacebookPage))); }
void MainController::action_chatwebsite() { openLink(QUrl(QString::fromLatin1(ProductLinks::kForum))); }

// The page on show and its selected button stay as they are.
void MainController::action_func_store()
{
    closeColorPanel();
    openLink(QUrl(QString::fromLatin1(ProductLinks::kStore)));
}
