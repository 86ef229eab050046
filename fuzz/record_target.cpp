// Any bytes as the payload of a record: it is refused, or what was read survives the way through JSON and back, and
// its time of day can be moved.
#include <cstdlib>
#include <memory_resource>
#include <span>
#include <vector>

#include "fuzz/target.h"
#include "host/logstore/record_codec.h"
#include "host/logstore/record_json.h"
#include "platform/error.h"

using namespace loom;

namespace {

// Moving the time of a sound record changes nothing else; one that ends before its time is refused.
void MoveTime(std::span<const std::byte> payload, const CTestdataBase& record) {
  constexpr double kShift_s = 86'400.0;
  std::vector<std::byte> moved(payload.begin(), payload.end());
  try {
    ShiftRecordTime(moved, 0, kShift_s);
  } catch (const FormatError&) {
    return;
  }
  std::pmr::monotonic_buffer_resource arena;
  CTestdataBase again(false, 0);
  DecodeRecord(moved, 0, again, arena);
  const double time_s = record.time.seconds;
  if (time_s >= 0.0 && again.time.seconds != time_s + kShift_s) std::abort();
  again.time = record.time;
  if (EncodeRecord(again) != EncodeRecord(record)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::pmr::monotonic_buffer_resource arena;
  CTestdataBase record(false, 0);
  try {
    DecodeRecord(std::as_bytes(std::span(data, size)), 0, record, arena);
  } catch (const FormatError&) {
    return 0;
  }
  const auto coded = EncodeRecord(record);
  CTestdataBase again(false, 0);
  DecodeRecord(coded, 0, again, arena);
  if (EncodeRecord(again) != coded) std::abort();
  RecordToJson(record);
  MoveTime(std::as_bytes(std::span(data, size)), record);
  return 0;
}
