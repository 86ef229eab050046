#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "components/mem_row.h"

namespace loom::analysis {

// What happened in a row besides measurements.
enum class EntryKind : std::uint8_t { kEvent, kMark, kMessage };

// Of a row that the stream holds. Texts are GBK.
struct Entry {
  std::uint32_t at = 0;  // place of the row
  EntryKind kind = EntryKind::kEvent;
  const CMemDataRow* row = nullptr;

  std::string_view Name() const;          // of the event, of the mark or of the message
  std::int32_t EventId() const;           // -1 for others than events
  std::int32_t MessageDirection() const;  // -1 where the row tells none; so the channel
  std::int32_t MessageChannel() const;
  std::string MessageBytes() const;
};

// A row that is an event and a message gives both, in this order.
std::vector<Entry> ListEntries(const RowMap& rows);

// Whether the event of that name is something that went wrong.
bool IsFailure(std::string_view event_name);

}  // namespace loom::analysis
