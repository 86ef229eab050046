#pragma once

#include <cstdint>

#include "components/stream_manager.h"
#include "host/catalogue/catalogue.h"
#include "manager/io_manager.h"
#include "platform/cstring.h"

namespace loom {

struct IntermediateSummary {
  std::size_t streams = 0;
  std::uint64_t rows = 0;
  std::uint32_t bytes = 0;
};

// Writes the streams of an imported log as an intermediate file, through the facade's file maps; `path` is complete or
// as it was. What the format cannot carry is noted: texts that are too long, spectra, streams beyond 22, names that
// the catalogue lacks. Throws Error when the file cannot be written or would have 4 GB or more.
IntermediateSummary WriteIntermediateFile(CIOManager& manager, const IECatalogue& catalogue, const ILogfile& logfile,
                                          const CString& path);

}  // namespace loom
