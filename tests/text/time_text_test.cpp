#include "text/import/time_text.h"

#include <gtest/gtest.h>

#include "components/field_value.h"
#include "platform/clock.h"

namespace loom {
namespace {

struct Case {
  const char* layout;
  const char* text;
  double seconds;  // behind midnight of 5 March 2010 where the layout has a date
};

double MidnightIn(const char* layout) {
  return CString(layout).Find('-') < 0 ? 0.0 : static_cast<double>(LocalMidnight({2010, 3, 5}));
}

TEST(TimeText, EveryLayoutReadsItsFields) {
  const Case cases[] = {
      {"hh:nn:ss.ms", "08:15:30.25", 29730.25},
      {"HH:NN:SS.MS", "8:15:30", 29730},
      {"hh:nn:ss.ms", "99:15:5.5e1x", 99 * 3600 + 15 * 60 + 55},
      {"yyyy-mm-dd hh:nn:ss:ms", "2010-03-05 08:15:30:250", 29730.25},
      {"yyyy-mm-dd hh:nn:ss:ms", "2010-03-05 08:15:30", 8 * 3600 + 15 * 60 + 15.030},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-03-05 08:15:30.123", 29730.123},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-3-5 08:15:05.5", 29705.5},
      {"yyyy-mm-dd hh:nn:ss.ms", "x2010-03-05T08:15:30.1234567", 29730.123457},
      {"hh:nn:ss dd-mm-yyyy", "08:15:30 05-03-2010", 29730},
      {"hh:nn:ss dd-mm-yyyy", "08:15:30.9 05-03-2010", 29730},
      {"hh:nn:ss mm-dd-yyyy", "08:15:30 03-05-2010", 29730},
      {"hh:nn:ss.ms dd-mm-yyyy", "08:15:30.25 05-03-2010", 29730.25},
      {"hh:nn:ss.ms mm-dd-yyyy", "08:15:30.25 03-05-20109", 29730.25},
  };
  for (const auto& [layout, text, seconds] : cases) {
    TimeTextConverter converter(layout);
    EXPECT_DOUBLE_EQ(MidnightIn(layout) + seconds, converter.Seconds(text)) << layout << ": " << text;
    EXPECT_DOUBLE_EQ(MidnightIn(layout) + seconds, converter.Seconds(text)) << "once more: " << text;
  }
  EXPECT_EQ(static_cast<double>(LocalMidnight({2010, 5, 3})) + 29730,
            TimeTextConverter("hh:nn:ss mm-dd-yyyy").Seconds("08:15:30 05-03-2010"));
}

TEST(TimeText, ATimeMeansTheSameWhateverCameBeforeIt) {
  constexpr const char* kTexts[] = {"2010-03-05 08:15:30.25", "2010-03-05 08:15:31",   "2010-03-05 08:15:31-1",
                                    "2010-03-05 08:15:1e-3",  "2010-03-05 08:15:7:12", "05-03-2010 08:15:30.9",
                                    "05-03-2010 08:15:30.9x", "2010-03-05 08:15:",     "08:15:30.25 05-03-2010",
                                    "2010-03-:15:5",          "2010-03-05 ::4",        "2010-03-05 08:15:44:5"};
  for (const TimeLayout& layout : kTimeLayouts) {
    TimeTextConverter converter(layout.name);
    for (const char* before : kTexts) {
      for (const char* text : kTexts) {
        TimeTextConverter fresh(layout.name);
        converter.Seconds(before);
        EXPECT_EQ(fresh.Seconds(text), converter.Seconds(text)) << before << ", " << text;
        EXPECT_EQ(fresh.Flaw(), converter.Flaw()) << before << ", " << text;
      }
    }
  }
}

TEST(TimeText, WhatDoesNotFitIsInvalid) {
  const Case cases[] = {
      {"hh:nn:ss.ms", "08:15", 0},
      {"hh:nn:ss.ms", "", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010.03.05_08.15.30", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-03 08:15:30", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-03-05 08", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "1969-12-31 23:59:59.0", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "2039-01-01 00:00:00.0", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-13-05 08:15:30", 0},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-03-00 08:15:30", 0},
      {"hh:nn:ss.ms", "00:00:9e999", 0},
      {"seconds", "86399", 0},
      {"seconds", "abc", 0},
  };
  for (const auto& [layout, text, unused] : cases) {
    EXPECT_EQ(kInvalidDouble, TimeTextConverter(layout).Seconds(text)) << layout << ": " << text;
  }
}

TEST(TimeText, WhatIsNotTakenAsItStandsIsAFlaw) {
  const struct {
    const char* layout;
    const char* text;
    TimeFlaw flaw;
  } cases[] = {
      {"hh:nn:ss.ms", "8:15:30", TimeFlaw::kNone},
      {"hh:nn:ss.ms", "08:15:30.25 PM", TimeFlaw::kRest},
      {"hh:nn:ss.ms", "08:15:", TimeFlaw::kRest},
      {"hh:nn:ss.ms", "08:15:59.999", TimeFlaw::kNone},
      {"hh:nn:ss.ms", "08:15:60", TimeFlaw::kRange},
      {"hh:nn:ss.ms", "08:60:30", TimeFlaw::kRange},
      {"hh:nn:ss.ms", "24:00:00", TimeFlaw::kRange},
      {"hh:nn:ss.ms", "08:15:30:25", TimeFlaw::kColons},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-03-05 08:15:30.25Z", TimeFlaw::kRest},
      {"yyyy-mm-dd hh:nn:ss.ms", "2012-02-29 08:15:30", TimeFlaw::kNone},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-02-29 08:15:30", TimeFlaw::kDate},
      {"yyyy-mm-dd hh:nn:ss.ms", "2010-03-05 08:15:75", TimeFlaw::kRange},
      {"yyyy-mm-dd hh:nn:ss:ms", "2010-03-05 08:15:30:250", TimeFlaw::kNone},
      {"yyyy-mm-dd hh:nn:ss:ms", "2010-03-05 08:15:30:1000", TimeFlaw::kRange},
      {"yyyy-mm-dd hh:nn:ss:ms", "2010-03-05 08:15:60:250", TimeFlaw::kRange},
      {"yyyy-mm-dd hh:nn:ss:ms", "2010-03-05 08:15:30.250", TimeFlaw::kColons},
      {"hh:nn:ss dd-mm-yyyy", "08:15:30 5-3-2010", TimeFlaw::kNone},
      {"hh:nn:ss dd-mm-yyyy", "08:15:30.9 05-03-2010", TimeFlaw::kRest},
      {"hh:nn:ss dd-mm-yyyy", "08:15:30 05-03-2010 x", TimeFlaw::kRest},
      {"hh:nn:ss mm-dd-yyyy", "08:15:30 04-31-2010", TimeFlaw::kDate},
      {"hh:nn:ss.ms dd-mm-yyyy", "08:15:30.25 05-03-2010", TimeFlaw::kNone},
      {"hh:nn:ss.ms dd-mm-yyyy", "08:15:30.25s 05-03-2010", TimeFlaw::kRest},
      {"hh:nn:ss.ms dd-mm-yyyy", "08:15:30.25 05-03-20109", TimeFlaw::kRest},
      {"seconds", "1619400114.5", TimeFlaw::kNone},
      {"seconds", "1619400114.5s", TimeFlaw::kRest},
      {"seconds", "253402300800", TimeFlaw::kTooLate},
  };
  for (const auto& [layout, text, flaw] : cases) {
    TimeTextConverter converter(layout);
    EXPECT_NE(kInvalidDouble, converter.Seconds(text)) << layout << ": " << text;
    EXPECT_EQ(flaw, converter.Flaw()) << layout << ": " << text;
    converter.Seconds(text);
    EXPECT_EQ(flaw, converter.Flaw()) << "once more: " << text;
  }
}

TEST(TimeText, WithoutALayoutTheTextIsSecondsAndDaysBehindTheMonthRollOver) {
  EXPECT_EQ(86400.0, TimeTextConverter("seconds").Seconds("86400"));
  EXPECT_EQ(1619400114.558263, TimeTextConverter("").Seconds("1619400114.5582629s"));
  EXPECT_EQ(static_cast<double>(LocalMidnight({2010, 5, 1})),
            TimeTextConverter("yyyy-mm-dd hh:nn:ss.ms").Seconds("2010-04-31 00:00:00"));
}

TEST(TimeText, TheTextIsReplacedByItsSeconds) {
  TimeTextConverter converter("hh:nn:ss.ms");
  CString text = "08:15:30.25";
  converter.ConvertTimeText(text);
  EXPECT_EQ("29730.250000", text);
  text = "soon";
  converter.ConvertTimeText(text);
  EXPECT_EQ("-255", text);
}

}  // namespace
}  // namespace loom
