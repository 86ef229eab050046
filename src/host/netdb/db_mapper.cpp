#include "host/netdb/db_mapper.h"

#include <tuple>

#include "components/field_value.h"
#include "components/host_folders.h"
#include "components/note_kinds.h"
#include "host/netdb/network_storage.h"
#include "host/netdb/network_worksheet.h"
#include "host/netdb/parameter_catalogue.h"
#include "host/netdb/text_config.h"
#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/log.h"

namespace loom {
DBMapper& DBMapper::Instance() {
  static DBMapper mapper;
  return mapper;
}

IWorkbookReader& DBMapper::Workbook() const {
  if (workbook_ == nullptr) throw Error("no workbook is open");
  return *workbook_;
}

int DBMapper::OpenWorkbook(CString path) {
  CloseWorkbook();
  path_ = path;
  return Completes([&] { workbook_ = OpenWorkbookReader(path); });
}

void DBMapper::CloseWorkbook() { workbook_.reset(); }

int DBMapper::GetWorksheetNames(std::vector<CString>& names) {
  return Completes([&] { names = Workbook().SheetNames(); });
}

int DBMapper::GetColumnHeadings(CString worksheet, std::list<CString>& headings,
                                std::map<CString, CString>& attributes) {
  return Completes([&] {
    const ParameterCatalogue catalogue = ParameterCatalogue::Load(GetChosenConfigFolder());
    headings.clear();
    attributes.clear();
    for (const CString& heading : NetworkWorksheet(Workbook(), path_, worksheet).Headings()) {
      headings.push_back(heading);
      if (!catalogue.Knows(heading)) attributes[heading] = kAttributeFree;
    }
  });
}

int DBMapper::GetParameterCatalogue(NetDataType data_type, ProtocolTypeEnum protocol, std::vector<CString>& names,
                                    std::vector<CString>& attributes) {
  return Completes([&] {
    const ParameterCatalogue catalogue = ParameterCatalogue::Load(GetChosenConfigFolder());
    names.clear();
    attributes.clear();
    for (const ParameterCatalogue::Parameter& parameter : catalogue.Of(data_type, protocol)) {
      names.push_back(parameter.name);
      attributes.push_back(parameter.attribute);
    }
  });
}

int DBMapper::ReadRows(CString worksheet, ProtocolTypeEnum, const std::vector<CString>& source_columns,
                       std::vector<NetInfoRow>& rows) {
  report_ = {};
  report_.worksheet = worksheet;
  report_.source_columns = source_columns;
  rows.clear();
  const bool is_read = Completes([&] { rows = NetworkWorksheet(Workbook(), path_, worksheet).Rows(source_columns); });
  report_.rows_read = rows.size();
  return is_read;
}

int DBMapper::StoreRows(NetDataType data_type, ProtocolTypeEnum protocol, const std::vector<CString>& parameters,
                        const std::vector<CString>& attributes, const std::vector<NetInfoRow>& rows) {
  report_.parameters = parameters;
  report_.attributes = attributes;
  report_.table.Empty();
  report_.counts = {};
  return Completes([&] { Store(data_type, protocol, rows); });
}

void DBMapper::Store(NetDataType data_type, ProtocolTypeEnum protocol, const std::vector<NetInfoRow>& rows) {
  if (network_ == nullptr) throw Error("no project is open");
  if (report_.attributes.size() != report_.parameters.size()) throw Error("each parameter needs an attribute");
  const std::string sheet = GbkToUtf8(report_.worksheet);
  auto row = rows.begin();
  const auto next = [&](std::vector<NetworkValue>& values) {
    if (row == rows.end()) return false;
    if (row->values.size() != values.size()) throw Error("each parameter needs a value");
    for (std::size_t at = 0; at < values.size(); ++at) {
      std::string mended;
      values[at] = StoredValue(row->values[at], report_.attributes[at], mended);
      if (mended.empty()) continue;
      CurrentNotes().Add("value of another kind"_note, path_, sheet + " row " + std::to_string(row->sheet_row),
                         "the value of " + GbkToUtf8(report_.parameters[at]) + " " + mended);
    }
    ++row;
    return true;
  };
  const CString table = TableOf(data_type, protocol);
  report_.counts = network_->PutRows(table, report_.parameters, next);
  report_.table = table;
  for (const std::int64_t superseded : report_.counts.superseded) {
    CurrentNotes().Add("row replaced by a later one of the sheet"_note, path_,
                       sheet + " row " + std::to_string(rows[static_cast<std::size_t>(superseded)].sheet_row),
                       "a row below has the same key");
  }
  Log(LogLevel::kInfo, std::string(table.view()) + ": " + std::to_string(rows.size()) + " rows, " +
                           std::to_string(report_.counts.added) + " new, " + std::to_string(report_.counts.replaced) +
                           " replaced");
}

bool DBMapper::TableExists(CString table) { return network_ != nullptr && network_->HoldsRows(table); }

void DBMapper::GetCellPosition(std::int32_t cell_key, double& longitude, double& latitude) {
  longitude = latitude = kInvalidDouble;
  if (network_ == nullptr) return;
  if (const auto position = network_->LongitudeLatitudeOf(cell_key)) std::tie(longitude, latitude) = *position;
}

bool DBMapper::SaveTextConfig(CString path, const CProjectTxtFile& record) {
  return Completes([&] { WriteTextConfig(path, record); });
}

bool DBMapper::LoadTextConfig(CString path, CProjectTxtFile& record) {
  return Completes([&] { ReadTextConfig(path, record); });
}

}  // namespace loom
