#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/automation/variant.h"
#include "platform/file.h"

namespace loom {

// The rows of a large table in a file without a name among the temporary ones; the row asked for last is in memory.
// Copies share what was written and have rows of their own from then on. Throws FileError when there is no room.
class SpooledRows {
 public:
  SpooledRows(std::uint32_t rows, std::uint32_t columns);

  // Both are valid until another row is asked for.
  std::span<VARIANT> ToChange(std::uint32_t row);
  std::span<const VARIANT> ToRead(std::uint32_t row);

 private:
  static constexpr std::uint64_t kNowhere = UINT64_MAX;
  void Load(std::uint32_t row);
  void Store();

  std::shared_ptr<ScratchFile> file_;
  std::vector<std::uint64_t> places_;  // of rows in the file, their lengths in front of them
  std::vector<VARIANT> cells_;         // of the row in memory
  std::optional<std::uint32_t> row_;
  bool is_changed_ = false;
};

}  // namespace loom
