#pragma once

#include <memory>

#include "components/importer.h"

namespace loom {

class CLogImporter;
class CNetInfoImporter;
class CTextImporter;

// The importers and exporters of the module, one of each type, made on first use and kept until Release. One that
// cannot be made is null, which a message tells, and tried again the next time.
class IORegistry {
 public:
  IORegistry();
  ~IORegistry();

  // By type; null when the type has none.
  IImporter* GetImporterByType(ImporterTypeEnum type);
  IExporter* GetExporterByType(ExporterTypeEnum type);
  // Those that are more than an importer, as what they are.
  CLogImporter* GetLogImporter(ImporterTypeEnum type);  // null also when the outside library reads logs by itself
  CTextImporter* GetTextImporter();
  CNetInfoImporter* GetNetInfoImporter();
  // Deletes in the order of the types, importers first.
  void Release();

 private:
  struct Made;
  std::unique_ptr<Made> made_;
};

}  // namespace loom
