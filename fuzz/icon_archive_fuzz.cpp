// Any bytes as an archive of icons: its members are found under their own names, and their pictures
// are within their limits.
#include "drawing/icon_archive.h"

#include <QBuffer>
#include <QtGlobal>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}); // decoders complain
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    auto device = std::make_unique<QBuffer>();
    device->setData(reinterpret_cast<const char*>(data), int(size));
    device->open(QIODevice::ReadOnly);
    CIconArchive archive;
    if (!archive.Open(std::move(device), QDeadlineTimer::Forever))
        return 0;
    const auto& members = archive.Members();
    for (size_t n = 0; n < members.size(); ++n) {
        const CIconArchive::CMember& member = members[n];
        if (archive.Find(member.Level, member.Group, member.File) != int(n) || member.File.isEmpty())
            std::abort();
        const CAlphaImage image = archive.ReadImage(int(n));
        if (qint64(image.Width()) * image.Height() > CIconArchive::kPixels)
            std::abort();
    }
    return 0;
}
