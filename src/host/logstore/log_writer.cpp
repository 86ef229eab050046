#include "host/logstore/log_writer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <string>

#include "host/logstore/pcapng.h"
#include "platform/byte_reader.h"
#include "platform/interrupt.h"
#include "platform/time_units.h"

namespace loom {
namespace {

using namespace pcapng;

constexpr std::uint32_t kStatisticsBytes = 64;  // of a log with records

// What is no time of day counts as midnight.
std::uint64_t TimeOfDayNanoseconds(double time_s) {
  const bool sound = time_s >= 0.0 && time_s < kEndOfTimes_s;
  return sound ? static_cast<std::uint64_t>(std::llround(time_s * 1e9)) : 0;
}

std::byte* PutNumbers(std::byte* at, std::initializer_list<std::uint32_t> numbers) {
  for (std::uint32_t number : numbers) {
    if constexpr (std::endian::native == std::endian::big) number = detail::SwapBytes(number);
    std::memcpy(at, &number, sizeof number);
    at += sizeof number;
  }
  return at;
}

void PutStamp(ByteWriter& out, std::uint64_t time_ns) {
  out.U32(static_cast<std::uint32_t>(time_ns >> 32));
  out.U32(static_cast<std::uint32_t>(time_ns));
}

void PutOption(ByteWriter& out, std::uint16_t code, std::size_t length) {
  out.U16(code);
  out.U16(static_cast<std::uint16_t>(length));
}

void EndOptions(ByteWriter& out) { PutOption(out, kOptionEnd, 0); }

}  // namespace

LogWriter::LogWriter(const CString& path, const LogHeader& header, std::uint64_t stretch_bytes)
    : file_(path),
      midnight_ns_(static_cast<std::uint64_t>(MidnightSeconds(header.day) * kSecond_ns)),
      buffer_(std::make_unique_for_overwrite<std::byte[]>(kBufferBytes)),
      index_(stretch_bytes) {
  WriteSectionHeader(header);
  WriteInterface();
}

void LogWriter::Flush() { file_.Write(std::span(buffer_.get(), std::exchange(filled_, 0))); }

void LogWriter::Write(std::span<const std::byte> block) {
  if (block.size() > kBufferBytes - filled_) Flush();
  if (block.size() > kBufferBytes) return file_.Write(block);
  std::memcpy(Room(block.size()), block.data(), block.size());
}

ByteWriter LogWriter::BeginBlock(std::uint32_t type) {
  block_.clear();
  ByteWriter block(block_);
  block.U32(type);
  block.U32(0);  // length, known at the end
  return block;
}

void LogWriter::EndBlock() {
  ByteWriter block(block_);
  block.Align(4);
  const auto length = static_cast<std::uint32_t>(block.Size() + 4);
  block.U32(length);
  block.PatchU32(4, length);
  Write(block_);
}

void LogWriter::WriteSectionHeader(const LogHeader& header) {
  const std::string text = HeaderText(header);
  ByteWriter block = BeginBlock(kSectionHeader);
  block.U32(kByteOrderMagic);
  block.U16(1);  // version 1.0 of the container
  block.U16(0);
  block.I64(-1);  // length of the section: up to the end of the file
  PutOption(block, kOptionCustomText, 4 + text.size());
  block.U32(kEnterpriseNumber);
  block.Text(text);
  block.Align(4);
  EndOptions(block);
  EndBlock();
}

void LogWriter::WriteInterface() {
  ByteWriter block = BeginBlock(kInterfaceDescription);
  block.U16(kLinkTypeUser0);
  block.U16(0);
  block.U32(0);  // records are never cut
  PutOption(block, kOptionTimeResolution, 1);
  block.U8(kNanoseconds);
  block.Align(4);
  EndOptions(block);
  EndBlock();
}

std::byte* LogWriter::AppendRoom(std::size_t record_bytes, double time_s) {
  static_assert(kBufferBytes >= kBlockOverhead + kPacketHeader + kMaxRecordBytes);
  if (record_bytes > kMaxRecordBytes)
    throw FileError(
        file_.path(), Position(),
        "a record of " + std::to_string(record_bytes) + " bytes, " + std::to_string(kMaxRecordBytes) + " are the most");
  const std::uint64_t time_ns = midnight_ns_ + TimeOfDayNanoseconds(time_s);
  CountRecord(time_ns);
  const auto length = static_cast<std::uint32_t>(record_bytes);
  const std::uint32_t padding = -length % 4;
  const std::uint32_t block_length = kBlockOverhead + kPacketHeader + length + padding;
  const auto high = static_cast<std::uint32_t>(time_ns >> 32);
  const auto low = static_cast<std::uint32_t>(time_ns);
  std::byte* const record =
      PutNumbers(Room(block_length), {kEnhancedPacket, block_length, 0, high, low, length, length});
  std::memset(record + length, 0, padding);
  PutNumbers(record + length + padding, {block_length});
  return record;
}

void LogWriter::Append(std::span<const std::byte> record, double time_s) {
  std::byte* const at = AppendRoom(record.size(), time_s);
  if (!record.empty()) std::memcpy(at, record.data(), record.size());
}

void LogWriter::CountRecord(std::uint64_t time_ns) {
  if (WasInterrupted()) throw Interrupted();
  start_ns_ = record_count_ == 0 ? time_ns : std::min(start_ns_, time_ns);
  end_ns_ = std::max(end_ns_, time_ns);
  ++record_count_;
  index_.Add(Position(), static_cast<std::int64_t>(time_ns));
}

void LogWriter::Append(const LogPacket& packet) {
  const auto time_ns = static_cast<std::uint64_t>(packet.time_ns);
  CountRecord(time_ns);
  if (packet.is_native) return Write(packet.block);
  // Behind type and length stand interface and time stamp, which count in another container.
  block_.assign(packet.block.begin(), packet.block.end());
  ByteWriter block(block_);
  block.PatchU32(8, 0);
  block.PatchU32(12, static_cast<std::uint32_t>(time_ns >> 32));
  block.PatchU32(16, static_cast<std::uint32_t>(time_ns));
  Write(block_);
}

void LogWriter::WriteStatistics() {
  ByteWriter block = BeginBlock(kInterfaceStatistics);
  block.U32(0);  // interface
  PutStamp(block, end_ns_);
  if (record_count_ > 0) {
    PutOption(block, kOptionStartTime, 8);
    PutStamp(block, start_ns_);
    PutOption(block, kOptionEndTime, 8);
    PutStamp(block, end_ns_);
  }
  PutOption(block, kOptionReceived, 8);
  block.U64(record_count_);
  EndOptions(block);
  EndBlock();
}

void LogWriter::WriteIndex() {
  if (!index_.IsWorthWriting()) return;
  const std::uint64_t file_size = Position() + index_.BlockBytes() + kStatisticsBytes;
  ByteWriter block = BeginBlock(kCustomDropped);
  index_.WriteBody(block, file_size);
  EndBlock();
}

void LogWriter::Finish() {
  WriteIndex();
  WriteStatistics();
  Flush();
  StopIfInterrupted();
  file_.Commit();
}

}  // namespace loom
