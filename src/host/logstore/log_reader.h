#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/logstore/block_cursor.h"
#include "host/logstore/log_header.h"
#include "host/logstore/time_index.h"
#include "platform/file.h"

namespace loom {

// One record as it stands in its log.
struct LogPacket {
  std::span<const std::byte> payload;  // valid until the next call of the reader
  std::uint64_t position_bytes = 0;    // of its block in the file
  std::uint64_t payload_position_bytes = 0;
  std::int64_t time_ns = 0;          // since 1970, local clock
  std::span<const std::byte> block;  // the whole block in its container; valid as the payload is
  bool is_native = false;            // whether the block could stand in a log of ours as it is
};

// First and last time of a log's records, nanoseconds since 1970, local clock.
struct LogTimes {
  std::int64_t start_ns = 0;
  std::int64_t end_ns = 0;
};

// Reads one log, forward. Damage and what is skipped goes to the current notes.
class LogReader {
 public:
  // Throws FileError when the file cannot be read, or is no log: with position and reason.
  explicit LogReader(const CString& path, std::uint32_t piece_bytes = BlockCursor::kPieceBytes);

  const CString& path() const { return file_.path(); }
  const LogHeader& header() const { return header_; }
  bool Next(LogPacket& packet);  // false at the end of the log
  double ShareRead() const;      // 0 to 1
  // Goes on with the block there, a position in the file; the interfaces described so far hold on.
  void ContinueAt(std::uint64_t position_bytes);
  void Rewind();  // to the first block behind the header

  // Throws FileError when somebody has written to the log since it was opened.
  void RequireUnchanged() const { file_.RequireUnchanged(); }

  // From the statistics at the end of the file, from all records where a tool dropped them; nothing when there is no
  // record. Does not disturb reading.
  std::optional<LogTimes> ReadTimes() const;
  // The time index at the end of the file, as far as it can be checked there. Does not disturb reading.
  std::optional<TimeIndex> ReadIndex() const { return ReadTimeIndex(file_); }

 private:
  // How the packets of an interface are read. Ticks are a negative power of 10 or of 2 of a second.
  struct Interface {
    bool holds_records = false;
    std::uint8_t time_resolution = 6;
  };

  static Interface ParseInterface(const Block& block);
  void StartSection(const Block& block);
  void ReadPacket(const Block& block, LogPacket& packet);
  void NoteSkipped(std::uint64_t position_bytes, const std::string& reason) const;
  std::optional<LogTimes> TimesFromStatistics() const;
  bool CoversFirstRecord(const LogTimes& times) const;
  std::optional<LogTimes> TimesFromRecords() const;
  static std::int64_t Nanoseconds(std::uint64_t ticks, std::uint8_t resolution);

  InputFile file_;
  LogHeader header_;
  BlockCursor cursor_;
  std::uint64_t header_end_bytes_ = 0;
  std::vector<Interface> interfaces_;
  bool ended_ = false;
};

// The header of a log, nothing when the file is no log or cannot be read. Notes nothing.
std::optional<LogHeader> PeekLogHeader(const CString& path);

}  // namespace loom
