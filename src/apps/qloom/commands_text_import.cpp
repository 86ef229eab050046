#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/dialect_options.h"
#include "apps/qloom/log_report.h"
#include "apps/qloom/text_import_wizard.h"
#include "apps/text_files/dialect_json.h"
#include "apps/text_files/text_file_import.h"
#include "components/note_kinds.h"
#include "platform/encoding.h"

namespace loom {
namespace {

struct TextOptions {
  std::vector<std::string> files;
  bool is_auto = false;
  DialectOptions dialect;
  TextImportOptions wizard;
};

int Finish(Session& session, const LogReport& report, int result, const CString& path) {
  if (!session.options().json) report.PrintHuman(std::cout);
  Json document{{"result", result}, {"path", JsonText(path)}, {"stream", nullptr}};
  if (IDataStream* const stream = report.TextStream(path)) document["stream"] = StreamJson(*stream);
  return session.Finish(std::move(document), report.ExitCodeOf(result));
}

void PrintAutoImport(const Json& texts) {
  for (const Json& text : texts) {
    std::cout << text["path"].get<std::string>() << ": "
              << (text["result"] == kImportDone ? "imported" : "not imported");
    if (text["stream"].is_null()) {
      std::cout << '\n';
      continue;
    }
    std::cout << ", " << text["rows"] << " rows, stream " << text["stream"]["name"].get<std::string>() << ", "
              << text["stream"]["protocol"].get<std::string>() << '\n';
    for (const Json& element : text["elements"])
      std::cout << "  " << element["name"].get<std::string>() << " -> " << element["element"].get<std::string>()
                << '\n';
    if (text["unmapped"].empty()) continue;
    std::cout << "  without an element (--map COLUMN=NAME adds them):";
    for (const Json& column : text["unmapped"])
      std::cout << ' ' << column["column"] << ' ' << column["name"].get<std::string>() << ';';
    std::cout << '\n';
  }
}

Json MappingJson(const InspectedTextFile& file) {
  Json elements = Json::array();
  for (const dialect::ElementColumn& one : file.mapping.columns) {
    Json json{{"column", one.column}, {"name", file.found.columns[one.column].name}, {"element", one.element}};
    if (one.factor != 1) json["factor"] = one.factor;
    elements.push_back(std::move(json));
  }
  return elements;
}

Json UnmappedJson(const InspectedTextFile& file) {
  Json columns = Json::array();
  for (const std::size_t column : file.mapping.unmapped)
    columns.push_back({{"column", column}, {"name", file.found.columns[column].name}});
  return columns;
}

Json ImportAutomatically(Session& session, const LogReport& report, const CString& path, const TextFileWishes& wishes) {
  const InspectedTextFile file = InspectTextFile(path, wishes);
  const ImportedTextFile imported = ImportTextFile(session.host().project(), session.manager(), file);
  IDataStream* const stream = report.TextStream(imported.converted);
  return {{"result", imported.result},
          {"path", GbkToUtf8(path)},
          {"converted", GbkToUtf8(imported.converted)},
          {"rows", imported.rows},
          {"protocol", file.mapping.protocol},
          {"elements", MappingJson(file)},
          {"unmapped", UnmappedJson(file)},
          {"found", FindingsJson(file.found)},
          {"stream", stream != nullptr ? StreamJson(*stream) : Json()}};
}

TextFileWishes WishesFrom(const TextOptions& options) {
  DialectOptions given = options.dialect;
  if (!options.wizard.separator.empty()) given.separator = options.wizard.separator;
  if (options.wizard.no_header) given.header = 0;
  TextFileWishes wishes{.overrides = OverridesFrom(given), .elements = {}};
  for (const auto& [column, element] : options.wizard.Columns())
    wishes.elements[static_cast<std::size_t>(column)] = element;
  if (!options.wizard.stream_name.empty()) wishes.stream_name = options.wizard.stream_name;
  wishes.stream_type = options.wizard.StreamType();
  return wishes;
}

int RunAutoImport(const CommandLine& line, const TextOptions& options) {
  const std::vector<CString> files = TextFilesOf(options.files);
  const TextFileWishes wishes = WishesFrom(options);
  Session session(line.common, {}, files[0]);
  const LogReport report(session);
  Json texts = Json::array();
  for (const CString& path : files) {
    if (WasInterrupted()) break;
    try {
      texts.push_back(ImportAutomatically(session, report, path, wishes));
    } catch (const Error& error) {
      if (files.size() == 1) throw;
      CurrentNotes().Add("text file not imported"_note, path, std::string_view("the file"), error.what());
      texts.push_back({{"result", kImportFailed}, {"path", JsonText(path)}, {"stream", nullptr}});
    }
  }
  if (!line.common.json) PrintAutoImport(texts);
  if (files.size() == 1 && !texts.empty()) {
    const int result = texts[0]["result"].get<int>();
    return session.Finish(std::move(texts[0]), report.ExitCodeOf(result));
  }
  const int result = BatchResultOf(texts);
  return session.Finish({{"result", result}, {"texts", std::move(texts)}}, report.ExitCodeOf(result));
}

int RunImportText(const CommandLine& line, const TextOptions& options) {
  if (options.is_auto) return RunAutoImport(line, options);
  const CString path = ExistingPath(options.files[0]);
  Session session(line.common, BatchAnswers().Fill(TextImportPages(options.wizard, path)), path);
  const LogReport report(session);
  const int result = session.manager().ImportTxt();
  return Finish(session, report, result, path);
}

int RunOpenText(const CommandLine& line, const TextOptions& options) {
  const CString path = AbsolutePath(options.files[0]);
  BatchAnswers answers;
  if (options.wizard.IsAnyGiven()) answers.Fill(TextImportPages(options.wizard, path));
  Session session(line.common, std::move(answers), path);
  const LogReport report(session);
  const int result = session.manager().OpenTxt(path);
  return Finish(session, report, result, path);
}

void CheckAuto(const TextOptions& options) {
  if (!options.is_auto && options.files.size() > 1) throw UsageError("FILE", "several files need --auto");
  if (options.is_auto && !(options.wizard.config + options.wizard.time_format + options.wizard.save_config).empty())
    throw UsageError("--auto", "--imcf, --time-format and --save-imcf belong to the wizard");
  if (!options.is_auto && options.dialect.IsAnyGiven())
    throw UsageError("--auto", "options of the dialect need --auto");
}

}  // namespace

void AddTextImportCommands(Command& program, CommandLine& line) {
  const auto add = [&](const char* name, const char* description, int (*run)(const CommandLine&, const TextOptions&)) {
    const auto options = std::make_shared<TextOptions>();
    Command command = program.AddCommand(name, description);
    const bool may_be_auto = run == &RunImportText;
    Option files = command.AddOption("FILE", options->files,
                                     may_be_auto ? "Text file; with --auto files and folders" : "Text file");
    files.Required();
    if (!may_be_auto) files.Takes(1);
    AddTextImportOptions(command, options->wizard);
    if (may_be_auto) {
      command.AddFlag("--auto", options->is_auto, "Find out how the files are written, convert and import them");
      AddDialectOptions(command, options->dialect, true);
    }
    command.Runs([&line, options, run] { return run(line, *options); }, [options] { CheckAuto(*options); });
  };
  add("import-text", "Import a delimited text file as a stream", &RunImportText);
  add("open-text", "Import a text file of the project again; the options are for a file that changed", &RunOpenText);
}

}  // namespace loom
