#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "host/logstore/log_header.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/time_index.h"
#include "platform/byte_reader.h"
#include "platform/file.h"

namespace loom {

// Writes one log. The file appears, complete, with Finish(); without it nothing of it stays. Throws FileError,
// and Interrupted while the person wants an end (platform/interrupt.h).
class LogWriter {
 public:
  // `stretch_bytes` is how much of the log one entry of its time index covers.
  LogWriter(const CString& path, const LogHeader& header,
            std::uint64_t stretch_bytes = TimeIndexBuilder::kStretchBytes);

  // A coded record and its time, seconds from the midnight of the log's day. A record longer than
  // pcapng::kMaxRecordBytes is refused with FileError.
  void Append(std::span<const std::byte> record, double time_s);
  // The same for a record that the caller writes into the room that comes back, before the next call.
  std::byte* AppendRoom(std::size_t record_bytes, double time_s);
  // A record of another log, its block copied as it stands, options included.
  void Append(const LogPacket& packet);
  void Finish();
  std::uint64_t RecordCount() const { return record_count_; }

 private:
  // Room for the bytes of one block, which the caller fills.
  std::byte* Room(std::size_t bytes) {
    if (bytes > kBufferBytes - filled_) [[unlikely]]
      Flush();
    return buffer_.get() + std::exchange(filled_, filled_ + bytes);
  }
  void Write(std::span<const std::byte> block);
  void Flush();
  std::uint64_t Position() const { return file_.Position() + filled_; }
  void WriteSectionHeader(const LogHeader& header);
  void WriteInterface();
  void WriteStatistics();
  void WriteIndex();
  void CountRecord(std::uint64_t time_ns);
  ByteWriter BeginBlock(std::uint32_t type);
  void EndBlock();

  static constexpr std::size_t kBufferBytes = 512 * 1024;

  AtomicFile file_;
  std::vector<std::byte> block_;
  std::uint64_t midnight_ns_;
  std::unique_ptr<std::byte[]> buffer_;  // of kBufferBytes
  std::size_t filled_ = 0;
  TimeIndexBuilder index_;
  std::uint64_t record_count_ = 0;
  std::uint64_t start_ns_ = 0;
  std::uint64_t end_ns_ = 0;
};

}  // namespace loom
