#include "apps/qloom/text_import_wizard.h"

#include <algorithm>
#include <memory>
#include <set>

#include "platform/encoding.h"
#include "platform/number.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/parameter_picker_templates.h"
#include "resources/text_import_templates.h"
#include "text/import/byte_order_mark.h"
#include "text/import/time_text.h"

namespace loom {
namespace {

const std::map<std::string, int> kStreamTypes{{"down", 0}, {"up", 1}, {"scan", 2}};
const std::map<std::string, int> kImportSeparators{
    {"tab", kRadioTab}, {"comma", kRadioComma}, {"semicolon", kRadioSemicolon}};

std::vector<std::string> TimeFormatNames() {
  std::vector<std::string> names;
  for (const TimeLayout& layout : kTimeLayouts) names.emplace_back(layout.name);
  return names;
}

struct ColumnText {
  std::optional<int> column;  // none: the text is no mapping
  std::string ie_name;
};

ColumnText ParseColumn(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals + 1 == text.size()) return {};
  const auto column = ParseInt<int>(std::string_view(text).substr(0, equals));
  return {column && *column >= 0 ? column : std::nullopt, text.substr(equals + 1)};
}

// For the values of one option in turn.
std::function<std::string(const std::string&)> ObjectionToColumns() {
  return [seen = std::make_shared<std::set<int>>()](const std::string& text) -> std::string {
    const std::optional<int> column = ParseColumn(text).column;
    if (!column) return "'" + text + "' is not COLUMN=NAME, columns counted from 0";
    return seen->insert(*column).second ? "" : "column " + std::to_string(*column) + " is mapped twice";
  };
}

std::string ObjectionToImportSeparator(const std::string& text) {
  if (kImportSeparators.contains(text)) return "";
  // One character of UTF-8; whether it can separate, the wizard says.
  const auto starts =
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
  return starts == 1 ? "" : "'" + text + "' is none of tab, comma, semicolon and no single character";
}

std::optional<CString> ConfigPathFrom(const std::string& native) {
  if (native.empty()) return std::nullopt;
  return NativeNameToGbk(native);
}

HTREEITEM FindLeaf(const CTreeCtrl& tree, const CString& name) {
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    if (!tree.ItemHasChildren(item) && tree.GetItemText(item) == name) return item;
  }
  return {};
}

}  // namespace

bool TextImportOptions::IsAnyGiven() const {
  return no_header || !columns.empty() ||
         !(config + stream_name + stream_type + time_format + separator + save_config).empty();
}

void AddTextImportOptions(Command& command, TextImportOptions& options, const std::string& prefix) {
  Option config = command.AddOption("--imcf", options.config, "Saved import configuration; asks nothing else");
  const auto add = [&](const std::string& name, auto& value, const char* description) {
    return command.AddOption(name, value, description).Excludes(config);
  };
  add("--stream-name", options.stream_name, "Name of the stream (default UnknownDevice)");
  add("--stream-type", options.stream_type, "down (default), up or scan").OneOf(kStreamTypes);
  add("--time-format", options.time_format, "Layout of the time column (default yyyy-mm-dd hh:nn:ss:ms)")
      .OneOf(TimeFormatNames());
  add("--" + prefix + "separator", options.separator, "tab (default), comma, semicolon or one character")
      .Check(ObjectionToImportSeparator, "SEPARATOR");
  command.AddFlag("--" + prefix + "no-header", options.no_header, "The first line is data").Excludes(config);
  add("--map", options.columns, "COLUMN=NAME, columns from 0; without it the titles of the first line decide")
      .Check(ObjectionToColumns(), "COLUMN=NAME");
  add("--save-imcf", options.save_config, "Save the import configuration to this file");
}

TextImportAnswers TextImportAnswersFrom(const TextImportOptions& options, const CString& file) {
  TextImportAnswers answers;
  answers.file = file;
  answers.config = ConfigPathFrom(options.config);
  if (!options.stream_name.empty()) answers.stream_name = Utf8ToGbk(options.stream_name);
  if (!options.stream_type.empty()) answers.stream_type = kStreamTypes.at(options.stream_type);
  if (!options.time_format.empty()) answers.time_format = Utf8ToGbk(options.time_format);
  answers.separator = options.separator;
  answers.no_header = options.no_header;
  for (const std::string& text : options.columns) {
    const ColumnText column = ParseColumn(text);
    answers.columns[*column.column] = Utf8ToGbk(column.ie_name);
  }
  answers.save_config = ConfigPathFrom(options.save_config);
  return answers;
}

bool TextImportWizardUser::IsWizard(const CPropertySheet& sheet) { return sheet.FindPage(kDialogTextImport1) >= 0; }

void TextImportWizardUser::Fill(CPropertySheet& sheet) {
  try {
    FillPages(sheet);
  } catch (const UiRefused& refusal) {
    throw Error(refusal.what());
  }
  if (sheet.IsRunning()) sheet.UserClose();
}

