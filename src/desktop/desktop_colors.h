// The desktop's highlight colours: from the theme's own file where it has one, else from the
// settings portal. To be asked for only when the first picture stands: files and a bus cost time.
// Errors: none; where nothing is told the callback never comes.
#pragma once
#include "util/color.h"

#include <QByteArray>
#include <QString>
#include <functional>

struct CHighlight {
    COLORREF Back = kColorNotSet;
    COLORREF Text = kColorNotSet;
    bool IsKnown() const { return Back != kColorNotSet; }
    bool operator==(const CHighlight&) const = default;
};

// The callback comes at once or through the event loop, at most once.
void FetchHighlight(std::function<void(const CHighlight&)> found);

// Of a KDE colour file: [Colors:Selection] with BackgroundNormal and ForegroundNormal.
CHighlight ParseKdeColors(const QByteArray& file);
// Of a GTK style sheet: @define-color of the selected ground and text.
CHighlight ParseGtkColors(const QByteArray& sheet);
// Of the portal: three fractions; out of range means not set.
CHighlight AccentHighlight(double red, double green, double blue);
// White or black, for text on a ground that is shaded towards black.
COLORREF ReadableOn(COLORREF ground);
