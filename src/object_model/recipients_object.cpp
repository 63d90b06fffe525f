#include "object_model/recipients_object.h"

CRecipients::CRecipients(const QByteArray& stored)
{
    for (CAttendee& attendee : ParseAttendees(stored))
        m_list.push_back(std::make_unique<CRecipient>(std::move(attendee)));
}

IRecipient* CRecipients::Item(int index)
{
    return index >= 1 && index <= get_Count() ? m_list[size_t(index) - 1].get() : nullptr;
}

IRecipient* CRecipients::Add(const QString& name)
{
    m_list.push_back(std::make_unique<CRecipient>(CAttendee{name, QString()}));
    return m_list.back().get();
}

CStatus CRecipients::Remove(int index)
{
    if (!Item(index))
        return {StatusKind::NotFound, QStringLiteral("There is no recipient %1.").arg(index)};
    m_list.erase(m_list.begin() + (index - 1));
    return {};
}

QByteArray CRecipients::Stored() const
{
    std::vector<CAttendee> attendees;
    for (const std::unique_ptr<CRecipient>& recipient : m_list)
        attendees.push_back(recipient->Attendee);
    return WriteAttendees(attendees);
}
