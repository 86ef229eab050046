#include "host/recordings/findings.h"

#include <cstdio>

#include "components/note_kinds.h"

namespace loom::recordings {
namespace {

// clang-format off
constexpr FindingKind kFindings[] = {
    // finding, skipped, noted, name
    {Finding::kCutAtStart,        true,  true,  "file begins within a frame"_note},
    {Finding::kBadChecksum,       true,  true,  "frame with a wrong checksum"_note},
    {Finding::kCutAtEnd,          true,  true,  "file ends within a frame"_note},
    {Finding::kNoFrame,           true,  true,  "bytes that are no frame"_note},
    {Finding::kOtherCommand,      true,  false, "frame that is no log packet"_note},
    {Finding::kBadPacket,         true,  true,  "log packet whose lengths contradict each other"_note},
    {Finding::kUnreadStamp,       false, true,  "time stamp that is no time: that of the packet before is used"_note},
    {Finding::kUnknownCode,       true,  true,  "log code that is not read"_note},
    {Finding::kUnknownVersion,    true,  true,  "log packet of an unknown version"_note},
    {Finding::kShortPacket,       true,  true,  "packet shorter than its fields"_note},
    {Finding::kRequest,           true,  false, "measurement request"_note},
    {Finding::kTwin,              true,  false, "twin of a message that another packet has"_note},
    {Finding::kNasElsewhere,      true,  false, "GSM/UMTS NAS message while not on GSM"_note},
    {Finding::kUnknownMessage,    false, true,  "message without a known name"_note},
    {Finding::kCipheredMessage,   true,  false, "ciphered message"_note},
    {Finding::kUnreadReport,      false, true,  "measurement report read in part"_note},
    {Finding::kSecondaryCarrier,  true,  false, "secondary carrier"_note},
    {Finding::kCellState,         false, false, "cell information kept for the records behind it"_note},
    {Finding::kWcdma,             true,  false, "WCDMA"_note},
    {Finding::kNewRadio,          true,  false, "NR"_note},
    {Finding::kLargeEarfcn,       false, true,  "EARFCN above 65534, left out"_note},
    {Finding::kMoreNeighbours,    true,  true,  "neighbours beyond the 64th"_note},
    {Finding::kMarkerLevel,       false, false, "level of -1 or -2, written as -3"_note},
    {Finding::kOtherLinkType,     true,  true,  "capture of another link type"_note},
    {Finding::kOtherPacket,       true,  false, "captured packet without GSMTAP"_note},
    {Finding::kCutPacket,         true,  true,  "captured packet that is cut"_note},
    {Finding::kGsmtapVersion,     true,  false, "GSMTAP header of another version"_note},
    {Finding::kGsmtapType,        true,  false, "GSMTAP packet of a type that is not read"_note},
    {Finding::kBeforeNetworkTime, false, true,  "time stamps before the handset knew the time"_note},
    {Finding::kClockStep,         false, true,  "time stamps step back by more than 10 s"_note},
    {Finding::kGap,               false, true,  "more than 24 hours without a packet"_note},
    {Finding::kLateRecord,        false, true,  "record more than 60 s late, put where it comes"_note},
    {Finding::kOutsideDay,        true,  true,  "record beyond the times that a log can hold"_note},
    {Finding::kOutsideWindow,     true,  false, "outside of --from and --to"_note},
    {Finding::kOtherRadio,        true,  false, "another radio"_note},
    {Finding::kTrackPoint,        true,  true,  "track point that is not used"_note},
};
// clang-format on
static_assert(std::size(kFindings) == static_cast<std::size_t>(Finding::kCount));

constexpr std::uint64_t kMostTold = 10;  // places; the rest is counted

std::string Hex(std::uint16_t code) {
  char text[8];
  std::snprintf(text, sizeof text, "%04X", code);
  return text;
}

}  // namespace

const FindingKind& KindOf(Finding finding) { return kFindings[static_cast<std::size_t>(finding)]; }

Findings::Findings() = default;
Findings::~Findings() = default;

bool Findings::IsTold(Finding finding) {
  const auto at = static_cast<std::size_t>(finding);
  ++counts_[at];
  if (!KindOf(finding).is_noted || told_[at] == kMostTold) return false;
  ++told_[at];
  return true;
}

void Findings::Add(Finding finding, const CString& file, std::uint64_t position_bytes, std::string_view what) {
  if (IsTold(finding)) CurrentNotes().Add(KindOf(finding).note, file, position_bytes, what);
}

void Findings::Add(Finding finding, const CString& file, std::string_view at, std::string_view what) {
  if (IsTold(finding)) CurrentNotes().Add(KindOf(finding).note, file, at, what);
}

void Findings::TellRest() const {
  for (const FindingKind& kind : kFindings) {
    const auto at = static_cast<std::size_t>(kind.finding);
    const bool is_told_by_count = kind.is_noted || !kind.is_skipped;
    if (is_told_by_count && kind.finding != Finding::kCellState && counts_[at] > told_[at])
      CurrentNotes().AddMore(kind.note, counts_[at] - told_[at]);
  }
}

bool Findings::AddPacket(std::uint16_t code, std::uint8_t version) {
  auto& page = packets_[code >> 8];
  if (!page) page = std::make_unique<PageOfCodes>();
  auto& versions = (*page)[code & 0xFF];
  if (!versions) versions = std::make_unique<VersionCounts>();
  return (*versions)[version]++ == 0;
}

std::map<std::string, std::map<std::string, std::uint64_t>> Findings::Packets() const {
  std::map<std::string, std::map<std::string, std::uint64_t>> packets;
  for (std::size_t code = 0; code <= UINT16_MAX; ++code) {
    const auto& page = packets_[code >> 8];
    if (!page) code |= 0xFF;
    const VersionCounts* const counts = page ? (*page)[code & 0xFF].get() : nullptr;
    if (counts == nullptr) continue;
    auto& versions = packets[Hex(static_cast<std::uint16_t>(code))];
    for (std::size_t version = 0; version < counts->size(); ++version)
      if (const std::uint64_t count = (*counts)[version])
        versions[version == kNoVersion ? "-" : std::to_string(version)] = count;
  }
  for (std::size_t type = 0; type < gsmtap_.size(); ++type)
    if (gsmtap_[type] != 0) packets["GSMTAP " + std::to_string(type)]["2"] = gsmtap_[type];
  return packets;
}

std::map<std::string, std::uint64_t> Findings::Skipped() const {
  std::map<std::string, std::uint64_t> skipped;
  for (const FindingKind& kind : kFindings)
    if (const std::uint64_t count = Count(kind.finding); kind.is_skipped && count != 0)
      skipped[std::string(kind.note.name)] = count;
  return skipped;
}

}  // namespace loom::recordings
