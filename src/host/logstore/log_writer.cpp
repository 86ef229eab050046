#include "host/logstore/log_writer.h"

#include <algorithm>
#include <cmath>
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
      index_(stretch_bytes) {
  WriteSectionHeader(header);
  WriteInterface();
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
  file_.Write(block_);
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

void LogWriter::Append(std::span<const std::byte> record, double time_s) {
  if (record.size() > kMaxRecordBytes)
    throw FileError(file_.path(), file_.Position(),
                    "a record of " + std::to_string(record.size()) + " bytes, " + std::to_string(kMaxRecordBytes) +
                        " are the most");
  const std::uint64_t time_ns = midnight_ns_ + TimeOfDayNanoseconds(time_s);
  CountRecord(time_ns);
  const auto length = static_cast<std::uint32_t>(record.size());
  ByteWriter block = BeginBlock(kEnhancedPacket);
  block.U32(0);  // interface
  PutStamp(block, time_ns);
  block.U32(length);
  block.U32(length);
  block.Bytes(record);
  EndBlock();
}

void LogWriter::CountRecord(std::uint64_t time_ns) {
  StopIfInterrupted();
  start_ns_ = record_count_ == 0 ? time_ns : std::min(start_ns_, time_ns);
  end_ns_ = std::max(end_ns_, time_ns);
  ++record_count_;
  index_.Add(file_.Position(), static_cast<std::int64_t>(time_ns));
}

void LogWriter::Append(const LogPacket& packet) {
  const auto time_ns = static_cast<std::uint64_t>(packet.time_ns);
  CountRecord(time_ns);
  if (packet.is_native) return file_.Write(packet.block);
  // Behind type and length stand interface and time stamp, which count in another container.
  block_.assign(packet.block.begin(), packet.block.end());
  ByteWriter block(block_);
  block.PatchU32(8, 0);
  block.PatchU32(12, static_cast<std::uint32_t>(time_ns >> 32));
  block.PatchU32(16, static_cast<std::uint32_t>(time_ns));
  file_.Write(block_);
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
  const std::uint64_t file_size = file_.Position() + index_.BlockBytes() + kStatisticsBytes;
  ByteWriter block = BeginBlock(kCustomDropped);
  index_.WriteBody(block, file_size);
  EndBlock();
}

void LogWriter::Finish() {
  WriteIndex();
  WriteStatistics();
  StopIfInterrupted();
  file_.Commit();
}

}  // namespace loom
