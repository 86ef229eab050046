#include "components/row_cursor.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include "host/application.h"
#include "host/streams/stream_store.h"
#include "host/streams/value_text.h"
#include "platform/number.h"
#include "tests/support/places.h"

namespace loom {
namespace {

constexpr std::int32_t kMessageName = 35;    // text
constexpr std::int32_t kRscp = 499;          // int
constexpr std::int32_t kBestRscp = 500;      // short
constexpr std::int32_t kLongitudeIe = 2379;  // float

class RowCursorTest : public ::testing::Test {
 protected:
  void Store(const CMemDataRow& row) {
    StoreRow(*stream_.GetRows(), static_cast<int>(stream_.GetRows()->size()) + 1, row);
  }
  static std::string Values(IRowCursor& cursor, std::initializer_list<std::int32_t> ids, const RowLayout& layout) {
    std::vector<std::uint32_t> columns;
    for (const std::int32_t id : ids) columns.push_back(cursor.AddColumn(id));
    TextBuffer text;
    cursor.AppendValues(columns, layout, text);
    return std::string(text.view());
  }
  static std::string Value(IRowCursor& cursor, std::int32_t id) { return Values(cursor, {id}, {}); }
  static std::string Filled(IRowCursor& cursor, std::int32_t id) { return Values(cursor, {id}, {.fill_gaps = true}); }

