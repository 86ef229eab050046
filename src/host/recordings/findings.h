#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/cstring.h"
#include "platform/notes.h"

namespace loom::recordings {

// What a recording holds that does not become a record as it stands. kFindings says of each how it is told.
enum class Finding : std::uint8_t {
  kCutAtStart,
  kBadChecksum,
  kCutAtEnd,
  kNoFrame,
  kOtherCommand,
  kBadPacket,
  kUnreadStamp,
  kUnknownCode,
  kUnknownVersion,
  kShortPacket,
  kRequest,
  kTwin,
  kNasElsewhere,
  kUnknownMessage,
  kCipheredMessage,
  kUnreadReport,
  kSecondaryCarrier,
  kCellState,
  kWcdma,
  kNewRadio,
  kLargeEarfcn,
  kMoreNeighbours,
  kMarkerLevel,
  kOtherLinkType,
  kOtherPacket,
  kCutPacket,
  kGsmtapVersion,
  kGsmtapType,
  kBeforeNetworkTime,
  kClockStep,
  kGap,
  kLateRecord,
  kOutsideDay,
  kOutsideWindow,
  kOtherRadio,
  kTrackPoint,
  kCount,
};

// In the place of a version: the packet has none, or its code is not read.
inline constexpr std::uint8_t kNoVersion = 0xFF;

struct FindingKind {
  Finding finding;
  bool is_skipped;  // something is left out: counted under `skipped`
  bool is_noted;    // told with its places
  const NoteKind& note;
};
const FindingKind& KindOf(Finding finding);

// Counts what a run over recordings meets; what is noted goes to the current notes with its place.
class Findings {
 public:
  Findings();
  ~Findings();

  void Add(Finding finding, std::uint64_t count = 1) { counts_[static_cast<std::size_t>(finding)] += count; }
  // With its place: the first ones of a kind are kept, `what` says what stands there.
  void Add(Finding finding, const CString& file, std::uint64_t position_bytes, std::string_view what);
  void Add(Finding finding, const CString& file, std::string_view at, std::string_view what);
  std::uint64_t Count(Finding finding) const { return counts_[static_cast<std::size_t>(finding)]; }

  // One more packet of a DIAG log code in a version; true for the first of that code and version.
  bool AddPacket(std::uint16_t code, std::uint8_t version);
  // One more GSMTAP packet of a type.
  void AddGsmtap(std::uint8_t type) { ++gsmtap_[type]; }

  // Packets by log code ("B193", "GSMTAP 13") and version; a code that is not read has the version "-".
  std::map<std::string, std::map<std::string, std::uint64_t>> Packets() const;
  std::map<std::string, std::uint64_t> Skipped() const;
  // Tells what was counted without places.
  void TellRest() const;

 private:
  bool IsTold(Finding finding);  // counts it

  using VersionCounts = std::array<std::uint64_t, 256>;
  using PageOfCodes = std::array<std::unique_ptr<VersionCounts>, 256>;

  std::array<std::uint64_t, static_cast<std::size_t>(Finding::kCount)> counts_{};
  std::array<std::uint64_t, static_cast<std::size_t>(Finding::kCount)> told_{};
  std::array<std::uint64_t, 256> gsmtap_{};
  std::array<std::unique_ptr<PageOfCodes>, 256> packets_;  // by the upper byte of the code
};

}  // namespace loom::recordings
