// The attendees of an appointment as one blob of names and addresses. Layout atop the source.
#pragma once
#include <QByteArray>
#include <QString>
#include <vector>

struct CAttendee {
    QString Name;
    QString Address;
    bool operator==(const CAttendee&) const = default;
};

std::vector<CAttendee> ParseAttendees(const QByteArray& blob);
QByteArray WriteAttendees(const std::vector<CAttendee>& attendees); // empty list: empty blob
