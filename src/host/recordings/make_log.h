#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/cstring.h"

// Logs of ours from recordings of real handsets; docs/recordings.md says what is read and what becomes of it.
namespace loom {

// A local time as options tell it.
struct LocalMoment {
  CalendarDay day;
  std::int64_t since_midnight_ns = 0;
};
// "yyyy-mm-dd hh:mm:ss[.fff]"; throws Error for anything else.
LocalMoment LocalMomentFromText(const std::string& text);
// "+hh:mm" or "-hh:mm" in seconds; throws Error for anything else.
std::int32_t UtcOffsetFromText(const std::string& text);

struct RecordingOptions {
  std::vector<CString> files;  // merged by time
  CString out;                 // the log to write
  std::optional<CString> track;
  std::optional<std::int32_t> utc_offset_s;  // of local time; nothing: that of TZ
  std::optional<LocalMoment> start;          // of recordings that never know the time
  std::optional<LocalMoment> from;           // only records from here on
  std::optional<LocalMoment> to;             // up to here, its second included
  std::optional<std::int32_t> radio;         // only this SIM
};

struct RecordingFile {
  CString path;
  std::string refusal;  // UTF-8; empty when the file was read
};

struct RecordingReport {
  bool is_written = false;  // there is a log: at least one record came of the files
  std::vector<RecordingFile> files;
  std::map<std::string, std::map<std::string, std::uint64_t>> packets;  // by log code and version
  std::map<std::int32_t, std::uint64_t> records;                        // by kind
  std::map<std::string, std::uint64_t> skipped;                         // by reason
};

// Writes the log; it appears complete or not at all. What is not understood goes to the current notes with its place. A
// file that is no recording is refused, the others are read. Throws Error when the track cannot be used, or the log
// cannot be written.
RecordingReport MakeLogFromRecordings(const RecordingOptions& options);

// Whether a file is a recording that a log can be made of, told by its content; false when it cannot be read.
bool IsRecording(const CString& path);

// Where the log of a recording goes: TITLE.log in a folder, TITLE_2.log, TITLE_3.log ... where there is a file of that
// name or it is one of `taken`.
CString FreeLogPath(const CString& recording, const CString& folder, const std::vector<CString>& taken = {});

// The track of the same name beside a recording (*.gpx, *.nmea); empty when there is none.
CString TrackBeside(const CString& recording);

}  // namespace loom
