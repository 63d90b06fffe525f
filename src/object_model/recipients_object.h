// The attendees of an appointment as an editable list.
#pragma once
#include "object_model/object_model.h"

class CRecipients : public IRecipients
{
public:
    explicit CRecipients(const QByteArray& stored);
    int get_Count() const override { return int(m_list.size()); }
    IRecipient* Item(int index) override;
    IRecipient* Add(const QString& name) override;
    CStatus Remove(int index) override;
    QByteArray Stored() const;

private:
    class CRecipient : public IRecipient
    {
    public:
        explicit CRecipient(CAttendee attendee) : Attendee(std::move(attendee)) {}
        QString get_Name() const override { return Attendee.Name; }
        QString get_Address() const override { return Attendee.Address; }
        void put_Address(const QString& address) override { Attendee.Address = address; }
        CAttendee Attendee;
    };
    std::vector<std::unique_ptr<CRecipient>> m_list; // handed out by pointer
};
