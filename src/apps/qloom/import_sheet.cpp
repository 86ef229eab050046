#include "apps/qloom/import_sheet.h"

#include <array>

#include "platform/encoding.h"
#include "resources/binning_templates.h"
#include "resources/log_import_templates.h"

namespace loom {
namespace {

// A way of merging: its name on the command line, its radio button and its edits, whose texts an 'x' separates.
struct BinningKind {
  const char* name;
  int radio;
  std::array<int, 2> edits;  // kIdNone: no second one
};
constexpr BinningKind kBinningKinds[] = {
    {"time", kRadioByTime, {kEditTime, kIdNone}},
    {"distance", kRadioByDistance, {kEditDistance, kIdNone}},
    {"grid", kRadioByGrid, {kEditGridHeight, kEditGridWidth}},
};

const std::map<std::string, int> kValueRadios{{"max", kRadioMaximum}, {"min", kRadioMinimum}, {"avg", kRadioAverage}};

struct BinningText {
  const BinningKind* kind = nullptr;  // null: the text is none
  std::vector<std::string> numbers;
};

BinningText ParseBinning(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) return {};
  const std::string values = text.substr(equals + 1);
  for (const BinningKind& kind : kBinningKinds) {
    if (text.substr(0, equals) != kind.name) continue;
    if (kind.edits[1] == kIdNone) return {&kind, {values}};
    const std::size_t by = values.find('x');
    if (by == std::string::npos) return {};
    return {&kind, {values.substr(0, by), values.substr(by + 1)}};
  }
  return {};
}

std::string ObjectionToBinning(const std::string& text) {
  return ParseBinning(text).kind != nullptr ? "" : "'" + text + "' is none of time=S, distance=M, grid=HxW";
}

// What starts like a number is one; whether there is one at all, the page says.
UserAction TypeNumber(const std::string& utf8) {
  return {"type into", [text = Utf8ToGbk(utf8)](CDialog& page, int id) {
            auto& edit = ItemFor<CEdit>(page, id);
            if (!edit.UserType(text) && !edit.GetWindowText().IsEmpty()) throw UiRefused("there is more than a number");
          }};
}

UserAction TickLeaves(const CString& name) {
  return {"tick leaves in", [name](CDialog& page, int id) {
            auto& tree = ItemFor<CMutiTreeCtrl>(page, id);
            LeafNamed(name).In(tree);
            for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
              if (!tree.ItemHasChildren(item) && tree.GetItemText(item) == name) tree.UserTick(item, true);
            }
          }};
}

UserAction ClearAll() {
  return {"clear", [](CDialog& page, int id) {
            auto& tree = ItemFor<CMutiTreeCtrl>(page, id);
            for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextSiblingItem(item))
              tree.UserTick(item, false);
          }};
}

constexpr const char* kNoTemplate = "nothing is imported without the template that was asked for";

// clang-format off
std::vector<WindowStep> SelectionSteps(const ImportSheetOptions& options) {
  std::vector<WindowStep> steps{
    {kButtonLoadIeTemplate, If(!options.load_template.empty(), act::Press()), kNoTemplate, FileIfGiven(options.load_template)},
    {kTreeImportIes,        If(!options.ies.empty(), ClearAll())},
  };
  for (const std::string& name : options.ies)
    steps.push_back({kTreeImportIes, TickLeaves(Utf8ToGbk(name)),
                     "the selection of information elements has no leaf \"" + name + "\""});
  steps.push_back({kButtonSaveIeTemplate, If(!options.save_template.empty(), act::Press()), kNoTemplate,
                   FileIfGiven(options.save_template)});
  steps.back().goes_on_without_file = true;
  return steps;
}

std::vector<WindowStep> BinningSteps(const ImportSheetOptions& options) {
  std::vector<WindowStep> steps{{kCheckBinningEnabled, act::Check(1)}};
  const BinningText binning = ParseBinning(options.binning);
  if (binning.kind != nullptr) steps.push_back({binning.kind->radio, act::Press()});
  for (std::size_t at = 0; at < binning.numbers.size(); ++at)
    steps.push_back({binning.kind->edits[at], TypeNumber(binning.numbers[at]),
                     "'" + binning.numbers[at] + "' cannot be typed where a number is wanted"});
  if (!options.value.empty()) steps.push_back({kValueRadios.at(options.value), act::Press()});
  steps.insert(steps.end(), {
    {kCheckUe,           If(!options.ue_parameter.empty(), act::Check(1))},
    {kComboUeParam,      ChooseIfGiven(options.ue_parameter)},
    {kCheckScanner,      If(!options.scanner_parameter.empty(), act::Check(1))},
    {kComboScannerParam, ChooseIfGiven(options.scanner_parameter)},
  });
  return steps;
}
// clang-format on

}  // namespace

void AddImportSheetOptions(Command& command, ImportSheetOptions& options) {
  command.AddOption("--ie", options.ies, "Information elements to import, as the selection's leaves name them");
  command.AddOption("--ie-template", options.load_template, "Selection of information elements from this file");
  command.AddOption("--save-ie-template", options.save_template, "Save the selection to this file");
  command.AddOption("--bin", options.binning, "Merge by time=SECONDS, distance=METRES or grid=HEIGHTxWIDTH")
      .Check(ObjectionToBinning, "BINNING");
  command.AddOption("--bin-value", options.value, "What merging keeps: max, min or avg").OneOf(kValueRadios);
  command.AddOption("--bin-ue", options.ue_parameter, "Handset parameter to merge");
  command.AddOption("--bin-scanner", options.scanner_parameter, "Scanner parameter to merge");
}

std::vector<WindowPage> ImportSheetPages(const ImportSheetOptions& options) {
  const bool merges = !(options.binning + options.value + options.ue_parameter + options.scanner_parameter).empty();
  if (!merges && options.ies.empty() && (options.load_template + options.save_template).empty()) return {};
  std::vector<WindowPage> pages{{kDialogSelImport, SelectionSteps(options)}};
  if (merges) {
    pages.back().steps.push_back({kDialogBinning, act::ShowPage()});
    pages.push_back({kDialogBinning, BinningSteps(options)});
  }
  pages.back().steps.push_back({kIdOk, act::Press()});
  return pages;
}

}  // namespace loom
