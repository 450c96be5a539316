#include "HIDDevice/UnfinishedUploads.h"

#include "Common/OutputLine.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <array>

namespace {

using Kind = UploadMark::Kind;

constexpr std::array<std::pair<Kind, const char*>, 3> kKindNames{{
    {Kind::KeyTable, "keyTable"},
    {Kind::UserLightSlot, "userLightSlot"},
    {Kind::MacroStore, "macroStore"},
}};

QString nameOf(Kind kind)
{
    for (const auto& [k, name] : kKindNames)
        if (k == kind)
            return QString::fromLatin1(name);
    return {};
}

Kind kindNamed(const QString& name)
{
    for (const auto& [k, n] : kKindNames)
        if (name == QLatin1String(n))
            return k;
    return Kind::None;
}

}  // namespace

UnfinishedUploads::UnfinishedUploads(QString filePath) : path_(std::move(filePath))
{
    load();
}

void UnfinishedUploads::handedOver(const QString& store, const UploadMark& mark)
{
    Entry& entry = entries_[{store, mark.kind, mark.target}];
    const bool unchanged = (entry.inFlight > 0 || entry.stale) && entry.mark.source == mark.source;
    entry.mark = mark;
    ++entry.inFlight;
    // Written before the first report goes out, so a run killed meanwhile
    // leaves the mark; a mark already written needs no second write.
    if (!unchanged)
        save();
}

void UnfinishedUploads::ended(const QString& store, const UploadMark& mark, bool finished)
{
    const auto found = entries_.find({store, mark.kind, mark.target});
    if (found == entries_.end())
        return;
    Entry& entry = found->second;
    entry.inFlight = std::max(0, entry.inFlight - 1);
    // Sequences end in the order they were handed over and each carries the
    // whole upload, so the latest verdict is what the keyboard holds.
    entry.stale = !finished;
    if (entry.inFlight > 0 || entry.stale)
        return;
    entries_.erase(found);
    save();
}

std::vector<UploadMark> UnfinishedUploads::marked(const QString& store) const
{
    std::vector<UploadMark> out;
    for (const auto& [key, entry] : entries_)  // ordered by kind, then target
        if (std::get<0>(key) == store)
            out.push_back(entry.mark);
    return out;
}

void UnfinishedUploads::load()
{
    QFile file(path_);
    if (!file.exists())
        return;
    QJsonParseError error{};
    const QJsonDocument document =
        file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll(), &error) : QJsonDocument();
    file.close();
    if (!document.isObject()) {
        // Unreadable marks cannot be trusted, nor thrown away unseen.
        const QString aside = path_ + ".damaged-" + QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss");
        QFile::rename(path_, aside);
        qCWarning(lcOrvane) << "unfinished uploads unreadable, moved to" << aside;
        return;
    }
    for (const QJsonValue& value : document.object().value("marks").toArray()) {
        const QJsonObject row = value.toObject();
        const UploadMark mark{kindNamed(row.value("kind").toString()), row.value("target").toInt(),
                              static_cast<int64_t>(row.value("source").toDouble())};
        const QString store = row.value("store").toString();
        if (mark && !store.isEmpty())
            entries_[{store, mark.kind, mark.target}] = Entry{mark, 0, true};
    }
}

void UnfinishedUploads::save() const
{
    QJsonArray rows;
    for (const auto& [key, entry] : entries_)
        rows.append(QJsonObject{{"store", std::get<0>(key)},
                                {"kind", nameOf(entry.mark.kind)},
                                {"target", entry.mark.target},
                                {"source", static_cast<double>(entry.mark.source)}});
    QDir().mkpath(QFileInfo(path_).absolutePath());
    QSaveFile file(path_);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(QJsonDocument(QJsonObject{{"marks", rows}}).toJson(QJsonDocument::Compact)) < 0
        || !file.commit())
        qCWarning(lcOrvane) << "unfinished uploads not recorded:" << file.errorString();
}
