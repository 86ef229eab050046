#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <vector>

#include "components/net_info.h"
#include "platform/cstring.h"

namespace loom {

class CProjectTxtFile;

// The network-element database as the module sees it. Numbers are positions in the interface.
class IDBMapper {
 public:
  virtual ~IDBMapper() = default;
  // 2, 9. A workbook for operations 3, 4 and 7. Results of 2 to 8: 1, or 0 when it failed, which the log tells.
  virtual int OpenWorkbook(CString path) = 0;
  virtual void CloseWorkbook() = 0;
  // 3. Names of its worksheets in sheet order.
  virtual int GetWorksheetNames(std::vector<CString>& names) = 0;
  // 4. The texts of a worksheet's first row that is not empty, from left to right; one that comes again gets a running
  // number. A heading that is no parameter's name has an attribute of its own, for a parameter that the user names.
  virtual int GetColumnHeadings(CString worksheet, std::list<CString>& headings,
                                std::map<CString, CString>& attributes) = 0;
  // 5. The parameters that a kind of data may have, and the attribute of each.
  virtual int GetParameterCatalogue(NetDataType data_type, ProtocolTypeEnum protocol, std::vector<CString>& names,
                                    std::vector<CString>& attributes) = 0;
  // 7. The rows below the headings that hold something in the source columns, with those columns' values.
  virtual int ReadRows(CString worksheet, ProtocolTypeEnum protocol, const std::vector<CString>& source_columns,
                       std::vector<NetInfoRow>& rows) = 0;
  // 8. Stores all rows or none. A stored row of the same key is replaced. `parameters` and `attributes` are as
  // operation 5 or 4 gave them, one for each value of a row.
  virtual int StoreRows(NetDataType data_type, ProtocolTypeEnum protocol, const std::vector<CString>& parameters,
                        const std::vector<CString>& attributes, const std::vector<NetInfoRow>& rows) = 0;
  // 11. Whether the table ("tbl_Cell" and so on) is there and holds rows to be used.
  virtual bool TableExists(CString table) = 0;
  // 12. Position of a cell in degrees; -255, -255 when the key is unknown or fits more than one cell.
  // TD-SCDMA key: LAC in the high and cell id in the low 16 bits; LTE key: physical cell id in the high 16 bits, MHz in
  // the low ones.
  virtual void GetCellPosition(std::int32_t cell_key, double& longitude, double& latitude) = 0;
  // 18, 19. Text import configurations; false when the file cannot be written or read.
  virtual bool SaveTextConfig(CString path, const CProjectTxtFile& record) = 0;
  virtual bool LoadTextConfig(CString path, CProjectTxtFile& record) = 0;
};

}  // namespace loom
