#pragma once

#include "components/value_range.h"

namespace loom {

// The bounds that streams and log files keep alike.
template <class Interface>
class Bounded : public Interface {
 public:
  double GetLongitudeMaximum() const override { return bounds_.longitude.maximum; }
  void SetLongitudeMaximum(double degrees) override { bounds_.longitude.maximum = degrees; }
  double GetLongitudeMinimum() const override { return bounds_.longitude.minimum; }
  void SetLongitudeMinimum(double degrees) override { bounds_.longitude.minimum = degrees; }
  double GetLatitudeMaximum() const override { return bounds_.latitude.maximum; }
  void SetLatitudeMaximum(double degrees) override { bounds_.latitude.maximum = degrees; }
  double GetLatitudeMinimum() const override { return bounds_.latitude.minimum; }
  void SetLatitudeMinimum(double degrees) override { bounds_.latitude.minimum = degrees; }

 private:
  PositionBounds bounds_;
};

}  // namespace loom
