#include "interchange/item_exporter.h"

#include "interchange/calendar_exporter.h"
#include "platform/clock.h"

#include <algorithm>
#include <pwd.h>
#include <unistd.h>

namespace
{
TimeZoneInformation DeviceZone()
{
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    return zone;
}

// As others are to see it: the full name, else the login.
QString UserName()
{
    const passwd* const user = getpwuid(getuid());
    if (!user)
        return QStringLiteral("Tessera");
    const QString full = QString::fromLocal8Bit(user->pw_gecos).section(QLatin1Char(','), 0, 0).trimmed();
    return full.isEmpty() ? QString::fromLocal8Bit(user->pw_name) : full;
}

CStatus AddAppointment(IPOutlookApp& app, CEventExporter& exporter, quint32 itemId, CTextLines& lines,
                       QString* subject)
{
    std::unique_ptr<IAppointment> item;
    if (const CStatus status = app.GetAppointmentFromOid(itemId, item); !status)
        return status;
    *subject = item->get_Subject();
    const CForeignData& foreign = item->Foreign();
    std::vector<quint32> ids;
    if (!foreign.Uid.isEmpty())
        for (const CForeignKey& key : app.FindByUid(foreign.Uid))
            if (key.EqualsIndex == foreign.EqualsIndex)
                ids.push_back(key.ItemId);
    if (std::find(ids.begin(), ids.end(), itemId) == ids.end())
        ids.push_back(itemId);
    return exporter.Export(app, ids, lines);
}
} // namespace

CStatus ExportItem(IPOutlookApp& app, const CItemName& item, QByteArray& content, QString* subject)
{
    content.clear();
    QString name;
    CStatus status;
    CTextLines lines;
    CEventExporter exporter(DeviceZone(), GetLocalTime().wYear);
    if (item.Kind == OlItem::Contact) {
        std::unique_ptr<IContact> contact;
        status = app.GetContactFromOid(item.ItemId, contact);
        if (status) {
            name = contact->get_FileAs();
            CCardExporter().Export(*contact, MadeUid(item.ItemId), lines);
        }
    } else {
        lines = CalendarHead(nullptr);
        std::unique_ptr<ITask> task;
        if (item.Kind == OlItem::Appointment) {
            status = AddAppointment(app, exporter, item.ItemId, lines, &name);
        } else if (status = app.GetTaskFromOid(item.ItemId, task); status) {
            name = task->get_Subject();
            CTaskExporter(exporter.ZoneTable(), exporter.Zones()).Export(*task, MadeUid(item.ItemId), lines);
        }
        lines.push_back("END:VCALENDAR");
    }
    if (!status)
        return status;
    FoldLines(lines, content);
    if (subject)
        *subject = name;
    return {};
}

CStatus ExportMeeting(IAppointment& appointment, MeetingMethod method, QByteArray& content)
{
    content.clear();
    const bool isCancel = method == MeetingMethod::Cancel;
    CItemValues values = ValuesOf(appointment);
    if (values.Uid.isEmpty())
        return {StatusKind::Invalid, QStringLiteral("The appointment has no identifier to be answered by.")};
    values.IsMessage = true;
    values.IsCancelled = isCancel;
    values.LastChange = Clock().GetUtcTime();
    values.Categories.clear(); // these and the reminder are the owner's
    values.ReminderMinutes.reset();
    if (values.Organizer.isEmpty())
        values.OrganizerName = UserName();
    CTextLines lines = CalendarHead(isCancel ? "CANCEL" : "REQUEST");
    CEventExporter(DeviceZone(), GetLocalTime().wYear).ExportMessage(appointment, values, lines);
    lines.push_back("END:VCALENDAR");
    FoldLines(lines, content);
    return {};
}
