#include "apps/qloom/net_wizard.h"

#include <map>

#include "platform/encoding.h"
#include "platform/ui/list_ctrl.h"
#include "resources/net_import_templates.h"
#include "resources/parameter_picker_templates.h"

namespace loom {
namespace {

const std::map<std::string, std::string> kProtocols{{"td", "TD-SCDMA"}, {"gsm", "GSM"}, {"lte", "LTE"}};
const std::map<std::string, std::string> kDataTypes{
    {"cell", "小区"}, {"td-neighbour", "TD邻区"}, {"gsm-neighbour", "GSM邻区"}, {"cpi-group", "自定义扰码组"}};

struct Pair {
  std::string heading;
  std::string name;  // of a parameter, or of the person's own
};

// At the last '=', which no parameter's name holds.
Pair PairFrom(const std::string& text) {
  const std::size_t equals = text.rfind('=');
  return {text.substr(0, equals), text.substr(equals + 1)};
}

CListCtrl& MappingOf(const CDialog& page) { return page.GetDlgItem<CListCtrl>(kListNetMapping); }

bool IsMapped(const CDialog& page, const CString& heading, const CString& parameter) {
  const int row = MappingOf(page).FindItem(heading);
  return row >= 0 && MappingOf(page).GetItemText(row, 1) == parameter;
}

// A parameter that another heading has of itself goes to the one that it is asked for.
UserAction Free(const CString& parameter, const CString& heading) {
  return {"clear other rows with", [=](CDialog& page, int clear_button) {
            CListCtrl& list = MappingOf(page);
            for (int row = 0; row < list.GetItemCount(); ++row) {
              if (list.GetItemText(row, 1) != parameter || list.GetItemText(row, 0) == heading) continue;
              list.UserSelectRows({row});
              page.UserPress(clear_button);
            }
          }};
}

// On the first level below the root.
TreeItem ParameterNamed(const CString& name) {
  return {Shown(name), [name](const CTreeCtrl& tree) {
            HTREEITEM item = tree.GetChildItem(tree.GetRootItem());
            while (item && tree.GetItemText(item) != name) item = tree.GetNextSiblingItem(item);
            return item;
          }};
}

std::string Listed(const std::string& list, const CString& text) {
  return list + (list.empty() ? "\"" : ", \"") + GbkToUtf8(text) + "\"";
}

std::string WhyNothingIsMapped(const CDialog& page) {
  std::string headings;
  for (int row = 0; row < MappingOf(page).GetItemCount(); ++row)
    headings = Listed(headings, MappingOf(page).GetItemText(row, 0));
  return "no column is mapped: " + (headings.empty() ? "the worksheet has no headings"
                                                     : "none of the headings is a parameter's name: " + headings);
}

StepRefusal NoWorksheet(const std::string& name) {
  return [name](const CDialog& page) {
    const auto& worksheets = page.GetDlgItem<CComboBox>(kComboWorksheet);
    std::string there;
    for (int row = 0; row < worksheets.GetCount(); ++row) there = Listed(there, worksheets.GetLBText(row));
    return "the workbook has no worksheet \"" + name + "\"; it has " + (there.empty() ? "none" : there);
  };
}

// The row of a heading gets its parameter in the dialog that a button opens.
void AddPair(std::vector<WindowStep>& steps, const Pair& pair, WindowStep opening) {
  steps.push_back({kListNetMapping, act::SelectRow(Utf8ToGbk(pair.heading)),
                   "the worksheet has no heading \"" + pair.heading + "\""});
  opening.unless = [heading = Utf8ToGbk(pair.heading), name = Utf8ToGbk(pair.name)](const CDialog& page) {
    return IsMapped(page, heading, name);
  };
  steps.push_back(std::move(opening));
}

// clang-format off
void AddMapping(std::vector<WindowStep>& steps, const Pair& pair) {
  const CString parameter = Utf8ToGbk(pair.name);
  steps.push_back({kButtonClearNet, Free(parameter, Utf8ToGbk(pair.heading))});
  AddPair(steps, pair, {kButtonMapNet, act::Press(), {}, {}, {
    {kTreeParams, act::SelectItems({ParameterNamed(parameter)}),
     "this kind of data has no parameter \"" + pair.name + "\""},
    {kIdOk,       act::Press()},
  }});
}

void AddNaming(std::vector<WindowStep>& steps, const Pair& pair) {
  const CString name = Utf8ToGbk(pair.name);
  const auto is_refused = [name](const CDialog& naming) {
    return naming.GetDlgItem(kEditCustomName).GetWindowText() != name;
  };
  const std::string no_name = "the heading \"" + pair.heading + "\" is a parameter's name and cannot get one of your own";
  AddPair(steps, pair, {kButtonCustomNet, act::Press(), no_name, {}, {
    {kEditCustomName, act::Type(name)},
    {kIdOk,           act::Press(), {}, {}, {}, is_refused},
  }});
}
// clang-format on

std::vector<WindowStep> MappingSteps(const NetWizardOptions& options) {
  std::vector<WindowStep> steps{{kComboWorksheet, ChooseIfGiven(options.sheet), NoWorksheet(options.sheet)}};
  for (const std::string& text : options.map) AddMapping(steps, PairFrom(text));
  for (const std::string& text : options.custom) AddNaming(steps, PairFrom(text));
  steps.push_back({kIdWizardFinish, act::Press(), &WhyNothingIsMapped});
  return steps;
}

std::string ObjectionToPair(const std::string& text) {
  return text.find('=') == std::string::npos ? "'" + text + "' holds no '='" : "";
}

}  // namespace

void AddNetWizardOptions(Command& command, NetWizardOptions& options) {
  command.AddOption("WORKBOOK", options.workbook, "Workbook, *.xlsx or *.xls").Required();
  command.AddOption("--protocol", options.protocol, "td, gsm or lte").Required().OneOf(kProtocols);
  command.AddOption("--data", options.data, "cell, td-neighbour, gsm-neighbour or cpi-group")
      .Required()
      .OneOf(kDataTypes);
  command.AddOption("--sheet", options.sheet, "Worksheet (default: the first by name)");
  command.AddOption("--map", options.map, "HEADING=PARAMETER, besides headings that are a parameter's name")
      .Check(&ObjectionToPair, "A=B");
  command.AddOption("--custom", options.custom, "HEADING=NAME: a parameter of your own").Check(&ObjectionToPair, "A=B");
}

// clang-format off
std::vector<WindowPage> NetWizardPages(const NetWizardOptions& options, const CString& workbook) {
  return {
    {kDialogNetImport1, {
      {kComboNetProtocol, act::Choose(Utf8ToGbk(kProtocols.at(options.protocol)))},
      {kComboNetDataType, act::Choose(Utf8ToGbk(kDataTypes.at(options.data)))},
      {kButtonBrowseNet,  act::Press(), {}, {workbook}},
      {kIdWizardNext,     act::Press()},
    }},
    {kDialogNetImport2, MappingSteps(options)},
  };
}
// clang-format on

}  // namespace loom
