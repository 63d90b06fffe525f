#include "shell/view_rotation.h"
#include "util/string_store.h"

namespace
{
constexpr int kLastInRotation = 4;
constexpr int kFirstNameId = 40674;
constexpr int kLastKind = 5;

int LowestSet(int from, int to, int activeViews)
{
    for (int view = std::max(from, 0); view <= std::min(to, kLastInRotation); ++view) {
        if (activeViews & (1 << view))
            return view;
    }
    return -1;
}
} // namespace

int NextViewInRotation(int view, int activeViews)
{
    int next = -1;
    if (view < kLastInRotation)
        next = LowestSet(view + 1, kLastInRotation, activeViews);
    if (next < 0 && view > 0)
        next = LowestSet(0, view - 1, activeViews);
    return next < 0 ? 0 : next;
}

QString ViewName(int kind)
{
    return kind >= 0 && kind <= kLastKind ? GetString(kFirstNameId + kind) : QString();
}
