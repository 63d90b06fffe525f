// The file layer under SQLite with a disk that fails: the n-th write, sync or truncation and all
// after it, until it is stopped. Register it before the volume is opened.
#pragma once
#include <cstring>
#include <sqlite3.h>

class CFailingVfs
{
public:
    CFailingVfs()
    {
        sqlite3_initialize();
        Real() = sqlite3_vfs_find(nullptr);
        m_vfs = *Real();
        m_vfs.zName = "failing";
        m_vfs.szOsFile = int(sizeof(File)) + Real()->szOsFile;
        m_vfs.xOpen = Open;
        sqlite3_vfs_register(&m_vfs, 1);
    }
    ~CFailingVfs()
    {
        sqlite3_vfs_register(Real(), 1);
        sqlite3_vfs_unregister(&m_vfs);
    }
    CFailingVfs(const CFailingVfs&) = delete;
    CFailingVfs& operator=(const CFailingVfs&) = delete;

    static void FailAt(int n, bool full)
    {
        Countdown() = n;
        Failed() = false;
        Full() = full;
    }
    // Whether a failure has happened.
    static bool Stop()
    {
        Countdown() = 0;
        return Failed();
    }

private:
    struct File {
        sqlite3_file base;
        sqlite3_file* real;
    };

    static sqlite3_vfs*& Real()
    {
        static sqlite3_vfs* real = nullptr;
        return real;
    }
    static int& Countdown()
    {
        static int countdown = 0;
        return countdown;
    }
    static bool& Failed()
    {
        static bool failed = false;
        return failed;
    }
    static bool& Full()
    {
        static bool full = false;
        return full;
    }

    static bool Due()
    {
        if (Countdown() == 0)
            return false;
        if (Countdown() > 1) {
            --Countdown();
            return false;
        }
        Failed() = true;
        return true;
    }

    static sqlite3_file* RealOf(sqlite3_file* file) { return reinterpret_cast<File*>(file)->real; }

    static int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags)
    {
        auto* own = reinterpret_cast<File*>(file);
        own->real = reinterpret_cast<sqlite3_file*>(own + 1);
        std::memset(own->real, 0, size_t(Real()->szOsFile));
        const int code = Real()->xOpen(Real(), name, own->real, flags, outFlags);
        own->base.pMethods = code == SQLITE_OK ? Methods() : nullptr;
        return code;
    }
    static int Write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 at)
    {
        if (!Due())
            return RealOf(file)->pMethods->xWrite(RealOf(file), bytes, size, at);
        // Half of it may have reached the disk.
        RealOf(file)->pMethods->xWrite(RealOf(file), bytes, size / 2, at);
        return Full() ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
    static int Sync(sqlite3_file* file, int flags)
    {
        return Due() ? (Full() ? SQLITE_FULL : SQLITE_IOERR_FSYNC)
                     : RealOf(file)->pMethods->xSync(RealOf(file), flags);
    }
    static int Truncate(sqlite3_file* file, sqlite3_int64 size)
    {
        return Due() ? (Full() ? SQLITE_FULL : SQLITE_IOERR_TRUNCATE)
                     : RealOf(file)->pMethods->xTruncate(RealOf(file), size);
    }
    static const sqlite3_io_methods* Methods()
    {
        static const sqlite3_io_methods methods = {
            2,
            [](sqlite3_file* f) { return RealOf(f)->pMethods->xClose(RealOf(f)); },
            [](sqlite3_file* f, void* b, int n, sqlite3_int64 at) {
                return RealOf(f)->pMethods->xRead(RealOf(f), b, n, at);
            },
            Write,
            Truncate,
            Sync,
            [](sqlite3_file* f, sqlite3_int64* size) { return RealOf(f)->pMethods->xFileSize(RealOf(f), size); },
            [](sqlite3_file* f, int l) { return RealOf(f)->pMethods->xLock(RealOf(f), l); },
            [](sqlite3_file* f, int l) { return RealOf(f)->pMethods->xUnlock(RealOf(f), l); },
            [](sqlite3_file* f, int* r) { return RealOf(f)->pMethods->xCheckReservedLock(RealOf(f), r); },
            [](sqlite3_file* f, int op, void* a) { return RealOf(f)->pMethods->xFileControl(RealOf(f), op, a); },
            [](sqlite3_file* f) { return RealOf(f)->pMethods->xSectorSize(RealOf(f)); },
            [](sqlite3_file* f) { return RealOf(f)->pMethods->xDeviceCharacteristics(RealOf(f)); },
            [](sqlite3_file* f, int i, int n, int x, void volatile** p) {
                return RealOf(f)->pMethods->xShmMap(RealOf(f), i, n, x, p);
            },
            [](sqlite3_file* f, int o, int n, int l) { return RealOf(f)->pMethods->xShmLock(RealOf(f), o, n, l); },
            [](sqlite3_file* f) { RealOf(f)->pMethods->xShmBarrier(RealOf(f)); },
            [](sqlite3_file* f, int d) { return RealOf(f)->pMethods->xShmUnmap(RealOf(f), d); },
            nullptr,
            nullptr,
        };
        return &methods;
    }

    sqlite3_vfs m_vfs{};
};
