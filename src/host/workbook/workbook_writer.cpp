#include "host/workbook/workbook_writer.h"

#include <algorithm>

#include "components/note_kinds.h"
#include "host/workbook/workbook_parts.h"
#include "host/workbook/xml_text.h"
#include "host/workbook/zip_writer.h"
#include "platform/encoding.h"

namespace loom {
namespace {

constexpr std::size_t kCopyBlockBytes = 256 * 1024;
constexpr std::string_view kForbiddenInNames = ":\\/?*[]";

// A piece number at the end of a name, with its underscore; empty when there is none.
std::string_view PieceNumberOf(std::string_view name) {
  const std::size_t digits = name.find_last_not_of("0123456789") + 1;
  return digits > 0 && digits < name.size() && name[digits - 1] == '_' ? name.substr(digits - 1) : std::string_view();
}

CString WithAllowedCharacters(std::string_view name) {
  std::string allowed;
  for (std::size_t at = 0, length; at < name.size(); at += length) {
    length = GbkCharLength(name, at);
    const char c = name[at];
    const bool at_end = at == 0 || at + length == name.size();
    const bool refused = length == 1 && (static_cast<unsigned char>(c) < 0x20 ||
                                         kForbiddenInNames.find(c) != kForbiddenInNames.npos || (c == '\'' && at_end));
    allowed += refused ? "_" : name.substr(at, length);
  }
  return CString(allowed.empty() ? "_" : allowed);
}

// At most as long as a sheet's name may be, `tail` in place of what is too much.
CString Shortened(const CString& name, std::string_view tail) {
  if (CharacterCount(name) + CharacterCount(tail) <= kMaxSheetNameCharacters) return name + CString(tail);
  return CString(HeadOfCharacters(name, kMaxSheetNameCharacters - CharacterCount(tail))) + CString(tail);
}

CString WithAllowedLength(const CString& name) {
  if (CharacterCount(name) <= kMaxSheetNameCharacters) return name;
  const std::string_view piece = PieceNumberOf(name);
  return Shortened(name.Left(name.GetLength() - static_cast<int>(piece.size())), piece);
}

}  // namespace

WrittenSheet& WorkbookWriter::AddSheet(std::size_t position) {
  auto sheet = std::make_unique<WrittenSheet>();
  sheet->name = FreeName({});
  sheet->style = next_style_;
  next_style_ += kTimeStyle + 1;
  return **sheets_.insert(sheets_.begin() + static_cast<std::ptrdiff_t>(position), std::move(sheet));
}

CString WorkbookWriter::FreeName(const CString& besides) const {
  for (int number = 1;; ++number) {
    const CString name = Format("Sheet%d", number);
    const bool is_taken = name.CompareNoCase(besides) == 0 ||
                          std::any_of(sheets_.begin(), sheets_.end(),
                                      [&](const auto& sheet) { return sheet->name.CompareNoCase(name) == 0; });
    if (!is_taken) return name;
  }
}

bool WorkbookWriter::IsTaken(const CString& name, const WrittenSheet* except) const {
  return std::any_of(sheets_.begin(), sheets_.end(), [&](const auto& sheet) {
    return sheet.get() != except && sheet->is_named && sheet->name.CompareNoCase(name) == 0;
  });
}

void WorkbookWriter::Rename(WrittenSheet& sheet, const CString& name) {
  const CString base = WithAllowedLength(WithAllowedCharacters(name));
  CString mended = base;
  for (int number = 2; IsTaken(mended, &sheet); ++number) mended = Shortened(base, "(" + std::to_string(number) + ")");
  if (mended != name) {
    CurrentNotes().Add(
        "sheet name mended"_note, target_, "sheet \"" + GbkToUtf8(mended) + "\"",
        "\"" + GbkToUtf8(name) + "\" is too long, taken or holds characters that no sheet name may have");
  }
  sheet.name = mended;
  sheet.is_named = true;
  for (const auto& other : sheets_) {
    if (!other->is_named && other->name.CompareNoCase(mended) == 0) other->name = FreeName(mended);
  }
}

ScratchFile& WorkbookWriter::Scratch() {
  if (!scratch_) scratch_ = std::make_unique<ScratchFile>(target_);
  return *scratch_;
}

void WorkbookWriter::Fill(WrittenSheet& sheet, const COleSafeArray& values, CellAddress first) {
  if (sheet.body) throw AutomationError("the sheet \"" + GbkToUtf8(sheet.name) + "\" is filled already");
  if (values.GetDim() != 2) throw AutomationError("the values of a range have two dimensions");
  if (first.row + static_cast<std::uint64_t>(values.GetUBound(1)) >= kMaxSheetRows ||
      first.column + static_cast<std::uint64_t>(values.GetUBound(2)) >= kMaxSheetColumns)
    throw AutomationError("the values do not fit on a sheet");
  sheet.body = WriteSheetBody(values, first, sheet.style, Scratch(), target_, sheet.name);
}

// The entries of the archive one after the other.
class WorkbookWriter::Saving {
 public:
  Saving(WorkbookWriter& book, AtomicFile& file) : book_(book), zip_(file) {}

  void Run() {
    std::vector<CString> names;
    std::vector<CellStyle> styles(book_.next_style_);
    for (const auto& sheet : book_.sheets_) {
      names.push_back(sheet->name);
      styles[sheet->style] = {sheet->vertical_align, false};
      styles[sheet->style + kTimeStyle] = {sheet->vertical_align, true};
    }
    zip_.AddEntry("[Content_Types].xml", ContentTypesXml(names.size()));
    zip_.AddEntry("_rels/.rels", PackageRelationsXml());
    zip_.AddEntry("xl/workbook.xml", WorkbookXml(names, book_.active_));
    zip_.AddEntry("xl/_rels/workbook.xml.rels", WorkbookRelationsXml(names.size()));
    zip_.AddEntry("xl/styles.xml", StylesXml(styles));
    for (std::size_t at = 0; at < names.size(); ++at) AddSheet(at);
    zip_.Finish();
  }

 private:
  // The sheet's head goes in as it is; its compressed cells follow as the same stream.
  void AddSheet(std::size_t at) {
    const WrittenSheet& sheet = *book_.sheets_[at];
    const SheetBody body = sheet.body ? *sheet.body : WriteEmptySheetBody(book_.Scratch());
    const std::string head = SheetHeadXml(sheet, at == book_.active_);
    const std::uint64_t raw_bytes = head.size() + body.totals.raw_bytes;
    zip_.BeginEntry(SheetPartName(at + 1), raw_bytes);
    const std::string packed_head = StoredDeflateBlocks(head);
    zip_.Write(std::as_bytes(std::span(packed_head)));
    CopyScratch(body.scratch_position, body.totals.packed_bytes);
    zip_.EndEntry(raw_bytes, CombineCrc32(Crc32(head), body.totals.crc, body.totals.raw_bytes));
  }
  void CopyScratch(std::uint64_t position, std::uint64_t length) {
    std::vector<std::byte> block(std::min<std::uint64_t>(length, kCopyBlockBytes));
    while (length > 0) {
      const std::span part(block.data(), std::min<std::uint64_t>(length, block.size()));
      book_.Scratch().ReadAt(position, part);
      zip_.Write(part);
      position += part.size();
      length -= part.size();
    }
  }

  WorkbookWriter& book_;
  ZipWriter zip_;
};

void WorkbookWriter::Save() {
  AtomicFile file(target_);
  Saving(*this, file).Run();
  file.Commit();
  scratch_.reset();
}

}  // namespace loom
