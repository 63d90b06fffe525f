// A length of time as a file writes it.
#pragma once
#include <QtGlobal>
#include <string_view>

struct CFileDuration {
    int Days = 0;       // by the calendar
    qint64 Seconds = 0; // beyond the days; both carry the sign
    qint64 Total() const { return qint64(Days) * 86400 + Seconds; }
};

// False for what is no duration, or longer than any item can be.
bool ParseDuration(std::string_view text, CFileDuration* duration);
