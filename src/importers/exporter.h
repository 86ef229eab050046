#pragma once

#include "components/importer.h"
#include "components/stream_manager.h"

namespace loom {

// What every exporter holds. The stream manager belongs to its library.
class CExporter : public IExporter {
 public:
  CExporter() : stream_manager_(CStreamManagerCreator::CreateStreamManager()) {}

  std::int32_t exporter_type() const { return exporter_type_; }

 protected:
  std::int32_t exporter_type_ = 0;  // an ExporterTypeEnum
  IStreamManager* stream_manager_;
};

}  // namespace loom
