// The commands complete and delete: one item, by its identifier.
#include "object_model/object_model.h"
#include "records/property_numbers.h"
#include "tools/tessera_pim/commands.h"

namespace
{
enum class Kind { Appointment, Contact, Task, None };

Kind KindOf(quint32 itemId)
{
    return itemId > kTaskTag          ? Kind::Task
           : itemId > kContactTag     ? Kind::Contact
           : itemId > kAppointmentTag ? Kind::Appointment
                                      : Kind::None;
}

CStatus OpenVolume(const QString& path, std::unique_ptr<IPOutlookApp>& app)
{
    std::shared_ptr<CPropertyVolume> volume;
    if (const CStatus status =
            CPropertyVolume::Open(path, PimSchema(), CPropertyVolume::Mode::MustExist, volume);
        !status)
        return status;
    app = MakePOutlookApp(volume);
    return app->Logon();
}

CStatus NoItem(quint32 itemId, const char* kind)
{
    return {StatusKind::NotFound,
            QStringLiteral("there is no %1 %2").arg(QLatin1String(kind), QString::number(qint32(itemId)))};
}

CStatus Complete(IPOutlookApp& app, quint32 itemId)
{
    std::unique_ptr<ITask> task;
    if (KindOf(itemId) != Kind::Task)
        return NoItem(itemId, "task");
    if (const CStatus status = app.GetTaskFromOid(itemId, task); !status)
        return status.Kind() == StatusKind::NotFound ? NoItem(itemId, "task") : status;
    if (task->get_Complete())
        return {};
    task->put_Complete(true);
    task->put_ReminderSet(false); // as the window does
    return task->Save();
}

template <typename Item>
CStatus DeleteOf(IPOutlookApp& app, quint32 itemId,
                 CStatus (IPOutlookApp::*open)(quint32, std::unique_ptr<Item>&))
{
    std::unique_ptr<Item> item;
    CStatus status = (app.*open)(itemId, item);
    if (status)
        status = item->Delete();
    return status.Kind() == StatusKind::NotFound ? NoItem(itemId, "item") : status;
}

CStatus Delete(IPOutlookApp& app, quint32 itemId)
{
    switch (KindOf(itemId)) {
    case Kind::Appointment:
        return DeleteOf(app, itemId, &IPOutlookApp::GetAppointmentFromOid);
    case Kind::Contact:
        return DeleteOf(app, itemId, &IPOutlookApp::GetContactFromOid);
    case Kind::Task:
        return DeleteOf(app, itemId, &IPOutlookApp::GetTaskFromOid);
    case Kind::None:
        break;
    }
    return NoItem(itemId, "item");
}

int Run(const CItemOptions& options, CStatus (*work)(IPOutlookApp&, quint32))
{
    std::unique_ptr<IPOutlookApp> app;
    CStatus status = OpenVolume(options.Volume, app);
    if (status)
        status = work(*app, options.ItemId);
    if (status)
        return kExitDone;
    PrintError(status.Text());
    return kExitNothing;
}
} // namespace

int RunComplete(const CItemOptions& options)
{
    return Run(options, Complete);
}

int RunDelete(const CItemOptions& options)
{
    return Run(options, Delete);
}
