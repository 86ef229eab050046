#pragma once

#include <QRect>
#include <vector>

namespace loom {

// Where the controls of a pane go when it becomes larger than its template: what grows shares the room, one behind
// the other, and what stands behind it moves along. Below each other all of a pane's controls count, so that rows stay
// rows; beside each other those of the same row.
class PaneStretch {
 public:
  struct Place {
    QRect rect;  // as the template has it
    bool grows_down = false;
    bool grows_across = false;
    bool is_frame = false;  // goes round what it holds
  };

  explicit PaneStretch(std::vector<Place> places) : places_(std::move(places)) {}

  bool Grows() const;
  // The place of one control when the pane is that much larger.
  QRect RectOf(std::size_t at, const QSize& more) const;

 private:
  struct Axis;
  int EdgeShift(const Axis& axis, int edge, const QRect& row, int more) const;
  int Growth(const Axis& axis, const Place& place, int more) const;
  int ChainBefore(const Axis& axis, const Place& place) const;
  int ChainBehind(const Axis& axis, const Place& place) const;

  std::vector<Place> places_;
};

}  // namespace loom
