// Numbers, clock, notes and the log.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "platform/bulk_memory.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/log.h"
#include "platform/notes.h"
#include "platform/number.h"

namespace loom {
namespace {

class TimeZone {
 public:
  explicit TimeZone(const char* name) : old_(getenv("TZ") ? getenv("TZ") : "") { Set(name); }
  ~TimeZone() { Set(old_.c_str()); }

 private:
  static void Set(const char* name) {
    if (*name) {
      setenv("TZ", name, 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  std::string old_;
};

// Rules written out, so that no zone data needs to be installed.
constexpr const char* kShanghai = "CST-8";
constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(Clock, MidnightIsLocal) {
  {
    const TimeZone zone(kShanghai);
    EXPECT_EQ(1262275200, LocalMidnight({2010, 1, 1}));
    EXPECT_EQ((LocalTime{{2010, 1, 1}, 0, 0, 0}), LocalTimeOf(1262275200));
  }
  const TimeZone zone(kBerlin);
  EXPECT_EQ(1262300400, LocalMidnight({2010, 1, 1}));
  EXPECT_EQ(23 * 3600, LocalMidnight({2010, 3, 29}) - LocalMidnight({2010, 3, 28}));
  EXPECT_EQ(25 * 3600, LocalMidnight({2010, 11, 1}) - LocalMidnight({2010, 10, 31}));
}

TEST(Clock, OneSecondBefore1970IsATimeAndAnUnreachableYearIsNot) {
  const TimeZone zone("UTC0");
  EXPECT_EQ(-1, SecondsOf({{1969, 12, 31}, 23, 59, 59}));
  EXPECT_THROW(LocalTimeOf(std::numeric_limits<std::int64_t>::max()), Error);
}

TEST(Clock, KnowsTheCalendar) {
  EXPECT_TRUE(IsValidDay({2012, 2, 29}));
  EXPECT_TRUE(IsValidDay({2000, 2, 29}));
  for (const CalendarDay day :
       {CalendarDay{1900, 2, 29}, {2011, 2, 29}, {2011, 4, 31}, {2011, 13, 1}, {2011, 0, 1}, {2011, 1, 0}, {0, 1, 1}})
    EXPECT_FALSE(IsValidDay(day)) << day.year << '-' << day.month << '-' << day.day;
}

TEST(Number, ShortestTextReadsBack) {
  for (const float value : {0.1f, -85.25f, 1e-40f, 3.4028235e38f, 16777217.0f})
    EXPECT_EQ(value, static_cast<float>(*ParseDouble(NumberText(value)))) << value;
  for (const double value : {0.1, 116.3912757, 1e300, 5e-324, -0.0})
    EXPECT_EQ(value, *ParseDouble(NumberText(value))) << value;
  EXPECT_EQ("0.1", NumberText(0.1f));
  EXPECT_EQ("nan", NumberText(-std::nan("")));
  EXPECT_EQ("-inf", NumberText(-HUGE_VAL));
  EXPECT_EQ("-95.25", NumberText(-95.254, 2));
  EXPECT_EQ(312u, NumberText(1e308, 2).size());
}

TEST(Number, WholeTextOrNothing) {
  EXPECT_EQ(-255, ParseInt<int>("-255"));
  EXPECT_EQ(7, ParseInt<int>("+7"));
  for (const char* text : {"", "+", "-", "+-7", " 7", "7 ", "7x", "2147483648", "1.0"})
    EXPECT_FALSE(ParseInt<int>(text)) << text;
  EXPECT_FALSE(ParseInt<unsigned>("-1"));
  EXPECT_EQ(-1.5e3, ParseDouble("-1.5e3"));
  for (const char* text : {"", "1,5", "1.5x", "1e999", " 1"}) EXPECT_FALSE(ParseDouble(text)) << text;
}

TEST(Number, PrefixesStopWhereTheNumberDoes) {
  EXPECT_EQ(12, PrefixInt(" \t+12abc"));
  EXPECT_EQ(0, PrefixInt("abc"));
  EXPECT_EQ(std::numeric_limits<std::int32_t>::max(), PrefixInt("99999999999999999999"));
  EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), PrefixInt("-2147483649"));
  EXPECT_EQ(5.5, PrefixDouble("05.5 2010-01-01"));
  EXPECT_EQ(-0.5, PrefixDouble("-.5"));
  EXPECT_EQ(1.0, PrefixDouble("1e"));
  for (const char* text : {"", ".", "-", "inf", "nan", "- 1"}) EXPECT_EQ(0.0, PrefixDouble(text)) << text;
  EXPECT_EQ(-HUGE_VAL, PrefixDouble("-1e999"));
  EXPECT_EQ(0.0, PrefixDouble("1e-999"));
  EXPECT_EQ(HUGE_VAL, PrefixDouble("1" + std::string(400, '0') + "e-5"));
  EXPECT_EQ(0.0, PrefixDouble("0." + std::string(400, '0') + "1"));
}

TEST(Notes, KeepTheFirstPlacesOfAKindAndCountTheRest) {
  static constexpr NoteKind kUnknownTag{"unknown tag", NoteSeverity::kLost, "", "", ""};
  static constexpr NoteKind kMended{"mended", NoteSeverity::kMended, "", "", ""};
  Notes notes;
  {
    const NotesScope scope(notes);
    for (std::uint64_t at = 0; at < 25; ++at) CurrentNotes().Add(kUnknownTag, "a.log", at * 10, "tag 99");
    CurrentNotes().Add(kMended, "b.txt", "line 7", "decimal comma");
  }
  CurrentNotes().Add(kMended, "c", 1, "");
  ASSERT_EQ(2u, notes.kinds().size());
  EXPECT_EQ("unknown tag", notes.kinds()[0].name());
  EXPECT_EQ(25u, notes.Count("unknown tag"));
  EXPECT_EQ(10u, notes.kinds()[0].places.size());
  EXPECT_EQ("byte 90", notes.kinds()[0].places.back().at);
  EXPECT_EQ("line 7", notes.kinds()[1].places.front().at);
  notes.Clear();
  EXPECT_EQ(0u, notes.Count("unknown tag"));
  CurrentNotes().Clear();
}

TEST(BulkMemory, PiecesLieApartAsTheyWereAskedFor) {
  BulkMemory memory;
  std::vector<std::span<std::uint8_t>> pieces;
  for (std::size_t at = 0; at < 3000; ++at) {
    const std::size_t alignment = std::size_t{1} << at % 7;
    const std::size_t bytes = at % 1000 == 999 ? 40'000'000 : at * 37 % 5000;
    auto* const start = static_cast<std::uint8_t*>(memory.allocate(bytes, alignment));
    EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(start) % alignment);
    pieces.emplace_back(start, bytes);
    std::ranges::fill(pieces.back(), static_cast<std::uint8_t>(at));
  }
  for (std::size_t at = 0; at < pieces.size(); ++at) {
    const auto is_its_own = [&](std::uint8_t byte) { return byte == static_cast<std::uint8_t>(at); };
    EXPECT_TRUE(std::ranges::all_of(pieces[at], is_its_own)) << at;
  }
  EXPECT_THROW(static_cast<void>(memory.allocate(std::size_t{1} << 60, 8)), std::bad_alloc);
}

TEST(Log, GoesToTheSinkThatIsSet) {
  std::vector<std::string> lines;
  const LogSink previous = SetLogSink([&](LogLevel level, std::string_view text) {
    lines.push_back(std::string(LogLevelName(level)) + ": " + std::string(text));
  });
  Log(LogLevel::kWarning, "careful");
  SetLogSink(previous);
  Log(LogLevel::kDebug, "unheard");
  EXPECT_EQ(std::vector<std::string>{"warning: careful"}, lines);
}

}  // namespace
}  // namespace loom
