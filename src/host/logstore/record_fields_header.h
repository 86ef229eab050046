#pragma once

#include "components/records/testdata.h"
#include "host/logstore/record_fields.h"

// The header of a record.
// clang-format off
namespace loom {

template <>
struct BlockFields<CTestdataBase> {
  using B = CTestdataBase;
  static constexpr std::tuple kFields{
      Field{"record_id", &B::record_id},
      Field{"kind", &B::kind},
      Field{"text", &B::text},
      Field{"ie5", &B::ie5},
      Field{"device_number", &B::device_number},
      Field{"time", &B::time},
      Field{"latitude", &B::latitude},
      Field{"longitude", &B::longitude},
      Field{"time_stamp", &B::time_stamp},
      Field{"message_id", &B::message_id},
      Field{"ie7", &B::ie7},
      Field{"message_text", &B::message_text},
      Field{"layer3_name", &B::layer3_name},
      Field{"raw_message", &B::raw_message},
      Field{"word156", &B::word156},
      Field{"direction", &B::direction},
      Field{"channel", &B::channel},
      Field{"event_id", &B::event_id},
      Field{"raw_length", &B::raw_length},
      Field{"raw_bytes", &B::raw_bytes},
      Field{"ie6", &B::ie6},
      Field{"model_code", &B::model_code},
      Field{"network_mode", &B::network_mode},
      Field{"network_mode_changed", &B::network_mode_changed},
      Field{"ie5247", &B::ie5247},
      Field{"ie5256", &B::ie5256},
      Field{"ie5257", &B::ie5257},
      Field{"ie5258", &B::ie5258},
      Field{"layer3_lines", &B::layer3_lines},
  };
};

}  // namespace loom
// clang-format on
