#pragma once
// The interface texts, by numeric text id, in English and in Chinese.
//
// Both tables answer the same ids. `getLan` serves the ids 1 to 216 and hands
// everything else, and any id without a text there, to `getLan2`, which serves
// 350 to 623 and 800 to 815. An id that neither knows gives "CHS", in both
// languages, and that sentinel is what an unknown id shows on screen. The
// tables are code, not resource files, and they know nothing of widgets.

#include <QString>

#include <span>

// An empty base: the two tables are used only through their class operations.
class Language {
public:
    // What every lookup answers for an id without a text.
    static QString unknownText() { return QStringLiteral("CHS"); }

    struct Entry {
        int id;
        const char* text;  // UTF-8
    };
    // The text of `id` in a table sorted by id, or "CHS".
    static QString lookup(std::span<const Entry> table, int id);

    // The ranges, the same for both languages. `first` holds ids up to 216,
    // `second` 350 to 623, `third` 800 to 815.
    struct Tables {
        std::span<const Entry> first;
        std::span<const Entry> second;
        std::span<const Entry> third;
    };
    static QString getLanFrom(const Tables& tables, int id);
    static QString getLan2From(const Tables& tables, int id);
};

class ENGLanguage : public Language {
public:
    static QString getLan(int lan);
    static QString getLan2(int lan);
};

class CHSLanguage : public Language {
public:
    static QString getLan(int lan);
    static QString getLan2(int lan);
};

// The text of `id` in the language in force (`G_Language`), decided at each
// call: Chinese for 2052, English for anything else.
QString languageText(int id);

// The text id of a profile's name: 31, 32, 33, 35 and 36 for the profiles 1
// to 5 (34 is no profile's); 0 for any other number.
int profileTextId(int profile);
