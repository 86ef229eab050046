#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <cmath>

#include "components/dt_time.h"
#include "components/measures.h"
#include "components/progress_wnd.h"
#include "components/resource_handle.h"
#include "platform/number.h"
#include "tests/support/scripted_user_gtest.h"

namespace loom {
namespace {

// Geodesics computed with GeographicLib 2.1.2.
TEST(CalDistance, AgreesWithReferenceDistances) {
  struct Case {
    double longitude1, latitude1, longitude2, latitude2, distance_m;
  };
  const Case cases[] = {
      {0, 0, 9e-06, 0, 1.0019},
      {0, 0, 0, 0.4521846, 49999.9951},
      {179.9, 0, -179.6508424, 0, 49999.9953},
      {121.47, 31.23, 121.4700742, 31.2300638, 10.0007},
      {121.47, 31.23, 121.4655688, 31.2195371, 1234.4984},
      {116.4, 39.9, 115.892001, 40.1240438, 50000.0011},
      {151.2, -33.9, 151.3531277, -34.0274014, 19999.9976},
      {10, 60, 10.8844723, 60.0749749, 49999.9995},
      {20, 79.9, 22.2593527, 80.1163638, 50000.0008},
      {20, 80.1, 20.4075526, 80.1400561, 9000.0014},
      {-179.95, 84.7, -175.2564601, 84.604269, 50000.0001},
      {0, 89.9, 167.1529882, 89.6503975, 50000.0016},
      {45, 89.9999, 28.613288, 89.9994573, 50.0000},
      {100, -89.95, -93.8262451, -89.8698897, 19999.9988},
      {-179.999, 16.5, 179.9944435, 16.4999999, 699.9992},
      {25.8, 71.2, 25.0036424, 71.451824, 39999.9997},
  };
  for (const Case& c : cases) {
    const double tolerance_m = c.distance_m * 1e-4;
    EXPECT_NEAR(CalDistance(c.longitude1, c.latitude1, c.longitude2, c.latitude2), c.distance_m, tolerance_m)
        << c.longitude1 << ' ' << c.latitude1;
    EXPECT_NEAR(CalDistance(c.longitude2, c.latitude2, c.longitude1, c.latitude1), c.distance_m, tolerance_m)
        << c.longitude1 << ' ' << c.latitude1 << " back";
  }
  EXPECT_LT(CalDistance(10, 90, 200, 90), 1e-6) << "all meridians meet at the pole";
  EXPECT_EQ(CalDistance(12.5, -7, 12.5, -7), 0);
  EXPECT_TRUE(std::isnan(CalDistance(std::nan(""), 0, 1, 0)));
}

class TimeZone {
 public:
  explicit TimeZone(const char* name) : had_(getenv("TZ") != nullptr), previous_(had_ ? getenv("TZ") : "") {
    setenv("TZ", name, 1);
    tzset();
  }
  ~TimeZone() {
    if (had_) {
      setenv("TZ", previous_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

 private:
  bool had_;
  std::string previous_;
};

// Seconds since 1970 of "yyyy-mm-dd hh:nn:ss.ms" as text import reads it: midnight of the day and the time on top.
double ReadBack(const CString& text) {
  const double second_of_day =
      (PrefixInt(text.Mid(11, 2)) * 60 + PrefixInt(text.Mid(14, 2))) * 60 + PrefixDouble(text.Mid(17));
  return CDTTime(PrefixInt(text.Mid(0, 4)), PrefixInt(text.Mid(5, 2)), PrefixInt(text.Mid(8, 2)), second_of_day)
      .GetDblSecond();
}

TEST(DTTime, PrintsMillisecondsAndCarriesRounding) {
  const TimeZone zone("UTC");
  struct Case {
    double time_s;
    const char* text;
  };
  const Case cases[] = {
      {0, "1970-01-01 00:00:00.000"},
      {1267776930.25, "2010-03-05 08:15:30.250"},
      {1267776930.9994, "2010-03-05 08:15:30.999"},
      {1267776930.9996, "2010-03-05 08:15:31.000"},
      {1267833599.9996, "2010-03-06 00:00:00.000"},
      {1293839999.9999, "2011-01-01 00:00:00.000"},
      {-0.25, "1969-12-31 23:59:59.750"},
      {1e300, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(CDTTime(c.time_s).ToString(127), c.text) << c.time_s;
  EXPECT_EQ(CDTTime(std::nan("")).ToString(127), "");
  EXPECT_EQ(CDTTime(1267776930.25).ToString(126), "08:15:30.250");
  EXPECT_EQ(CDTTime(2010, 3, 5, 29730.25).GetDblSecond(), 1267776930.25);
}

TEST(DTTime, ReadsBackToTheMillisecondAlsoWhenTheClockChanges) {
  for (const char* name : {"Asia/Shanghai", "Europe/Berlin", "America/Sao_Paulo", "Asia/Kathmandu"}) {
    const TimeZone zone(name);
    // Two days around each change of the clock in 2010 and one in 2018 that falls on midnight.
    for (const double start_s : {1269640800.0, 1288389600.0, 1289700000.0, 1541214000.0}) {
      for (double time_s = start_s; time_s < start_s + 172800; time_s += 1798.777) {
        EXPECT_NEAR(ReadBack(CDTTime(time_s).ToString(127)), time_s, 0.00051)
            << name << ' ' << CDTTime(time_s).ToString(127);
      }
    }
  }
}

TEST(DTTime, AClockThatChangesWithinAQuarterOfAnHourIsSeenInEveryText) {
  const TimeZone zone("America/St_Johns");  // back from 00:01 of November 7 to 23:01, an hour that day 6 has twice
  DateTimeText text(127);
  for (const auto& [time_s, expected] :
       {std::pair(1289097059.5, "2010-11-07 00:00:59.500"), std::pair(1289097060.0, "2010-11-06 24:01:00.000"),
        std::pair(1289097001.0, "2010-11-07 00:00:01.000")}) {
    char made[DateTimeText::kRoom];
    EXPECT_EQ(expected, std::string(made, text.Put(time_s, made)));
    EXPECT_EQ(CDTTime(time_s).ToString(127), expected);
    EXPECT_EQ(CDTTime(time_s).ToString(126), expected + 11) << "the other layout in between";
  }
}

TEST(Measures, ComparesNumbersAndMakesKeys) {
  EXPECT_TRUE(IsEqualDouble(1, 1 + 9e-7));
  EXPECT_FALSE(IsEqualDouble(1, 1 + 2e-6));
  EXPECT_TRUE(IsEqualDouble(INFINITY, INFINITY));
  EXPECT_FALSE(IsEqualDouble(NAN, NAN));
  EXPECT_EQ(ComposeFreqCPI(10055, 12), "10055_12");
  for (const char* number : {"0", "-12", "+7", "3.25", ".5", "100000"}) EXPECT_TRUE(IsNumber(number)) << number;
  for (const char* text : {"", "-", ".", "1 ", " 1", "1,5", "0x10", "1e5", "nan", "inf", "1.2.3", "+-1"})
    EXPECT_FALSE(IsNumber(text)) << text;
}

TEST(ProgressWnd, ShowsItsStateInTheFrontEndAndReportsTheCancel) {
  ScriptedUser user;
  user.CancelProgressAt(50);
  {
    CProgressWnd window(1);
    window.SetPos(99);  // not shown yet
    EXPECT_EQ(window.Cancelled(), 0);
    window.GoModal("Title", 0);
    window.SetText("text");
    window.SetRange(0, 100, 1);
    window.SetPos(30);
    window.PeekAndPump(1);
    EXPECT_EQ(window.Cancelled(), 0);
    window.SetPos(60);
    window.PeekAndPump(1);
    EXPECT_EQ(window.Cancelled(), 1);
    EXPECT_FALSE(user.progress().at(0).closed);
  }
  const auto& shown = user.progress().at(0);
  EXPECT_EQ(shown.title, "Title");
  EXPECT_TRUE(shown.can_cancel);
  EXPECT_EQ(shown.texts, std::vector<CString>{"text"});
  EXPECT_EQ(shown.highest, 100);
  EXPECT_EQ(shown.positions, (std::vector<int>{30, 60}));
  EXPECT_TRUE(shown.closed);
}

TEST(ResourceHandle, RestoresWhatWasCurrentBefore) {
  EXPECT_EQ(CResourceHandle::Current(), 0);
  {
    const CResourceHandle outer;
    { const CResourceHandle inner; }
    EXPECT_EQ(CResourceHandle::Current(), 1);
  }
  EXPECT_EQ(CResourceHandle::Current(), 0);
}

}  // namespace
}  // namespace loom
