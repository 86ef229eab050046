#pragma once

#include <cstdint>
#include <string>

namespace loom {

// Numbers as values of a stream are shown: the fewest digits that read back to the same number, no '+', exponents only
// where a number would need many zeros, "-255" for what is not finite.
void AppendNumber(float value, std::string& out);
void AppendNumber(double value, std::string& out);
void AppendNumber(std::int32_t value, std::string& out);

}  // namespace loom
