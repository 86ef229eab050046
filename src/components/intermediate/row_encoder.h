#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "components/mem_row.h"
#include "platform/notes.h"

namespace loom {

// Makes the row data of an intermediate file. What the format cannot carry is left out and told: a text of more than
// 1023 bytes, texts that a row of 65,535 bytes has no room for, fields whose id is beyond 18 bits, a spectrum.
class IntermediateRowEncoder {
 public:
  using Teller = std::function<void(const NoteKind& kind, const std::string& what)>;

  // The bytes of a row, valid until the next call; `merged` leads a dual-protocol row. `tell` may be empty.
  std::span<const std::byte> Encode(const CMemDataRow& row, const CMergeDataRow_2M* merged, const Teller& tell);

 private:
  bool Carries(const CMemDataRow& row, std::size_t field, const Teller& tell) const;

  std::vector<std::byte> bytes_;
};

}  // namespace loom
