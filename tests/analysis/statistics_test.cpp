#include "host/analysis/statistics.h"

#include <cmath>

#include "host/analysis/bins.h"
#include "host/analysis/elements.h"
#include "host/catalogue/table_file.h"
#include "tests/analysis/analysis_test.h"

namespace loom::analysis {
namespace {

using Counts = std::vector<std::uint64_t>;

const Scale kThreeClasses{{-90.0, -80.0}, {"#000000", "#777777", "#ffffff"}};

TEST(Statistics, AreThoseOfTheValidValues) {
  const Statistics result = Summarise({-80, kNoValue, -95, -90, -70, -85}, kThreeClasses);
  EXPECT_EQ(5u, result.count);
  EXPECT_EQ(1u, result.invalid);
  EXPECT_EQ(-95.0, result.minimum);
  EXPECT_EQ(-84.0, result.mean);
  EXPECT_EQ(-70.0, result.maximum);
  EXPECT_DOUBLE_EQ(-94.0, result.percentile_5);  // a fifth of the way from the lowest to the next one
  EXPECT_EQ(-85.0, result.percentile_50);
  EXPECT_DOUBLE_EQ(-72.0, result.percentile_95);
  EXPECT_EQ((Counts{1, 2, 2}), result.classes);  // a limit belongs to the class above it
  EXPECT_EQ(1.0, result.histogram.step);
  EXPECT_EQ(-95.0, result.histogram.first);
  ASSERT_EQ(26u, result.histogram.counts.size());
  EXPECT_EQ(1u, result.histogram.counts[10]);
  const std::vector<double> cumulative = result.histogram.Cumulative();
  EXPECT_DOUBLE_EQ(0.2, cumulative[4]);
  EXPECT_DOUBLE_EQ(0.4, cumulative[5]);
  EXPECT_DOUBLE_EQ(1.0, cumulative.back());
}

TEST(Statistics, OfNothingAndOfOneValue) {
  const Statistics none = Summarise({kNoValue}, kThreeClasses);
  EXPECT_EQ(0u, none.count);
  EXPECT_TRUE(std::isnan(none.mean) && std::isnan(none.percentile_50));
  EXPECT_EQ((Counts{0, 0, 0}), none.classes);
  const Statistics one = Summarise({2.5}, kThreeClasses);
  EXPECT_EQ(2.5, one.percentile_5);
  EXPECT_EQ(2.5, one.percentile_95);
  EXPECT_EQ((Counts{1}), one.histogram.counts);
}

TEST(Classes, AutomaticOnesHaveRoundLimitsAmongTheValues) {
  std::vector<double> values;
  for (int i = 0; i <= 100; ++i) values.push_back(i);
  EXPECT_EQ((std::vector<double>{20, 40, 60, 80}), AutomaticScale(values).limits);
  EXPECT_EQ(5u, AutomaticScale(values).colours.size());
  EXPECT_EQ(1u, AutomaticScale({7, 7, 7}).colours.size());
  EXPECT_EQ(1u, AutomaticScale({}).colours.size());
}

TEST(Classes, AMalformedLineIsRefusedWithItsNumber) {
  const std::pair<const char*, const char*> cases[] = {
      {"RSRP\t-90\t#000000\n", "c.tsv line 1: 1 limits make 2 classes, and 1 have a colour"},
      {"# c\nRSRP\t-80 -90\t#000000 #111111 #222222\n", "c.tsv line 2: the limits do not ascend"},
      {"RSRP\tx\t#000000 #111111\n", "c.tsv line 1: 'x' is no number"},
      {"RSRP\t1\t#000000 red\n", "c.tsv line 1: 'red' is no colour (#rrggbb)"},
      {"RSRP\t1\n", "c.tsv line 1: 2 columns instead of 3"},
      {" \t1\t#000000 #111111\n", "c.tsv line 1: no element is named"},
      {"A B A\t1\t#000000 #111111\n", "c.tsv line 1: 'A' has classes already"},
  };
  for (const auto& [text, message] : cases) {
    try {
      ClassTable::Parse(text, "c.tsv");
      ADD_FAILURE() << message;
    } catch (const CatalogueError& error) {
      EXPECT_STREQ(message, error.what());
    }
  }
}

using TellingElementsTest = AnalysisTest;

TEST_F(TellingElementsTest, ComeInTheTablesOrderAndThreeOfAFamily) {
  const ClassTable classes = ClassTable::Parse(
      "TrCHBLER_Total\t1\t#000000 #111111\nNborPCCPCHRSCP_* PCCPCH_RSCP\t1\t#000000 #111111\n", "c.tsv");
  CMemDataRow row;
  Row(0).With(kRscp, -80).With(kBler, 1.0f).With(35, "Paging").With(1206, 1).With(1207, 1).With(1209, 1).With(1210, 1);
  const auto counts = CountByElement(rows_);
  const auto entries = host_.catalogue().Entries();
  EXPECT_EQ((std::vector<std::int32_t>{kBler, 1206, 1207, 1209, kRscp}), TellingElements(classes, entries, counts, 10));
  EXPECT_EQ((std::vector<std::int32_t>{kBler, 1206}), TellingElements(classes, entries, counts, 2));
  EXPECT_EQ(&classes.ScaleOf(classes.Entries()[1]), classes.Find("NborPCCPCHRSCP_31"));
  EXPECT_EQ(nullptr, classes.Find("PCCPCH_RSCP_Scan_1"));
}

TEST(Classes, TheShippedTableNamesElementsOfTheCatalogue) {
  const HostApplication host(loom::testing::PlainHost());
  const ClassTable classes = ClassTable::Load(loom::testing::ConfigFolder() + "/classes.tsv");
  for (const ClassTable::Entry& entry : classes.Entries()) {
    const auto elements = host.catalogue().Entries();
    EXPECT_TRUE(std::ranges::any_of(elements, [&](const CIEEntry& element) { return entry.Matches(element.name); }))
        << entry.names;
  }
}

// 0.001 degrees of latitude are 111.0 m at 39.5 degrees north, of longitude 86.0 m.
class BinsTest : public AnalysisTest {
 protected:
  std::vector<double> Means(const Bins& bins) const { return MeansByBin(Collect({kRscp}).series[0], bins); }
};

TEST_F(BinsTest, OfTimeBeginAtWholeMultiplesAndHoldTheMean) {
  const std::pair<double, int> rows[] = {{0.0, -80}, {0.9, -90}, {1.0, -70}, {5.5, -255}, {6.0, -60}, {0.5, -70}};
  for (const auto& [second, value] : rows) Row(second).With(kRscp, value);
  const Bins bins = TimeBins(Collect({}), 1.0);
  EXPECT_EQ((std::vector<std::uint32_t>{0, 0, 1, 2, 3, 0}), bins.of_row);
  EXPECT_EQ((std::vector<double>{-80, -70, -60}), Means(bins));
}

TEST_F(BinsTest, OfDistanceDoNotGrowWhileTheHandsetStands) {
  for (int i = 0; i < 50; ++i) Row(i, 116.5f, 39.5f + (i % 2 == 0 ? 0.0f : 0.00004f)).With(kRscp, -100);
  Row(50).With(kRscp, -10);  // no position
  Row(51, 116.5f, 39.501f).With(kRscp, -60);
  Row(52, 116.5f, 39.502f).With(kRscp, -80);
  const Bins bins = DistanceBins(Collect({}), 10.0);
  EXPECT_EQ(3u, bins.count);
  EXPECT_EQ(kNoBin, bins.of_row[50]);
  EXPECT_NEAR(222.0, bins.length_m, 2.0);
  EXPECT_EQ((std::vector<double>{-100, -60, -80}), Means(bins));
}

TEST_F(BinsTest, OfAGridHoldEveryPassOverASquare) {
  Row(0, 116.5f, 39.5f).With(kRscp, -80);
  Row(1, 116.502f, 39.5f).With(kRscp, -60);  // 172 m east
  Row(2, 116.5f, 39.5f).With(kRscp, -90);
  const Bins bins = GridBins(Collect({}), 50.0);
  EXPECT_EQ((std::vector<std::uint32_t>{0, 1, 0}), bins.of_row);
  EXPECT_EQ((std::vector<double>{-85, -60}), Means(bins));
}

}  // namespace
}  // namespace loom::analysis
