#include "apps/text_files/text_file_import.h"

#include <unistd.h>

#include <filesystem>

#include "apps/text_files/dialect_json.h"
#include "apps/text_files/dialect_notes.h"
#include "components/note_kinds.h"
#include "components/project.h"
#include "components/stream_manager.h"
#include "host/project/text_sources.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/notes.h"
#include "platform/path.h"
#include "text/dialect/converter.h"
#include "text/dialect/finder.h"
#include "text/import/text_import_settings.h"

namespace loom {
namespace {

constexpr const char* kExtension = ".imp";
constexpr const char* kFreeForm = "seconds since 1970";  // no layout: the importer reads a number

// A folder of this run that is gone with it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qloom-text-XXXXXX").native();
    if (mkdtemp(pattern.data()) == nullptr) throw Error(pattern + ": the temporary folder cannot be made");
    path_ = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  CString Path() const { return NativePathToGbk(path_.native()); }

 private:
  std::filesystem::path path_;
};

CString FolderOfThisRun() {
  static const TemporaryFolder folder;
  return folder.Path();
}

// Beside the project, under the title of the source; another number where the name belongs to another file.
CString ConvertedPath(StoredProject& project, const CString& source) {
  if (const auto known = FindConverted(project, source)) return known->converted;
  const CString folder = project.IsTemporary() ? FolderOfThisRun() : AbsoluteFolderOf(project.FilePath());
  for (int number = 1;; ++number) {
    const CString title = number == 1 ? TitleOf(source) : TitleOf(source) + "-" + CString(std::to_string(number));
    const CString path = JoinPath(folder, title + kExtension);
    if (!FileExists(path) && !FindTextSource(project, path)) return path;
  }
}

dialect::Converted Convert(const InspectedTextFile& file, const CString& converted) {
  dialect::Converted result =
      ConvertToImport(file.path, file.found, file.mapping, dialect::TimeForm::kSeconds, converted);
  NoteRemarks(file.found.remarks, file.path);
  NoteRemarks(result.remarks, file.path);
  return result;
}

TextImportSettings SettingsFor(const CString& path, const dialect::Converted& converted,
                               const InspectedTextFile& file) {
  const std::optional<dialect::TimeFinding>& time = file.found.time;
  TextImportSettings settings;
  settings.path = path;
  settings.stream_name = Utf8ToGbk(file.wishes.stream_name);
  settings.stream_type = file.wishes.stream_type;
  settings.time_layout = time && !time->has_date ? dialect::kClockLayout : kFreeForm;
  settings.separator = CString(std::string_view(converted.separator));
  settings.has_header_line = 1;
  for (const auto& [column, element] : converted.elements) settings.columns[column] = element;
  return settings;
}

// How a file was converted, as the project keeps it. A footer may have another length when the file has changed.
std::string SettingsText(const InspectedTextFile& file) {
  Json json{{"dialect", DialectJson(file.found)}, {"map", Json::object()}};
  json["dialect"].erase("footer_rows");
  if (!file.wishes.overrides.quote && file.found.form.quote == 0) json["dialect"].erase("quote");
  for (const auto& [column, element] : file.wishes.elements) json["map"][std::to_string(column)] = element;
  return json.dump(-1, ' ', true);
}

TextFileWishes WishesFrom(const std::string& settings) {
  const Json json = Json::parse(settings);
  TextFileWishes wishes;
  wishes.overrides = OverridesFromJson(json.at("dialect"));
  for (const auto& [column, element] : json.at("map").items())
    wishes.elements[std::stoul(column)] = element.get<std::string>();
  return wishes;
}

void Refresh(StoredProject& project, const CString& converted) {
  std::optional<TextSource> source = FindTextSource(project, converted);
  if (!source) return;
  if (!FileExists(source->source)) {
    CurrentNotes().Add("source of a converted text file is missing"_note, source->source, std::string_view("the file"),
                       "the rows are those of the last conversion");
    return;
  }
  if (FileExists(converted) && !HasChanged(*source)) return;
  Convert(InspectTextFile(source->source, WishesFrom(source->settings)), converted);
  TakeStamp(*source);
  PutTextSource(project, *source);
  CurrentNotes().Add("text file converted again"_note, source->source, std::string_view("the file"),
                     "it changed since it was converted");
}

}  // namespace

InspectedTextFile InspectTextFile(const CString& path, const TextFileWishes& wishes) {
  InspectedTextFile file{
      .path = path, .wishes = wishes, .found = dialect::Inspect(path, wishes.overrides), .mapping = {}};
  file.mapping = MapElements(file.found, dialect::LoadElementRules(), wishes.elements);
  return file;
}

ImportedTextFile ImportTextFile(StoredProject& project, CIOManager& manager, const InspectedTextFile& file) {
  ImportedTextFile imported;
  imported.converted = ConvertedPath(project, file.path);
  const dialect::Converted converted = Convert(file, imported.converted);
  imported.rows = converted.rows;
  imported.result =
      manager.ImportTextAs(SettingsFor(imported.converted, converted, file), CString(file.mapping.protocol));
  if (imported.result == kImportDone && !project.IsTemporary()) {
    TextSource source{.converted = imported.converted, .source = file.path, .settings = SettingsText(file)};
    TakeStamp(source);
    PutTextSource(project, source);
  }
  return imported;
}

void RefreshConvertedText(StoredProject& project, const CString& converted) {
  try {
    Refresh(project, converted);
  } catch (const std::exception& error) {
    CurrentNotes().Add("text file not converted again"_note, converted, std::string_view("the file"), error.what());
  }
}

void RestoreProtocol(StoredProject& project, const CString& converted) {
  if (!FindTextSource(project, converted)) return;
  const CProjectTxtFile* const record = g_project->GetProjectTxtFileByName(converted);
  ILogfile* const logfile = CStreamManagerCreator::CreateStreamManager()->FindLogfile(converted);
  if (record == nullptr || logfile == nullptr || record->GetStreams().empty()) return;
  for (IDataStream* stream : logfile->GetStreams())
    stream->SetProtocol(record->GetStreams().begin()->second.GetProtocol());
}

}  // namespace loom
