#include "host/decoder/block_decoder.h"

#include <string>

#include "components/note_kinds.h"
#include "host/logstore/reading_log.h"
#include "host/logstore/record_codec.h"
#include "platform/error.h"

namespace loom {
namespace {

constexpr const NoteKind& kNotDecoded = "record not decoded"_note;

void NoteNotDecoded(const std::string& reason) {
  CurrentNotes().Add(kNotDecoded, Reading().path, Reading().position_bytes, reason);
}

}  // namespace

bool BlockDecoder::Decode(int, CTestdataBase& input, CTestdataBase& output) {
  if (&output != &input) output = input;
  if (!output.arena) throw Error("a record is decoded into its arena, and it has none");
  try {
    if (DecodeBlocks(output, *output.arena)) return true;
    NoteNotDecoded("the record is marked as one that fails to decode");
  } catch (const FormatError& error) {
    NoteNotDecoded("byte " + std::to_string(error.position_bytes()) + ": " + error.reason());
  }
  return false;
}

}  // namespace loom
