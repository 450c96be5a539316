#pragma once
// Applications by the name and icon their desktop entries give them, so a
// rule reads "Firefox ESR" with its icon rather than "firefox-esr". An
// application's identity (the X11 class, the Wayland app_id) finds its entry
// through the entry's StartupWMClass or its file id, either without regard
// to case. Entries are read from the applications folders of the XDG data
// dirs, once, on first use; of two files with the same id the earlier
// folder's wins, as desktops do.

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

struct DesktopEntry {
    QString fileId;  // "org.kde.dolphin" for .../applications/org.kde.dolphin.desktop
    QString name;
    QMap<QString, QString> localizedNames;  // "zh_CN" -> name
    QString icon;                           // a theme icon name or an absolute path
    QString startupWMClass;

    // The name for `language` ("zh", "en"...): its own locale's, the
    // language's, else the plain Name.
    QString nameFor(const QString& language) const;
};

class DesktopEntries {
public:
    // `folders`: applications folders, the one that wins first.
    explicit DesktopEntries(const QStringList& folders);
    // The user's and the system's applications folders.
    static const DesktopEntries& installed();

    // The entry of the application `app`; null when none names it.
    const DesktopEntry* find(const QString& app) const;
    std::size_t size() const { return entries_.size(); }

private:
    void readFolder(const QString& folder, QSet<QString>& taken);

    std::vector<DesktopEntry> entries_;
};
