#include "shell/item_sender.h"
#include "desktop/mail_message.h"
#include "interchange/item_exporter.h"
#include "pim/pim_store.h"
#include "forms/question.h"
#include "touch/touch_menu.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUuid>

namespace
{
constexpr int kLongestName = 60;
constexpr int kKeptHours = 24;
const QString kUnknownAddress = QStringLiteral("invalid:nomail"); // of an organizer who told none

void Tell(QWidget* owner, const QString& text)
{
    ShowMessage(owner, text, GetString(StrBeam));
}

// A request that did not come from us belongs to the one who sent it.
bool IsOwn(const IAppointment& appointment)
{
    const QString organizer = appointment.Foreign().Organizer;
    return organizer.isEmpty() || organizer.contains(kUnknownAddress);
}

// Other calendars find the meeting again by its identifier, and newer messages by their number.
void Identify(IAppointment& appointment)
{
    const CForeignData& data = appointment.Foreign();
    if (data.Uid.isEmpty())
        appointment.put_Identity(QUuid::createUuid().toString(QUuid::WithoutBraces), data.Sequence);
    else
        appointment.put_Identity(data.Uid, data.Sequence + 1);
}
} // namespace

QString CItemSender::FileName(const QString& subject, const QString& ending)
{
    static const QString kForbidden = QStringLiteral("/\\:*?\"<>|%");
    QString name;
    for (const uint point : subject.simplified().toUcs4()) {
        const char32_t c = point;
        const bool plain = QChar::isPrint(point) && !(point < 128 && kForbidden.contains(QChar(point)));
        const QString piece = plain ? QString::fromUcs4(&c, 1) : QStringLiteral("_");
        if (name.size() + piece.size() > kLongestName)
            break;
        name += piece;
    }
    while (name.startsWith(u'.') || name.startsWith(u'-'))
        name.remove(0, 1); // hidden, or an option of some program
    name = name.trimmed();
    return (name.isEmpty() ? GetString(StrSendFileName) : name) + ending;
}

QString KeepOutgoing(const COutgoingFile& file)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                           QStringLiteral("/tessera/outgoing");
    QDir outgoing(folder);
    if (!outgoing.mkpath(QStringLiteral(".")))
        return {};
    const QDateTime old = QDateTime::currentDateTimeUtc().addSecs(-kKeptHours * 3600);
    for (const QFileInfo& entry :
         outgoing.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        if (entry.lastModified().toUTC() < old)
            QDir(entry.filePath()).removeRecursively();
    }
    QTemporaryDir place(folder + QStringLiteral("/XXXXXX")); // for its owner's eyes alone
    place.setAutoRemove(false);
    QFile written(place.filePath(file.Name));
    if (!place.isValid() || !written.open(QIODevice::WriteOnly) ||
        written.write(file.Content) != file.Content.size() || !written.flush())
        return {};
    return written.fileName();
}

// ---- what the object model hands over

CStatus CItemSender::SendItems(const std::vector<CItemName>& items)
{
    const CPoomSession session(PimStore().Volume());
    if (!session.App())
        return {StatusKind::Io, GetString(StrSendFailed)};
    for (const CItemName& item : items) {
        COutgoingFile file;
        const CStatus made = ExportItem(*session.App(), item, file.Content, &file.Subject);
        if (!made)
            return made;
        file.Name = FileName(file.Subject,
                             item.Kind == OlItem::Contact ? QStringLiteral(".vcf") : QStringLiteral(".ics"));
        SendFile(file);
    }
    return {};
}

CStatus CItemSender::SendRequest(IAppointment& appointment)
{
    return SendMeeting(appointment, false);
}

CStatus CItemSender::SendCancel(IAppointment& appointment)
{
    return SendMeeting(appointment, true);
}

CStatus CItemSender::SendMeeting(IAppointment& appointment, bool cancel)
{
    if (!IsOwn(appointment))
        return {};
    QStringList addresses;
    IRecipients* recipients = appointment.get_Recipients();
    for (int i = 1; i <= recipients->get_Count(); ++i)
        addresses += recipients->Item(i)->get_Address();
    addresses.removeAll(QString());
    if (addresses.isEmpty())
        return {};
    Identify(appointment);
    if (appointment.Foreign().Uid.isEmpty())
        return {}; // an occurrence of a series that nobody was ever invited to
    COutgoingFile file;
    const CStatus made =
        ExportMeeting(appointment, cancel ? MeetingMethod::Cancel : MeetingMethod::Request, file.Content);
    if (!made)
        return made;
    file.Subject = appointment.get_Subject();
    file.Name = FileName(file.Subject, QStringLiteral(".ics"));
    if (HasMailProgram())
        Mail(file, cancel ? GetString(StrSendCancelled).arg(file.Subject) : file.Subject, addresses);
    else
        SaveAs(file);
    return {};
}

// ---- the ways

void CItemSender::SendFile(const COutgoingFile& file)
{
    std::vector<CPushDevice> devices;
    bool mail = false;
    {
        CWaitCursor wait;
        devices = ListPushDevices();
        mail = HasMailProgram();
    }
    const int way = devices.empty() && !mail ? kToFile : ChooseWay(file.Subject, devices, mail);
    if (way == kToFile)
        SaveAs(file);
    else if (way == kByMail)
        Mail(file, file.Subject, {});
    else if (way >= 0 && way < int(devices.size()))
        Push(devices[size_t(way)], file);
}

int CItemSender::ChooseWay(const QString& subject, const std::vector<CPushDevice>& devices, bool mail)
{
    constexpr int kMail = 101, kFile = 102, kFirstDevice = 103;
    CTouchMenu menu(subject);
    for (size_t i = 0; i < devices.size(); ++i)
        menu.AddRow(GetString(StrSendToDevice).arg(devices[i].Name), kFirstDevice + int(i), 0);
    if (mail)
        menu.AddRow(StrSendByMail, kMail, 0);
    menu.AddRow(StrSendToFile, kFile, 0);
    const int chosen = menu.Run(m_owner);
    return chosen == kMail          ? kByMail
           : chosen == kFile        ? kToFile
           : chosen >= kFirstDevice ? chosen - kFirstDevice
                                    : kBack;
}

void CItemSender::Push(const CPushDevice& device, const COutgoingFile& file)
{
    const QString path = KeepOutgoing(file);
    if (path.isEmpty())
        return Tell(m_owner, GetString(StrSendFailed));
    CObjectPush::Start(device, path, [owner = m_owner, device, file](bool sent, const QString& detail) {
        if (!owner)
            return;
        QString text = GetString(sent ? StrSendPushed : StrSendNotPushed).arg(file.Subject, device.Name);
        if (!detail.isEmpty())
            text += u'\n' + detail;
        Tell(owner, text);
    });
}

void CItemSender::Mail(const COutgoingFile& file, const QString& subject, const QStringList& addresses)
{
    const QString path = KeepOutgoing(file);
    if (path.isEmpty() || !OpenMailMessage({addresses, subject, {}, path}))
        Tell(m_owner, GetString(StrSendFailed));
}

QString CItemSender::ChooseFile(const QString& suggested)
{
    return QFileDialog::getSaveFileName(m_owner, GetString(StrSendToFile), suggested);
}

void CItemSender::SaveAs(const COutgoingFile& file)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString path = ChooseFile(QDir(folder).filePath(file.Name));
    if (path.isEmpty())
        return;
    QSaveFile target(path);
    if (!target.open(QIODevice::WriteOnly) || target.write(file.Content) != file.Content.size() ||
        !target.commit())
        Tell(m_owner, GetString(StrSendFileFailed).arg(path, target.errorString()));
}
