// What all lists of items share: the status pictures and the colours that an item's state gives.
#pragma once
#include "pim/items.h"

#include <array>
#include <vector>

class CAlphaImage;

// A status picture, in the size of the rows and in that of the small lists.
struct StatusPicture {
    int ImageId;
    int SmallImageId;
    bool (*Shows)(const CPimItem& item);
};
extern const std::array<StatusPicture, 6> kStatusPictures; // from right to left

constexpr int kMostItemIcons = 5; // status pictures and category icons of one item

// The small pictures of an item's categories, in their order; those without one are left out.
std::vector<const CAlphaImage*> CategoryPictures(const CPimItem& item);

class CItemColors
{
public:
    void Fetch(); // from the settings; needed before anything else
    // By busy status; kColorNotSet for any other number. Special events count as free.
    COLORREF OfStatus(int busyStatus) const;
    COLORREF OfStatus(const CAppointment& item) const;
    // A text's colour as the settings want it, `standard` where nothing else is set.
    COLORREF OfText(const CAppointment& item, COLORREF standard) const;
    COLORREF OfDue(const CTask& item) const; // undated, overdue, or regular

private:
    COLORREF m_status[4] = {}; // free, tentative, busy, out of office
    COLORREF m_regular = 0, m_overdue = 0, m_undated = 0;
};
