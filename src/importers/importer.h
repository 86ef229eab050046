#pragma once

#include "components/db_mapper.h"
#include "components/importer.h"
#include "components/stream_manager.h"
#include "platform/cstring.h"

namespace loom {

// What every importer holds. Mapper and stream manager belong to their libraries.
class CImporter : public IImporter {
 public:
  CImporter();

  ImporterTypeEnum importer_type() const { return importer_type_; }

 protected:
  ImporterTypeEnum importer_type_ = kImporterNone;
  IDBMapper* cell_mapper_;
  IStreamManager* stream_manager_;
};

}  // namespace loom
