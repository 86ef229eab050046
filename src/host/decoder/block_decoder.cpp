#include "host/decoder/block_decoder.h"

#include "host/logstore/reading_log.h"
#include "host/logstore/record_codec.h"
#include "platform/error.h"
#include "platform/notes.h"

namespace loom {
namespace {

constexpr const char* kNotDecoded = "record not decoded";

}  // namespace

bool BlockDecoder::Decode(int, CTestdataBase& input, CTestdataBase& output) {
  if (&output != &input) output = input;
  const std::uint64_t position_bytes = output.encoded_position_bytes;
  if (!output.arena) throw Error("a record is decoded into its arena, and it has none");
  try {
    if (DecodeBlocks(output, *output.arena)) return true;
    CurrentNotes().Add(kNotDecoded, ReadingLogPath(), position_bytes,
                       "the record is marked as one that fails to decode");
  } catch (const FormatError& error) {
    CurrentNotes().Add(kNotDecoded, ReadingLogPath(), error.position_bytes(), error.reason());
  }
  return false;
}

}  // namespace loom
