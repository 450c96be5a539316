#pragma once
// "Start with the desktop": an entry in the user's autostart folder
// ($XDG_CONFIG_HOME/autostart, ~/.config/autostart by default) that starts
// the app in the tray with its window hidden. The package's own desktop
// entry is a separate file and stays as it is.

#include <QString>

namespace Autostart {

// .../autostart/com.orvane.keyboardstudio.desktop
QString entryPath();
bool isEnabled();
// Writes the entry starting `program` (the running app's path), or removes
// it. False with `error` set when the folder or file cannot be written.
bool setEnabled(bool enabled, const QString& program, QString& error);
// The entry's text for `program`.
QString entryText(const QString& program);

}  // namespace Autostart
