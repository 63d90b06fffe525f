// A request from the command line, and its grammar: fields separated by "|".
// Units: dates are automation dates; the text carries them in whole minutes.
// Errors: parsing never fails; what is not understood leaves the fields as they were.
#pragma once
#include "util/date_time.h"

#include <QString>

enum class RequestKind : quint32 {
    None = 0,
    OpenView = 1,
    ViewAppointment = 2,
    ViewTask = 3,
    ReportDensity = 4,
    SoftKeyDialog = 5,
    EditAppointment = 6,
    EditTask = 7,
    CreateAppointment = 8,
    CreateTask = 9,
};

constexpr quint32 kNoItem = 0xFFFFFFFFu;

struct CCommandRequest {
    RequestKind Kind = RequestKind::None;
    quint32 ItemId = kNoItem;
    DATE Date1 = NO_DATE; // the date; of CREATE the start
    DATE Date2 = NO_DATE; // of CREATE the end
    qint32 View = -1;     // ViewKind; -1 none
    QString Category;
    QString RawText; // the command line as received

    bool HasDate() const; // Date1 is a day that a calendar can show; a request may carry any number
    bool HasEnd() const;  // so is Date2
    void Clear();              // leaves RawText alone
    bool IsSingleItem() const; // serves one item instead of opening the calendar
};

extern CCommandRequest g_CommandRequest;

// A null text changes nothing at all; one of fewer than 7 characters is only kept as RawText.
void ParseCommandLine(CCommandRequest& request, const QString& text);
