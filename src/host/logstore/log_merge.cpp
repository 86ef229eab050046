#include "host/logstore/log_merge.h"

#include <sys/resource.h>

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "components/note_kinds.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/log_writer.h"
#include "host/logstore/record_codec.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/log.h"

namespace loom {
namespace {

constexpr std::size_t kReadBuffersBytes = 16U << 20;  // of all sources together
constexpr std::size_t kSmallestPieceBytes = 16U << 10;
constexpr std::int64_t kLogDay_s = 86'400;

// One log on its way into the merged one.
class MergeSource {
 public:
  MergeSource(const CString& path, std::size_t place, std::uint32_t piece_bytes)
      : reader_(path, piece_bytes), place_(place) {}

  const LogHeader& header() const { return reader_.header(); }
  const CString& path() const { return reader_.path(); }
  const LogReader& reader() const { return reader_; }

  // From now on times of day count from the midnight of that day.
  void CountFrom(const CalendarDay& day) {
    shift_s_ = static_cast<double>(MidnightSeconds(header().day) - MidnightSeconds(day));
  }
  bool GoesBeyondTimes() const { return shift_s_ + kLogDay_s > kEndOfTimes_s; }

  bool Advance() {
    if (!reader_.Next(packet_)) return false;
    if (packet_.time_ns < latest_ns_) [[unlikely]]
      NoteDisorder();
    latest_ns_ = std::max(latest_ns_, packet_.time_ns);
    return true;
  }

  const LogPacket& Packet() {
    if (shift_s_ != 0.0) Shift();
    return packet_;
  }

  // Whose record comes first: the earlier one, of equal times that of the log listed first.
  bool IsBehind(const MergeSource& other) const {
    return packet_.time_ns != other.packet_.time_ns ? packet_.time_ns > other.packet_.time_ns : place_ > other.place_;
  }

 private:
  void NoteDisorder() {
    if (std::exchange(is_disorder_noted_, true)) return;
    CurrentNotes().Add("log not in time order"_note, path(), packet_.position_bytes,
                       "the first record that is earlier than one in front of it; records keep their order");
  }

  // The payload is counted anew in a copy of the block.
  void Shift() {
    shifted_.assign(packet_.block.begin(), packet_.block.end());
    const auto at = static_cast<std::size_t>(packet_.payload.data() - packet_.block.data());
    const auto payload = std::span(shifted_).subspan(at, packet_.payload.size());
    try {
      ShiftRecordTime(payload, packet_.payload_position_bytes, shift_s_);
    } catch (const FormatError& error) {
      CurrentNotes().Add("time of day kept"_note, path(), error.position_bytes(), error.reason());
    }
    packet_.block = shifted_;
    packet_.payload = payload;
  }

  LogReader reader_;
  std::size_t place_;
  double shift_s_ = 0.0;
  LogPacket packet_;
  std::int64_t latest_ns_ = INT64_MIN;
  bool is_disorder_noted_ = false;
  std::vector<std::byte> shifted_;
};

using MergeSources = std::deque<MergeSource>;

// Sources by their next record, as a heap: the first one has the earliest.
class MergeQueue {
 public:
  explicit MergeQueue(MergeSources& sources) {
    for (MergeSource& source : sources)
      if (source.Advance()) heap_.push_back(&source);
    std::make_heap(heap_.begin(), heap_.end(), IsBehind);
  }
  bool IsEmpty() const { return heap_.empty(); }
  MergeSource& First() { return *heap_.front(); }
  // Goes on to the first source's next record.
  void Advance() {
    if (!heap_.front()->Advance()) {
      heap_.front() = heap_.back();
      heap_.pop_back();
    }
    SiftDown();
  }

 private:
  static bool IsBehind(const MergeSource* a, const MergeSource* b) { return a->IsBehind(*b); }
  void SiftDown() {
    for (std::size_t at = 0;;) {
      std::size_t child = 2 * at + 1;
      if (child >= heap_.size()) return;
      if (child + 1 < heap_.size() && IsBehind(heap_[child], heap_[child + 1])) ++child;
      if (!IsBehind(heap_[at], heap_[child])) return;
      std::swap(heap_[at], heap_[child]);
      at = child;
    }
  }

