#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "components/intermediate/file.h"
#include "components/module_communicator.h"
#include "importers/importer.h"

namespace loom {

// Brings the streams of one intermediate file into the host, which makes the log file object and the streams. An
// importer is made for each file.
class CIntermediateFileImporter final : public CImporter {
 public:
  explicit CIntermediateFileImporter(IModuleCommunicator* communicator) : communicator_(communicator) {}  // not owned

  // 0 when the header is refused, which a message says, or the host makes no log file object; else 1, also when the
  // file cannot be opened (one that is missing is made) or is empty. `logfile` may be null. When this throws, nothing
  // of the file stays.
  int Import(const CString& path, ILogfile** logfile) override;
  // That the file tells, also when it is refused for it; none without a header of an intermediate file.
  std::optional<std::int32_t> FileVersion() const { return file_version_; }

 private:
  using Extent = std::pair<std::uint64_t, std::uint64_t>;

  bool IsAccepted(const IntermediateFile& file);
  ILogfile* ImportStreams(const IntermediateFile& file);
  void ImportStream(const IntermediateFile& file, std::uint64_t position, ILogfile& logfile);
  IDataStream* MakeStream(const IntermediateFile& file, const IntermediateEntry& entry);
  void ReadRows(const IntermediateFile& file, const IntermediateEntry& entry, IDataStream& stream);
  void NoteOverlap(const IntermediateFile& file, const IntermediateEntry& entry);
  void LinkDualStreams();

  IModuleCommunicator* communicator_;
  std::optional<std::int32_t> file_version_;
  std::map<CString, std::vector<IDataStream*>> streams_;  // by device name
  std::vector<Extent> extents_;                           // of the row data of the streams so far
};

}  // namespace loom
