#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/cstring.h"
#include "platform/error.h"

namespace loom {

// One part of a zip archive, inflated block by block. A part that is encrypted, damaged or a bomb throws FileError.
class ZipPart {
 public:
  ZipPart(const CString& archive, std::string name, std::uint64_t directory_position, std::uint64_t number);
  ZipPart(ZipPart&&) = default;
  ZipPart& operator=(ZipPart&&) = default;

  // Fills `out` as far as the part goes; 0 at its end, where the checksum has been compared.
  std::size_t Read(std::span<char> out);
  const std::string& name() const { return name_; }
  std::uint64_t Position() const { return inflated_bytes_; }
  [[noreturn]] void Fail(const std::string& reason) const;  // FileError for the place reached

 private:
  void RefuseBomb() const;

  struct Close {
    void operator()(void* archive) const;
  };
  CString archive_;
  std::string name_;
  std::unique_ptr<void, Close> handle_;
  std::uint64_t packed_bytes_ = 0;
  std::uint64_t inflated_bytes_ = 0;
};

// The directory of a zip archive. Names of parts are compared without case, with '/' between folders and none in front.
class ZipReader {
 public:
  explicit ZipReader(const CString& path);

  const CString& path() const { return path_; }
  bool Has(std::string_view part) const { return places_.contains(Normalised(part)); }
  ZipPart Open(std::string_view part) const;

 private:
  static std::string Normalised(std::string_view part);
  struct Place {
    std::uint64_t directory_position = 0;
    std::uint64_t number = 0;
  };
  CString path_;
  std::map<std::string, Place, std::less<>> places_;
};

}  // namespace loom
