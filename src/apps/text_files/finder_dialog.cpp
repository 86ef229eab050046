#include "apps/text_files/finder_dialog.h"

#include <algorithm>
#include <span>

#include "apps/text_files/finder_template.h"
#include "apps/text_files/finding_words.h"
#include "platform/encoding.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"
#include "text/import/param_dialog.h"
#include "text/import/text_import_settings.h"

namespace loom {
namespace {

using dialect::Findings;
using dialect::Overrides;

constexpr int kSentenceWidthPx = 860;
constexpr int kCellWidthPx = 110;

struct NamedValue {
  std::string_view name;
  std::string_view value;
};
constexpr NamedValue kSeparators[] = {{"逗号", ","}, {"分号", ";"},          {"制表符", "\t"},
                                      {"竖线", "|"}, {"连续空格", "blanks"}, {"无，只有一列", ""}};
constexpr NamedValue kQuotes[] = {{"无", ""}, {"\"", "\""}, {"'", "'"}};
constexpr std::string_view kEncodings[] = {"UTF-8", "GB18030", "UTF-16LE", "UTF-16BE", "BIG5", "WINDOWS-1252"};

std::string NameOf(std::span<const NamedValue> names, const std::string& value) {
  const auto found = std::ranges::find(names, value, &NamedValue::value);
  return found != names.end() ? std::string(found->name) : value;
}
std::string ValueOf(std::span<const NamedValue> names, const std::string& name) {
  const auto found = std::ranges::find(names, name, &NamedValue::name);
  return found != names.end() ? std::string(found->value) : name;
}

std::vector<std::string> Cut(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (const CString& part : CString(std::string_view(text)).Split(separator)) {
    if (!CString(part).Trim().IsEmpty()) parts.push_back(CString(part).Trim().str());
  }
  return parts;
}

template <class Parts>
std::string Joined(const Parts& parts, char separator) {
  std::string text;
  for (const auto& part : parts) {
    if (!text.empty()) text += separator;
    if constexpr (std::is_integral_v<std::decay_t<decltype(part)>>)
      text += std::to_string(part);
    else
      text += part;
  }
  return text;
}

template <class Finding>
std::string ColumnsOf(const std::optional<Finding>& finding) {
  return finding ? Joined(finding->columns, ',') : std::string();
}

std::optional<std::int64_t> RowsFrom(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional<std::int64_t>(std::stoll(text.substr(0, 9)));
}

std::string Character(char c) { return c == 0 ? std::string() : std::string(1, c); }

// A control, what it shows of the findings, and what its text means when a person has changed it. All UTF-8.
struct Field {
  int id;
  std::string (*shown)(const InspectedTextFile& file);
  void (*take)(Overrides& overrides, const std::string& text);
};
// clang-format off
constexpr Field kFields[] = {
    {kComboFinderEncoding,  [](const InspectedTextFile& file) { return file.found.form.encoding; },
                            [](Overrides& to, const std::string& text) { to.encoding = text; }},
    {kComboFinderSeparator, [](const InspectedTextFile& file) { return NameOf(kSeparators, file.found.form.separator); },
                            [](Overrides& to, const std::string& text) { to.separator = ValueOf(kSeparators, text); }},
    {kComboFinderQuote,     [](const InspectedTextFile& file) { return NameOf(kQuotes, Character(file.found.form.quote)); },
                            [](Overrides& to, const std::string& text) { to.quote = ValueOf(kQuotes, text); }},
    {kComboFinderDecimal,   [](const InspectedTextFile& file) { return Character(file.found.form.decimal); },
                            [](Overrides& to, const std::string& text) { to.decimal = text.at(0); }},
    {kEditFinderPreamble,   [](const InspectedTextFile& file) { return std::to_string(file.found.form.preamble_rows); },
                            [](Overrides& to, const std::string& text) { to.preamble_rows = RowsFrom(text); }},
    {kEditFinderHeader,     [](const InspectedTextFile& file) { return std::to_string(file.found.form.header_rows); },
                            [](Overrides& to, const std::string& text) { to.header_rows = RowsFrom(text); }},
    {kEditFinderFooter,     [](const InspectedTextFile& file) { return std::to_string(file.found.form.footer_rows); },
                            [](Overrides& to, const std::string& text) { to.footer_rows = RowsFrom(text); }},
    {kEditFinderComment,    [](const InspectedTextFile& file) { return file.found.form.comment; },
                            [](Overrides& to, const std::string& text) { to.comment = text; }},
    {kEditFinderTime,       [](const InspectedTextFile& file) { return ColumnsOf(file.found.time); },
                            [](Overrides& to, const std::string& text) { to.time_columns = Cut(text, ','); to.time_layout.reset(); }},
    {kEditFinderLayout,     [](const InspectedTextFile& file) { return file.found.time ? file.found.time->layout : std::string(); },
                            [](Overrides& to, const std::string& text) { text.empty() ? to.time_layout.reset() : void(to.time_layout = text); }},
    {kEditFinderZone,       [](const InspectedTextFile& file) { return file.found.time ? file.found.time->zone : std::string(); },
                            [](Overrides& to, const std::string& text) { text.empty() ? to.zone.reset() : void(to.zone = text); }},
    {kEditFinderLatitude,   [](const InspectedTextFile& file) { return ColumnsOf(file.found.latitude); },
                            [](Overrides& to, const std::string& text) { to.latitude_columns = Cut(text, ','); }},
    {kEditFinderLongitude,  [](const InspectedTextFile& file) { return ColumnsOf(file.found.longitude); },
                            [](Overrides& to, const std::string& text) { to.longitude_columns = Cut(text, ','); }},
    {kEditFinderNulls,      [](const InspectedTextFile& file) { return Joined(file.wishes.overrides.nulls.value_or(std::vector<std::string>()), ' '); },
                            [](Overrides& to, const std::string& text) { to.nulls = Cut(text, ' '); }},
};

constexpr std::string_view kColumnHeadings[] = {"列号", "名称", "单位", "内容", "格式", "空", "不符", "参数"};
constexpr struct { dialect::Kind kind; std::string_view name; } kKinds[] = {
    {dialect::Kind::kEmpty, "空"},     {dialect::Kind::kInteger, "整数"},  {dialect::Kind::kNumber, "数值"},
    {dialect::Kind::kText, "文本"},    {dialect::Kind::kTime, "时间"},     {dialect::Kind::kLatitude, "纬度"},
    {dialect::Kind::kLongitude, "经度"},
};
// clang-format on

// What GBK lacks shows as '?': the file keeps it.
CString Shown(const std::string& utf8) { return Utf8ToGbkOr(utf8, '?'); }

}  // namespace

TextFinderDialog::TextFinderDialog(const CString& path) : CDialog(kTextFinderTemplate) {
  file_.path = path;
  OnClicked(kButtonFindAgain, [this] { FindAgain(); });
  OnClicked(kButtonFindFresh, [this] { FindFresh(); });
  OnClicked(kButtonFinderMap, [this] { MapColumn(); });
  OnClicked(kButtonFinderUnmap, [this] { UnmapColumn(); });
  OnDoubleClicked(kListFinderColumns, [this] { MapColumn(); });
}

void TextFinderDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  GetDlgItem(kStaticFinderFile).SetWindowText(file_.path);
  const auto fill = [this](int id, const auto& entries, auto name) {
    for (const auto& entry : entries) GetDlgItem<CComboBox>(id).AddString(Utf8ToGbk(std::string(name(entry))));
  };
  const auto itself = [](const auto& text) { return text; };
  fill(kComboFinderEncoding, kEncodings, itself);
  fill(kComboFinderSeparator, kSeparators, [](const NamedValue& one) { return one.name; });
  fill(kComboFinderQuote, kQuotes, [](const NamedValue& one) { return one.name; });
  fill(kComboFinderDecimal, std::initializer_list<std::string_view>{".", ","}, itself);
  fill(kComboFinderStreamType, kStreamTypeTexts, itself);
  GetDlgItem<CComboBox>(kComboFinderStreamType).SetCurSel(file_.wishes.stream_type);
  GetDlgItem(kEditFinderStream).SetWindowText(Shown(file_.wishes.stream_name));
  GetDlgItem<CListCtrl>(kListFindings).InsertColumn(0, "识别结果"_gbk, kSentenceWidthPx);
  auto& columns = GetDlgItem<CListCtrl>(kListFinderColumns);
  for (const std::string_view heading : kColumnHeadings)
    columns.InsertColumn(columns.GetColumnCount(), Utf8ToGbk(std::string(heading)), kCellWidthPx);
  if (!Inspect(file_.wishes)) EndDialog(kIdCancel);
}

