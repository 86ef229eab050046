#include "manager/file_maps.h"

#include <cstring>
#include <memory>

#include "platform/completes.h"
#include "platform/file_map.h"

namespace loom {

// The first failure stays.
template <class Work>
void FileMaps::Attempt(Work work) {
  Completes(work, [this](const std::string& what) {
    if (failure_.empty()) failure_ = what;
  });
}

void* FileMaps::Create(const CString& path, std::uint32_t size_bytes) {
  failure_.clear();
  std::unique_ptr<FileMap> map;
  Attempt([&] { map = std::make_unique<FileMap>(path, size_bytes); });
  return map.release();
}

std::uint32_t FileMaps::Write(void* mapping, std::uint32_t offset_bytes, const void* data, std::uint32_t length_bytes) {
  const std::uint32_t remainder = offset_bytes % AllocationGranularity();
  Attempt([&] {
    const FileMap& map = *static_cast<const FileMap*>(mapping);
    const FileMapView view = map.Map(offset_bytes - remainder, std::size_t{remainder} + length_bytes);
    std::memcpy(view.bytes().data() + remainder, data, length_bytes);
  });
  return length_bytes;
}

void FileMaps::Close(void* mapping) {
  const std::unique_ptr<FileMap> map(static_cast<FileMap*>(mapping));
  if (map) Attempt([&] { map->Close(); });
}

}  // namespace loom
