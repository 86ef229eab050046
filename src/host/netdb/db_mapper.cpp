#include "host/netdb/db_mapper.h"

#include <tuple>

#include "components/field_value.h"
#include "host/netdb/network_database.h"
#include "host/netdb/text_config.h"
#include "platform/log.h"

namespace loom {

DBMapper& DBMapper::Instance() {
  static DBMapper mapper;
  return mapper;
}

bool DBMapper::TableExists(const CString& table) { return network_ != nullptr && network_->HoldsRows(table); }

void DBMapper::GetCellPosition(std::int32_t cell_key, double& longitude, double& latitude) {
  longitude = latitude = kInvalidDouble;
  if (network_ == nullptr) return;
  if (const auto position = network_->LongitudeLatitudeOf(cell_key)) std::tie(longitude, latitude) = *position;
}

bool DBMapper::SaveTextConfig(CString path, const CProjectTxtFile& record) {
  try {
    WriteTextConfig(path, record);
    return true;
  } catch (const Error& error) {
    Log(LogLevel::kError, error.what());
    return false;
  }
}

bool DBMapper::LoadTextConfig(CString path, CProjectTxtFile& record) {
  try {
    ReadTextConfig(path, record);
    return true;
  } catch (const Error& error) {
    Log(LogLevel::kError, error.what());
    return false;
  }
}

}  // namespace loom
