#include "apps/qloom-desktop/front_end/pane_stretch.h"

#include <algorithm>

namespace loom {

struct PaneStretch::Axis {
  bool down;

  int Start(const QRect& rect) const { return down ? rect.top() : rect.left(); }
  int End(const QRect& rect) const { return down ? rect.bottom() : rect.right(); }
  bool Grows(const Place& place) const { return down ? place.grows_down : place.grows_across; }
  bool Counts(const QRect& a, const QRect& b) const { return down || (a.top() <= b.bottom() && b.top() <= a.bottom()); }
};

bool PaneStretch::Grows() const {
  return std::ranges::any_of(places_, [](const Place& place) { return place.grows_down; });
}

int PaneStretch::ChainBefore(const Axis& axis, const Place& place) const {
  int longest = 0;
  for (const Place& other : places_) {
    if (axis.Grows(other) && axis.End(other.rect) < axis.Start(place.rect) && axis.Counts(other.rect, place.rect))
      longest = std::max(longest, 1 + ChainBefore(axis, other));
  }
  return longest;
}

int PaneStretch::ChainBehind(const Axis& axis, const Place& place) const {
  int longest = 0;
  for (const Place& other : places_) {
    if (axis.Grows(other) && axis.Start(other.rect) > axis.End(place.rect) && axis.Counts(other.rect, place.rect))
      longest = std::max(longest, 1 + ChainBehind(axis, other));
  }
  return longest;
}

int PaneStretch::Growth(const Axis& axis, const Place& place, int more) const {
  return more / (ChainBefore(axis, place) + 1 + ChainBehind(axis, place));
}

// By what the growing controls in front of an edge push it.
int PaneStretch::EdgeShift(const Axis& axis, int edge, const QRect& row, int more) const {
  int shift = 0;
  for (const Place& place : places_) {
    if (!axis.Grows(place) || axis.End(place.rect) > edge || !axis.Counts(place.rect, row)) continue;
    shift = std::max(shift, EdgeShift(axis, axis.Start(place.rect) - 1, row, more) + Growth(axis, place, more));
  }
  return shift;
}

QRect PaneStretch::RectOf(std::size_t at, const QSize& more) const {
  const Place& place = places_[at];
  const auto end_shift = [&](const Axis& axis, int start_shift, int more_here) {
    if (axis.Grows(place)) return start_shift + Growth(axis, place, more_here);
    return place.is_frame ? EdgeShift(axis, axis.End(place.rect), place.rect, more_here) : start_shift;
  };
  constexpr Axis kAcross{false};
  constexpr Axis kDown{true};
  const int left = EdgeShift(kAcross, place.rect.left() - 1, place.rect, more.width());
  const int top = EdgeShift(kDown, place.rect.top() - 1, place.rect, more.height());
  return place.rect.adjusted(left, top, end_shift(kAcross, left, more.width()), end_shift(kDown, top, more.height()));
}

}  // namespace loom
