// Any bytes as a delimited text file: every line becomes a row, cut where the rule of the separator says.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "host/application.h"
#include "platform/characters.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/notes.h"
#include "platform/ui/front_end.h"
#include "text/import/text_importer.h"
#include "text/import/text_lines.h"

namespace {

using namespace loom;

class SilentFrontEnd final : public FrontEnd {
 public:
  void ShowDialog(CDialog&) override { std::abort(); }
  MessageAnswer ShowMessage(const MessageBoxRequest&) override { std::abort(); }
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest&) override { std::abort(); }
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest&) override { return nullptr; }
  void SetWaitCursor(bool) override {}
};

constexpr const char* kSeparators[] = {"\t", ",", ";", " ", ":", "|", "@", "\\", "", "ab"};

IECatalogue Catalogue() {
  return IECatalogue::Parse(
      "2\t1\tRecordTime\t\tfloat\n10\t1\tFlag\t\tbool\n11\t1\tText\t\ttext\n12\t1\tShort\t\tshort\n13\t1\tInt\t\tint\n"
      "2379\t1\tLongitude\t\tfloat\n2380\t1\tLatitude\t\tfloat\n",
      "ies", "", "events");
}

const ColumnMap kColumns{{0, "RecordTime"}, {1, "Flag"},     {2, "Text"}, {3, "Short"},  {4, "Int"},
                         {5, "Longitude"},  {6, "Latitude"}, {8, "Text"}, {9, "Unknown"}};

// With a navigator of three names, which is read anew for every import.
class Host {
 public:
  Host()
      : folder_(MakeFolder()),
        application_(Catalogue(), HostOptions{.config_folder = NativePathToGbk(folder_.native()),
                                              .project_path = {},
                                              .recent_logs_path = {}}) {
    SetFrontEnd(&front_end_);
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host() { std::filesystem::remove_all(folder_); }

 private:
  static std::filesystem::path MakeFolder() {
    const auto folder = std::filesystem::temp_directory_path() / ("qloom-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    WriteWholeFile(
        NativePathToGbk((folder / "Navigator.xml").native()),
        R"(<N><Independent><G type="NAVIGATORPARAMTYPE"><RecordTime type="NAVIGATORPARAMITEM"/></G></Independent>
                      <PROTOCOL value="GSM"><R type="NAVIGATORPARAMROOT"><Int type="NAVIGATORPARAMITEM"/></R></PROTOCOL></N>)");
    return folder;
  }

  std::filesystem::path folder_;
  HostApplication application_;
  SilentFrontEnd front_end_;
};

// The rule as it is told, without any shortcut.
std::vector<CString> CutSlowly(const CString& line, const CString& separator) {
  std::vector<CString> cells;
  for (int start = 0;;) {
    const int at = separator.IsEmpty() ? -1 : line.Find(separator, start);
    const bool is_last = at < 0 || at == line.GetLength() - separator.GetLength();
    cells.push_back(line.Mid(start, is_last ? -1 : at - start));
    if (is_last) return cells;
    start = at + separator.GetLength();
  }
}

std::int32_t CountLines(const CString& path, const LineSplitter& splitter) {
  std::int32_t count = 0;
  std::vector<std::string_view> cells;
  TextLines lines(path);
  for (std::string_view line; lines.Next(line); ++count) {
    if (line.find('\n') != std::string_view::npos) std::abort();
    splitter.Split(line, cells);
    const std::vector<CString> expected = CutSlowly(CString(line), splitter.separator());
    if (cells.size() != expected.size()) std::abort();
    for (std::size_t at = 0; at < cells.size(); ++at) {
      if (expected[at].view() != cells[at]) std::abort();
      CString trimmed = expected[at];
      if (trimmed.Trim().view() != Trimmed(cells[at])) std::abort();
    }
  }
  if (lines.Position() != lines.FileSize()) std::abort();
  return count;
}

}  // namespace

// The first two bytes choose separator, layout of the time and what the first line is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Host host;
  if (size < 2) return 0;
  Notes notes;
  const NotesScope scope(notes);
  const MemoryFile file(data + 2, size - 2);
  const CString separator = kSeparators[data[0] % std::size(kSeparators)];
  const bool has_titles = data[1] >= 128;
  CTextImporter importer;
  importer.SetSeparate(separator);
  importer.SetDataFormat(kTimeLayouts[data[1] % kTimeLayouts.size()].name);
  importer.SetHeadLineIsIgnore(has_titles ? 1 : 0);
  importer.SetColumnMapIE(kColumns);
  ILogfile* logfile = nullptr;
  if (importer.Import(file.Path(), &logfile) != kImportDone) std::abort();
  const std::int32_t lines = CountLines(file.Path(), LineSplitter(separator));
  if (logfile->GetRowTotal() != lines - (has_titles && lines > 0 ? 1 : 0)) std::abort();
  for (const auto& [number, row] : *logfile->GetStreams().front()->GetRows()) {
    if (row->GetParamID().size() != row->GetParamValue().size()) std::abort();
  }
  CStreamManagerCreator::CreateStreamManager()->DropLogfile(file.Path());
  return 0;
}
