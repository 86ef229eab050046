#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/net_wizard.h"
#include "host/netdb/db_mapper.h"
#include "platform/encoding.h"
#include "resources/net_import_templates.h"
#include "resources/parameter_picker_templates.h"

namespace loom {
namespace {

struct NetImportOptions {
  std::string workbook;
  std::string protocol;
  std::string data;
  std::string sheet;
  std::vector<std::string> map;
  std::vector<std::string> custom;
};

const std::map<std::string, std::string> kProtocols{{"td", "TD-SCDMA"}, {"gsm", "GSM"}, {"lte", "LTE"}};
const std::map<std::string, std::string> kDataTypes{
    {"cell", "小区"}, {"td-neighbour", "TD邻区"}, {"gsm-neighbour", "GSM邻区"}, {"cpi-group", "自定义扰码组"}};

// At the last '=', which no parameter's name holds.
std::vector<std::pair<CString, CString>> PairsFrom(const std::vector<std::string>& texts) {
  std::vector<std::pair<CString, CString>> pairs;
  for (const std::string& text : texts) {
    const std::size_t equals = text.rfind('=');
    pairs.emplace_back(Utf8ToGbk(text.substr(0, equals)), Utf8ToGbk(text.substr(equals + 1)));
  }
  return pairs;
}

NetWizardAnswers AnswersFrom(const NetImportOptions& options) {
  NetWizardAnswers answers{.protocol = Utf8ToGbk(kProtocols.at(options.protocol)),
                           .data_type = Utf8ToGbk(kDataTypes.at(options.data)),
                           .worksheet = {},
                           .map = PairsFrom(options.map),
                           .custom = PairsFrom(options.custom)};
  if (!options.sheet.empty()) answers.worksheet = Utf8ToGbk(options.sheet);
  return answers;
}

Json MappingJson(const NetImportReport& report) {
  Json mapping = Json::array();
  for (std::size_t at = 0; at < report.source_columns.size(); ++at) {
    Json entry{{"heading", JsonText(report.source_columns[at])}};
    if (at < report.parameters.size()) {
      entry["parameter"] = JsonText(report.parameters[at]);
      entry["attribute"] = JsonText(report.attributes[at]);
    }
    mapping.push_back(std::move(entry));
  }
  return mapping;
}

int RunNetImport(const CommandLine& line, const NetImportOptions& options) {
  const std::vector<CString> files = ExistingFiles({options.workbook});
  const auto user = std::make_shared<NetWizardUser>(AnswersFrom(options));
  BatchAnswers answers;
  answers.yes = !line.common.no;
  answers.files = files;
  answers.sheets[kDialogNetImport1] = [user](CPropertySheet& wizard) { user->FillWizard(wizard); };
  answers.dialogs[kDialogParam] = [user](CDialog& dialog, BatchFrontEnd&) { user->ChooseParameter(dialog); };
  answers.dialogs[kDialogCustomNet] = [user](CDialog& dialog, BatchFrontEnd&) { user->TypeName(dialog); };
  Session session(line.common, std::move(answers), {});
  ProtocolTypeEnum protocol = kProtocolNone;
  const int result = session.manager().ImportNetInfo(protocol);
  const NetImportReport& report = DBMapper::Instance().Report();
  if (!line.common.json && result > 0) {
    std::cout << GbkToUtf8(report.table) << ": " << report.rows_read << " rows read, " << report.counts.added
              << " new, " << report.counts.replaced << " replaced\n";
  }
  Json document{{"result", result},
                {"data_type", options.data},
                {"protocol", options.protocol},
                {"table", JsonText(report.table)},
                {"sheet", JsonText(report.worksheet)},
                {"mapping", MappingJson(report)},
                {"rows_read", report.rows_read},
                {"new", report.counts.added},
                {"replaced", report.counts.replaced}};
  return session.Finish(std::move(document), result > 0 ? kExitDone : kExitFailed);
}

}  // namespace

void AddNetImportCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<NetImportOptions>();
  const auto is_pair = [](const std::string& text) {
    return text.find('=') == std::string::npos ? "'" + text + "' holds no '='" : "";
  };
  Command command = program.AddCommand("import-net", "Import network elements from a workbook");
  command.AddOption("WORKBOOK", options->workbook, "Workbook, *.xlsx or *.xls").Required();
  command.AddOption("--protocol", options->protocol, "td, gsm or lte").Required().OneOf(kProtocols);
  command.AddOption("--data", options->data, "cell, td-neighbour, gsm-neighbour or cpi-group")
      .Required()
      .OneOf(kDataTypes);
  command.AddOption("--sheet", options->sheet, "Worksheet (default: the first by name)");
  command.AddOption("--map", options->map, "HEADING=PARAMETER, besides headings that are a parameter's name")
      .Check(is_pair, "A=B");
  command.AddOption("--custom", options->custom, "HEADING=NAME: a parameter of your own").Check(is_pair, "A=B");
  command.Runs([&line, options] { return RunNetImport(line, *options); });
}

}  // namespace loom
