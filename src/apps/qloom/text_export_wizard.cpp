#include "apps/qloom/text_export_wizard.h"

#include <map>

#include "apps/qloom/session.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"
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

TextExportAnswers::Limit LimitFrom(const std::string& text) {
  const std::size_t equals = text.find('=');
  const std::size_t colon = text.find(':', equals);
  return {Utf8ToGbk(text.substr(0, equals)), Utf8ToGbk(text.substr(equals + 1, colon - equals - 1)),
          Utf8ToGbk(text.substr(colon + 1))};
}

// Of the leaves alone, or of all items; the first with the text.
HTREEITEM FindItem(const CTreeCtrl& tree, const CString& text, bool leaves_only) {
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    if (tree.GetItemText(item) == text && !(leaves_only && tree.ItemHasChildren(item))) return item;
  }
  return {};
}

bool GoOn(CPropertySheet& sheet, int button) {
  const CPropertyPage* const page = sheet.GetActivePage();
  sheet.UserPress(button);
  return !sheet.IsRunning() || sheet.GetActivePage() != page;
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

TextExportAnswers TextExportAnswersFrom(const TextExportOptions& options) {
  TextExportAnswers answers;
  answers.stream = NativeNameToGbk(options.stream);
  for (const std::string& name : options.parameters) answers.parameters.push_back(Utf8ToGbk(name));
  for (const std::string& limit : options.limits) answers.limits.push_back(LimitFrom(limit));
  answers.file = AbsolutePath(options.file);
  if (const auto radio = kExportSeparators.find(options.separator); radio != kExportSeparators.end()) {
    answers.separator_radio = radio->second;
  } else if (!options.separator.empty()) {
    answers.separator_radio = kRadioExportCustom;
    answers.symbol = Utf8ToGbk(options.separator);
  }
  answers.write_header = !options.no_header;
  answers.write_units = options.units;
  answers.fill_gaps = options.fill;
  answers.binned_data = options.binned;
  return answers;
}

bool TextExportWizardUser::IsTextExportWizard(const CPropertySheet& sheet) {
  return sheet.FindPage(kDialogTextExport1) == 0;
}

void TextExportWizardUser::ChooseStream(CDialog& page) const {
  auto& tree = page.GetDlgItem<CTreeCtrl>(kTreeExport);
  const HTREEITEM item = FindItem(tree, answers_.stream, true);
  if (!item) throw Error("the wizard offers no stream \"" + GbkNameToUtf8(answers_.stream) + "\"");
  tree.UserSelect(item);
}

void TextExportWizardUser::ChooseParameters(CDialog& page) const {
  auto& tree = page.GetDlgItem<CMutiTreeCtrl>(kTreeExport);
  for (const CString& name : answers_.parameters) {
    HTREEITEM item = FindItem(tree, name, true);
    if (!item) item = FindItem(tree, name, false);
    if (!item) throw Error("the stream has no information element to export with the name \"" + GbkToUtf8(name) + "\"");
    tree.UserSelectItems({item});
    page.UserPress(kButtonExportSelect);
  }
}

void TextExportWizardUser::SetLimit(CDialog& page, const TextExportAnswers::Limit& limit) {
  auto& list = page.GetDlgItem<CListCtrl>(kListExport);
  const int row = list.FindItem(limit.name);
  if (row < 0) throw Error("a limit for \"" + GbkToUtf8(limit.name) + "\", which is not exported");
  limit_ = &limit;
  list.UserDoubleClick(row);
  if (limit_ != nullptr) throw Error("\"" + GbkToUtf8(limit.name) + "\" has no valid range and so no limits");
}

void TextExportWizardUser::FillLimits(CDialog& dialog) {
  const TextExportAnswers::Limit& limit = *std::exchange(limit_, nullptr);
  dialog.GetDlgItem<CEdit>(kEditSetMinimum).UserType(limit.minimum);
  dialog.GetDlgItem<CEdit>(kEditSetMaximum).UserType(limit.maximum);
  dialog.UserPress(kIdOk);
  if (!dialog.IsRunning()) return;
  limit_was_refused_ = true;
  dialog.UserClose();
}

void TextExportWizardUser::FillFilePage(CDialog& page, const std::function<void(const CString&)>& pick_file) const {
  pick_file(answers_.file);
  page.UserPress(kButtonExportBrowse);
  if (answers_.separator_radio != 0) page.UserPress(answers_.separator_radio);
  if (!answers_.symbol.IsEmpty()) page.GetDlgItem<CEdit>(kEditExportCustom).UserType(answers_.symbol);
  page.UserPress(answers_.binned_data ? kRadioExportBinned : kRadioExportRaw);
  page.GetDlgItem<CButton>(kCheckExportHeader).UserCheck(answers_.write_header ? 1 : 0);
  if (answers_.write_units) page.GetDlgItem<CButton>(kCheckExportUnits).UserCheck(1);
  page.GetDlgItem<CButton>(kCheckExportFill).UserCheck(answers_.fill_gaps ? 1 : 0);
}

void TextExportWizardUser::Fill(CPropertySheet& sheet, const std::function<void(const CString&)>& pick_file) {
  try {
    ChooseStream(*sheet.GetActivePage());
    if (!GoOn(sheet, kIdWizardNext)) return sheet.UserClose();
    if (!sheet.IsRunning()) return;
    ChooseParameters(*sheet.GetActivePage());
    for (const TextExportAnswers::Limit& limit : answers_.limits) SetLimit(*sheet.GetActivePage(), limit);
    if (limit_was_refused_ || !GoOn(sheet, kIdWizardNext)) return sheet.UserClose();
    FillFilePage(*sheet.GetActivePage(), pick_file);
    const CString file = sheet.GetActivePage()->GetDlgItem(kEditExportFile).GetWindowText();
    if (file.IsEmpty() || !GoOn(sheet, kIdWizardFinish)) return sheet.UserClose();
    written_file_ = file;
  } catch (const UiRefused& refusal) {
    throw Error(refusal.what());
  }
}

}  // namespace loom
