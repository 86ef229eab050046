#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/file.h"

namespace loom {

// Reads a text file line by line, in large blocks. Lines end at LF or CR LF, the last one also at the end of the file;
// bytes are given as they stand. Throws FileError when the file cannot be read or became shorter.
class TextLines {
 public:
  explicit TextLines(const CString& path);

  static constexpr std::size_t kReadableBehind = 8;  // bytes behind every line that may be looked at

  // The next line without its end, valid until the next call; false behind the last one.
  bool Next(std::string_view& line);

  std::uint64_t FileSize() const { return file_.Size(); }          // when it was opened
  std::uint64_t Position() const { return read_ - (end_ - at_); }  // in the file, behind the newest line and its end

 private:
  bool Fill();

  InputFile file_;
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
  std::size_t at_ = 0;      // the next line starts here
  std::size_t end_ = 0;     // of the bytes in the buffer
  std::uint64_t read_ = 0;  // bytes of the file read so far
};

}  // namespace loom
