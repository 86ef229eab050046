#include "importers/skipped_records.h"

#include <string>

#include "components/note_kinds.h"

namespace loom {
namespace {

constexpr std::array<const NoteKind*, kSkipReasonCount> kReasons{&"unknown kind"_note, &"no stream"_note,
                                                                 &"not decoded"_note, &"no row"_note};

const NoteKind& KindOf(SkipReason reason) { return *kReasons[static_cast<std::size_t>(reason)]; }

std::string Describe(const CTestdataBase& record) {
  return "record " + std::to_string(record.record_id) + " of kind " + std::to_string(record.kind) + ", model " +
         std::to_string(record.model_code) + ", device " + std::to_string(record.device_number);
}

}  // namespace

void SkippedRecords::StartLog(const CString& path) {
  path_ = path;
  counts_.fill(0);
}

void SkippedRecords::Add(SkipReason reason, const CTestdataBase& record, std::uint64_t position_bytes) {
  const std::uint64_t count = ++counts_[static_cast<std::size_t>(reason)];
  if (reason == SkipReason::kNotDecoded) return;  // the decoder notes where and why
  const bool is_place_kept = count <= Notes::kPlacesKept;
  CurrentNotes().Add(KindOf(reason), path_, position_bytes, is_place_kept ? Describe(record) : std::string());
}

std::map<std::string_view, std::uint64_t> SkippedRecords::Counts() const {
  std::map<std::string_view, std::uint64_t> counts;
  for (std::size_t reason = 0; reason < kSkipReasonCount; ++reason) {
    if (counts_[reason] != 0) counts[kReasons[reason]->name] = counts_[reason];
  }
  return counts;
}

}  // namespace loom
