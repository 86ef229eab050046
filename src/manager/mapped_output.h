#pragma once

#include <cstdint>

#include "components/intermediate/writer.h"
#include "manager/io_manager.h"
#include "platform/cstring.h"

namespace loom {

// A file that is filled through the facade's file maps. It takes its path when it is complete.
class MappedOutput final : public IntermediateOutput {
 public:
  // Throws FileError when the file cannot be made.
  MappedOutput(CIOManager& manager, const CString& path, std::uint32_t size_bytes);
  MappedOutput(const MappedOutput&) = delete;
  MappedOutput& operator=(const MappedOutput&) = delete;
  ~MappedOutput() override;

  void Append(std::span<const std::byte> bytes) override;
  void Complete() override;

 private:
  void Check() const;

  CIOManager& manager_;
  CString path_;
  CString temporary_;
  std::uint32_t size_bytes_;
  void* mapping_;
  bool is_complete_ = false;
  std::uint32_t offset_ = 0;  // of what was handed to the facade
};

// Streams of an imported log as an intermediate file at `path`, links followed; a folder or a device is refused.
// `path` is complete or as it was.
IntermediateSummary SaveIntermediateFile(CIOManager& manager, const ILogfile& logfile,
                                         const std::list<IDataStream*>& streams, const CString& path,
                                         const EventIds& event_ids);

}  // namespace loom