  HostApplication host_{testing::PlainHost()};
  IDataStream& stream_ = *StreamStore::Instance().MakeStream("a", kStreamOutdoorHandset);
};

TEST_F(RowCursorTest, ValuesAreTextsByTheTypeOfTheirElement) {
  CMemDataRow row;
  row.SetRecordTime(1715910000.125);
  row.QuickAddIE(kRscp, uniFieldValue(-90));
  row.QuickAddIE(kBestRscp, uniFieldValue::Short(static_cast<std::uint16_t>(-91)));
  row.QuickAddIE(kLongitudeIe, uniFieldValue(116.39713f));
  row.QuickAddIE(kMessageName, uniFieldValue::Text(row.AddText("rrcConnectionRequest")));
  row.QuickAddIE(kRscp, uniFieldValue(-1));  // the first field of an element counts
  row.QuickAddIE(2'000'000, uniFieldValue(7));
  row.QuickAddIE(-3, uniFieldValue(8));
  Store(row);
  const auto cursor = stream_.MakeRowCursor();
  EXPECT_TRUE(cursor->IsLastRow());
  EXPECT_EQ("1715910000.125", Value(*cursor, kRecordTimeIe));
  EXPECT_EQ("-90", Value(*cursor, kRscp));
  EXPECT_EQ("-91", Value(*cursor, kBestRscp));
  EXPECT_EQ("116.39713", Value(*cursor, kLongitudeIe));
  EXPECT_EQ("rrcConnectionRequest", Value(*cursor, kMessageName));
  EXPECT_EQ("7", Value(*cursor, 2'000'000));
  EXPECT_EQ("8", Value(*cursor, -3));
  EXPECT_EQ("", Value(*cursor, 147));
  EXPECT_EQ("", Value(*cursor, kInvalidInt));
  EXPECT_EQ(1715910000.125, cursor->GetRecordTime());
}

TEST_F(RowCursorTest, ValuesOfARowStandBetweenSeparatorsWithBlanksForWhatIsMissingOrEmpty) {
  const std::string long_text(1000, 'x');
  for (const std::string& text : {std::string(), long_text, std::string("-255")}) {
    CMemDataRow row;
    row.QuickAddIE(kMessageName, uniFieldValue::Text(row.AddText(text)));
    row.QuickAddIE(kRscp, uniFieldValue(text.empty() ? -1'234'567'890 : 1'000'000));
    Store(row);
  }
  const auto cursor = stream_.MakeRowCursor();
  const auto next = [&] {
    const std::string values =
        Values(*cursor, {kMessageName, kRscp, 147, kRscp}, {.separator = ": ", .blank = "none", .fill_gaps = true});
    cursor->Move(1);
    return values;
  };
  EXPECT_EQ("none: -1234567890: none: -1234567890", next());
  EXPECT_EQ(long_text + ": 1000000: none: 1000000", next());
  EXPECT_EQ("-255: 1000000: none: 1000000", next());
}

TEST_F(RowCursorTest, AGapIsFilledWithTheLastValueBeforeItAndOnlyThen) {
  for (const int value : {0, -90, 0, -255, 0, -80}) {
    CMemDataRow row;
    if (value != 0) row.QuickAddIE(kRscp, uniFieldValue(value));
    Store(row);
  }
  std::string plain;
  std::string filled;
  const auto cursor = stream_.MakeRowCursor();
  cursor->AddColumn(kRscp);
  for (int at = 0; at < 6; ++at, cursor->Move(1)) {
    EXPECT_EQ(at == 5, cursor->IsLastRow());
    plain += Value(*cursor, kRscp) + "|";
    filled += Filled(*cursor, kRscp) + "|";
  }
  EXPECT_EQ("|-90||-255||-80|", plain);
  EXPECT_EQ("|-90|-90|-255|-255|-80|", filled);
  EXPECT_TRUE(cursor->IsLastRow()) << "a move from the last row leaves the cursor there";
  EXPECT_EQ("-80", Value(*cursor, kRscp));

  // Rows that were passed without being asked for fill gaps too; the first row starts afresh.
  cursor->GoToFirstRow();
  EXPECT_EQ("", Filled(*cursor, kRscp));
  cursor->Move(2);
  EXPECT_EQ("-90", Filled(*cursor, kRscp));
}

TEST_F(RowCursorTest, AStreamWithoutRowsStandsOnItsLastRowAndHasNoValues) {
  const auto cursor = stream_.MakeRowCursor();
  cursor->Move(1);
  EXPECT_TRUE(cursor->IsLastRow());
  EXPECT_EQ("", Value(*cursor, kRecordTimeIe));
  EXPECT_EQ("", Filled(*cursor, kRscp));
  EXPECT_FALSE(cursor->GetRecordTime());
}

template <class Number>
std::string TextOf(Number value) {
  char text[kNumberRoom];
  return std::string(text, PutNumber(value, text));
}

TEST(ValueText, NumbersHaveTheFewestDigitsThatReadBack) {
  struct {
    float value;
    const char* text;
  } const cases[] = {
      {0.0f, "0"},
      {-0.0f, "-0"},
      {-255.0f, "-255"},
      {0.1f, "0.1"},
      {-20.05f, "-20.05"},
      {100000.0f, "100000"},
      {16777216.0f, "16777216"},
      {2e9f, "2000000000"},
      {1e-5f, "0.00001"},
      {6.1e-5f, "0.000061"},
      {0.125f, "0.125"},
      {1e20f, "1e20"},
      {1.5e-30f, "1.5e-30"},
      {std::numeric_limits<float>::infinity(), "-255"},
      {std::nanf(""), "-255"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(text, TextOf(value));
}

TEST(ValueText, EveryNumberReadsBackAndIsAsShortAsTheLibraryMakesIt) {
  std::mt19937 random(7);
  const auto check = [](float value) {
    const std::string text = TextOf(value);
    ASSERT_EQ(value, static_cast<float>(PrefixDouble(text))) << text;
    char fixed[64];
    const auto end = std::to_chars(fixed, fixed + sizeof fixed, value, std::chars_format::fixed);
    const bool is_fixed = text.find('e') == std::string::npos;
    ASSERT_EQ(is_fixed ? std::string(fixed, end.ptr) : text, text);
  };
  for (int count = 0; count < 200'000; ++count) {
    const auto any = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isfinite(any)) check(any);
    check(static_cast<float>(static_cast<int>(random() % 2'000'001) - 1'000'000) / 10'000.0f);
    check(static_cast<float>(random() % 20'000'000) / 16.0f);
    const auto number = static_cast<std::int32_t>(static_cast<std::uint32_t>(random()) >> random() % 32);
    ASSERT_EQ(std::to_string(number), TextOf(number));
    ASSERT_EQ(std::to_string(-number - 1), TextOf(-number - 1));
  }
}

}  // namespace
}  // namespace loom
