#include <cmath>

#include "host/analysis/entries.h"
#include "host/analysis/thinning.h"
#include "tests/analysis/analysis_test.h"

namespace loom::analysis {
namespace {

using Places = std::vector<std::uint32_t>;

using SeriesTest = AnalysisTest;

TEST_F(SeriesTest, AnElementHasASampleInEachRowThatHoldsItAndTheFirstFieldCounts) {
  Row(0, 116.5f, 39.5f).With(kRscp, -80).With(kRscp, -70).With(kBestRscp, 0xFFA6);  // -90 in 16 bits
  Row(1).With(35, "Paging");
  Row(2, 0.0f, 0.0f).With(kRscp, -255).With(kBler, 2.5f);
  Row(3, 116.5f, 91.0f).With(kBler, INFINITY);
  const Samples samples = Collect({kRscp, kBestRscp, kBler, 35});
  EXPECT_EQ(4u, samples.RowCount());
  EXPECT_EQ((Places{0, 2}), samples.series[0].at);
  EXPECT_EQ(-80.0, samples.series[0].values[0]);
  EXPECT_TRUE(std::isnan(samples.series[0].values[1]));
  EXPECT_EQ(-90.0, samples.series[1].values[0]);
  EXPECT_EQ(2.5, samples.series[2].values[0]);
  EXPECT_TRUE(std::isnan(samples.series[2].values[1]));
  EXPECT_TRUE(samples.series[3].at.empty());  // a text
  EXPECT_TRUE(samples.HasPosition(0));
  for (const std::size_t row : {1, 2, 3}) EXPECT_FALSE(samples.HasPosition(row)) << row;
  const auto counts = CountByElement(rows_);
  EXPECT_EQ(2u, counts[kRscp]);
  EXPECT_EQ(1u, counts[kBestRscp]);
}

TEST_F(SeriesTest, ALineStartsBehindAnInvalidValueAndBehindAGap) {
  for (const double second : {0.0, 1.0, 2.0, 3.0, 8.0, 13.5}) Row(second).With(kRscp, second == 2.0 ? -255 : -80);
  const Samples samples = Collect({kRscp});
  EXPECT_EQ(5.0, GapOf(samples, samples.series[0]));                     // five times one second
  EXPECT_EQ((Places{0, 3, 5}), LineStarts(samples, samples.series[0]));  // 5 s are no gap yet
}

TEST_F(SeriesTest, ThinnedRowsKeepEveryExtremeOfEveryElement) {
  for (int i = 0; i < 1000; ++i)
    Row(i).With(kRscp, i == 617 ? -30 : i == 618 ? -115 : -80).With(kBler, i == 333 ? 99.0f : 1.0f);
  const Samples samples = Collect({kRscp, kBler});
  const Places kept = ThinRows(samples.RowCount(), samples.series, 42);
  EXPECT_LE(kept.size(), 42u);
  EXPECT_GT(kept.size(), 30u);  // as many as fit
  for (const std::uint32_t row : {0u, 333u, 617u, 618u, 999u})
    EXPECT_TRUE(std::ranges::binary_search(kept, row)) << row;
  EXPECT_EQ(1000u, ThinRows(samples.RowCount(), samples.series, 1000).size());
  EXPECT_EQ(5u, ThinRows(samples.RowCount(), {}, 6).size());  // evenly, and the last one
}

TEST_F(SeriesTest, AThinnedSeriesHasTheExtremesOfEachStretchInTheirOrder) {
  const int values[] = {5, 1, 9, 3, -255, 4, 4, 2};
  for (int i = 0; i < 8; ++i) Row(i).With(kRscp, values[i]);
  const Samples samples = Collect({kRscp});
  EXPECT_EQ((Places{1, 2, 5, 7}), ThinSeries(samples.series[0], 0, 8, 2));
  EXPECT_EQ((Places{3}), ThinSeries(samples.series[0], 3, 5, 1));
  EXPECT_EQ((Places{}), ThinSeries(samples.series[0], 4, 4, 3));
}

TEST_F(SeriesTest, EventsMarksAndMessagesAreListedWithTheirTextsAndBytes) {
  Row(0).With(10, 1301).With(20, "HandoverFailure");
  Row(1).With(kRscp, -80);
  Row(2).With(32284, "Start").With(35, "Paging").With(37, "0aFF").With(39, 3);
  Row(3).With(35, "HANDOVER COMMAND").With(37, "\x06\x2B\x80").With(33, 1);
  const std::vector<Entry> entries = ListEntries(rows_);
  ASSERT_EQ(4u, entries.size());
  EXPECT_EQ(EntryKind::kEvent, entries[0].kind);
  EXPECT_EQ("HandoverFailure", entries[0].Name());
  EXPECT_EQ(1301, entries[0].EventId());
  EXPECT_TRUE(IsFailure(entries[0].Name()));
  EXPECT_EQ(EntryKind::kMark, entries[1].kind);
  EXPECT_EQ("Start", entries[1].Name());
  EXPECT_EQ(2u, entries[2].at);
  EXPECT_EQ("\x0A\xFF", entries[2].MessageBytes());
  EXPECT_EQ(3, entries[2].MessageChannel());
  EXPECT_EQ(-1, entries[2].MessageDirection());
  EXPECT_EQ("\x06\x2B\x80", entries[3].MessageBytes());
  EXPECT_EQ(1, entries[3].MessageDirection());
}

}  // namespace
}  // namespace loom::analysis
