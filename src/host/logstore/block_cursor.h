#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/error.h"
#include "platform/file.h"

namespace loom {

// One block of a container, its two lengths checked against each other and against the file.
struct Block {
  std::uint32_t type = 0;
  std::uint64_t position_bytes = 0;  // of the block in its file; its body starts 8 bytes further
  std::span<const std::byte> body;   // between the lengths; valid until the cursor moves

  std::uint64_t BodyPosition() const { return position_bytes + 8; }
  // With type and lengths.
  std::span<const std::byte> Whole() const { return {body.data() - 8, body.size() + 12}; }
};

// Walks a little-endian pcapng file block by block, forward, reading it in large pieces. Throws FileError when the file
// cannot be read or became shorter.
class BlockCursor {
 public:
  static constexpr std::uint32_t kPieceBytes = 1U << 18;

  // The file is read in pieces of that size, or of one block where that is longer.
  explicit BlockCursor(const InputFile& file, std::uint32_t piece_bytes = kPieceBytes)
      : file_(file), piece_bytes_(piece_bytes) {}

  // False at the end of the file and at the first block that is torn or lies about its length.
  bool Next(Block& block);
  // Why Next stopped before the end of the file.
  const std::optional<FormatError>& damage() const { return damage_; }
  std::uint64_t Position() const { return at_; }  // of the next block
  // Goes on with the block there, past damage too; a position in the file.
  void ContinueAt(std::uint64_t position_bytes);

 private:
  const std::byte* Need(std::uint32_t count);
  const std::byte* Fill(std::uint32_t count);
  bool Damaged(const std::string& reason);

  const InputFile& file_;
  std::uint32_t piece_bytes_;
  std::vector<std::byte> buffer_;
  std::uint64_t buffer_position_ = 0;  // in the file
  std::uint64_t buffer_end_ = 0;
  std::uint64_t at_ = 0;
  std::optional<FormatError> damage_;
};

}  // namespace loom
