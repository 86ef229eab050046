#include "importers/importer.h"

#include "components/factory.h"

namespace loom {

CImporter::CImporter()
    : cell_mapper_(CFactory::Instance().CreateDBMapper()),
      stream_manager_(CStreamManagerCreator::CreateStreamManager()) {}

}  // namespace loom