bool TextFinderDialog::Inspect(const TextFileWishes& wishes) {
  try {
    const CWaitCursor wait;
    file_ = InspectTextFile(file_.path, wishes);
  } catch (const Error& error) {
    ShowMessageBox(NativeNameToGbk(error.what()), MessageIcon::kWarning, MessageButtons::kOk, kApplicationCaption,
                   this);
    return false;
  }
  Show();
  return true;
}

bool TextFinderDialog::HasChanges() const {
  for (std::size_t at = 0; at < std::size(kFields); ++at) {
    if (GetDlgItem(kFields[at].id).GetWindowText() != shown_[at]) return true;
  }
  return false;
}

// What a person has changed holds from now on.
bool TextFinderDialog::FindAgain() {
  TextFileWishes wishes = file_.wishes;
  for (std::size_t at = 0; at < std::size(kFields); ++at) {
    const CString text = GetDlgItem(kFields[at].id).GetWindowText();
    if (text != shown_[at]) kFields[at].take(wishes.overrides, GbkToUtf8(text));
  }
  return Inspect(wishes);
}

void TextFinderDialog::FindFresh() {
  TextFileWishes wishes = file_.wishes;
  wishes.overrides = {};
  wishes.elements.clear();
  Inspect(wishes);
}

void TextFinderDialog::TakeStream(TextFileWishes& wishes) const {
  const CString name = GetDlgItem(kEditFinderStream).GetWindowText();
  if (!name.IsEmpty()) wishes.stream_name = GbkToUtf8(name);
  wishes.stream_type = std::max(0, GetDlgItem<CComboBox>(kComboFinderStreamType).GetCurSel());
}

