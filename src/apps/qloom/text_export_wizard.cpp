#include "apps/qloom/text_export_wizard.h"

#include <map>

#include "apps/qloom/session.h"
#include "platform/encoding.h"
#include "resources/text_export_templates.h"

namespace loom {
namespace {

const std::map<std::string, int> kExportSeparators{
    {"tab", kRadioExportTab}, {"comma", kRadioExportComma}, {"semicolon", kRadioExportSemicolon}};

std::string ObjectionToExportSeparator(const std::string& text) {
  if (kExportSeparators.contains(text) || text.size() == 1) return "";
  return "'" + text + "' is none of tab, comma, semicolon and no single character";
}

std::string ObjectionToLimit(const std::string& text) {
  const std::size_t equals = text.find('=');
  const bool has_both = equals != std::string::npos && equals > 0 && text.find(':', equals) != std::string::npos;
  return has_both ? "" : "'" + text + "' is not NAME=MIN:MAX";
}

// clang-format off
void AddLimit(std::vector<WindowStep>& steps, const std::string& text) {
  const std::size_t equals = text.find('=');
  const std::size_t colon = text.find(':', equals);
  const std::string name = text.substr(0, equals);
  const CString row = Utf8ToGbk(name);
  steps.insert(steps.end(), {
    {kListExport, act::SelectRow(row), "a limit for \"" + name + "\", which is not exported"},
    {kListExport, act::DoubleClickRow(row), "\"" + name + "\" has no valid range and so no limits", {}, {
      {kEditSetMinimum, act::Type(Utf8ToGbk(text.substr(equals + 1, colon - equals - 1)))},
      {kEditSetMaximum, act::Type(Utf8ToGbk(text.substr(colon + 1)))},
      {kIdOk,           act::Press()},
    }},
  });
}
// clang-format on

std::vector<WindowStep> ParameterSteps(const TextExportOptions& options) {
  std::vector<WindowStep> steps;
  for (const std::string& name : options.parameters) {
    steps.push_back({kTreeExport, act::SelectItems({LeafOrGroupNamed(Utf8ToGbk(name))}),
                     "the stream has no information element to export with the name \"" + name + "\""});
    steps.push_back({kButtonExportSelect, act::Press()});
  }
  for (const std::string& limit : options.limits) AddLimit(steps, limit);
  steps.push_back({kIdWizardNext, act::Press()});
  return steps;
}

}  // namespace

void AddTextExportOptions(Command& command, TextExportOptions& options) {
  command.AddOption("--stream", options.stream, "Name of the stream").Required();
  command.AddOption("--ie", options.parameters, "Information elements to write, or groups of them, in this order")
      .Required();
  command.AddOption("--out", options.file, "Text file to write; without an extension it gets .txt").Required();
  command.AddOption("--separator", options.separator, "tab (default), comma, semicolon or one character")
      .Check(ObjectionToExportSeparator, "SEPARATOR");
  command.AddFlag("--no-header", options.no_header, "Leave the line with the names away");
  command.AddFlag("--units", options.units, "Units behind the names");
  command.AddFlag("--fill", options.fill, "Fill gaps with the last value before them");
  command.AddFlag("--binned", options.binned, "Ask for the merged and averaged data");
  command.AddOption("--limit", options.limits, "NAME=MIN:MAX, either may be empty: values outside are written as -255")
      .Check(ObjectionToLimit, "NAME=MIN:MAX");
}

// clang-format off
std::vector<WindowPage> TextExportPages(const TextExportOptions& options) {
  const auto named = kExportSeparators.find(options.separator);
  const bool is_named = named != kExportSeparators.end();
  const bool is_custom = !options.separator.empty() && !is_named;
  const CString stream = NativeNameToGbk(options.stream);
  return {
    {kDialogTextExport1, {
      {kTreeExport,   act::SelectItems({LeafNamed(stream)}), "the wizard offers no stream \"" + GbkNameToUtf8(stream) + "\""},
      {kIdWizardNext, act::Press()},
    }},
    {kDialogTextExport2, ParameterSteps(options)},
    {kDialogTextExport3, {
      {kButtonExportBrowse,   act::Press(), {}, {AbsolutePath(options.file)}},
      {is_named ? named->second : kRadioExportCustom, If(is_named || is_custom, act::Press())},
      {kEditExportCustom,     TypeIfGiven(is_custom ? options.separator : "")},
      {options.binned ? kRadioExportBinned : kRadioExportRaw, act::Press()},
      {kCheckExportHeader,    act::Check(options.no_header ? 0 : 1)},
      {kCheckExportUnits,     If(options.units, act::Check(1))},
      {kCheckExportFill,      act::Check(options.fill ? 1 : 0)},
      {kIdWizardFinish,       act::Press()},
    }},
  };
}
// clang-format on

}  // namespace loom
