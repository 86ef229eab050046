#include "importers/log_importer.h"

#include <utility>

#include "components/factory.h"

namespace loom {

CLogImporter::CLogImporter()
    : converter_(std::make_unique<CTDRecordConverter>()), decoder_(CFactory::Instance().CreateDecoder()) {
  converter_->SetCellSource(cell_mapper_);
}

CLogImporter::~CLogImporter() = default;

void CLogImporter::SetImpIESetting(ImpIESettings settings) { ie_settings_ = std::move(settings); }
void CLogImporter::ClearImpIESetting() { ie_settings_.clear(); }
void CLogImporter::ResetDeviceProtocols() { device_protocols_.clear(); }

}  // namespace loom
