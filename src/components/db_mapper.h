#pragma once

#include <cstdint>

#include "platform/cstring.h"

namespace loom {

class CProjectTxtFile;

// The network-element database as the module sees it. Numbers are positions in the interface.
class IDBMapper {
 public:
  virtual ~IDBMapper() = default;
  // 11. Whether the table ("tbl_Cell" and so on) is there and holds rows to be used.
  virtual bool TableExists(const CString& table) = 0;
  // 12. Position of a cell in degrees; -255, -255 when the key is unknown or fits more than one cell.
  // TD-SCDMA key: LAC in the high and cell id in the low 16 bits; LTE key: physical cell id in the high 16 bits, MHz in the low ones.
  virtual void GetCellPosition(std::int32_t cell_key, double& longitude, double& latitude) = 0;
  // 18, 19. Text import configurations; false when the file cannot be written or read.
  virtual bool SaveTextConfig(CString path, const CProjectTxtFile& record) = 0;
  virtual bool LoadTextConfig(CString path, CProjectTxtFile& record) = 0;
};

}  // namespace loom
