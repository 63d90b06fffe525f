#include "object_model/infrared_folder.h"

CStatus CInfraredFolder::AddItemToInfraredFolder(OlItem kind, quint32 itemId)
{
    std::unique_ptr<IAppointment> appointment;
    std::unique_ptr<ITask> task;
    std::unique_ptr<IContact> contact;
    const CStatus found = kind == OlItem::Appointment ? m_app.GetAppointmentFromOid(itemId, appointment)
                          : kind == OlItem::Task      ? m_app.GetTaskFromOid(itemId, task)
                                                      : m_app.GetContactFromOid(itemId, contact);
    if (found)
        m_items.push_back({kind, itemId});
    return found;
}

CStatus CInfraredFolder::SendToInfrared()
{
    const std::vector<CItemName> items = std::exchange(m_items, {});
    if (items.empty() || !m_transport)
        return {StatusKind::Invalid, QStringLiteral("There is nothing to send, or no way.")};
    return m_transport->SendItems(items);
}
