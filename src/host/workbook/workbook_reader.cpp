#include "components/workbook_reader.h"

#include <algorithm>
#include <array>
#include <string>

#include "host/workbook/xls_reader.h"
#include "host/workbook/xlsx_reader.h"
#include "platform/file.h"

namespace loom {
namespace {

constexpr std::string_view kZipMark("PK\x03\x04", 4);
constexpr std::string_view kEmptyZipMark("PK\x05\x06", 4);
constexpr std::string_view kCompoundMark("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
constexpr std::size_t kDirectoryEntry_bytes = 128;  // entries of a compound file's directory stand at its multiples

// An encrypted *.xlsx is a compound file with a stream of this name (MS-OFFCRYPTO 1.3).
bool HoldsEncryptedPackage(const InputFile& file) {
  std::string name;
  for (const char c : std::string_view("EncryptedPackage")) name.append({c, '\0'});
  std::array<char, 64 * 1024> block;
  for (std::uint64_t at = 0; at < file.Size(); at += block.size()) {
    const std::size_t count = file.ReadUpTo(at, std::as_writable_bytes(std::span(block)));
    for (std::size_t entry = 0; entry + kDirectoryEntry_bytes <= count; entry += kDirectoryEntry_bytes) {
      if (std::string_view(block.data() + entry, name.size()) == name) return true;
    }
  }
  return false;
}

}  // namespace

std::unique_ptr<IWorkbookReader> OpenWorkbookReader(const CString& path) {
  const InputFile file(path);
  std::array<char, 8> start{};
  const std::size_t count = file.ReadUpTo(0, std::as_writable_bytes(std::span(start)));
  const std::string_view mark(start.data(), count);
  if (mark.starts_with(kZipMark) || mark.starts_with(kEmptyZipMark)) return OpenXlsx(path);
  if (mark != kCompoundMark) throw FileError(path, 0, "is no workbook");
  if (HoldsEncryptedPackage(file)) throw FileError(path, 0, "is encrypted");
  return OpenXls(path);
}

}  // namespace loom
