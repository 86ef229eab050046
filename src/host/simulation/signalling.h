#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "components/records/testdata.h"

namespace loom::simulation {

// One step of a procedure: a layer-3 message, an event, or both.
struct Signal {
  std::string_view message;  // empty: no message
  std::int32_t message_id = -1;
  std::int8_t direction = 0;  // 0 up, 1 down
  std::int8_t channel = 0;
  std::int32_t event_id = -1;  // -1: no event
  std::string_view lines{};    // the message in text form
};

// The procedures of a network that a drive shows.
struct Procedures {
  std::span<const Signal> call_setup;
  std::span<const Signal> call_end;
  std::span<const Signal> cell_change;    // while idle
  std::span<const Signal> handover;       // during a call
  std::span<const Signal> system_change;  // into this network
  std::span<const Signal> broadcast;      // now and then
};
extern const Procedures kTdProcedures;
extern const Procedures kGsmProcedures;
extern const Procedures kLteProcedures;

// The coded message: bytes that stand for it, the same for the same message. Points into a table that stays.
std::span<const std::byte> MessageBytes(const Signal& signal);

}  // namespace loom::simulation
