#include <cstring>
#include <exception>

#include "manager/io_manager.h"
#include "platform/file_map.h"
#include "platform/log.h"

namespace loom {

namespace {

// The first failure stays.
void Remember(const std::exception& error, std::string& failure) {
  Log(LogLevel::kError, error.what());
  if (failure.empty()) failure = error.what();
}

}  // namespace

void* CIOManager::CreateFileMap(const CString& path, std::uint32_t size_bytes) {
  file_map_failure_.clear();
  try {
    return std::make_unique<FileMap>(path, size_bytes).release();
  } catch (const std::exception& error) {
    Remember(error, file_map_failure_);
    return nullptr;
  }
}

std::uint32_t CIOManager::ExportMemoryToFile(void*& mapping, std::uint32_t& offset_bytes, const void* data,
                                             std::uint32_t length_bytes) {
  const std::uint32_t remainder = offset_bytes % AllocationGranularity();
  try {
    const FileMap& map = *static_cast<const FileMap*>(mapping);
    const FileMapView view = map.Map(offset_bytes - remainder, std::size_t{remainder} + length_bytes);
    std::memcpy(view.bytes().data() + remainder, data, length_bytes);
  } catch (const std::exception& error) {
    Remember(error, file_map_failure_);
  }
  return length_bytes;
}

void CIOManager::CloseFileMap(void* mapping) {
  const std::unique_ptr<FileMap> map(static_cast<FileMap*>(mapping));
  if (!map) return;
  try {
    map->Close();
  } catch (const std::exception& error) {
    Remember(error, file_map_failure_);
  }
}

}  // namespace loom
