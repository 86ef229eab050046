#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "conversion/row_ie_writer.h"

namespace loom {

// Message ids whose layer-3 header becomes IEs.
inline constexpr std::array kLayer3MessageIds{1010, 2020, 2021, 3005, 3006, 12155};

constexpr bool IsLayer3Message(std::int32_t message_id) {
  return std::ranges::find(kLayer3MessageIds, message_id) != kLayer3MessageIds.end();
}

// Event ids that are no event, and those that measurement rows do not show.
inline constexpr std::int32_t kNoEvent = -1;
inline constexpr std::array kHiddenEvents{2052, 2053};

constexpr bool IsShownEvent(std::int32_t event_id) {
  return event_id != kNoEvent && std::ranges::find(kHiddenEvents, event_id) == kHiddenEvents.end();
}

// Writes the id and the name of an event and adds the name to the stream's events; nothing when the event has no name.
void PutEvent(CRowIEWriter& writer, std::int32_t event_id);

}  // namespace loom