void TextFinderDialog::OnOK() {
  if (HasChanges() && !FindAgain()) return;
  TakeStream(file_.wishes);
  CDialog::OnOK();
}

void TextFinderDialog::Show() {
  shown_.clear();
  for (const Field& field : kFields) {
    shown_.push_back(Shown(field.shown(file_)));
    auto* const combo = dynamic_cast<CComboBox*>(FindItem(field.id));
    if (combo != nullptr && !combo->HasStyle(style::kEditable))
      combo->SetCurSel(combo->FindStringExact(-1, shown_.back()));
    else
      GetDlgItem(field.id).SetWindowText(shown_.back());
  }
  ShowFindings();
  ShowColumns();
  ShowRows();
}

void TextFinderDialog::ShowFindings() {
  auto& list = GetDlgItem<CListCtrl>(kListFindings);
  list.DeleteAllItems();
  std::vector<bool> doubts;
  for (const FindingSentence& sentence : FindingSentences(file_.found, WordsLanguage::kChinese)) {
    list.InsertItem(list.GetItemCount(), Shown(sentence.text));
    doubts.push_back(sentence.is_doubt);
  }
  list.SetColourRule([doubts](int row, int) {
    return doubts[static_cast<std::size_t>(row)] ? CellColours::kHighlight : CellColours::kNormal;
  });
}

CString TextFinderDialog::ElementOf(std::size_t column) const {
  const auto found = std::ranges::find(file_.mapping.columns, column, &dialect::ElementColumn::column);
  return found != file_.mapping.columns.end() ? Utf8ToGbk(found->element) : CString();
}

