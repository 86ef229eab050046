#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/file.h"

namespace loom {

// A block at the end of a container, its two lengths checked against each other and against the file.
struct Trailer {
  std::uint32_t type = 0;
  std::uint32_t length_bytes = 0;    // of the whole block
  std::uint64_t position_bytes = 0;  // of the block in its file

  std::uint64_t BodyPosition() const { return position_bytes + 8; }
};

// Walks the blocks behind the last record of a little-endian pcapng file backward, by their closing lengths. Throws
// FileError when the file cannot be read or became shorter.
class TrailerCursor {
 public:
  explicit TrailerCursor(const InputFile& file) : file_(file), at_(file.Size()) {}

  // False at a record, at a section header, at a block that lies about its length, and after 16 blocks.
  bool Next(Trailer& trailer);
  std::vector<std::byte> Body(const Trailer& trailer) const;  // between the lengths

 private:
  const InputFile& file_;
  std::uint64_t at_;  // end of the next block
  int seen_ = 0;
};

}  // namespace loom
