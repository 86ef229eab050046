#include "host/simulation/record_sink.h"

#include <cmath>

#include "host/logstore/record_codec.h"

namespace loom::simulation {

CTestdataBase RecordSink::Start(std::int32_t kind, std::int8_t device, const Moment& moment) const {
  constexpr std::int32_t kMarkedPositions = 110;  // logs of this version mark a missing position by -1
  CTestdataBase record(false, 0);
  record.kind = kind;
  record.device_number = device;
  record.time.seconds = std::round(moment.time_s * 1000.0) / 1000.0;
  record.time_stamp = static_cast<std::uint32_t>(record.time.seconds * 1000.0);
  const double missing = version_ == kMarkedPositions ? -1.0 : -255.0;
  // Receivers report a ten-millionth of a degree.
  record.longitude = moment.has_position ? std::round(moment.position.longitude * 1e7) / 1e7 : missing;
  record.latitude = moment.has_position ? std::round(moment.position.latitude * 1e7) / 1e7 : missing;
  return record;
}

void RecordSink::Put(CTestdataBase& record) {
  record.record_id = next_id_++;
  const RecordEncoder encoder(record);
  encoder.Store(log_.AppendRoom(encoder.Bytes(), record.time.seconds));
}

}  // namespace loom::simulation
