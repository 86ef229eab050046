#pragma once

namespace loom {

// Protocol of a stream that holds TD-SCDMA and GSM.
inline constexpr const char* kDualProtocol = "DOUBLEPROTOCOL";

}  // namespace loom
