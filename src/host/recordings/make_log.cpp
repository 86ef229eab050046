#include "host/recordings/make_log.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "host/recordings/capture_source.h"
#include "host/recordings/diag_source.h"
#include "host/recordings/record_mapper.h"
#include "host/recordings/recording_format.h"
#include "host/recordings/track.h"
#include "platform/error.h"
#include "platform/interrupt.h"
#include "platform/notes.h"
#include "platform/number.h"
#include "platform/path.h"
#include "platform/time_units.h"

namespace loom {
namespace {

using namespace recordings;

constexpr std::uint64_t kPacketsBetweenLooks = 4'096;

// A DIAG recording with its clock.
struct DiagFile {
  std::unique_ptr<InputFile> file;
  RecordingFormat format;
  std::unique_ptr<ClockMap> clock;
};

// A stretch of packets in time order, and the latest time that it has reached.
struct Stretch {
  std::int64_t reached_ns = 0;
  std::function<std::unique_ptr<PacketSource>()> open;
  std::unique_ptr<PacketSource> source;  // null before its time has come
  std::optional<RecordedPacket> first;   // read already
};

std::int64_t NanosecondsOf(const LocalMoment& moment, const std::optional<std::int32_t>& utc_offset_s) {
  if (utc_offset_s) return (MidnightSeconds(moment.day) - *utc_offset_s) * kSecond_ns + moment.since_midnight_ns;
  const auto seconds = static_cast<int>(moment.since_midnight_ns / kSecond_ns);
  const LocalTime local{moment.day, seconds / 3600, seconds / 60 % 60, seconds % 60};
  return SecondsOf(local) * kSecond_ns + moment.since_midnight_ns % kSecond_ns;
}

std::string WhyNoPositions(const Track& track, const RecordingLog& log) {
  const auto seconds = [](std::int64_t ns) { return std::to_string(ns / kSecond_ns) + " s"; };
  if (track.LastNs() < log.FirstNs())
    return "the track ends " + seconds(log.FirstNs() - track.LastNs()) + " before the first record";
  if (track.FirstNs() > log.LastNs())
    return "the track begins " + seconds(track.FirstNs() - log.LastNs()) + " behind the last record";
  return "no record lies between two fixes";
}

// One run over the files of the options.
class LogMaking {
 public:
  explicit LogMaking(const RecordingOptions& options) : options_(options) {}

  RecordingReport Run() {
    Track track({});
    if (options_.track) track = ReadTrack(*options_.track, findings_);
    for (const CString& path : options_.files) report_.files.push_back({path, Open(path)});
    RecordingLog log(LogOptions(), track, findings_);
    if (!stretches_.empty()) ReadAll(log);
    report_.is_written = log.Finish();
    if (report_.is_written && options_.track && !log.HasPositions())
      findings_.Add(Finding::kTrackPoint, *options_.track, "all", WhyNoPositions(track, log));
    findings_.TellRest();
    report_.packets = findings_.Packets();
    report_.records = log.records();
    report_.skipped = findings_.Skipped();
    return std::move(report_);
  }

 private:
  RecordingLog::Options LogOptions() const {
    RecordingLog::Options log{
        .path = options_.out, .utc_offset_s = options_.utc_offset_s, .from_ns = {}, .until_ns = {}};
    if (options_.from) log.from_ns = NanosecondsOf(*options_.from, options_.utc_offset_s);
    if (options_.to) {
      const std::int64_t to_ns = NanosecondsOf(*options_.to, options_.utc_offset_s);
      log.until_ns = to_ns - to_ns % kSecond_ns + kSecond_ns;
    }
    if (log.from_ns && log.until_ns && *log.until_ns <= *log.from_ns)
      throw Error("the part of the recordings that is asked for ends before it begins");
    return log;
  }

  // Why the file is refused; empty when its stretches were added.
  std::string Open(const CString& path) {
    try {
      if (IsSameFile(path, options_.out)) return "is the log that is to be written";
      for (const RecordingFile& other : report_.files)
        if (IsSameFile(path, other.path)) return "is given twice";
      auto file = std::make_unique<InputFile>(path);
      const RecordingFormat format = FormatOf(*file);
      if (format == RecordingFormat::kNone) return WhyNoRecording(*file);
      return format == RecordingFormat::kCapture ? OpenCapture(path) : OpenDiag(std::move(file), format);
    } catch (const FileError& error) {
      return error.reason();
    }
  }

  std::string OpenCapture(const CString& path) {
    Stretch stretch;
    stretch.source = std::make_unique<CaptureSource>(path, findings_);
    RecordedPacket packet;
    if (!stretch.source->Next(packet)) return "holds no GSMTAP packet";
    stretch.reached_ns = packet.time_ns;
    stretch.first = packet;
    stretches_.push_back(std::move(stretch));
    return {};
  }