void TextImportWizardUser::FillPages(CPropertySheet& sheet) {
  const auto is_in_front = [&](int page_id) {
    return sheet.IsRunning() && sheet.GetActivePage()->GetTemplate().id == page_id;
  };
  FillFile(sheet);
  if (!is_in_front(kDialogTextImport2)) return;
  FillStream(*sheet.GetActivePage());
  sheet.UserPress(kIdWizardNext);
  if (!is_in_front(kDialogTextImport3)) return;
  CDialog& page = *sheet.GetActivePage();
  if (!answers_.columns.empty()) FillColumns(page);
  if (!page.GetDlgItem(kButtonSaveConfig).IsWindowEnabled())
    throw Error("no column is mapped: " + WhatTheTitlesAre(page) + "; " + WhatIsSeen(page));
  if (answers_.save_config) SaveConfig(page);
  sheet.UserPress(kIdWizardFinish);
}

void TextImportWizardUser::FillFile(CPropertySheet& sheet) {
  CDialog& page = *sheet.GetActivePage();
  pick_file_(answers_.file);
  page.UserPress(kButtonBrowseText);
  if (!answers_.config) return sheet.UserPress(kIdWizardNext);
  pick_file_(*answers_.config);
  page.UserPress(kButtonImportConfig);
  sheet.UserPress(kIdWizardFinish);
}

void TextImportWizardUser::FillStream(CDialog& page) const {
  if (answers_.stream_name) page.GetDlgItem<CEdit>(kEditStreamName).UserType(*answers_.stream_name);
  if (answers_.stream_type) page.GetDlgItem<CComboBox>(kComboStreamType).UserChoose(*answers_.stream_type);
  if (answers_.time_format) page.GetDlgItem<CComboBox>(kComboTimeFormat).UserChoose(*answers_.time_format);
  if (answers_.no_header) page.GetDlgItem<CButton>(kCheckFirstLineIsNames).UserCheck(0);
  if (!answers_.separator.empty()) FillSeparator(page);
}

void TextImportWizardUser::FillSeparator(CDialog& page) const {
  const auto radio = kImportSeparators.find(answers_.separator);
  if (radio != kImportSeparators.end()) return page.UserPress(radio->second);
  page.UserPress(kRadioCustom);
  auto& edit = page.GetDlgItem<CEdit>(kEditCustomSeparator);
  edit.UserType(Utf8ToGbk(answers_.separator));
  if (edit.GetWindowText().IsEmpty()) throw Error("--separator: '" + answers_.separator + "' cannot separate columns");
}

// Of the third page.
std::string TextImportWizardUser::WhatTheTitlesAre(const CDialog& page) {
  const CString title = page.GetDlgItem<CListCtrl>(kListTextPreview).GetItemText(0, 0);
  if (HasByteOrderMark(title.view())) return "the file starts with a byte order mark, but is read in GBK";
  if (title.view().starts_with('"')) return "the titles of the first line are quoted";
  return "the first line holds no title that the catalogue knows";
}

std::string TextImportWizardUser::WhatIsSeen(const CDialog& page) const {
  const int lines = page.GetDlgItem<CListCtrl>(kListTextPreview).GetItemCount();
  const int columns = page.GetDlgItem<CListCtrl>(kListColumnMap).GetItemCount();
  return (lines == 1 ? "the first line has " : "the first " + std::to_string(lines) + " lines have ") +
         std::to_string(columns) + (columns == 1 ? " column" : " columns") + " with separator " +
         (answers_.separator.empty() ? "tab" : answers_.separator);
}

void TextImportWizardUser::FillColumns(CDialog& page) {
  page.UserPress(kButtonUnmapAll);
  for (const auto& [column, name] : answers_.columns) {
    wanted_ = name;
    if (column >= page.GetDlgItem<CListCtrl>(kListColumnMap).GetItemCount())
      throw Error("--map " + std::to_string(column) + "=" + GbkToUtf8(name) + ", counted from 0: " + WhatIsSeen(page));
    page.GetDlgItem<CListCtrl>(kListColumnMap).UserSelectRows({column});
    page.UserPress(kButtonMapColumn);
  }
}

void TextImportWizardUser::SaveConfig(CDialog& page) const {
  pick_file_(*answers_.save_config);
  page.UserPress(kButtonSaveConfig);
  if (newest_message_() != "配置文件保存成功！"_gbk)
    throw Error("nothing is imported without the configuration that was to be saved");
}

// A choice that is refused, which a message has said, leaves the dialog open.
void TextImportWizardUser::ChooseParameter(CDialog& dialog) const {
  auto& tree = dialog.GetDlgItem<CTreeCtrl>(kTreeParams);
  const HTREEITEM leaf = FindLeaf(tree, wanted_);
  if (!leaf) throw Error("the parameter navigator has no information element \"" + GbkToUtf8(wanted_) + "\"");
  tree.UserSelect(leaf);
  dialog.UserPress(kIdOk);
  if (dialog.IsRunning()) throw Error("\"" + GbkToUtf8(wanted_) + "\" cannot be mapped here");
}

}  // namespace loom
