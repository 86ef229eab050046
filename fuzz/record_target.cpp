// Any bytes as the payload of a record: it is refused, or what was read survives the way through JSON and back.
#include <cstdlib>
#include <memory_resource>
#include <span>

#include "fuzz/target.h"
#include "host/logstore/record_codec.h"
#include "host/logstore/record_json.h"
#include "platform/error.h"

using namespace loom;

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
  return 0;
}
