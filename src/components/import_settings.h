#pragma once

#include <cstdint>
#include <map>

#include "components/class_describe.h"
#include "components/field_value.h"
#include "platform/cstring.h"

namespace loom {

// One chosen information element of a log import: its catalogue name and its value range, -255 where none is known.
struct struct_ImpIESetting {
  CString ie_name;
  double minimum = kInvalidDouble;
  double maximum = kInvalidDouble;
};

// IE name or group name of the selection tree -> setting. Empty: every IE is imported.
using ImpIESettings = std::map<CString, struct_ImpIESetting>;

enum BinningTypeEnum : std::int32_t { kBinningUnknown = -1, kBinningByTime = 0, kBinningByDistance = 1, kBinningByGrid = 2 };
enum BinningValueTypeEnum : std::int32_t {
  kBinningValueUnknown = -1,
  kBinningMaximum = 0,
  kBinningMinimum = 1,
  kBinningAverage = 2
};

// How the rows of a log are merged and averaged.
struct struct_BinningSetting {
  struct_BinningSetting();
  struct_BinningSetting(const struct_BinningSetting& other);
  struct_BinningSetting& operator=(const struct_BinningSetting& other);

  BinningTypeEnum binning_type = kBinningByTime;
  BinningValueTypeEnum value_type = kBinningMaximum;
  std::int32_t binning_time_s = 1;
  std::int32_t binning_distance_m = 0;
  std::int32_t grid_height_m = 0;
  std::int32_t grid_width_m = 0;
  CString ue_parameter;       // empty = none
  CString scanner_parameter;  // empty = none
  CClassDescribe description;  // the record under the keys by which it is stored

 private:
  void Describe();
};

}  // namespace loom
