#include "components/import_settings.h"

namespace loom {

struct_BinningSetting::struct_BinningSetting() { Describe(); }

struct_BinningSetting::struct_BinningSetting(const struct_BinningSetting& other) {
  *this = other;
  Describe();
}

// The description refers to the record's own fields and therefore stays.
struct_BinningSetting& struct_BinningSetting::operator=(const struct_BinningSetting& other) {
  binning_type = other.binning_type;
  value_type = other.value_type;
  binning_time_s = other.binning_time_s;
  binning_distance_m = other.binning_distance_m;
  grid_height_m = other.grid_height_m;
  grid_width_m = other.grid_width_m;
  ue_parameter = other.ue_parameter;
  scanner_parameter = other.scanner_parameter;
  return *this;
}

void struct_BinningSetting::Describe() {
  constexpr int kFlag = 1;
  description.AddDescription("BiningType", binning_type, kFlag);
  description.AddDescription("ValueType", value_type, kFlag);
  description.AddDescription("BinningTime", binning_time_s, kFlag);
  description.AddDescription("BinningDistance", binning_distance_m, kFlag);
  description.AddDescription("GridHeight", grid_height_m, kFlag);
  description.AddDescription("GridWidth", grid_width_m, kFlag);
  description.AddDescription("UEParam", ue_parameter, kFlag);
  description.AddDescription("ScannerParam", scanner_parameter, kFlag);
}

}  // namespace loom
