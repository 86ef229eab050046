#include "host/workbook/xlsx_parts_reader.h"

#include <cstring>
#include <map>
#include <set>

#include "host/workbook/cell_date_reader.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::size_t kMostSheets = 10'000;
constexpr std::size_t kMostRelations = 100'000;
constexpr std::size_t kTextBlock_bytes = 256 * 1024;

struct PackagePart {
  std::string type;  // its last word: "worksheet", "sharedStrings" ...
  std::string part;
};
using PartsById = std::map<std::string, PackagePart, std::less<>>;

std::string FolderOfPart(std::string_view part) {
  const std::size_t slash = part.rfind('/');
  return slash == std::string_view::npos ? std::string() : std::string(part.substr(0, slash + 1));
}

// The part that a relationship of a part in `folder` points at.
std::string ResolvedPart(const std::string& folder, std::string_view target) {
  std::string path = target.starts_with('/') || target.starts_with('\\') ? std::string() : folder;
  path += target;
  std::vector<std::string> steps;
  for (std::size_t at = 0; at <= path.size();) {
    const std::size_t end = std::min(path.find_first_of("/\\", at), path.size());
    const std::string step = path.substr(at, end - at);
    if (step == "..") {
      if (!steps.empty()) steps.pop_back();
    } else if (!step.empty() && step != ".") {
      steps.push_back(step);
    }
    at = end + 1;
  }
  std::string part;
  for (const std::string& step : steps) part += (part.empty() ? "" : "/") + step;
  return part;
}

class RelationsHandler final : public XmlPartHandler {
 public:
  RelationsHandler(const ZipReader& archive, std::string folder) : archive_(archive), folder_(std::move(folder)) {}
  void OnStart(std::string_view name, const XmlAttributes& attributes, int) override {
    if (name != "Relationship" || attributes.Get("TargetMode") == "External") return;
    if (relations.size() == kMostRelations) throw FileError(archive_.path(), 0, "has too many relationships");
    const std::string_view type = attributes.Get("Type");
    relations.try_emplace(
        std::string(attributes.Get("Id")),
        PackagePart{std::string(type.substr(type.rfind('/') + 1)), ResolvedPart(folder_, attributes.Get("Target"))});
  }
  PartsById relations;

 private:
  const ZipReader& archive_;
  std::string folder_;
};

PartsById ReadRelations(const ZipReader& archive, const std::string& part) {
  const std::string folder = FolderOfPart(part);
  const std::string relations_part = folder + "_rels/" + part.substr(folder.size()) + ".rels";
  RelationsHandler handler(archive, folder);
  if (!archive.Has(relations_part)) return {};
  XmlPartReader(archive.Open(relations_part), handler).ReadAll();
  return std::move(handler.relations);
}

const PackagePart* FindByType(const PartsById& relations, std::string_view type) {
  for (const auto& [id, relation] : relations) {
    if (relation.type == type) return &relation;
  }
  return nullptr;
}

class WorkbookHandler final : public XmlPartHandler {
 public:
  WorkbookHandler(const ZipReader& archive, const PartsById& relations) : archive_(archive), relations_(relations) {}

  void OnStart(std::string_view name, const XmlAttributes& attributes, int depth) override {
    if (depth == 2 && name == "workbookPr") parts.from_1904 = attributes.IsOn("date1904");
    if (depth == 3 && name == "sheet") AddSheet(attributes);
  }
  XlsxParts parts;

 private:
  void AddSheet(const XmlAttributes& attributes) {
    const auto relation = relations_.find(attributes.Get("id"));
    if (relation == relations_.end())
      throw FileError(archive_.path(), 0, "its sheet \"" + std::string(attributes.Get("name")) + "\" has no part");
    if (relation->second.type != "worksheet") return;
    if (parts.sheets.size() == kMostSheets) throw FileError(archive_.path(), 0, "has too many sheets");
    parts.sheets.push_back({std::string(attributes.Get("name")), relation->second.part});
  }

  const ZipReader& archive_;
  const PartsById& relations_;
};

class StylesHandler final : public XmlPartHandler {
 public:
  void OnStart(std::string_view name, const XmlAttributes& attributes, int depth) override {
    if (depth == 2) in_cell_formats_ = name == "cellXfs";
    if (depth != 3) return;
    const auto id = ParseInt<int>(attributes.Get("numFmtId"));
    if (!id && name != "xf") return;
    if (name == "numFmt" && IsDateFormatCode(attributes.Get("formatCode"))) date_formats_.insert(*id);
    if (name == "numFmt") own_formats_.insert(*id);
    if (name == "xf" && in_cell_formats_) format_ids_.push_back(id.value_or(0));
  }
  // A format that the file defines counts as defined there, also under a standard id.
  std::vector<bool> DateStyles() const {
    std::vector<bool> styles;
    for (const int id : format_ids_)
      styles.push_back(own_formats_.contains(id) ? date_formats_.contains(id) : IsDateFormatId(id));
    return styles;
  }

 private:
  bool in_cell_formats_ = false;
  std::set<int> own_formats_, date_formats_;
  std::vector<int> format_ids_;
};

}  // namespace

XlsxParts ReadXlsxParts(const ZipReader& archive) {
  const PartsById package = ReadRelations(archive, "");
  const PackagePart* const document = FindByType(package, "officeDocument");
  const std::string workbook = document != nullptr ? document->part : "xl/workbook.xml";
  if (!archive.Has(workbook)) throw FileError(archive.path(), 0, "is a zip archive, but no workbook");
  if (workbook.ends_with(".bin")) throw FileError(archive.path(), 0, "is a binary workbook, which is not read");
  const PartsById relations = ReadRelations(archive, workbook);
  WorkbookHandler handler(archive, relations);
  XmlPartReader(archive.Open(workbook), handler).ReadAll();
  if (const PackagePart* const strings = FindByType(relations, "sharedStrings"))
    handler.parts.shared_strings = strings->part;
  if (const PackagePart* const styles = FindByType(relations, "styles")) handler.parts.styles = styles->part;
  return std::move(handler.parts);
}

std::vector<bool> ReadDateStyles(const ZipReader& archive, const std::string& part) {
  StylesHandler handler;
  XmlPartReader(archive.Open(part), handler).ReadAll();
  return handler.DateStyles();
}

std::optional<std::string_view> SharedStrings::Find(std::uint64_t index) {
  while (index >= texts_.size()) {
    if (!reader_.ReadBlock() && index >= texts_.size()) return std::nullopt;
  }
  return texts_[index];
}

void SharedStrings::OnStart(std::string_view name, const XmlAttributes&, int depth) {
  if (depth == 2 && name == "si") {
    in_element_ = true;
    element_.Begin();
  } else if (in_element_) {
    element_.OnStart(name);
  }
}

void SharedStrings::OnEnd(std::string_view name, int depth) {
  if (!in_element_) return;
  if (depth > 2) return element_.OnEnd(name);
  in_element_ = false;
  texts_.push_back(Keep(element_.Finish()));
}

void SharedStrings::OnText(std::string_view text) {
  if (in_element_ && !element_.OnText(text)) reader_.Fail("a text is longer than a cell's can be");
}

std::string_view SharedStrings::Keep(std::string_view text) {
  if (text.size() > block_left_) {
    block_left_ = std::max(kTextBlock_bytes, text.size());
    block_at_ = blocks_.emplace_back(new char[block_left_]).get();
  }
  char* const kept = block_at_;
  if (!text.empty()) std::memcpy(kept, text.data(), text.size());
  block_at_ += text.size();
  block_left_ -= text.size();
  return {kept, text.size()};
}

}  // namespace loom
