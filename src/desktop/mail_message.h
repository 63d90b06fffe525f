// A new message of the owner's mail program, with files attached. Nothing is sent: the message
// opens, and its sending is the owner's.
#pragma once
#include <QString>
#include <QStringList>

struct CMailMessage {
    QStringList Addresses; // what is no plain address is left out
    QString Subject, Body;
    QString Attachment; // path of a file, or empty; it must stay while the program may read it
};

bool HasMailProgram(); // the desktop names one; asks its tools, some 50 ms
bool OpenMailMessage(const CMailMessage& message);
// The arguments that hand it to the desktop's tool.
QStringList MailArguments(const CMailMessage& message);
