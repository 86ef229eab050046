#include "apps/qloom/import_sheet.h"

#include <array>

#include "platform/encoding.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/binning_templates.h"
#include "resources/log_import_templates.h"
#include "text/selection/ie_selection_page.h"

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

std::optional<CString> TextFrom(const std::string& utf8) {
  if (utf8.empty()) return std::nullopt;
  return Utf8ToGbk(utf8);
}

std::optional<CString> PathFrom(const std::string& native) {
  if (native.empty()) return std::nullopt;
  return NativeNameToGbk(native);
}

void TypeAll(CEdit& edit, const CString& text) {
  if (edit.UserType(text) || edit.GetWindowText().IsEmpty()) return;
  throw Error("'" + GbkToUtf8(text) + "' cannot be typed where a number is wanted");
}

void TickLeaf(CMutiTreeCtrl& tree, const CString& name) {
  bool found = false;
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    if (tree.ItemHasChildren(item) || tree.GetItemText(item) != name) continue;
    tree.UserTick(item, true);
    found = true;
  }
  if (!found) throw Error("the selection of information elements has no leaf \"" + GbkToUtf8(name) + "\"");
}

void TickOnly(CMutiTreeCtrl& tree, const std::vector<CString>& names) {
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextSiblingItem(item)) tree.UserTick(item, false);
  for (const CString& name : names) TickLeaf(tree, name);
}

void UseTemplate(CSelImportDialog& page, int button, const CString& path,
                 const std::function<void(const CString&)>& pick_file) {
  pick_file(path);
  page.UserPress(button);
  // What is wrong with the file the page has told the log.
  if (!page.TemplateFailure().empty()) throw Error("nothing is imported without the template that was asked for");
}

void FillSelection(CSelImportDialog& page, const ImportSheetAnswers& answers,
                   const std::function<void(const CString&)>& pick_file) {
  if (answers.load_template) UseTemplate(page, kButtonLoadIeTemplate, *answers.load_template, pick_file);
  if (!answers.ies.empty()) TickOnly(page.GetDlgItem<CMutiTreeCtrl>(kTreeImportIes), answers.ies);
  if (answers.save_template) UseTemplate(page, kButtonSaveIeTemplate, *answers.save_template, pick_file);
}

void FillParameter(CDialog& page, int check_id, int combo_id, const std::optional<CString>& parameter) {
  if (!parameter) return;
  page.GetDlgItem<CButton>(check_id).UserCheck(1);
  page.GetDlgItem<CComboBox>(combo_id).UserChoose(*parameter);
}

void FillBinning(CDialog& page, const ImportSheetAnswers& answers) {
  page.GetDlgItem<CButton>(kCheckBinningEnabled).UserCheck(1);
  if (answers.type_radio != 0) page.UserPress(answers.type_radio);
  for (const auto& [edit, text] : answers.numbers) TypeAll(page.GetDlgItem<CEdit>(edit), text);
  if (answers.value_radio != 0) page.UserPress(answers.value_radio);
  FillParameter(page, kCheckUe, kComboUeParam, answers.ue_parameter);
  FillParameter(page, kCheckScanner, kComboScannerParam, answers.scanner_parameter);
}

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

std::optional<ImportSheetAnswers> ImportSheetAnswersFrom(const ImportSheetOptions& options) {
  ImportSheetAnswers answers;
  for (const std::string& name : options.ies) answers.ies.push_back(Utf8ToGbk(name));
  answers.load_template = PathFrom(options.load_template);
  answers.save_template = PathFrom(options.save_template);
  answers.ue_parameter = TextFrom(options.ue_parameter);
  answers.scanner_parameter = TextFrom(options.scanner_parameter);
  if (!options.binning.empty()) {
    const BinningText binning = ParseBinning(options.binning);
    answers.type_radio = binning.kind->radio;
    for (std::size_t at = 0; at < binning.numbers.size(); ++at) {
      answers.numbers.emplace_back(binning.kind->edits[at], Utf8ToGbk(binning.numbers[at]));
    }
  }
  if (!options.value.empty()) answers.value_radio = kValueRadios.at(options.value);
  answers.merges =
      answers.type_radio != 0 || answers.value_radio != 0 || answers.ue_parameter || answers.scanner_parameter;
  const bool is_given = answers.merges || !answers.ies.empty() || answers.load_template || answers.save_template;
  return is_given ? std::optional(std::move(answers)) : std::nullopt;
}

bool IsImportSheet(const CPropertySheet& sheet) {
  return sheet.GetPageCount() > 0 && dynamic_cast<CSelImportDialog*>(&sheet.GetPage(0)) != nullptr;
}

bool FillImportSheet(CPropertySheet& sheet, const ImportSheetAnswers& answers,
                     const std::function<void(const CString&)>& pick_file) {
  try {
    FillSelection(dynamic_cast<CSelImportDialog&>(sheet.GetPage(0)), answers, pick_file);
    if (answers.merges) {
      sheet.UserSelectPage(sheet.FindPage(kDialogBinning));
      FillBinning(*sheet.GetActivePage(), answers);
    }
    sheet.UserPress(kIdOk);
  } catch (const UiRefused& refusal) {
    throw Error(refusal.what());
  }
  if (!sheet.IsRunning()) return true;
  sheet.UserClose();
  return false;
}

}  // namespace loom
