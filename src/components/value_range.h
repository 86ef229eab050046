#pragma once

#include "components/field_value.h"

namespace loom {

// A maximum and a minimum, -255 while unset. NaN is no value.
struct ValueRange {
  double maximum = kInvalidDouble;
  double minimum = kInvalidDouble;

  void Widen(double value) {
    if (value != value) return;
    if (maximum == kInvalidDouble || value > maximum) maximum = value;
    if (minimum == kInvalidDouble || value < minimum) minimum = value;
  }
  // Takes in what another range holds; a maximum below -255 stays unset.
  void Add(const ValueRange& part) {
    if (part.maximum > maximum) maximum = part.maximum;
    if (part.minimum != kInvalidDouble && (part.minimum < minimum || minimum == kInvalidDouble)) minimum = part.minimum;
  }
};

// Of positions, in degrees.
struct PositionBounds {
  ValueRange longitude = {};
  ValueRange latitude = {};
};

// The bounds that a log or a stream tells.
template <class Source>
PositionBounds BoundsOf(const Source& source) {
  return {.longitude = {source.GetLongitudeMaximum(), source.GetLongitudeMinimum()},
          .latitude = {source.GetLatitudeMaximum(), source.GetLatitudeMinimum()}};
}

template <class Target>
void SetBounds(const PositionBounds& bounds, Target& target) {
  target.SetLongitudeMaximum(bounds.longitude.maximum);
  target.SetLongitudeMinimum(bounds.longitude.minimum);
  target.SetLatitudeMaximum(bounds.latitude.maximum);
  target.SetLatitudeMinimum(bounds.latitude.minimum);
}

}  // namespace loom
