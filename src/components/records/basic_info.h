#pragma once

#include <cstdint>

#include "components/records/testdata.h"

namespace loom {

// The numbers of a record's header.
struct CIE_Basic_Info {
  std::int32_t kind = 0;
  std::int8_t device_number = 0;
  std::int32_t model_code = 0;
  std::int32_t network_mode = kNetworkModeKeep;
  std::int32_t event_id = -1;
  sys_time time;
  double latitude = -255.0;
  double longitude = -255.0;

  // Always true: every record has a header. Time and position are taken over only `with_position`.
  bool setinfo(const CTestdataBase& record, bool with_position) {
    kind = record.kind;
    device_number = record.device_number;
    model_code = record.model_code;
    network_mode = record.network_mode;
    event_id = record.event_id;
    if (with_position) {
      time = record.time;
      latitude = record.latitude;
      longitude = record.longitude;
    }
    return true;
  }
};

}  // namespace loom
