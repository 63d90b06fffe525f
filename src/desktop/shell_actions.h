// What the desktop does for us: call, mail, open. Everything goes to the desktop's own handlers
// as one argument of a program, never through a shell, so that no character in it means anything.
#pragma once
#include <QString>
#include <QStringList>
#include <functional>

bool MakeCall(const QString& number); // false when nothing in it can be dialled
bool SendMail(const QString& address);
bool OpenUrl(const QString& url);   // http and https alone; "www." gets its "http://"
bool OpenFile(const QString& path); // an existing file or folder, or an address

// The addresses that these hand over; empty when there is nothing to hand over.
QByteArray CallAddress(const QString& number);
QByteArray MailAddress(const QString& address);
QByteArray WebAddress(const QString& url);

// Starts a program that lives on without us; false when it cannot be started.
bool StartProgram(const QString& program, const QStringList& arguments);
// Replaces the start of programs; an empty one returns to the real.
using ProgramStarter = std::function<bool(const QString& program, const QStringList& arguments)>;
void SetProgramStarter(ProgramStarter starter);
