#include "Language/Language.h"

#include "Common/Globals.h"
#include "SQLite/LocalSQLite.h"

#include <algorithm>

QString Language::lookup(std::span<const Entry> table, int id)
{
    const auto it = std::lower_bound(table.begin(), table.end(), id,
                                     [](const Entry& e, int wanted) { return e.id < wanted; });
    if (it == table.end() || it->id != id)
        return unknownText();
    return QString::fromUtf8(it->text);
}

QString Language::getLanFrom(const Tables& tables, int id)
{
    if (id >= 1 && id <= 216) {
        const QString text = lookup(tables.first, id);
        if (text != unknownText())
            return text;
    }
    return getLan2From(tables, id);
}

QString Language::getLan2From(const Tables& tables, int id)
{
    if (id >= 350 && id <= 623)
        return lookup(tables.second, id);
    if (id >= 800 && id <= 815)
        return lookup(tables.third, id);
    return unknownText();
}

QString languageText(int id)
{
    return G_Language == kLanguageChinese ? CHSLanguage::getLan(id) : ENGLanguage::getLan(id);
}

int profileTextId(int profile)
{
    static constexpr int kIds[] = {31, 32, 33, 35, 36};
    return profile >= 1 && profile <= 5 ? kIds[profile - 1] : 0;
}
