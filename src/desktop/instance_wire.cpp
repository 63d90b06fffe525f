#include "desktop/instance_wire.h"
#include "desktop/runtime_folder.h"

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
constexpr char kMagic[4] = {'T', 'E', 'S', 'S'};

template <class T> void Append(QByteArray& bytes, T value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class T> T ValueAt(const QByteArray& bytes, int offset)
{
    T value;
    std::memcpy(&value, bytes.constData() + offset, sizeof value);
    return value;
}

// A path too long for a socket's address is reached through the open folder.
QByteArray AddressPath(const QByteArray& folder, const QByteArray& file, int& folderHandle)
{
    const QByteArray path = folder + '/' + file;
    if (size_t(path.size()) < sizeof(sockaddr_un::sun_path))
        return path;
    folderHandle = open(folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return "/proc/self/fd/" + QByteArray::number(folderHandle) + '/' + file;
}
} // namespace

QByteArray EncodeMessage(const CInstanceMessage& message)
{
    const QByteArray token = quint32(message.Token.size()) > kWireMaxToken ? QByteArray() : message.Token;
    QByteArray bytes(kMagic, sizeof kMagic);
    Append(bytes, message.Number);
    Append(bytes, message.wParam);
    Append(bytes, message.lParam);
    Append(bytes, quint32(token.size()));
    return bytes + token;
}

WireState DecodeMessage(QByteArray& bytes, CInstanceMessage& message)
{
    const auto known = std::min(size_t(bytes.size()), sizeof kMagic);
    if (std::memcmp(bytes.constData(), kMagic, known) != 0)
        return WireState::Malformed;
    if (bytes.size() < kWireHeader)
        return WireState::Incomplete;
    const quint32 length = ValueAt<quint32>(bytes, 24);
    if (length > kWireMaxToken)
        return WireState::Malformed;
    if (bytes.size() < kWireHeader + qsizetype(length))
        return WireState::Incomplete;
    message = {ValueAt<quint32>(bytes, 4), ValueAt<quint64>(bytes, 8), ValueAt<qint64>(bytes, 16),
               bytes.mid(kWireHeader, length)};
    bytes.remove(0, kWireHeader + qsizetype(length));
    return WireState::Complete;
}

int OpenInstanceSocket(const QByteArray& name, SocketUse use)
{
    const QByteArray folder = RuntimeFolder();
    if (folder.isEmpty())
        return -1;
    int folderHandle = -1;
    const QByteArray path = AddressPath(folder, name + ".socket", folderHandle);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    int handle = -1;
    if (size_t(path.size()) < sizeof address.sun_path) {
        std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
        handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    }
    if (handle >= 0) {
        const timeval patience = {3, 0};
        setsockopt(handle, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
        if (use == SocketUse::Bind)
            unlink(path.constData());
        const auto* where = reinterpret_cast<const sockaddr*>(&address);
        const int result = use == SocketUse::Bind ? bind(handle, where, sizeof address)
                                                  : connect(handle, where, sizeof address);
        if (result != 0) {
            close(handle);
            handle = -1;
        }
    }
    if (folderHandle >= 0)
        close(folderHandle);
    return handle;
}

bool IsOwnPeer(int socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}
