#pragma once
// UnfinishedUploads: which whole uploads a keyboard may hold only in part.
//
// A key table, a user light slot or the macro store is marked when its
// sequence is handed to the transport and cleared only when the transport
// says that sequence finished; what stays marked is sent again, rebuilt from
// the store, at the next connection of the same model. Marks are kept per
// device store (one per model), since that store is what rebuilds them.
//
// They live in a small file of their own beside the stores, not in a
// database: they describe the keyboard, not the user's configuration, so a
// snapshot, an import or a reset of the device store must neither carry nor
// bring them back, and a store that cannot be opened must not lose them.
// Every change is written whole and renamed into place, so an application
// killed mid-upload leaves the mark behind. A damaged file is moved aside
// with the date in its name.

#include "Protocol/ReportSequence.h"

#include <QString>

#include <map>
#include <tuple>
#include <vector>

class UnfinishedUploads {
public:
    explicit UnfinishedUploads(QString filePath);

    // The sequence went to the transport (or was meant to and had none).
    void handedOver(const QString& store, const UploadMark& mark);
    // The transport's verdict on a sequence handed over for `store`.
    void ended(const QString& store, const UploadMark& mark, bool finished);

    // What the keyboard of `store`'s model may hold only in part, key tables
    // first, then user light slots, then the macro store.
    std::vector<UploadMark> marked(const QString& store) const;

    static constexpr const char* kFileName = "unfinished-uploads.json";

private:
    using Key = std::tuple<QString, UploadMark::Kind, int>;
    struct Entry {
        UploadMark mark;
        int inFlight = 0;     // handed over, verdict not yet in
        bool stale = false;   // the last verdict was "not finished", or an earlier run left it
    };

    void load();
    void save() const;

    QString path_;
    std::map<Key, Entry> entries_;
};
