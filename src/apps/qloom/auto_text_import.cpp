#include "apps/qloom/auto_text_import.h"

#include <unistd.h>

#include <filesystem>

#include "components/note_kinds.h"
#include "components/project.h"
#include "host/project/text_sources.h"
#include "platform/encoding.h"
#include "platform/file.h"
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

// Beside the project, under the title of the source; another number where the name belongs to another file.
CString ConvertedPath(Session& session, const CString& source) {
  StoredProject& project = session.host().project();
  if (project.IsTemporary()) {
    static const TemporaryFolder folder;
    return JoinPath(folder.Path(), TitleOf(source) + kExtension);
  }
  if (const auto known = FindConverted(project, source)) return known->converted;
  const CString folder = AbsoluteFolderOf(project.FilePath());
  for (int number = 1;; ++number) {
    const CString title = number == 1 ? TitleOf(source) : TitleOf(source) + "-" + CString(std::to_string(number));
    const CString path = JoinPath(folder, title + kExtension);
    if (!FileExists(path) && !FindTextSource(project, path)) return path;
  }
}

dialect::Converted Convert(const CString& source, const dialect::Findings& found,
                           const dialect::ElementMapping& mapping, const CString& converted) {
  dialect::Converted result = ConvertToImport(source, found, mapping, dialect::TimeForm::kSeconds, converted);
  NoteRemarks(found.remarks, source);
  NoteRemarks(result.remarks, source);
  return result;
}

Json MappingJson(const dialect::Findings& found, const dialect::ElementMapping& mapping) {
  Json elements = Json::array();
  for (const dialect::ElementColumn& one : mapping.columns) {
    Json json{{"column", one.column}, {"name", found.columns[one.column].name}, {"element", one.element}};
    if (one.factor != 1) json["factor"] = one.factor;
    elements.push_back(std::move(json));
  }
  return elements;
}

Json UnmappedJson(const dialect::Findings& found, const dialect::ElementMapping& mapping) {
  Json columns = Json::array();
  for (const std::size_t column : mapping.unmapped)
    columns.push_back({{"column", column}, {"name", found.columns[column].name}});
  return columns;
}

TextImportSettings SettingsFor(const CString& path, const dialect::Converted& converted, const dialect::Findings& found,
                               const AutoTextImport& how) {
  TextImportSettings settings;
  settings.path = path;
  settings.stream_name = Utf8ToGbk(how.stream_name);
  settings.stream_type_text = Utf8ToGbk(kStreamTypeTexts[how.stream_type]);
  settings.data_format = found.time && !found.time->has_date ? dialect::kClockLayout : kFreeForm;
  settings.separator = CString(std::string_view(converted.separator));
  settings.first_line_flag = 1;
  for (const auto& [column, element] : converted.elements) settings.columns[column] = element;
  return settings;
}

std::string SettingsText(const dialect::Findings& found, const AutoTextImport& how) {
  Json json{{"dialect", DialectJson(found)}, {"map", Json::object()}};
  json["dialect"].erase("footer_rows");
  for (const auto& [column, element] : how.elements) json["map"][std::to_string(column)] = element;
  return json.dump(-1, ' ', true);
}

void ApplyMapping(const Json& json, std::map<std::size_t, std::string>& elements) {
  for (const auto& [column, element] : json.items()) elements[std::stoul(column)] = element.get<std::string>();
}

void Refresh(Session& session, const CString& converted) {
  StoredProject& project = session.host().project();
  std::optional<TextSource> source = FindTextSource(project, converted);
  if (!source) return;
  if (!FileExists(source->source)) {
    CurrentNotes().Add("source of a converted text file is missing"_note, source->source, std::string_view("the file"),
                       "the rows are those of the last conversion");
    return;
  }
  if (FileExists(converted) && !HasChanged(*source)) return;
  const Json settings = Json::parse(source->settings);
  AutoTextImport how;
  how.overrides = OverridesFromJson(settings.at("dialect"));
  ApplyMapping(settings.at("map"), how.elements);
  const dialect::Findings found = dialect::Inspect(source->source, how.overrides);
  const dialect::ElementMapping mapping = MapElements(found, dialect::LoadElementRules(), how.elements);
  Convert(source->source, found, mapping, converted);
  TakeStamp(*source);
  PutTextSource(project, *source);
  CurrentNotes().Add("text file converted again"_note, source->source, std::string_view("the file"),
                     "it changed since it was converted");
}

}  // namespace

Json ImportTextAutomatically(Session& session, const CString& path, const AutoTextImport& how) {
  const dialect::Findings found = dialect::Inspect(path, how.overrides);
  const dialect::ElementMapping mapping = MapElements(found, dialect::LoadElementRules(), how.elements);
  const CString converted_path = ConvertedPath(session, path);
  const dialect::Converted converted = Convert(path, found, mapping, converted_path);
  const int result =
      session.manager().ImportTextAs(SettingsFor(converted_path, converted, found, how), CString(mapping.protocol));
  if (result == kImportDone && !session.host().project().IsTemporary()) {
    TextSource source{.converted = converted_path, .source = path, .settings = SettingsText(found, how)};
    TakeStamp(source);
    PutTextSource(session.host().project(), source);
  }
  return {{"result", result},
          {"path", GbkToUtf8(path)},
          {"converted", GbkToUtf8(converted_path)},
          {"rows", converted.rows},
          {"protocol", mapping.protocol},
          {"elements", MappingJson(found, mapping)},
          {"unmapped", UnmappedJson(found, mapping)},
          {"found", FindingsJson(found)},
          {"stream", nullptr}};
}

void RefreshConvertedText(Session& session, const CString& converted) {
  try {
    Refresh(session, converted);
  } catch (const std::exception& error) {
    CurrentNotes().Add("text file not converted again"_note, converted, std::string_view("the file"), error.what());
  }
}

void RestoreProtocol(Session& session, const CString& converted) {
  if (!FindTextSource(session.host().project(), converted)) return;
  const CProjectTxtFile* const record = g_project->GetProjectTxtFileByName(converted);
  ILogfile* const logfile = CStreamManagerCreator::CreateStreamManager()->FindLogfile(converted);
  if (record == nullptr || logfile == nullptr || record->GetStreams().empty()) return;
  for (IDataStream* stream : logfile->GetStreams())
    stream->SetProtocol(record->GetStreams().begin()->second.GetProtocol());
}

}  // namespace loom
