#include "manager/mapped_output.h"

#include <unistd.h>

#include <filesystem>

#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/path.h"
#include "platform/replace_file.h"

namespace loom {
namespace {

// The file that a path stands for.
CString TargetOf(const CString& path) {
  if (!FileExists(path)) return path;
  const InputFile refuses_what_is_no_file(path);
  return NativePathToGbk(std::filesystem::canonical(GbkPathToNative(path)).native());
}

}  // namespace

MappedOutput::MappedOutput(CIOManager& manager, const CString& path, std::uint32_t size_bytes)
    : manager_(manager),
      path_(path),
      temporary_(FolderOf(path) + Format(".qloom-%s", std::to_string(getpid()).c_str())),
      size_bytes_(size_bytes),
      mapping_(manager.CreateFileMap(temporary_, size_bytes)) {
  Check();
}

MappedOutput::~MappedOutput() {
  if (mapping_ == nullptr && is_complete_) return;
  manager_.CloseFileMap(mapping_);
  unlink(GbkPathToNative(temporary_).c_str());
}

void MappedOutput::Append(std::span<const std::byte> bytes) {
  if (bytes.empty()) return;
  offset_ += manager_.ExportMemoryToFile(mapping_, offset_, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  Check();
}

void MappedOutput::Complete() {
  if (offset_ != size_bytes_) throw FileError(path_, offset_, "a planned size does not hold");
  manager_.CloseFileMap(mapping_);
  mapping_ = nullptr;
  Check();
  ReplaceFile(temporary_, path_);
  is_complete_ = true;
}

void MappedOutput::Check() const {
  if (!manager_.FileMapFailure().empty()) throw FileError(path_, offset_, manager_.FileMapFailure());
}

IntermediateSummary SaveIntermediateFile(CIOManager& manager, const ILogfile& logfile,
                                         const std::list<IDataStream*>& streams, const CString& path,
                                         const EventIds& event_ids) {
  const CString target = TargetOf(path);
  return WriteIntermediateFile(logfile, streams, target, event_ids, [&](std::uint32_t size_bytes) {
    return std::make_unique<MappedOutput>(manager, target, size_bytes);
  });
}

}  // namespace loom