void TextFinderDialog::ShowColumns() {
  auto& list = GetDlgItem<CListCtrl>(kListFinderColumns);
  list.DeleteAllItems();
  for (std::size_t at = 0; at < file_.found.columns.size(); ++at) {
    const dialect::ColumnFinding& column = file_.found.columns[at];
    const std::string_view kind =
        std::ranges::find(kKinds, column.kind, [](const auto& row) { return row.kind; })->name;
    const std::string cells[] = {std::to_string(at),        column.name,   column.unit,
                                 std::string(kind),         column.layout, std::to_string(column.empty),
                                 std::to_string(column.bad)};
    const int row = list.InsertItem(list.GetItemCount(), Shown(cells[0]));
    for (int cell = 1; cell < static_cast<int>(std::size(cells)); ++cell)
      list.SetItemText(row, cell, Shown(cells[cell]));
    list.SetItemText(row, static_cast<int>(std::size(cells)), ElementOf(at));
  }
}

void TextFinderDialog::ShowRows() {
  auto& list = GetDlgItem<CListCtrl>(kListFinderRows);
  list.DeleteAllItems();
  list.DeleteAllColumns();
  std::size_t width = 0;
  for (const auto& row : file_.found.first_rows) width = std::max(width, row.size());
  for (std::size_t at = 0; at < width; ++at) {
    const bool is_named = at < file_.found.columns.size() && !file_.found.columns[at].name.empty();
    list.InsertColumn(static_cast<int>(at), Shown(is_named ? file_.found.columns[at].name : std::to_string(at)),
                      kCellWidthPx);
  }
  for (const auto& cells : file_.found.first_rows) {
    const int row = list.InsertItem(list.GetItemCount(), cells.empty() ? CString() : Shown(cells[0]));
    for (std::size_t at = 1; at < cells.size(); ++at) list.SetItemText(row, static_cast<int>(at), Shown(cells[at]));
  }
}

void TextFinderDialog::SetElement(std::size_t column, const std::string& element) {
  TextFileWishes wishes = file_.wishes;
  wishes.elements[column] = element;
  if (!Inspect(wishes)) return;
  auto& list = GetDlgItem<CListCtrl>(kListFinderColumns);
  list.SetItemSelected(static_cast<int>(column), true);
  list.EnsureVisible(static_cast<int>(column));
}

void TextFinderDialog::MapColumn() {
  const int row = GetDlgItem<CListCtrl>(kListFinderColumns).GetNextSelected();
  if (row < 0) return;
  ColumnMap columns;
  for (const dialect::ElementColumn& one : file_.mapping.columns) {
    if (static_cast<int>(one.column) != row) columns[static_cast<std::int32_t>(one.column)] = Utf8ToGbk(one.element);
  }
  CParamDialog dialog(row, columns);
  if (dialog.DoModal() == kIdOk && columns.contains(row))
    SetElement(static_cast<std::size_t>(row), GbkToUtf8(columns[row]));
}

void TextFinderDialog::UnmapColumn() {
  const int row = GetDlgItem<CListCtrl>(kListFinderColumns).GetNextSelected();
  if (row >= 0) SetElement(static_cast<std::size_t>(row), {});
}

int ImportWithFinder(StoredProject& project, CIOManager& manager, const std::vector<CString>& paths,
                     const TextImportListener& told) {
  int result = kImportFailed;
  for (const CString& path : paths) {
    TextFinderDialog dialog(path);
    if (dialog.DoModal() != kIdOk) continue;
    const ImportedTextFile done = ImportTextFile(project, manager, dialog.file());
    if (told) told(path, done);
    if (done.result == kImportDone) result = kImportDone;
  }
  return result;
}

int AskAndImportWithFinder(StoredProject& project, CIOManager& manager, const TextImportListener& told) {
  CFileDialog dialog(true, CString(), CString(), CFileDialog::kFileMustExist | CFileDialog::kAllowMultiSelect,
                     "文本文件(*.csv;*.txt;*.tsv;*.tab)|*.csv;*.txt;*.tsv;*.tab|所有文件(*.*)|*.*||"_gbk);
  if (dialog.DoModal() != kIdOk) return kImportFailed;
  return ImportWithFinder(project, manager, dialog.GetPathList(), told);
}

}  // namespace loom
