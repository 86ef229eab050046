#include "host/logstore/time_index.h"

#include <string>

#include "components/note_kinds.h"
#include "host/logstore/pcapng.h"
#include "host/logstore/trailer_cursor.h"
#include "platform/error.h"

namespace loom {
namespace {

using namespace pcapng;

constexpr std::uint32_t kIndexHead = 20;     // enterprise number, kind, file size, number of stretches
constexpr std::uint32_t kStretchEntry = 28;  // position, earliest and latest time, number of records
constexpr std::uint32_t kShortestPacket = kBlockOverhead + kPacketHeader;

bool IsIndexHead(std::span<const std::byte> body) {
  ByteReader head(body);
  return head.Has(8) && head.U32() == kEnterpriseNumber && head.U32() == kTimeIndex;
}

LogStretch ReadStretch(ByteReader& entry) {
  LogStretch stretch;
  stretch.position_bytes = entry.U64("position");
  stretch.earliest_ns = entry.I64("earliest time");
  stretch.latest_ns = entry.I64("latest time");
  stretch.record_count = entry.U32("number of records");
  return stretch;
}

void CheckStretch(const LogStretch& stretch, std::uint64_t end_bytes, std::uint64_t entry_position) {
  if (stretch.position_bytes % 4 != 0 || stretch.position_bytes >= end_bytes)
    throw FormatError(entry_position, "the positions of the stretches do not ascend up to the index");
  if (stretch.earliest_ns > stretch.latest_ns)
    throw FormatError(entry_position, "the earliest time of a stretch is behind its latest");
  const std::uint64_t most_records = (end_bytes - stretch.position_bytes) / kShortestPacket;
  if (stretch.record_count == 0 || stretch.record_count > most_records)
    throw FormatError(entry_position, "a stretch cannot hold " + std::to_string(stretch.record_count) + " records");
}

TimeIndex ParseTimeIndex(ByteReader body, const Trailer& trailer, std::uint64_t file_size_bytes) {
  TimeIndex index;
  index.end_bytes = trailer.position_bytes;
  body.Skip(8, "time index");
  const std::uint64_t file_size_at = body.Position();
  if (const std::uint64_t size = body.U64("file size"); size != file_size_bytes)
    throw FormatError(file_size_at, "it is of a file of " + std::to_string(size) + " bytes, this one has " +
                                        std::to_string(file_size_bytes));
  const std::uint32_t count = body.U32("number of stretches");
  if (count == 0 || body.Remaining() != std::uint64_t{count} * kStretchEntry)
    throw FormatError(body.Position(),
                      std::to_string(count) + " stretches in " + std::to_string(body.Remaining()) + " bytes");
  const std::uint64_t entries_at = body.Position();
  index.stretches.reserve(count);
  while (!body.AtEnd()) index.stretches.push_back(ReadStretch(body));
  for (std::size_t i = 0; i < count; ++i)
    CheckStretch(index.stretches[i], i + 1 < count ? index.stretches[i + 1].position_bytes : index.end_bytes,
                 entries_at + i * kStretchEntry);
  return index;
}

}  // namespace

void TimeIndexBuilder::Begin(std::uint64_t position_bytes, std::int64_t time_ns) {
  if (stretches_.size() == kMostStretches) {
    for (std::size_t i = 0; i < kMostStretches / 2; ++i) {
      LogStretch first = stretches_[2 * i];
      const LogStretch& second = stretches_[2 * i + 1];
      first.earliest_ns = std::min(first.earliest_ns, second.earliest_ns);
      first.latest_ns = std::max(first.latest_ns, second.latest_ns);
      first.record_count += second.record_count;
      stretches_[i] = first;
    }
    stretches_.resize(kMostStretches / 2);
    stretch_bytes_ *= 2;
  }
  stretches_.push_back({position_bytes, time_ns, time_ns, 0});
}

std::size_t TimeIndexBuilder::BlockBytes() const {
  return kBlockOverhead + kIndexHead + stretches_.size() * kStretchEntry;
}

void TimeIndexBuilder::WriteBody(ByteWriter& block, std::uint64_t file_size_bytes) const {
  block.U32(kEnterpriseNumber);
  block.U32(kTimeIndex);
  block.U64(file_size_bytes);
  block.U32(static_cast<std::uint32_t>(stretches_.size()));
  for (const LogStretch& stretch : stretches_) {
    block.U64(stretch.position_bytes);
    block.I64(stretch.earliest_ns);
    block.I64(stretch.latest_ns);
    block.U32(stretch.record_count);
  }
}

std::optional<TimeIndex> ReadTimeIndex(const InputFile& file) {
  TrailerCursor trailers(file);
  for (Trailer trailer; trailers.Next(trailer);) {
    if (trailer.type != kCustomDropped) continue;
    const std::vector<std::byte> body = trailers.Body(trailer);
    if (!IsIndexHead(body)) continue;
    try {
      return ParseTimeIndex(ByteReader(body, trailer.BodyPosition()), trailer, file.Size());
    } catch (const FormatError& error) {
      CurrentNotes().Add("time index not used"_note, file.path(), error.position_bytes(), error.reason());
      return std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace loom
