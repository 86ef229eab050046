#pragma once

#include "components/db_mapper.h"

namespace loom {

class NetworkDatabase;

// The one database mapper. It answers from the network-element tables of the open project; without one no table holds
// rows and no cell has a position.
class DBMapper final : public IDBMapper {
 public:
  static DBMapper& Instance();

  bool TableExists(const CString& table) override;
  void GetCellPosition(std::int32_t cell_key, double& longitude, double& latitude) override;
  bool SaveTextConfig(CString path, const CProjectTxtFile& record) override;
  bool LoadTextConfig(CString path, CProjectTxtFile& record) override;

  void Use(NetworkDatabase* network) { network_ = network; }  // null: none

 private:
  NetworkDatabase* network_ = nullptr;
};

}  // namespace loom
