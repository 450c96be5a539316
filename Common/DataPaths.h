#pragma once
// Where the application keeps its files: the per-user data folder of the
// application, or the folder given with --data-dir / ORVANE_DATA_DIR.

#include <QString>

namespace DataPaths {

inline constexpr const char* kApplicationId = "com.orvane.keyboardstudio";

// Replaces the whole data folder (the databases then live in DIR/db/).
// An empty value restores the default.
void setDataFolderOverride(const QString& folder);

QString dataFolder();
// The folder of the SQLite files, with a trailing slash.
QString databaseFolder();

}  // namespace DataPaths
