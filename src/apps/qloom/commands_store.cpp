#include <iostream>
#include <map>
#include <memory_resource>

#include "apps/qloom/commands.h"
#include "components/dt_time.h"
#include "components/log_store.h"
#include "host/logstore/log_json.h"
#include "host/logstore/log_reader.h"
#include "host/simulation/simulator.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/path.h"
#include "platform/time_units.h"

namespace loom {
namespace {

// Runs work that needs no project and reports its notes.
int RunWithNotes(const CommonOptions& common, const std::function<Json()>& work) {
  Notes notes;
  const NotesScope scope(notes);
  Json document = work();
  if (common.json && !document.is_null()) {
    document["notes"] = NotesJson(notes);
    std::cout << document.dump(2) << '\n';
  } else {
    PrintNotes(notes);
  }
  return kExitDone;
}

// Records of a log by kind.
std::map<std::int32_t, std::uint64_t> CountByKind(const CString& path) {
  CLogFileManager store;
  const PathParts parts = SplitPath(path);
  std::map<std::int32_t, std::uint64_t> counts;
  if (store.OpenFile(parts.folder, parts.name, 0) == 0) return counts;
  for (bool more = true; more;) {
    StopIfInterrupted();
    std::pmr::monotonic_buffer_resource arena;
    CTestdataBase record(false, 0);
    record.arena = &arena;
    more = store.ReadFile(record) != 0;
    if (more) ++counts[record.kind];
  }
  store.CloseReadingFile();
  return counts;
}

Json LogInfo(const CString& path, bool json) {
  const LogReader reader(path);
  const LogHeader& header = reader.header();
  const std::optional<LogTimes> times = reader.ReadTimes();
  const auto counts = CountByKind(path);
  std::uint64_t total = 0;
  Json by_kind = Json::object();
  for (const auto& [kind, count] : counts) {
    by_kind[std::to_string(kind)] = count;
    total += count;
  }
  const std::int64_t midnight_ns = MidnightSeconds(header.day) * kSecond_ns;
  const auto time_of = [&](std::int64_t ns) {
    return CDTTime(header.day.year, header.day.month, header.day.day, static_cast<double>(ns - midnight_ns) / 1e9);
  };
  if (json) {
    return {{"path", JsonText(path)},
            {"kind", LogKindName(header.kind)},
            {"version", header.version},
            {"test_type", header.test_type},
            {"date", DayText(header.day)},
            {"start", times ? Json(time_of(times->start_ns).GetDblSecond()) : Json()},
            {"end", times ? Json(time_of(times->end_ns).GetDblSecond()) : Json()},
            {"records", total},
            {"by_kind", by_kind}};
  }
  std::cout << GbkPathToNative(path) << ": " << LogKindName(header.kind) << " log, version " << header.version
            << ", test type " << header.test_type << ", " << DayText(header.day) << '\n';
  if (times) {
    std::cout << "  " << GbkToUtf8(time_of(times->start_ns).ToString(127)) << " to "
              << GbkToUtf8(time_of(times->end_ns).ToString(127)) << '\n';
  }
  std::cout << "  " << total << " records\n";
  for (const auto& [kind, count] : counts) std::cout << "    kind " << kind << ": " << count << '\n';
  return {};
}

struct StoreOptions {
  std::string in;
  std::string out;
  std::string handsets = "td";
  std::string date;
  std::string cells;
  std::int32_t version = 0;
  SimulationOptions simulation;
};

using StoreWork = std::function<Json(const CommonOptions&, const StoreOptions&)>;

Command AddStoreCommand(Command& log, CommandLine& line, const std::shared_ptr<StoreOptions>& options, const char* name,
                        const char* description, StoreWork work) {
  Command command = log.AddCommand(name, description);
  command.Runs(
      [&line, options, work] { return RunWithNotes(line.common, [&] { return work(line.common, *options); }); });
  return command;
}

// Cells of a simulated drive, one file per table: PREFIX.tbl_Cell.jsonl and so on.
void WriteCells(const std::string& prefix, const std::vector<SimulatedCellRow>& cells) {
  std::map<std::string, std::string> files;
  for (const SimulatedCellRow& cell : cells) files[std::string(cell.table)] += cell.json + '\n';
  for (const auto& [table, lines] : files) {
    WriteWholeFile(NamedPath(prefix + "." + table + ".jsonl"), lines);
  }
}

Json Simulate(const CommonOptions& common, const StoreOptions& options) {
  SimulationOptions simulation = options.simulation;
  simulation.handsets = HandsetsFromText(options.handsets);
  if (simulation.indoor) simulation.header.test_type = 2;
  if (!options.date.empty()) simulation.header.day = DayFromText(options.date);
  if (options.version != 0) simulation.header.version = options.version;
  const SimulationResult drive = SimulateLog(NamedPath(options.out), simulation);
  if (!options.cells.empty()) WriteCells(options.cells, drive.cells);
  if (!common.json) std::cout << options.out << ": " << drive.records << " records\n";
  return {{"out", JsonName(options.out)}, {"records", drive.records}, {"cells", drive.cells.size()}};
}

}  // namespace

void AddStoreCommands(Command& program, CommandLine& line) {
  Command log = program.AddGroup("log", "Log files as such");
  const auto make_options = [] { return std::make_shared<StoreOptions>(); };

  auto options = make_options();
  AddStoreCommand(
      log, line, options, "info", "Kind, version, day, times and records of a log",
      [](const CommonOptions& common, const StoreOptions& store) { return LogInfo(NamedPath(store.in), common.json); })
      .AddOption("LOG", options->in, "Log file")
      .Required();

  options = make_options();
  Command make = AddStoreCommand(log, line, options, "make", "Write a log from JSON lines",
                                 [](const CommonOptions&, const StoreOptions& store) -> Json {
                                   MakeLog(NamedPath(store.in), NamedPath(store.out));
                                   return {{"out", JsonName(store.out)}};
                                 });
  make.AddOption("RECORDS", options->in, "Header line, then one record per line").Required();
  make.AddOption("OUT", options->out, "Log file to write").Required();

  options = make_options();
  AddStoreCommand(log, line, options, "dump", "Print a log as the JSON lines that make it",
                  [](const CommonOptions&, const StoreOptions& store) -> Json {
                    DumpLog(NamedPath(store.in), std::cout);
                    return {};
                  })
      .AddOption("LOG", options->in, "Log file")
      .Required();

  options = make_options();
  Command simulate = AddStoreCommand(log, line, options, "simulate", "Write the log of a simulated drive", Simulate);
  SimulationOptions& simulation = options->simulation;
  simulate.AddOption("OUT", options->out, "Log file to write").Required();
  simulate.AddOption("--minutes", simulation.minutes, "Length of the drive").Required().Positive();
  simulate.AddOption("--handsets", options->handsets, "Networks of the handsets, such as td,gsm,lte (default td)");
  simulate.AddFlag("--scanner", simulation.scanner, "With a scanner");
  simulate.AddFlag("--indoor", simulation.indoor, "Walked through a building");
  simulate.AddOption("--interval", simulation.interval_s, "Seconds between two records of a handset (default 0.5)")
      .Positive();
  simulate.AddOption("--seed", simulation.seed, "Another drive for another number");
  simulate.AddOption("--date", options->date, "Calendar day, yyyy-mm-dd");
  simulate.AddOption("--log-version", options->version, "Log version; 600 is a merged log over two days");
  simulate.AddOption("--cells", options->cells, "Also write the cells, as FILE.TABLE.jsonl for `qloom net put`");
}

}  // namespace loom
