#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

// EPS NAS messages (3GPP TS 24.301).
namespace loom::recordings {

struct NasMessage {
  std::string_view name;  // empty: not known
  std::int32_t event_id = -1;
  std::int8_t direction = -1;  // kUp or kDown when only one sends it
  bool is_ciphered = false;    // its type cannot be seen
};

// A message with or without its security header.
NasMessage IdentifyLteNas(std::span<const std::byte> message);

}  // namespace loom::recordings
