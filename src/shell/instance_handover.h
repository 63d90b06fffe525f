// How a second start finds the running instance and gives it its request.
// The request's text travels in the registry, in one place that the later of two writers wins; a
// numbered message tells the instance to read it.
#pragma once
#include <QByteArray>
#include <QString>

class CInstance;
class CInstanceWindow;
struct CCommandRequest;

inline const QByteArray kWindowClass = "Tessera";
// Held while a process serves a single view, edit or create request of the user's calendar.
inline const QByteArray kSingleItemMutex = "Tessera_View_Appt_Mutex";
// The same of an instance: one of a named volume has its own.
QByteArray SingleItemMutexOf(const QByteArray& instance);

// True when the request was handed over and this process must end. Otherwise `own` is claimed, or
// will be once a process that was told to end has gone.
bool CheckRunningInstance(CInstance& own, const CCommandRequest& request);
// The message follows whether or not the text could be written. False when the instance has gone.
bool PostCommandLine(const CCommandRequest& request, CInstanceWindow& window);
// True when a text was there and parsed. A text of 260 characters or more is refused; what was
// there is deleted in every case.
bool ReadPostedCommandLine(CCommandRequest& request);
