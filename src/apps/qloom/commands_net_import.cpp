#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/net_wizard.h"
#include "host/netdb/db_mapper.h"
#include "platform/encoding.h"

namespace loom {
namespace {

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

int RunNetImport(const CommandLine& line, const NetWizardOptions& options) {
  const CString workbook = ExistingFiles({options.workbook}).front();
  Session session(line.common, BatchAnswers().Fill(NetWizardPages(options, workbook)), {});
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
  const auto options = std::make_shared<NetWizardOptions>();
  Command command = program.AddCommand("import-net", "Import network elements from a workbook");
  AddNetWizardOptions(command, *options);
  command.Runs([&line, options] { return RunNetImport(line, *options); });
}

}  // namespace loom
