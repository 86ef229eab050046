#include "host/catalogue/name_pattern.h"

#include <algorithm>
#include <stdexcept>

#include "platform/number.h"

namespace loom {
namespace {

bool IsNameLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

void CheckLetters(std::string_view text) {
  const auto bad = std::find_if_not(text.begin(), text.end(), IsNameLetter);
  if (bad != text.end()) throw std::invalid_argument("a name has letters, digits and underscores only");
}

}  // namespace

NamePattern::NamePattern(std::string_view pattern) {
  if (pattern.empty()) throw std::invalid_argument("the name is empty");
  if ((pattern[0] >= '0' && pattern[0] <= '9') || pattern[0] == '{') {
    throw std::invalid_argument("a name starts with a letter or an underscore");
  }
  for (auto open = pattern.find('{'); open != std::string_view::npos; open = pattern.find('{')) {
    const auto close = pattern.find('}', open);
    if (close == std::string_view::npos) throw std::invalid_argument("an opening brace is not closed");
    Number number = ParseNumber(pattern.substr(open + 1, close - open - 1), numbers_.empty());
    number.text_before = pattern.substr(0, open);
    CheckLetters(number.text_before);
    if (numbers_.size() == 3) throw std::invalid_argument("a name has three running numbers at most");
    numbers_.push_back(std::move(number));
    pattern.remove_prefix(close + 1);
  }
  CheckLetters(pattern);
  text_after_ = pattern;
}

NamePattern::Number NamePattern::ParseNumber(std::string_view inside, bool first) {
  Number number;
  if (inside == "id") {
    number.is_id = true;
    return number;
  }
  const auto colon = inside.find(':');
  const auto start = ParseInt<std::int32_t>(inside.substr(0, colon));
  if (!start || *start < 0 || *start > 1'000'000) throw std::invalid_argument("a brace holds no start number");
  number.start = *start;
  if (first != (colon == std::string_view::npos)) {
    throw std::invalid_argument("every running number but the first states after a colon how many values it takes");
  }
  if (!first) {
    const auto period = ParseInt<std::int32_t>(inside.substr(colon + 1));
    if (!period || *period < 1 || *period > 1'000'000) {
      throw std::invalid_argument("the number behind the colon is none from 1 to 1000000");
    }
    number.period = *period;
  }
  return number;
}

void NamePattern::AppendName(std::int32_t first_id, std::int32_t offset, std::string& out) const {
  std::int64_t slower = 1;  // product of the periods to the right of a number
  for (const Number& number : numbers_) slower *= std::max(number.period, 1);
  for (const Number& number : numbers_) {
    out += number.text_before;
    slower /= std::max(number.period, 1);
    const std::int64_t steps = number.period > 0 ? offset / slower % number.period : offset / slower;
    out += std::to_string(number.is_id ? first_id + offset : number.start + steps);
  }
  out += text_after_;
}

}  // namespace loom
