#include "host/logstore/log_json.h"

#include <algorithm>
#include <cstdint>
#include <memory_resource>
#include <nlohmann/json.hpp>
#include <ostream>
#include <vector>

#include "components/note_kinds.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/log_writer.h"
#include "host/logstore/pcapng.h"
#include "host/logstore/record_codec.h"
#include "host/logstore/record_json.h"
#include "platform/characters.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/interrupt.h"

namespace loom {
namespace {

// The lines of a text file, read in pieces.
class LineReader {
 public:
  explicit LineReader(const CString& path) : file_(path) {}

  // The next line without its end; false behind the last one.
  bool Next(std::string_view& line) {
    std::size_t end = buffer_.find('\n', at_);
    while (end == std::string::npos && ReadMore()) end = buffer_.find('\n', at_);
    if (at_ == buffer_.size()) return false;
    const std::size_t stop = end == std::string::npos ? buffer_.size() : end;
    line = std::string_view(buffer_).substr(at_, stop - at_);
    at_ = end == std::string::npos ? buffer_.size() : end + 1;
    ++number_;
    return true;
  }
  std::size_t number() const { return number_; }  // of the line read last, from 1

 private:
  bool ReadMore() {
    constexpr std::size_t kPieceBytes = 1U << 20;
    if (position_ == file_.Size()) return false;
    buffer_.erase(0, at_);
    at_ = 0;
    const std::size_t kept = buffer_.size();
    buffer_.resize(kept + std::min<std::uint64_t>(kPieceBytes, file_.Size() - position_));
    const auto piece = std::as_writable_bytes(std::span(buffer_).subspan(kept));
    file_.ReadAt(position_, piece);
    position_ += piece.size();
    return true;
  }

  InputFile file_;
  std::uint64_t position_ = 0;  // in the file, behind the buffer
  std::string buffer_;
  std::size_t at_ = 0;
  std::size_t number_ = 0;
};

FileError LineError(const CString& path, std::size_t line, const std::string& reason) {
  return FileError(path, 0, "line " + std::to_string(line) + ": " + reason);
}

LogHeader ReadHeaderLine(LineReader& lines, const CString& path) {
  std::string_view line;
  if (!lines.Next(line)) throw FileError(path, 0, "is empty; the first line is the header of the log");
  try {
    return HeaderFromJson(line);
  } catch (const Error& error) {
    throw LineError(path, lines.number(), error.what());
  }
}

void AppendRecordLine(std::string_view line, std::size_t number, std::pmr::memory_resource& arena, LogWriter& log) {
  CTestdataBase record(false, 0);
  RecordFromJson(line, number, record, arena);
  const RecordEncoder encoder(record);
  if (encoder.Bytes() > pcapng::kMaxRecordBytes)
    throw RecordJsonError(number, "",
                          "the record takes " + std::to_string(encoder.Bytes()) + " bytes, " +
                              std::to_string(pcapng::kMaxRecordBytes) + " are the most");
  encoder.Store(log.AppendRoom(encoder.Bytes(), record.time.seconds));
}

std::int32_t Whole(const nlohmann::json& json) {
  const auto number = json.is_number_integer() ? json.get<std::int64_t>() : std::int64_t{1} << 40;
  if (number < INT32_MIN || number > INT32_MAX)
    throw Error("the header of the log: " + json.dump() + " is no 32-bit number");
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::string HeaderToJson(const LogHeader& header) {
  nlohmann::ordered_json json;
  json["kind"] = LogKindName(header.kind);
  json["version"] = header.version;
  json["test_type"] = header.test_type;
  json["date"] = DayText(header.day);
  return json.dump();
}

LogHeader HeaderFromJson(std::string_view text) {
  try {
    const auto json = nlohmann::json::parse(text);
    if (!json.is_object()) throw Error("the header of the log is an object");
    for (const auto& [key, value] : json.items())
      if (key != "kind" && key != "version" && key != "test_type" && key != "date")
        throw Error("the header of the log has no '" + key + "'");
    LogHeader header;
    header.kind = LogKindFromName(json.at("kind").get_ref<const std::string&>());
    header.version = Whole(json.at("version"));
    header.test_type = Whole(json.at("test_type"));
    header.day = DayFromText(json.at("date").get_ref<const std::string&>());
    return header;
  } catch (const nlohmann::json::exception& error) {
    throw Error(std::string("the header of the log: ") + error.what());
  }
}

void MakeLog(const CString& lines_path, const CString& log_path) {
  LineReader lines(lines_path);
  LogWriter log(log_path, ReadHeaderLine(lines, lines_path));
  std::pmr::monotonic_buffer_resource arena;
  for (std::string_view line; lines.Next(line);) {
    if (Trimmed(line).empty()) continue;
    try {
      AppendRecordLine(line, lines.number(), arena, log);
    } catch (const RecordJsonError& error) {
      throw FileError(lines_path, 0, error.what());
    }
    arena.release();
  }
  log.Finish();
}

void DumpLog(const CString& log_path, std::ostream& out) {
  LogReader log(log_path);
  out << HeaderToJson(log.header()) << '\n';
  std::pmr::monotonic_buffer_resource arena;
  for (LogPacket packet; out && log.Next(packet); arena.release()) {
    StopIfInterrupted();
    CTestdataBase record(false, 0);
    try {
      DecodeRecord(packet.payload, packet.payload_position_bytes, record, arena);
    } catch (const FormatError& error) {
      CurrentNotes().Add("record skipped"_note, log_path, error.position_bytes(), error.reason());
      continue;
    }
    out << RecordToJson(record) << '\n';
  }
  out.flush();
}

}  // namespace loom
