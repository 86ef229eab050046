#include "apps/qloom/text_import_wizard.h"

#include <algorithm>
#include <memory>
#include <set>

#include "platform/encoding.h"
#include "platform/number.h"
#include "platform/ui/list_ctrl.h"
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

std::string WhatIsSeen(const CDialog& page, const std::string& separator) {
  const int lines = page.GetDlgItem<CListCtrl>(kListTextPreview).GetItemCount();
  const int columns = page.GetDlgItem<CListCtrl>(kListColumnMap).GetItemCount();
  return (lines == 1 ? "the first line has " : "the first " + std::to_string(lines) + " lines have ") +
         std::to_string(columns) + (columns == 1 ? " column" : " columns") + " with separator " +
         (separator.empty() ? "tab" : separator);
}

std::string WhatTheTitlesAre(const CDialog& page) {
  const CString title = page.GetDlgItem<CListCtrl>(kListTextPreview).GetItemText(0, 0);
  if (HasByteOrderMark(title.view())) return "the file starts with a byte order mark, but is read in GBK";
  if (title.view().starts_with('"')) return "the titles of the first line are quoted";
  return "the first line holds no title that the catalogue knows";
}

// clang-format off
std::vector<WindowStep> StreamSteps(const TextImportOptions& options) {
  const std::string& separator = options.separator;
  const auto named = kImportSeparators.find(separator);
  const bool is_named = named != kImportSeparators.end();
  const bool is_custom = !is_named && !separator.empty();
  return {
    {kEditStreamName,        TypeIfGiven(options.stream_name)},
    {kComboStreamType,       If(!options.stream_type.empty(), act::ChooseAt(options.StreamType()))},
    {kComboTimeFormat,       ChooseIfGiven(options.time_format)},
    {kCheckFirstLineIsNames, If(options.no_header, act::Check(0))},
    {is_named ? named->second : kRadioCustom, If(is_named || is_custom, act::Press())},
    {kEditCustomSeparator,   If(is_custom, act::TypeWhole(Utf8ToGbk(separator))),
     "--separator: '" + separator + "' cannot separate columns"},
    {kIdWizardNext,          act::Press()},
  };
}

void AddColumn(std::vector<WindowStep>& steps, int column, const std::string& name, const std::string& separator) {
  const auto no_column = [=](const CDialog& page) {
    return "--map " + std::to_string(column) + "=" + name + ", counted from 0: " + WhatIsSeen(page, separator);
  };
  steps.insert(steps.end(), {
    {kListColumnMap,   act::SelectRows({column}), no_column},
    {kButtonMapColumn, act::Press(), {}, {}, {
      {kTreeParams,    act::SelectItems({LeafNamed(Utf8ToGbk(name))}),
       "the parameter navigator has no information element \"" + name + "\""},
      {kIdOk,          act::PressToClose(), "\"" + name + "\" cannot be mapped here"},
    }},
  });
}

std::vector<WindowStep> ColumnSteps(const TextImportOptions& options) {
  const std::map<int, std::string> columns = options.Columns();
  const auto nothing_mapped = [separator = options.separator](const CDialog& page) {
    return "no column is mapped: " + WhatTheTitlesAre(page) + "; " + WhatIsSeen(page, separator);
  };
  std::vector<WindowStep> steps{{kButtonUnmapAll, If(!columns.empty(), act::Press())}};
  for (const auto& [column, name] : columns) AddColumn(steps, column, name, options.separator);
  steps.insert(steps.end(), {
    {kButtonSaveConfig, act::Reach(), nothing_mapped},
    {kButtonSaveConfig, If(!options.save_config.empty(), act::Press()),
     "nothing is imported without the configuration that was to be saved", FileIfGiven(options.save_config)},
    {kIdWizardFinish,   act::Press()},
  });
  return steps;
}
// clang-format on

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

int TextImportOptions::StreamType() const { return stream_type.empty() ? 0 : kStreamTypes.at(stream_type); }

std::map<int, std::string> TextImportOptions::Columns() const {
  std::map<int, std::string> map;
  for (const std::string& text : columns) {
    const ColumnText column = ParseColumn(text);
    map[*column.column] = column.ie_name;
  }
  return map;
}

// clang-format off
std::vector<WindowPage> TextImportPages(const TextImportOptions& options, const CString& file) {
  const bool has_config = !options.config.empty();  // which leaves nothing to ask
  return {
    {kDialogTextImport1, {
      {kButtonBrowseText,   act::Press(), {}, {file}},
      {kButtonImportConfig, If(has_config, act::Press()), {}, FileIfGiven(options.config)},
      {has_config ? kIdWizardFinish : kIdWizardNext, act::Press()},
    }},
    {kDialogTextImport2, StreamSteps(options)},
    {kDialogTextImport3, ColumnSteps(options)},
  };
}
// clang-format on

}  // namespace loom
