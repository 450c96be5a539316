#pragma once
// A SQLite file layer for crash tests. Installed as the default, it passes
// everything to the platform's layer and counts the writes, syncs,
// truncates and deletes from the moment it is armed; at the Nth it either
// answers an I/O error or kills the process with SIGKILL, as a power cut or
// a crash would stop it there.

namespace CrashVfs {

enum class Action { None, IoError, Kill, DiskFull };

// Makes the layer the default for files opened from now on; meant for a
// forked child, which never goes back, or undone by uninstall() (files
// opened meanwhile keep the layer).
void install();
void uninstall();
// Starts counting; `action` strikes at operation `at` (1 is the first).
void arm(int at, Action action);
// Operations counted since arm().
int counted();

}  // namespace CrashVfs
