#include "support/CrashVfs.h"

#include <sqlite3.h>

#include <csignal>

namespace {

struct ShimFile {
    sqlite3_file base;
    sqlite3_file* real;
};

sqlite3_vfs* realVfs = nullptr;
sqlite3_vfs shimVfs;
int count = 0;
int strikeAt = 0;
CrashVfs::Action action = CrashVfs::Action::None;

// True when this operation must fail.
bool strikes()
{
    if (action == CrashVfs::Action::None || ++count < strikeAt)
        return false;
    if (action == CrashVfs::Action::Kill)
        std::raise(SIGKILL);
    return true;
}

sqlite3_file* real(sqlite3_file* f) { return reinterpret_cast<ShimFile*>(f)->real; }

#define FORWARD(method, ...) real(f)->pMethods->method(real(f), ##__VA_ARGS__)
int shimClose(sqlite3_file* f) { return FORWARD(xClose); }
int shimRead(sqlite3_file* f, void* b, int n, sqlite3_int64 o) { return FORWARD(xRead, b, n, o); }
int shimWrite(sqlite3_file* f, const void* b, int n, sqlite3_int64 o)
{
    if (!strikes())
        return FORWARD(xWrite, b, n, o);
    return action == CrashVfs::Action::DiskFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
}
int shimTruncate(sqlite3_file* f, sqlite3_int64 s) { return strikes() ? SQLITE_IOERR_TRUNCATE : FORWARD(xTruncate, s); }
int shimSync(sqlite3_file* f, int flags) { return strikes() ? SQLITE_IOERR_FSYNC : FORWARD(xSync, flags); }
int shimFileSize(sqlite3_file* f, sqlite3_int64* s) { return FORWARD(xFileSize, s); }
int shimLock(sqlite3_file* f, int l) { return FORWARD(xLock, l); }
int shimUnlock(sqlite3_file* f, int l) { return FORWARD(xUnlock, l); }
int shimCheckReserved(sqlite3_file* f, int* r) { return FORWARD(xCheckReservedLock, r); }
int shimFileControl(sqlite3_file* f, int op, void* a) { return FORWARD(xFileControl, op, a); }
int shimSectorSize(sqlite3_file* f) { return FORWARD(xSectorSize); }
int shimCharacteristics(sqlite3_file* f) { return FORWARD(xDeviceCharacteristics); }
#undef FORWARD

// Version 1: no shared memory and no memory mapping, so every page goes
// through xWrite.
const sqlite3_io_methods shimMethods = {1, shimClose, shimRead, shimWrite, shimTruncate, shimSync,
                                        shimFileSize, shimLock, shimUnlock, shimCheckReserved,
                                        shimFileControl, shimSectorSize, shimCharacteristics};

int shimOpen(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* outFlags)
{
    auto* shim = reinterpret_cast<ShimFile*>(file);
    shim->real = reinterpret_cast<sqlite3_file*>(shim + 1);
    const int rc = realVfs->xOpen(realVfs, name, shim->real, flags, outFlags);
    shim->base.pMethods = shim->real->pMethods ? &shimMethods : nullptr;
    return rc;
}

int shimDelete(sqlite3_vfs*, const char* name, int syncDir)
{
    return strikes() ? SQLITE_IOERR_DELETE : realVfs->xDelete(realVfs, name, syncDir);
}

}  // namespace

void CrashVfs::install()
{
    if (!realVfs) {
        realVfs = sqlite3_vfs_find(nullptr);
        shimVfs = *realVfs;
        shimVfs.zName = "crash";
        shimVfs.szOsFile = int(sizeof(ShimFile)) + realVfs->szOsFile;
        shimVfs.xOpen = shimOpen;
        shimVfs.xDelete = shimDelete;
        shimVfs.pNext = nullptr;
    }
    sqlite3_vfs_register(&shimVfs, 1);
}

void CrashVfs::arm(int at, Action a)
{
    count = 0;
    strikeAt = at;
    action = a;
}

int CrashVfs::counted() { return count; }

void CrashVfs::uninstall()
{
    if (realVfs)
        sqlite3_vfs_register(realVfs, 1);
}
