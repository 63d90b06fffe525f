// Items as lines for a terminal, without the ends of the lines.
#pragma once
#include "pim/items.h"

#include <QByteArray>

QByteArray OneLine(const QString& text);        // on one line, whatever it holds
QByteArray IsoDay(int day);                     // "2026-03-01"
QByteArray LineOf(const CAppointment& item, int day); // times on that day, subject and location
QByteArray LineOf(const CTask& task);