  std::string OpenDiag(std::unique_ptr<InputFile> file, RecordingFormat format) {
    file->ExpectSequentialReading();
    std::optional<std::int64_t> start_ns;
    if (options_.start) start_ns = NanosecondsOf(*options_.start, options_.utc_offset_s);
    auto clock = std::make_unique<ClockMap>(*file, format, start_ns, findings_);
    if (!clock->HasTime()) return "never knows the time; --start tells when it began";
    const auto& segments = clock->segments();
    const auto has_packets = [](const ClockSegment& segment) { return segment.first_ns != INT64_MAX; };
    if (std::none_of(segments.begin(), segments.end(), has_packets)) return "holds no log packet with a time";
    const DiagFile& diag = files_.emplace_back(DiagFile{std::move(file), format, std::move(clock)});
    for (const ClockSegment& segment : diag.clock->segments()) {
      Stretch stretch;
      stretch.reached_ns = segment.first_ns;
      stretch.open = [this, at = files_.size() - 1, segment] {
        const DiagFile& of = files_[at];
        return std::make_unique<DiagSource>(*of.file, of.format, *of.clock, segment, findings_);
      };
      stretches_.push_back(std::move(stretch));
    }
    return {};
  }

  std::size_t Earliest() const {
    const auto earlier = [](const Stretch& a, const Stretch& b) { return a.reached_ns < b.reached_ns; };
    return static_cast<std::size_t>(std::min_element(stretches_.begin(), stretches_.end(), earlier) -
                                    stretches_.begin());
  }

  void ReadAll(RecordingLog& log) {
    log.Begin(stretches_[Earliest()].reached_ns);
    RecordMapper mapper(log, findings_);
    while (!stretches_.empty()) {
      const std::size_t at = Earliest();
      std::int64_t others_ns = INT64_MAX;
      for (std::size_t i = 0; i < stretches_.size(); ++i)
        if (i != at) others_ns = std::min(others_ns, stretches_[i].reached_ns);
      if (!ReadPast(stretches_[at], others_ns, log, mapper))
        stretches_.erase(stretches_.begin() + static_cast<std::ptrdiff_t>(at));
    }
  }

  // Reads until the stretch is later than all others; false at its end.
  bool ReadPast(Stretch& stretch, std::int64_t others_ns, RecordingLog& log, RecordMapper& mapper) {
    if (!stretch.source) stretch.source = stretch.open();
    RecordedPacket packet;
    do {
      if (++packets_ % kPacketsBetweenLooks == 0) StopIfInterrupted();
      if (stretch.first) {
        packet = *std::exchange(stretch.first, std::nullopt);
      } else if (!stretch.source->Next(packet)) {
        return false;
      }
      if (packet.time_ns > stretch.reached_ns) {
        stretch.reached_ns = packet.time_ns;
        log.Advance(std::min(stretch.reached_ns, others_ns));
      }
      if (options_.radio && packet.radio != *options_.radio)
        findings_.Add(Finding::kOtherRadio);
      else
        mapper.Take(packet, stretch.source->path());
    } while (stretch.reached_ns <= others_ns);
    return true;
  }

  const RecordingOptions& options_;
  Findings findings_;
  RecordingReport report_;
  std::vector<DiagFile> files_;
  std::vector<Stretch> stretches_;
  std::uint64_t packets_ = 0;
};

}  // namespace

RecordingReport MakeLogFromRecordings(const RecordingOptions& options) { return LogMaking(options).Run(); }

bool IsRecording(const CString& path) {
  try {
    const InputFile file(path);
    const RecordingFormat format = FormatOf(file);
    if (format != RecordingFormat::kCapture) return format != RecordingFormat::kNone;
    Findings untold;
    Notes notes;
    const NotesScope scope(notes);
    CaptureSource capture(path, untold);
    RecordedPacket packet;
    return capture.Next(packet);
  } catch (const FileError&) {
    return false;
  }
}

CString FreeLogPath(const CString& recording, const CString& folder, const std::vector<CString>& taken) {
  const CString title = JoinPath(folder, TitleOf(recording));
  for (int number = 1;; ++number) {
    const CString path = number == 1 ? title + ".log" : title + ("_" + std::to_string(number) + ".log").c_str();
    if (!FileExists(path) && std::find(taken.begin(), taken.end(), path) == taken.end()) return path;
  }
}

CString TrackBeside(const CString& recording) {
  for (const char* const extension : {".gpx", ".GPX", ".nmea", ".NMEA"}) {
    const CString track = FolderOf(recording) + TitleOf(recording) + extension;
    if (FileExists(track) && !FolderExists(track)) return track;
  }
  return {};
}

LocalMoment LocalMomentFromText(const std::string& text) {
  const auto time_ns = TimeOfIsoText(text);
  constexpr std::size_t kPlainLength = 19;
  const bool has_offset =
      text.find_first_not_of("0123456789.", std::min(text.size(), kPlainLength)) != std::string::npos;
  if (!time_ns || has_offset) throw Error("'" + text + "' is no time such as '2024-05-17 09:30:00'");
  const CalendarDay day = DayFromText(text.substr(0, 10));
  return {day, *time_ns - MidnightSeconds(day) * kSecond_ns};
}

std::int32_t UtcOffsetFromText(const std::string& text) {
  const auto hours = text.size() == 6 ? ParseInt<int>(text.substr(1, 2)) : std::nullopt;
  const auto minutes = text.size() == 6 ? ParseInt<int>(text.substr(4)) : std::nullopt;
  const bool is_offset = hours && minutes && (text[0] == '+' || text[0] == '-') && text[3] == ':' && *hours >= 0 &&
                         *hours <= 14 && *minutes >= 0 && *minutes < 60;
  if (!is_offset) throw Error("'" + text + "' is no offset from UTC such as '+08:00'");
  const std::int32_t offset_s = *hours * 3600 + *minutes * 60;
  return text[0] == '-' ? -offset_s : offset_s;
}

}  // namespace loom
