// How items leave: over Bluetooth to a device of the owner's, into a new message of the mail
// program, or to a file where the owner chooses. Nothing leaves without the owner's last tap.
// Errors: told to the user in a message; the result is Ok also when the user went back.
#pragma once
#include "desktop/object_push.h"
#include "object_model/object_model.h"

#include <QPointer>
#include <QWidget>

struct COutgoingFile {
    QString Name; // with its ending
    QString Subject;
    QByteArray Content;
};

class CItemSender : public IItemTransport
{
public:
    explicit CItemSender(QWidget* owner) : m_owner(owner) {}

    // Requests and cancellations go out only when the owner is the organizer.
    CStatus SendRequest(IAppointment& appointment) override;
    CStatus SendCancel(IAppointment& appointment) override;
    CStatus SendItems(const std::vector<CItemName>& items) override;

    // A name for the item's file: what no file system minds, of bounded length.
    static QString FileName(const QString& subject, const QString& ending);

protected:
    enum Way { kBack = -1, kByMail = -2, kToFile = -3 }; // else the index of a device
    virtual int ChooseWay(const QString& subject, const std::vector<CPushDevice>& devices, bool mail);
    virtual QString ChooseFile(const QString& suggested); // empty: the user went back

private:
    CStatus SendMeeting(IAppointment& appointment, bool cancel);
    void SendFile(const COutgoingFile& file);
    void Push(const CPushDevice& device, const COutgoingFile& file);
    void Mail(const COutgoingFile& file, const QString& subject, const QStringList& addresses);
    void SaveAs(const COutgoingFile& file);

    QPointer<QWidget> m_owner;
};

// Where files wait until another program has read them; those of earlier days go.
QString KeepOutgoing(const COutgoingFile& file); // its path; empty when it cannot be written
