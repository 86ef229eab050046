#pragma once

#include <memory>

#include "components/db_mapper.h"
#include "components/decoder.h"

namespace loom {

// Hands out the objects of the outside libraries.
class CFactory {
 public:
  static CFactory& Instance();
  std::unique_ptr<IDecoder> CreateDecoder();
  IDBMapper* CreateDBMapper();  // owned by the factory

 private:
  CFactory() = default;
};

}  // namespace loom
