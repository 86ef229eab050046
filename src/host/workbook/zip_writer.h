#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "host/workbook/deflate_writer.h"
#include "platform/file.h"

namespace loom {

// Writes a zip archive of entries that are compressed already. The archive's file is committed by its owner.
class ZipWriter {
 public:
  explicit ZipWriter(AtomicFile& file);
  ZipWriter(const ZipWriter&) = delete;
  ZipWriter& operator=(const ZipWriter&) = delete;
  ~ZipWriter();

  // `raw_bytes` decides whether the entry needs 64-bit sizes.
  void BeginEntry(const std::string& name, std::uint64_t raw_bytes);
  void Write(std::span<const std::byte> packed);
  void EndEntry(std::uint64_t raw_bytes, std::uint32_t crc);
  // A whole entry, compressed here.
  void AddEntry(const std::string& name, std::string_view raw);
  void Finish();

 private:
  struct Output;
  void Check(int result, const char* what);

  std::unique_ptr<Output> output_;
  void* archive_ = nullptr;
};

}  // namespace loom
