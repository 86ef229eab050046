#include "host/logstore/log_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "components/note_kinds.h"
#include "host/logstore/pcapng.h"
#include "host/logstore/trailer_cursor.h"
#include "platform/byte_reader.h"
#include "platform/time_units.h"

namespace loom {
namespace {

using namespace pcapng;

struct Option {
  std::uint16_t code = kOptionEnd;
  ByteReader value;
};

// The next option of a block; nothing behind the last one.
std::optional<Option> NextOption(ByteReader& options) {
  if (options.AtEnd()) return std::nullopt;
  const std::uint16_t code = options.U16("option code");
  const std::uint16_t length = options.U16("option length");
  if (code == kOptionEnd) return std::nullopt;
  Option option{code, options.Part(length, "option")};
  options.Skip((4 - length % 4) % 4, "option padding");
  return option;
}

std::uint64_t ReadStamp(ByteReader& reader) {
  const std::uint64_t high = reader.U32("time stamp");
  return high << 32 | reader.U32("time stamp");
}

// Start and end of a statistics block, in ticks.
std::optional<std::pair<std::uint64_t, std::uint64_t>> StatisticsTicks(ByteReader body) {
  std::optional<std::uint64_t> start, end;
  body.Skip(12, "statistics");
  while (auto option = NextOption(body)) {
    if (option->code == kOptionStartTime) start = ReadStamp(option->value);
    if (option->code == kOptionEndTime) end = ReadStamp(option->value);
  }
  if (!start || !end) return std::nullopt;
  return std::pair(*start, *end);
}

// What our option says in the section header; nothing when it is not there.
std::optional<LogHeader> SectionLogHeader(const Block& block) {
  ByteReader body(block.body, block.BodyPosition());
  body.Skip(16, "section header");
  while (auto option = NextOption(body)) {
    if (option->code != kOptionCustomText || !option->value.Has(4)) continue;
    if (option->value.U32() != kEnterpriseNumber) continue;
    const std::uint64_t position = option->value.Position();
    try {
      return ParseHeaderText(option->value.Text(option->value.Remaining()));
    } catch (const FormatError&) {
      throw;
    } catch (const Error& error) {
      throw FormatError(position, error.what());
    }
  }
  return std::nullopt;
}

// Why a file that does not begin with a section header is none of ours.
std::string ForeignReason(const InputFile& file) {
  if (file.Size() == 0) return "the file is empty";
  std::array<std::byte, 4> bytes{};
  const std::size_t size = file.ReadUpTo(0, bytes);
  const std::uint32_t magic = size == bytes.size() ? ByteReader(bytes).U32() : 0;
  constexpr std::array<std::uint32_t, 4> kPcap = {0xA1B2C3D4, 0xD4C3B2A1, 0xA1B23C4D, 0x4D3CB2A1};
  if (std::find(kPcap.begin(), kPcap.end(), magic) != kPcap.end()) return "a capture file of the old form (pcap)";
  return "the file does not begin with a section header block";
}

LogHeader ReadLogHeader(const InputFile& file, BlockCursor& cursor) {
  Block block;
  std::array<std::byte, 4> first{};
  const bool section = file.ReadUpTo(0, first) == first.size() && ByteReader(first).U32() == kSectionHeader;
  if (!section) throw FileError(file.path(), 0, "is no log: " + ForeignReason(file));
  if (!cursor.Next(block))
    throw FileError(file.path(), cursor.damage()->position_bytes(), "is no log: " + cursor.damage()->reason());
  try {
    ByteReader body(block.body, block.BodyPosition());
    if (body.U32("section header") != kByteOrderMagic) throw FormatError(block.BodyPosition(), "no byte-order magic");
    if (const auto header = SectionLogHeader(block)) return *header;
  } catch (const FormatError& error) {
    throw FileError(file.path(), error.position_bytes(), "is no log: " + error.reason());
  }
  throw FileError(file.path(), 0, "is no log: a capture file whose section does not say that it holds a log");
}

}  // namespace

LogReader::LogReader(const CString& path, std::uint32_t piece_bytes) : file_(path), cursor_(file_, piece_bytes) {
  file_.ExpectSequentialReading();
  header_ = ReadLogHeader(file_, cursor_);
  header_end_bytes_ = cursor_.Position();
}

void LogReader::ContinueAt(std::uint64_t position_bytes) {
  cursor_.ContinueAt(position_bytes);
  ended_ = false;
}

void LogReader::Rewind() {
  ContinueAt(header_end_bytes_);
  interfaces_.clear();
}

double LogReader::ShareRead() const {
  return static_cast<double>(cursor_.Position()) / static_cast<double>(file_.Size());
}

std::int64_t LogReader::Nanoseconds(std::uint64_t ticks, std::uint8_t resolution) {
  constexpr std::uint64_t kSecond = kSecond_ns;
  const unsigned exponent = resolution & 0x7FU;
  if (resolution & 0x80U) {
    if (exponent > 63) return 0;
    const std::uint64_t fraction = ticks & ((std::uint64_t{1} << exponent) - 1);
    const double fraction_ns = static_cast<double>(fraction) / static_cast<double>(std::uint64_t{1} << exponent) * 1e9;
    return static_cast<std::int64_t>((ticks >> exponent) * kSecond + static_cast<std::uint64_t>(fraction_ns));
  }
  for (unsigned i = exponent; i < 9; ++i) ticks *= 10;
  for (unsigned i = 9; i < exponent; ++i) ticks /= 10;
  return static_cast<std::int64_t>(ticks);
}

void LogReader::NoteSkipped(std::uint64_t position_bytes, const std::string& reason) const {
  CurrentNotes().Add("record skipped"_note, file_.path(), position_bytes, reason);
}

// Throws FormatError when the section is not one of this log.
void LogReader::StartSection(const Block& block) {
  const auto header = SectionLogHeader(block);
  if (!header || *header != header_)
    throw FormatError(block.position_bytes,
                      header ? "a section of another log: " + HeaderText(*header) : "a section that holds no log");
  interfaces_.clear();
}

LogReader::Interface LogReader::ParseInterface(const Block& block) {
  ByteReader body(block.body, block.BodyPosition());
  Interface interface { .holds_records = body.U16("link type") == kLinkTypeUser0 };
  body.Skip(6, "interface description");
  while (auto option = NextOption(body))
    if (option->code == kOptionTimeResolution) interface.time_resolution = option->value.U8("time resolution");
  return interface;
}

void LogReader::ReadPacket(const Block& block, LogPacket& packet) {
  ByteReader body(block.body, block.BodyPosition());
  const std::uint32_t interface = body.U32("interface");
  const std::uint64_t ticks = ReadStamp(body);
  const std::uint32_t captured = body.U32("record length");
  const std::uint32_t original = body.U32("original length");
  if (interface >= interfaces_.size())
    throw FormatError(block.BodyPosition(), "interface " + std::to_string(interface) + " is not described");
  if (!interfaces_[interface].holds_records)
    throw FormatError(block.BodyPosition(), "interface " + std::to_string(interface) + " holds no records");
  if (captured < original)
    throw FormatError(body.Position(),
                      "cut to " + std::to_string(captured) + " of " + std::to_string(original) + " bytes");
  packet.position_bytes = block.position_bytes;
  packet.payload_position_bytes = body.Position();
  packet.payload = body.Bytes(captured, "record");
  const std::uint8_t resolution = interfaces_[interface].time_resolution;
  packet.time_ns = Nanoseconds(ticks, resolution);
  packet.block = block.Whole();
  packet.is_native = interface == 0 && resolution == kNanoseconds;
}

bool LogReader::Next(LogPacket& packet) {
  Block block;
  while (!ended_ && cursor_.Next(block)) {
    if (block.type == kEnhancedPacket) {
      try {
        ReadPacket(block, packet);
        return true;
      } catch (const FormatError& error) {
        NoteSkipped(error.position_bytes(), error.reason());
      }
      continue;
    }
    try {
      if (block.type == kSectionHeader) StartSection(block);
      if (block.type == kInterfaceDescription) interfaces_.push_back(ParseInterface(block));
    } catch (const FormatError& error) {
      ended_ = true;
      CurrentNotes().Add("log ends early"_note, file_.path(), error.position_bytes(), error.reason());
    }
  }
  if (!ended_ && cursor_.damage())
    CurrentNotes().Add("log ends early"_note, file_.path(), cursor_.damage()->position_bytes(),
                       cursor_.damage()->reason());
  ended_ = true;
  return false;
}

// The statistics block is among the last blocks of the file.
std::optional<LogTimes> LogReader::TimesFromStatistics() const {
  BlockCursor cursor(file_);
  Block first;
  if (!cursor.Next(first) || !cursor.Next(first) || first.type != kInterfaceDescription) return std::nullopt;
  const std::uint8_t resolution = ParseInterface(first).time_resolution;
  TrailerCursor trailers(file_);
  for (Trailer trailer; trailers.Next(trailer);) {
    if (trailer.type != kInterfaceStatistics) continue;
    const std::vector<std::byte> body = trailers.Body(trailer);
    const auto ticks = StatisticsTicks(ByteReader(body, trailer.BodyPosition()));
    if (!ticks) return std::nullopt;
    return LogTimes{Nanoseconds(ticks->first, resolution), Nanoseconds(ticks->second, resolution)};
  }
  return std::nullopt;
}

// Statistics at the end of a file of several sections tell of the last one only.
bool LogReader::CoversFirstRecord(const LogTimes& times) const {
  BlockCursor cursor(file_);
  std::vector<Interface> interfaces;
  for (Block block; cursor.Next(block);) {
    if (block.type == kInterfaceDescription) interfaces.push_back(ParseInterface(block));
    if (block.type != kEnhancedPacket) continue;
    ByteReader body(block.body, block.BodyPosition());
    const std::uint32_t interface = body.U32("interface");
    if (interface >= interfaces.size()) return false;
    const std::int64_t time_ns = Nanoseconds(ReadStamp(body), interfaces[interface].time_resolution);
    return time_ns >= times.start_ns && time_ns <= times.end_ns;
  }
  return false;
}

std::optional<LogTimes> LogReader::TimesFromRecords() const {
  Notes unheard;  // reading the log tells them
  const NotesScope scope(unheard);
  LogReader reader(file_.path());
  std::optional<LogTimes> times;
  for (LogPacket packet; reader.Next(packet);) {
    if (!times) times = LogTimes{packet.time_ns, packet.time_ns};
    times->start_ns = std::min(times->start_ns, packet.time_ns);
    times->end_ns = std::max(times->end_ns, packet.time_ns);
  }
  return times;
}

std::optional<LogTimes> LogReader::ReadTimes() const {
  try {
    if (const auto times = TimesFromStatistics(); times && CoversFirstRecord(*times)) return times;
  } catch (const FormatError&) {
    // Damaged statistics say nothing; the records do.
  }
  return TimesFromRecords();
}

std::optional<LogHeader> PeekLogHeader(const CString& path) {
  try {
    const InputFile file(path);
    BlockCursor cursor(file);
    return ReadLogHeader(file, cursor);
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace loom
