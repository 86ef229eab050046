#include "components/factory.h"

#include "host/decoder/block_decoder.h"
#include "host/netdb/db_mapper.h"

namespace loom {

CFactory& CFactory::Instance() {
  static CFactory factory;
  return factory;
}

std::unique_ptr<IDecoder> CFactory::CreateDecoder() { return std::make_unique<BlockDecoder>(); }

IDBMapper* CFactory::CreateDBMapper() { return &DBMapper::Instance(); }

}  // namespace loom
