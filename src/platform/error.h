#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/cstring.h"

namespace loom {

// Root of what this system throws. what() is UTF-8 and says what happened, where and why.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A file could not be opened, read, written, renamed ...
class FileError : public Error {
 public:
  // `reason` is UTF-8.
  FileError(const CString& path, std::uint64_t position_bytes, const std::string& reason);
  const CString& path() const { return path_; }
  std::uint64_t position_bytes() const { return position_bytes_; }
  const std::string& reason() const { return reason_; }

 private:
  CString path_;
  std::uint64_t position_bytes_;
  std::string reason_;
};

// Bytes that do not have the form that they should have.
class FormatError : public Error {
 public:
  FormatError(std::uint64_t position_bytes, const std::string& reason)
      : Error("at byte " + std::to_string(position_bytes) + ": " + reason),
        position_bytes_(position_bytes),
        reason_(reason) {}
  std::uint64_t position_bytes() const { return position_bytes_; }  // in the file, or in the text that was parsed
  const std::string& reason() const { return reason_; }

 private:
  std::uint64_t position_bytes_;
  std::string reason_;
};

// A text that the target code page cannot hold, or that is not valid in its own.
class EncodingError : public FormatError {
 public:
  using FormatError::FormatError;
};

}  // namespace loom
