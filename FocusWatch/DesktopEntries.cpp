#include "FocusWatch/DesktopEntries.h"

#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QStandardPaths>

#include <optional>

namespace {

bool sameName(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

// The [Desktop Entry] group of a file; none for what is no shown
// application (another type, or Hidden, which means deleted).
std::optional<DesktopEntry> parseEntry(QFile& file)
{
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    DesktopEntry entry;
    bool inGroup = false;
    bool application = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (!inGroup || equals <= 0 || line.startsWith(QLatin1Char('#')))
            continue;
        const QString key = line.left(equals).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        if (key == QLatin1String("Type"))
            application = value == QLatin1String("Application");
        else if (key == QLatin1String("Hidden") && value == QLatin1String("true"))
            return std::nullopt;
        else if (key == QLatin1String("Name"))
            entry.name = value;
        else if (key.startsWith(QLatin1String("Name[")) && key.endsWith(QLatin1Char(']')))
            entry.localizedNames.insert(key.mid(5, key.size() - 6), value);
        else if (key == QLatin1String("Icon"))
            entry.icon = value;
        else if (key == QLatin1String("StartupWMClass"))
            entry.startupWMClass = value;
    }
    if (!application || entry.name.isEmpty())
        return std::nullopt;
    return entry;
}

}  // namespace

QString DesktopEntry::nameFor(const QString& language) const
{
    // Our Chinese is simplified: zh_CN first, then zh; other languages by
    // their own code.
    const QStringList keys = language.startsWith(QLatin1String("zh"))
                                 ? QStringList{QStringLiteral("zh_CN"), QStringLiteral("zh_Hans"), QStringLiteral("zh")}
                                 : QStringList{language};
    for (const QString& key : keys)
        if (const auto at = localizedNames.constFind(key); at != localizedNames.cend() && !at->isEmpty())
            return *at;
    return name;
}

DesktopEntries::DesktopEntries(const QStringList& folders)
{
    QSet<QString> taken;
    for (const QString& folder : folders)
        readFolder(folder, taken);
}

const DesktopEntries& DesktopEntries::installed()
{
    static const DesktopEntries entries(QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation));
    return entries;
}

void DesktopEntries::readFolder(const QString& folder, QSet<QString>& taken)
{
    const QString root = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    QDirIterator files(root, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        // The file id: the path below the folder, '/' turned into '-'.
        QString id = file.fileName().mid(root.size());
        id.chop(int(qstrlen(".desktop")));
        id.replace(QLatin1Char('/'), QLatin1Char('-'));
        // A file the user hid stands for the system's file of that id too.
        if (taken.contains(id))
            continue;
        taken.insert(id);
        if (std::optional<DesktopEntry> entry = parseEntry(file)) {
            entry->fileId = id;
            entries_.push_back(std::move(*entry));
        }
    }
}

const DesktopEntry* DesktopEntries::find(const QString& app) const
{
    if (app.isEmpty())
        return nullptr;
    // The class the entry declares is the stronger sign: "Firefox-esr" is
    // firefox-esr.desktop though a firefox.desktop exists too.
    for (const DesktopEntry& entry : entries_)
        if (sameName(entry.startupWMClass, app))
            return &entry;
    for (const DesktopEntry& entry : entries_)
        if (sameName(entry.fileId, app))
            return &entry;
    return nullptr;
}
