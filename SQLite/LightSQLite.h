#pragma once
// LightSQLite: one ".light" exchange file, for the length of one import or
// export. The file is a small SQLite database holding one user light mode:
// a header row in "t_lightdata" (the mode's name and the two marks "666"
// and "888") and one row per coloured key in "t_lightleddata".
//
// Opening, tables and neutral answers as keyProfileSQLite (see ExchangeFile).

#include "SQLite/ExchangeFile.h"

#include <SQLiteCpp/Database.h>

#include <QString>

#include <memory>
#include <string>
#include <vector>

// One row of "t_lightleddata": a key's colour as 0xRRGGBB.
struct LEDData {
    int ledId = 0;  // row id; read back, not written
    int keyvalue = 0;
    int rgbvalue = 0;

    bool operator==(const LEDData&) const = default;
};

class LightSQLite {
public:
    explicit LightSQLite(const QString& dbPath, ExchangeAccess access = ExchangeAccess::Export);

    // "t_lightdata", then "t_lightleddata"; a file that has them keeps its rows.
    void createTable();
    // One header row; a failure is only logged.
    void addLightData(const QString& name, const QString& value1, const QString& value2);
    // The first header row overwrites the three arguments; with no row, or
    // on failure, they keep their values.
    void readLightData(QString& name, QString& value1, QString& value2) const;
    // One colour row; `data.ledId` is not used. A failure is only logged.
    void addLightLedData(const LEDData& data);
    // Appends the colour rows in row id order: the array's size afterwards,
    // 0 on failure with the array left as it was.
    int getlightLedData(std::vector<LEDData>& dataArray) const;

    // The header row ("666", "888") and the colour rows of one mode, in one
    // transaction: all are written or none. False on failure, with `failure` set.
    bool addLightMode(const QString& name, const std::vector<LEDData>& leds);

    std::unique_ptr<SQLite::Database> db;
    mutable std::string failure;
};
