#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "components/intermediate/layout.h"
#include "platform/byte_reader.h"
#include "platform/cstring.h"
#include "platform/file.h"

namespace loom {

// The blocks that every intermediate file begins with.
struct IntermediateHeader {
  std::array<std::byte, intermediate::kHeaderBytes> bytes;

  std::span<const std::byte> FileHeader() const {
    return std::span(bytes).subspan(intermediate::kFileHeaderAt, intermediate::kFileHeaderBytes);
  }
  std::span<const std::byte> StreamTable() const {
    return std::span(bytes).subspan(intermediate::kStreamTableAt, intermediate::kStreamTableBytes);
  }
  bool HasMagic() const;
  std::uint32_t Version() const;
  std::uint16_t EntryCount() const;  // as the file says: it may be more than there is room for
  std::uint32_t EntryOffset(std::size_t entry) const;
};

// A stream entry.
struct IntermediateEntry {
  std::array<std::byte, intermediate::kEntryBytes> bytes;
  std::uint64_t position = 0;  // of the entry in the file
  std::uint64_t data_at = 0;   // where the stream's row data begins in the file
  std::uint64_t data_end = 0;  // where it ends, which may be behind the file's end
  std::uint64_t index_at = 0;  // where the row index begins in the file
  std::uint32_t row_count = 0;
  std::uint32_t ie_count = 0;
  std::uint32_t skip_count = 0;
  std::uint32_t event_count = 0;
  std::int32_t stream_kind = 0;
  bool is_imported = false;
  intermediate::Name device_name = {};
  intermediate::Name protocol = {};

  std::span<const std::byte> Header() const {
    return std::span(bytes).subspan(intermediate::kStreamHeaderAt, intermediate::kStreamHeaderBytes);
  }
  bool IsDual() const { return protocol.text == intermediate::kDualProtocol; }
};

struct RowIndexEntry {
  double time_s = 0.0;
  std::int32_t number = 0;
  std::uint32_t data_offset = 0;  // from the stream's data
  std::uint16_t length_bytes = 0;
};

// An intermediate file, read piece by piece. A piece that is not within the file is a FormatError, one that cannot be
// read a FileError; both name the position.
class IntermediateFile {
 public:
  explicit IntermediateFile(const CString& path) : file_(path) {}

  const CString& path() const { return file_.path(); }
  std::uint64_t Size() const { return file_.Size(); }
  void Read(std::uint64_t position_bytes, std::span<std::byte> out, const char* what) const;
  void Require(std::uint64_t position_bytes, std::uint64_t length_bytes, const char* what) const;

  IntermediateHeader ReadHeader() const;
  IntermediateEntry ReadEntry(std::uint64_t position_bytes) const;
  // Appends the ids of a list.
  void ReadIds(std::uint64_t position_bytes, std::uint32_t count, std::vector<std::uint32_t>& ids) const;

 private:
  InputFile file_;
};

// The row index of one stream, chunk by chunk, in blocks of bounded size.
class RowIndexReader {
 public:
  // The chunk is within the file; throws FormatError otherwise.
  RowIndexReader(const IntermediateFile& file, const IntermediateEntry& entry, std::uint64_t first_row,
                 std::uint64_t row_count);
  // Calls for exactly row_count rows are allowed.
  RowIndexEntry Next();
  std::uint64_t Position() const { return next_at_ - block_.size() + at_; }  // of the next entry in the file

 private:
  void ReadBlock();

  const IntermediateFile& file_;
  std::uint64_t next_at_;  // of what was not read yet
  std::uint64_t end_at_;
  std::vector<std::byte> block_;
  std::size_t at_ = 0;
};

// The row data of one stream through a window that moves over it.
class RowDataWindow {
 public:
  RowDataWindow(const IntermediateFile& file, const IntermediateEntry& entry) : file_(file), entry_(entry) {}

  // The bytes behind those taken last when they are all in the window; else a new window is opened for the row. Throws
  // FormatError when the window or the row is not within the data or the file. Valid until the next call.
  ByteReader Take(const RowIndexEntry& row);
  // Where the next row is read from if the window has it.
  std::uint64_t Position() const { return start_ + at_; }
  bool IsOpen() const { return size_ != 0; }
  void Close() { size_ = at_ = 0; }

 private:
  void Open(std::uint64_t position_bytes);

  const IntermediateFile& file_;
  const IntermediateEntry& entry_;
  std::vector<std::byte> buffer_;
  std::uint64_t start_ = 0;  // of the window in the file
  std::size_t size_ = 0;
  std::size_t at_ = 0;
};

}  // namespace loom
