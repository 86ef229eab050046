#include "text/import/cell_number.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>

namespace loom::testing {
namespace {

// Whether the cell is one number as a whole says the caller; its value follows the general rules, however many bytes
// behind it may be looked at.
void ExpectGeneralRules(const std::string& cell) {
  const std::string line = cell + ",7.5,123456789";
  for (const std::size_t behind : {std::size_t{0}, std::size_t{1}, line.size() - cell.size()}) {
    const std::string_view view = std::string_view(line).substr(0, cell.size());
    const char* const end = view.data() + cell.size() + behind;
    const CellNumber<std::int32_t> whole = CellInt(view, end);
    EXPECT_EQ(PrefixInt(cell), whole.value) << '"' << cell << '"';
    EXPECT_EQ(ParseInt<std::int32_t>(cell).has_value(), whole.is_whole) << '"' << cell << '"';
    const CellNumber<double> decimal = CellDouble(view, end);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(PrefixDouble(cell)), std::bit_cast<std::uint64_t>(decimal.value))
        << '"' << cell << '"';
    EXPECT_EQ(cell::StartsNumber(cell) && ParseDouble(cell).has_value(), decimal.is_whole) << '"' << cell << '"';
  }
}

TEST(CellNumber, ReadsWhatTheGeneralRulesRead) {
  for (const char* cell : {"",
                           "-",
                           "+5",
                           "-0",
                           "5.",
                           ".5",
                           "-.5",
                           "1e3",
                           "2147483647",
                           "2147483648",
                           "-2147483648",
                           "99999999",
                           "100000000",
                           "0000000000000012",
                           "12345678901234567",
                           "116.397128",
                           "1234567.12345678",
                           "12345678.5",
                           "1.123456789",
                           "0x10",
                           "nan",
                           "1.2.3",
                           "--1",
                           "12:34567",
                           "\xB2\xE2"}) {
    ExpectGeneralRules(cell);
  }
  std::mt19937 random(7);
  const auto below = [&](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  for (int round = 0; round < 20000; ++round) {
    constexpr std::string_view kBytes = "0123456789012345678901234567890123456789.-/:; e";
    const bool is_plain = round % 2 == 0;
    std::string cell;
    for (std::size_t length = below(19); cell.size() < length;) cell += kBytes[below(is_plain ? 40 : kBytes.size())];
    if (is_plain && !cell.empty()) cell[below(cell.size())] = '.';
    ExpectGeneralRules(cell);
  }
}

}  // namespace
}  // namespace loom::testing
