#pragma once

#include <memory>

#include "components/db_mapper.h"
#include "components/workbook_reader.h"
#include "host/netdb/network_database.h"

namespace loom {

// What the last read and store operations of the mapper did.
struct NetImportReport {
  CString worksheet;
  CString table;                        // empty: nothing was stored
  std::vector<CString> source_columns;  // one for each parameter
  std::vector<CString> parameters;
  std::vector<CString> attributes;
  std::uint64_t rows_read = 0;
  NetworkDatabase::Counts counts;
};

// The one database mapper. It answers from the network-element tables of the open project; without one no table holds
// rows and no cell has a position.
class DBMapper final : public IDBMapper {
 public:
  static DBMapper& Instance();

  int OpenWorkbook(CString path) override;
  void CloseWorkbook() override;
  int GetWorksheetNames(std::vector<CString>& names) override;
  int GetColumnHeadings(CString worksheet, std::list<CString>& headings,
                        std::map<CString, CString>& attributes) override;
  int GetParameterCatalogue(NetDataType data_type, ProtocolTypeEnum protocol, std::vector<CString>& names,
                            std::vector<CString>& attributes) override;
  int ReadRows(CString worksheet, ProtocolTypeEnum protocol, const std::vector<CString>& source_columns,
               std::vector<NetInfoRow>& rows) override;
  int StoreRows(NetDataType data_type, ProtocolTypeEnum protocol, const std::vector<CString>& parameters,
                const std::vector<CString>& attributes, const std::vector<NetInfoRow>& rows) override;
  bool TableExists(CString table) override;
  void GetCellPosition(std::int32_t cell_key, double& longitude, double& latitude) override;
  bool SaveTextConfig(CString path, const CProjectTxtFile& record) override;
  bool LoadTextConfig(CString path, CProjectTxtFile& record) override;

  void Use(NetworkDatabase* network) { network_ = network; }  // null: none
  const NetImportReport& Report() const { return report_; }

 private:
  IWorkbookReader& Workbook() const;
  void Store(NetDataType data_type, ProtocolTypeEnum protocol, const std::vector<NetInfoRow>& rows);

  NetworkDatabase* network_ = nullptr;
  CString path_;  // of the workbook opened last
  std::unique_ptr<IWorkbookReader> workbook_;
  NetImportReport report_;
};

}  // namespace loom
