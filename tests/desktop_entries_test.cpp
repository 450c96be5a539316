// Applications found by the desktop entries that name them: by the class an
// entry declares or by its file id, without regard to case; the user's
// folder before the system's, a hidden entry hiding the system's, and names
// in the language shown.
#include "FocusWatch/DesktopEntries.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

void write(const QString& path, const QByteArray& text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\n" + text + "\n[Desktop Action New]\nName=New Window\n");
}

TEST(DesktopEntries, FindTheEntryThatNamesAnApplication)
{
    QTemporaryDir root;
    const QString user = root.filePath("user"), system = root.filePath("system");
    write(system + "/firefox.desktop", "Name=Firefox\nIcon=firefox");
    write(system + "/firefox-esr.desktop", "Name=Firefox ESR\nStartupWMClass=Firefox-esr\nIcon=firefox-esr");
    write(system + "/org.kde.dolphin.desktop", "Name=Dolphin\nName[zh_CN]=Dolphin 文件管理器\nIcon=system-file-manager");
    write(system + "/kde4/kate.desktop", "Name=Kate");
    write(system + "/gimp.desktop", "Name=GIMP (system)");
    write(user + "/gimp.desktop", "Name=GIMP\nIcon=/opt/gimp.png");
    write(system + "/hidden.desktop", "Name=Hidden app");
    write(user + "/hidden.desktop", "Name=Hidden app\nHidden=true");
    write(system + "/link.desktop", "Name=Link\nType=Link\nURL=https://orvane.com");
    const DesktopEntries entries({user, system});

    struct Case {
        const char* app;
        const char* name;  // null: no entry
        const char* language;
    };
    for (const Case& c : std::initializer_list<Case>{{"firefox-esr", "Firefox ESR", "en"},
                                                     {"FIREFOX", "Firefox", "en"},
                                                     {"org.kde.Dolphin", "Dolphin 文件管理器", "zh"},
                                                     {"org.kde.dolphin", "Dolphin", "en"},
                                                     {"kde4-kate", "Kate", "en"},
                                                     {"gimp", "GIMP", "en"},
                                                     {"hidden", nullptr, "en"},
                                                     {"link", nullptr, "en"},
                                                     {"unknown", nullptr, "en"},
                                                     {"", nullptr, "en"}}) {
        const DesktopEntry* entry = entries.find(c.app);
        ASSERT_EQ(entry != nullptr, c.name != nullptr) << c.app;
        if (entry)
            EXPECT_EQ(entry->nameFor(c.language), QString::fromUtf8(c.name)) << c.app;
    }
    EXPECT_EQ(entries.find("gimp")->icon, "/opt/gimp.png");
}

}  // namespace
