#include "components/factory.h"

#include "host/netdb/db_mapper.h"

namespace loom {

CFactory& CFactory::Instance() {
  static CFactory factory;
  return factory;
}

IDBMapper* CFactory::CreateDBMapper() { return &DBMapper::Instance(); }

}  // namespace loom
