#pragma once

#include <cstddef>
#include <cstdint>

namespace loom {

// Room that the text of a number needs.
inline constexpr std::size_t kNumberRoom = 48;

// Numbers as values of a stream are shown: the fewest digits that read back to the same number, no '+', exponents only
// where a number would need many zeros, "-255" for what is not finite. Written at `out`; returns the end of the text.
char* PutNumber(float value, char* out);
char* PutNumber(double value, char* out);
char* PutNumber(std::int32_t value, char* out);

// The double that the text of a float reads back to: 0.1f is 0.1. NaN for what is not finite.
double DecimalOf(float value);

}  // namespace loom
