#include <iomanip>
#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/dialect_options.h"
#include "apps/text_files/dialect_file.h"
#include "apps/text_files/dialect_json.h"
#include "apps/text_files/dialect_notes.h"
#include "apps/text_files/finding_words.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "text/dialect/converter.h"
#include "text/dialect/finder.h"

namespace loom {
namespace {

struct TextCommandOptions {
  std::string file;
  std::vector<std::string> files;
  DialectOptions dialect;
  std::string save_dialect;
  std::string out;
  std::string to = "csv";
};

void PrintFindings(const CString& path, const dialect::Findings& found) {
  std::cout << GbkToUtf8(path) << ":\n";
  for (const FindingSentence& sentence : FindingSentences(found, WordsLanguage::kEnglish))
    std::cout << (sentence.is_doubt ? "! " : "  ") << sentence.text << '\n';
  for (std::size_t at = 0; at < found.columns.size(); ++at) {
    const dialect::ColumnFinding& column = found.columns[at];
    std::cout << "  " << std::setw(3) << at << "  " << dialect::KindName(column.kind) << "  " << column.name
              << (column.unit.empty() ? "" : " [" + column.unit + "]");
    if (column.empty > 0) std::cout << ", " << column.empty << " empty";
    if (column.bad > 0) std::cout << ", " << column.bad << " not understood";
    std::cout << '\n';
  }
  for (const auto& row : found.first_rows) {
    std::cout << "    ";
    for (std::size_t at = 0; at < row.size(); ++at) std::cout << (at > 0 ? " | " : "") << row[at];
    std::cout << '\n';
  }
}

int RunInspect(const CommandLine& line, const TextCommandOptions& options) {
  const dialect::Overrides overrides = OverridesFrom(options.dialect);
  Json documents = Json::array();
  Notes all_notes;
  for (const CString& path : TextFilesOf(options.files)) {
    const dialect::Findings found = dialect::Inspect(path, overrides);
    Notes notes;
    const NotesScope scope(notes);
    NoteRemarks(found.remarks, path);
    if (!options.save_dialect.empty()) WriteDialectFile(AbsolutePath(options.save_dialect), found);
    if (line.common.json) {
      Json json = FindingsJson(found);
      json["path"] = GbkToUtf8(path);
      json["notes"] = NotesJson(notes);
      documents.push_back(std::move(json));
    } else {
      PrintFindings(path, found);
      std::cout << std::flush;
      PrintNotes(notes);
    }
  }
  if (line.common.json)
    std::cout << (documents.size() == 1 ? documents[0] : documents).dump(2, ' ', false, Json::error_handler_t::replace)
              << '\n';
  return kExitDone;
}

int RunConvert(const CommandLine& line, const TextCommandOptions& options) {
  const CString path = ExistingPath(options.file);
  const CString out = AbsolutePath(options.out);
  if (IsSameFile(path, out)) throw Error(options.out + ": is the file that is converted");
  const dialect::Findings found = dialect::Inspect(path, OverridesFrom(options.dialect));
  Session session(line.common, {}, path);
  dialect::Converted converted;
  if (options.to == "csv") {
    converted = ConvertToCsv(path, found, out);
  } else {
    const auto mapping = MapElements(found, dialect::LoadElementRules(), {});
    converted = ConvertToImport(path, found, mapping, dialect::TimeForm::kLayout, out);
  }
  NoteRemarks(found.remarks, path);
  NoteRemarks(converted.remarks, path);
  if (!line.common.json) {
    std::cout << options.out << ": " << converted.rows << " rows\n";
    if (options.to == "import")
      std::cout << "  separator " << SeparatorWords(converted.separator, WordsLanguage::kEnglish) << ", time layout "
                << (found.time && !found.time->has_date ? dialect::kClockLayout : dialect::kImportTimeLayout) << '\n';
  }
  Json document{{"result", 1}, {"out", GbkToUtf8(out)}, {"rows", converted.rows}, {"found", FindingsJson(found)}};
  if (options.to == "import") document["separator"] = converted.separator;
  return session.Finish(std::move(document), kExitDone);
}

}  // namespace

void AddTextCommands(Command& program, CommandLine& line) {
  Command text = program.AddGroup("text", "Text files of other tools");
  const auto options = std::make_shared<TextCommandOptions>();
  Command inspect = text.AddCommand("inspect", "Tell how text files are written");
  inspect.AddOption("FILE", options->files, "Text files, or folders of them").Required();
  AddDialectOptions(inspect, options->dialect);
  inspect.AddOption("--save-dialect", options->save_dialect, "Save what was found to this JSON file");
  inspect.Runs([&line, options] { return RunInspect(line, *options); });
  Command convert = text.AddCommand("convert", "Write a text file anew, as plain CSV or as the text import takes it");
  convert.AddOption("FILE", options->file, "Text file").Required();
  convert.AddOption("OUT", options->out, "File to write").Required();
  convert.AddOption("--to", options->to, "csv (default) or import").OneOf(std::vector<std::string>{"csv", "import"});
  AddDialectOptions(convert, options->dialect);
  convert.Runs([&line, options] { return RunConvert(line, *options); });
}

}  // namespace loom
