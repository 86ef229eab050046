#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <span>

#include "components/stream_manager.h"
#include "platform/cstring.h"

namespace loom {

// A file of a size that is known before, filled from its start. Destroyed before it is complete, it leaves nothing.
class IntermediateOutput {
 public:
  virtual ~IntermediateOutput() = default;
  // Both throw FileError.
  virtual void Append(std::span<const std::byte> bytes) = 0;
  virtual void Complete() = 0;
};
using IntermediateOutputMaker = std::function<std::unique_ptr<IntermediateOutput>(std::uint32_t size_bytes)>;

using EventIds = std::map<CString, std::int32_t>;  // by name

struct IntermediateSummary {
  std::size_t streams = 0;
  std::uint64_t rows = 0;
  std::uint32_t bytes = 0;
};

// Writes streams of a log as an intermediate file. What the format cannot carry is noted for `path`: texts that are
// too long, spectra, streams beyond 22, names that the catalogue lacks. Throws Error when the file cannot be written or
// would have 4 GB or more.
IntermediateSummary WriteIntermediateFile(const ILogfile& logfile, const std::list<IDataStream*>& streams,
                                          const CString& path, const EventIds& event_ids,
                                          const IntermediateOutputMaker& make_output);

}  // namespace loom
