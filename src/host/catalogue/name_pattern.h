#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loom {

// Name of a run of ids, with running numbers in braces: "TrCHBLER_{1}" counts from 1, "Nbor_ISCP_{0}_{0:7}" counts its
// last number from 0 to 6 and then its first one on, "{id}" is the id itself.
class NamePattern {
 public:
  // Throws std::invalid_argument with the reason when the braces are malformed or a letter is none of an IE name: ASCII
  // letters, digits and underscores, no digit in front.
  explicit NamePattern(std::string_view pattern);

  // The name of the entry at `offset` (from 0) in the run that starts at `first_id`.
  void AppendName(std::int32_t first_id, std::int32_t offset, std::string& out) const;
  bool Counts() const { return !numbers_.empty(); }  // false: the same name for every offset

 private:
  struct Number {
    std::string text_before;
    bool is_id = false;
    std::int32_t start = 0;
    std::int32_t period = 0;  // values before it wraps; 0 for the first number, which never does
  };
  static Number ParseNumber(std::string_view inside, bool first);

  std::vector<Number> numbers_;
  std::string text_after_;
};

}  // namespace loom
