#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/mixed_sources.h"
#include "apps/report/report.h"
#include "components/project.h"
#include "platform/encoding.h"

namespace loom {
namespace {

struct ReportCommand {
  ImportOptions source;
  std::vector<std::string> streams;
  std::vector<std::string> elements;
  std::string classes;
  std::string title;
  std::string tiles;
  std::string out;
  std::int32_t max_points = 200'000;
  analysis::BinSizes bins;
};

std::vector<std::int32_t> IdsOf(const std::vector<std::string>& names) {
  std::vector<std::int32_t> ids;
  for (const std::string& name : names) {
    const std::int32_t id = g_sysProject->GetIEID(Utf8ToGbk(name));
    if (id < 0) throw Error("--ie: the catalogue has no information element \"" + name + "\"");
    ids.push_back(id);
  }
  return ids;
}

ReportOptions OptionsFrom(const ReportCommand& command) {
  ReportOptions options;
  options.title = command.title;
  if (!command.classes.empty()) options.classes_file = ExistingPath(command.classes);
  options.elements = IdsOf(command.elements);
  options.tiles = command.tiles;
  options.max_points = static_cast<std::size_t>(command.max_points);
  options.bins = command.bins;
  options.program = "qloom " QLOOM_VERSION;
  return options;
}

// Those that were named, or all that have rows of their own. Empty when one is not there, which was said.
std::vector<IDataStream*> ChosenStreams(const LogReport& report, const std::vector<std::string>& names) {
  if (names.empty()) return ReportedStreams(report.Streams());
  std::vector<IDataStream*> streams;
  for (const std::string& name : names) {
    IDataStream* const stream = FindStreamOrList(report, name);
    if (stream == nullptr) return {};
    streams.push_back(stream);
  }
  return streams;
}

int RunReport(const CommandLine& line, const ReportCommand& command) {
  if (!CanWriteReports()) throw Error("this program was built without Leaflet and dygraphs: there are no reports");
  MixedSources sources(command.source, line.common.project);
  Session session(line.common, sources.Answers(), sources.Files().front());
  const ReportOptions options = OptionsFrom(command);
  LogReport report(session);
  const int exit_code = sources.Import(session, report);
  Json document{{"result", 0}, {"out", nullptr}};
  if (exit_code != kExitDone && exit_code != kExitInPart) return session.Finish(std::move(document), exit_code);
  const CString out = AbsolutePath(command.out);
  const std::vector<IDataStream*> streams = ChosenStreams(report, command.streams);
  if (streams.empty() || !session.front_end().MayReplace(out)) return session.Finish(std::move(document), kExitFailed);
  const ReportSummary summary = WriteReport(
      session.host(), {.streams = streams, .files = sources.Files(), .notes = &session.notes()}, options, out);
  document = {{"result", 1},          {"out", JsonText(out)},     {"streams", streams.size()},
              {"rows", summary.rows}, {"points", summary.points}, {"bytes", summary.bytes}};
  if (!line.common.json) {
    std::cout << command.out << ": " << summary.rows << " rows of " << streams.size() << " streams, " << summary.points
              << " points, " << summary.bytes << " bytes\n";
  }
  return session.Finish(std::move(document), exit_code);
}

}  // namespace

void AddReportCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<ReportCommand>();
  Command command = program.AddCommand("report", "Import files and write one page with map, charts, figures and lists");
  command.AddOption("SOURCE", options->source.logs, "Logs, recordings, intermediate files and text files").Required();
  AddNodeOption(command, options->source);
  AddHandsetOptions(command, options->source);
  command.AddOption("--stream", options->streams, "Names of streams (default: all)");
  command.AddOption("--ie", options->elements, "Information elements; the first one colours the route");
  command.AddOption("--classes", options->classes, "Classes and colours of elements, as config/classes.tsv");
  command.AddOption("--title", options->title, "Heading of the page");
  command
      .AddOption("--tiles", options->tiles,
                 "Map tiles, as https://tiles.example/{z}/{x}/{y}.png; none are loaded otherwise")
      .Check(TilesObjection);
  command.AddOption("--max-points", options->max_points, "Most rows of a stream that are drawn (default 200000)")
      .Positive();
  command.AddOption("--bin-seconds", options->bins.time_s, "Stretches of figures by time (default 1)").Positive();
  command.AddOption("--bin-metres", options->bins.distance_m, "Stretches of figures by distance (default 10)")
      .Positive();
  command.AddOption("--bin-grid", options->bins.grid_m, "Metres of a square of figures by grid (default 50)")
      .Positive();
  command.AddOption("--out", options->out, "Page to write (.html)").Required();
  command.Runs([&line, options] { return RunReport(line, *options); });
}

}  // namespace loom
