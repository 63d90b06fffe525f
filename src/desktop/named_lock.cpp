#include "desktop/named_lock.h"
#include "desktop/runtime_folder.h"

#include <fcntl.h>
#include <unistd.h>

namespace
{
int OpenLockFile(const QByteArray& name, int flags)
{
    const QByteArray folder = RuntimeFolder();
    if (folder.isEmpty())
        return -1;
    return open((folder + '/' + name).constData(), flags | O_CLOEXEC | O_NOFOLLOW, 0600);
}

struct flock WholeFile()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}
} // namespace

bool CNamedLock::Take()
{
    if (m_file >= 0)
        return true;
    const int file = OpenLockFile(m_name, O_RDWR | O_CREAT);
    if (file < 0)
        return false;
    // Bound to the open file and not to the process, so that two objects of one process differ.
    struct flock lock = WholeFile();
    if (fcntl(file, F_OFD_SETLK, &lock) != 0) {
        close(file);
        return false;
    }
    m_file = file;
    return true;
}

void CNamedLock::Release()
{
    if (m_file >= 0)
        close(m_file);
    m_file = -1;
}

bool CNamedLock::Exists(const QByteArray& name)
{
    const int file = OpenLockFile(name, O_RDWR);
    if (file < 0)
        return false;
    struct flock lock = WholeFile();
    const bool held = fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    close(file);
    return held;
}
