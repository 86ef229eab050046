#include <algorithm>

#include "components/log_store.h"
#include "importers/outdoor_log_importer.h"
#include "tests/importers/import_test.h"

namespace loom::testing {
namespace {

using TimedValue = std::pair<double, std::int32_t>;  // time and IE 140

class MergedImport : public ImportTest {
 protected:
  CString WriteDrive(const CString& name, const CalendarDay& day, std::vector<double> times_s, std::int8_t first_code) {
    Records records;
    for (const double time_s : times_s)
      records.push_back(HandsetRecord().At(time_s).With(CIE_SCell_Para{.cell_parameter_id = first_code++}));
    return WriteLog(name, records, {LogKind::kStore, 160, 1, day});
  }
  std::vector<TimedValue> Rows(const CString& path) const {
    COutdoorLogImporter importer;
    std::vector<TimedValue> rows;
    ILogfile* const logfile = Import(importer, path);
    if (!logfile) return rows;
    for (IDataStream* stream : logfile->GetStreams())
      for (const auto& [number, row] : *stream->GetRows()) rows.emplace_back(row->GetRecordTime(), IntOf(*row, 140));
    return rows;
  }
};

// The second log is of the next day: its rows keep their dates.
TEST_F(MergedImport, GivesTheRowsOfTheSources) {
  const CString friday = WriteDrive("fri.log", kDay, {36'000.0, 36'001.5, 86'399.0}, 1);
  const CString same_day = WriteDrive("also.log", kDay, {36'001.0, 40'000.0}, 11);
  const CString saturday = WriteDrive("sat.log", {2024, 5, 18}, {0.0, 36'000.25}, 21);
  const CString merged = folder_.File("merged.log");
  ASSERT_EQ(kMergeDone, CLogFileManager().MergeFile({friday, same_day, saturday}, merged, 1));

  std::vector<TimedValue> expected;
  for (const CString& source : {friday, same_day, saturday}) {
    const std::vector<TimedValue> rows = Rows(source);
    expected.insert(expected.end(), rows.begin(), rows.end());
  }
  std::ranges::sort(expected);
  ASSERT_EQ(7u, expected.size());
  EXPECT_EQ(expected, Rows(merged));
  EXPECT_TRUE(notes_.IsEmpty());
}

}  // namespace
}  // namespace loom::testing