  std::vector<MergeSource*> heap_;
};

void AddNote(const NoteKind& kind, const CString& path, std::string_view reason, std::uint64_t position_bytes = 0) {
  CurrentNotes().Add(kind, path, position_bytes, reason);
}

// The header of the merged log; nothing, with a note, when the logs do not go together.
std::optional<LogHeader> MergedHeader(MergeSources& sources) {
  LogHeader header = sources.front().header();
  header.version = kMergedLogVersion;
  for (const MergeSource& source : sources) {
    const LogHeader& other = source.header();
    if (header.test_type == 0) header.test_type = other.test_type;
    const bool fits = other.kind == header.kind && (other.test_type == 0 || other.test_type == header.test_type);
    if (!fits)
      return AddNote("log refused"_note, source.path(), "a log of another sort than the first one"), std::nullopt;
    if (MidnightSeconds(other.day) < MidnightSeconds(header.day)) header.day = other.day;
  }
  for (MergeSource& source : sources) {
    source.CountFrom(header.day);
    if (source.GoesBeyondTimes())
      return AddNote("log refused"_note, source.path(), "more than 10,000 hours lie between the logs"), std::nullopt;
  }
  return header;
}

// A merge holds all its logs open.
void AllowManyOpenFiles() {
  rlimit files{};
  if (getrlimit(RLIMIT_NOFILE, &files) != 0 || files.rlim_cur >= files.rlim_max) return;
  files.rlim_cur = files.rlim_max;
  if (setrlimit(RLIMIT_NOFILE, &files) != 0) Log(LogLevel::kWarning, "the limit of open files stays as it is");
}

struct OpenedSources {
  MergeSources sources;
  std::uint64_t bytes = 0;
  bool is_refused = false;
  bool lacks_old_ones = false;
};

OpenedSources OpenSources(std::span<const CString> paths, const CString& target, bool (*accepts)(LogKind)) {
  AllowManyOpenFiles();
  OpenedSources opened;
  const std::size_t piece_bytes = std::clamp<std::size_t>(kReadBuffersBytes / std::max<std::size_t>(paths.size(), 1),
                                                          kSmallestPieceBytes, BlockCursor::kPieceBytes);
  for (const CString& path : paths) {
    if (IsSameFile(path, target)) {
      AddNote("log refused"_note, path, "the merged log would replace it");
      opened.is_refused = true;
      continue;
    }
    try {
      MergeSource& source =
          opened.sources.emplace_back(path, opened.sources.size(), static_cast<std::uint32_t>(piece_bytes));
      const LogHeader& header = source.header();
      opened.bytes += InputFile(path).Size();
      if (!accepts(header.kind)) {
        AddNote("log refused"_note, path, "a log of the kind " + std::string(LogKindName(header.kind)));
        opened.is_refused = true;
      } else if (header.kind == LogKind::kStore && header.version <= kLastUnmergeableVersion) {
        AddNote("log left out"_note, path, "its version " + std::to_string(header.version) + " is too old");
        opened.lacks_old_ones = true;
        opened.sources.pop_back();
      }
    } catch (const FileError& error) {
      AddNote("log refused"_note, path, error.reason(), error.position_bytes());
      opened.is_refused = true;
    }
  }
  opened.is_refused |= opened.sources.empty();
  return opened;
}

}  // namespace

LogMergeResult MergeLogs(std::span<const CString> paths, const CString& target, bool (*accepts)(LogKind)) {
  OpenedSources opened = OpenSources(paths, target, accepts);
  if (opened.is_refused) return kMergeRefused;
  const auto header = MergedHeader(opened.sources);
  if (!header) return kMergeRefused;
  try {
    LogWriter log(target, *header);
    std::uint64_t done = 0;
    for (MergeQueue queue(opened.sources); !queue.IsEmpty(); queue.Advance()) {
      const LogPacket& packet = queue.First().Packet();
      log.Append(packet);
      TellProgress(done += packet.block.size(), opened.bytes);
    }
    for (const MergeSource& source : opened.sources) source.reader().RequireUnchanged();
    log.Finish();
  } catch (const Interrupted&) {
    AddNote("log not written"_note, target, "interrupted");
    return kMergeInterrupted;
  } catch (const FileError& error) {
    if (error.path() != target) throw;
    AddNote("log not written"_note, target, error.reason(), error.position_bytes());
    return kMergeFailed;
  }
  return opened.lacks_old_ones ? kMergeInPart : kMergeDone;
}

}  // namespace loom
