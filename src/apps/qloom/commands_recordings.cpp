#include <iostream>
#include <memory>

#include "apps/qloom/commands.h"
#include "apps/qloom/recording_report.h"
#include "host/recordings/make_log.h"
#include "platform/encoding.h"

namespace loom {
namespace {

struct FromModemOptions {
  std::vector<std::string> files;
  std::string out;
  std::optional<std::string> track;
  std::optional<std::string> utc_offset;
  std::optional<std::string> start;
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<std::int32_t> radio;
};

// What `parse` objects to, for the command line's parser.
template <class Parse>
std::function<std::string(const std::string&)> ObjectionOf(Parse parse) {
  return [parse](const std::string& text) -> std::string {
    try {
      parse(text);
      return {};
    } catch (const Error& error) {
      return error.what();
    }
  };
}

template <class Value>
std::optional<Value> Parsed(const std::optional<std::string>& text, Value (*parse)(const std::string&)) {
  return text ? std::optional(parse(*text)) : std::nullopt;
}

RecordingOptions OptionsFrom(const FromModemOptions& options) {
  RecordingOptions recordings;
  for (const std::string& file : options.files) recordings.files.push_back(AbsolutePath(file));
  recordings.out = AbsolutePath(options.out);
  if (options.track) recordings.track = AbsolutePath(*options.track);
  recordings.utc_offset_s = Parsed(options.utc_offset, UtcOffsetFromText);
  recordings.start = Parsed(options.start, LocalMomentFromText);
  recordings.from = Parsed(options.from, LocalMomentFromText);
  recordings.to = Parsed(options.to, LocalMomentFromText);
  recordings.radio = options.radio;
  return recordings;
}

int RunFromModem(const CommonOptions& common, const FromModemOptions& options) {
  Notes notes;
  const NotesScope scope(notes);
  const RecordingReport report = MakeLogFromRecordings(OptionsFrom(options));
  if (common.json) {
    Json document = RecordingReportJson(report);
    document["out"] = options.out;
    document["messages"] = Json::array();
    document["notes"] = NotesJson(notes);
    std::cout << document.dump(2) << '\n';
  } else {
    PrintRecordingReport(std::cout, report, options.out);
    PrintNotes(notes);
  }
  return ExitCodeOf(report);
}

}  // namespace

void AddRecordingCommands(Command& program, CommandLine& line) {
  const auto options = std::make_shared<FromModemOptions>();
  Command log = program.Group("log");
  Command command =
      log.AddCommand("from-modem", "Write a log from recordings of handsets: DIAG logs and GSMTAP captures");
  const auto is_moment = ObjectionOf(LocalMomentFromText);
  command.AddOption("FILE", options->files, "Recordings (*.qmdl, *.mi2log, *.dlf, *.pcap, *.pcapng), merged by time")
      .Required();
  command.AddOption("--out", options->out, "Log file to write").Required();
  command.AddOption("--track", options->track, "Where the handset was: GPX or NMEA");
  command.AddOption("--utc-offset", options->utc_offset, "Of local time, such as +08:00 (default: that of TZ)")
      .Check(ObjectionOf(UtcOffsetFromText), "+hh:mm");
  command.AddOption("--start", options->start, "When recordings began that never know the time")
      .Check(is_moment, "TIME");
  command.AddOption("--from", options->from, "Only records from here on, 'yyyy-mm-dd hh:mm:ss'")
      .Check(is_moment, "TIME");
  command.AddOption("--to", options->to, "Only records up to here, its second included").Check(is_moment, "TIME");
  command.AddOption("--radio", options->radio, "Only this SIM").Between(1, 8);
  command.Runs([&line, options] { return RunFromModem(line.common, *options); });
}

}  // namespace loom
