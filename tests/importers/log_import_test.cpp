#include <array>
#include <fstream>

#include "conversion/ie_ids.h"
#include "platform/clock.h"
#include "platform/path.h"
#include "tests/importers/import_test.h"

namespace loom::testing {
namespace {

class LogImportTest : public ImportTest {
 protected:
  COutdoorLogImporter importer_;
};

RecordBuilder Sample(int number, int device = 1) {
  return HandsetRecord().Id(number).Device(device).At(36000.0 + number).Text(Format("text %d", number));
}

TEST_F(LogImportTest, RecordsBecomeNumberedRowsOfTheirDevice) {
  Records records;
  for (int number = 1; number <= 40; ++number) records.push_back(Sample(number, 1 + number % 8));
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", records));
  ASSERT_EQ(8u, logfile->GetStreams().size());
  EXPECT_EQ(40, logfile->GetRowTotal());
  IDataStream* stream = FindStream(*logfile, "drive_RV2230_TD(3)");
  EXPECT_EQ(3, stream->GetDeviceNumber());
  EXPECT_EQ(kStreamClassHandset, stream->GetStreamClass());
  ASSERT_EQ(5u, stream->GetRows()->size());
  EXPECT_EQ(5, stream->GetRowCount());
  const CMemDataRow& last = *stream->GetRows()->at(5);
  EXPECT_EQ(5, IntOf(last, ie::kMessageId));
  EXPECT_EQ(5, last.GetSynFieldValue());
  EXPECT_EQ(34, IntOf(last, ie::kRecordId));
  const double midnight_s = static_cast<double>(LocalMidnight(kDay));
  EXPECT_DOUBLE_EQ(midnight_s + 36002.0, stream->GetEarliestTime());
  EXPECT_DOUBLE_EQ(midnight_s + 36034.0, stream->GetLatestTime());
}

TEST_F(LogImportTest, RecordsBeyondAPoolBlockKeepTheirOwnContent) {
  Records records;
  for (int number = 1; number <= 250; ++number) records.push_back(Sample(number));
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", records));
  RowMap& rows = *logfile->GetStreams().front()->GetRows();
  ASSERT_EQ(250u, rows.size());
  for (const int number : {1, 99, 100, 101, 200, 201, 250}) {
    const CMemDataRow& row = *rows.at(number);
    ASSERT_TRUE(row.Holds(ie::kRecordText));
    EXPECT_EQ("text " + std::to_string(number), row.GetText(row.GetIEValueByID(ie::kRecordText)->text));
  }
}

TEST(RecordPoolTest, ABlockEndsWithItsHundredthRecord) {
  RecordPool pool;
  LogRecord* first = &pool.Next();
  first->kind = 5;
  for (int handed_out = 1; handed_out < 99; ++handed_out) pool.Next();
  EXPECT_FALSE(pool.IsBlockUsedUp());
  pool.Next();
  EXPECT_TRUE(pool.IsBlockUsedUp());
  EXPECT_EQ(5, first->kind);
  EXPECT_EQ(0, pool.Next().kind);
  EXPECT_FALSE(pool.IsBlockUsedUp());
}

TEST_F(LogImportTest, ADualModeHandsetIsMergedIntoAThirdStream) {
  const Records records{HandsetRecord().Device(2).At(1.0), GsmRecord().Device(2).At(2.0).NoPosition(),
                        EventRecord(1101).Device(2).Mode(kNetworkModeKeep).At(3.0), HandsetRecord().Device(2).At(4.0),
                        LteRecord(kModelH500Lte).Device(2).At(5.0)};
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", records));
  IDataStream* td = FindStream(*logfile, "drive_RV2230_TD(2)");
  IDataStream* gsm = FindStream(*logfile, "drive_RV2230_GSM(2)");
  IDataStream* merged = FindStream(*logfile, "drive_RV2230(2)");
  ASSERT_TRUE(td && gsm && merged);
  EXPECT_EQ("RV2230(2)", merged->GetDeviceName());
  EXPECT_EQ(2, merged->GetDeviceNumber());
  EXPECT_EQ("DOUBLEPROTOCOL", merged->GetProtocol());
  EXPECT_EQ(td->GetRowCount() + gsm->GetRowCount(), merged->GetRowCount());
  EXPECT_EQ(1, td->GetPositionFlag());
  EXPECT_EQ("AND", td->GetFilterOperator());
  EXPECT_EQ(1, merged->GetPositionFlag()) << "one of its sources lacks positions";
  EXPECT_EQ((std::list<CString>{"CallAttempt"}), merged->GetEventNames());
}

TEST_F(LogImportTest, EventsOfTheLogAndFileMarksReachEveryStreamThatExists) {
  const Records records{FileMarkRecord("too early"), Sample(1, 1), Sample(2, 1), Sample(3, 2), FileMarkRecord("mark"),
                        EventRecord(1101).Device(0), Sample(4, 2), Sample(5, 3)};
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", records));
  RowMap& first = *FindStream(*logfile, "drive_RV2230_TD(1)")->GetRows();
  RowMap& second = *FindStream(*logfile, "drive_RV2230_TD(2)")->GetRows();
  EXPECT_EQ(4u, first.size());
  EXPECT_EQ(4u, second.size());
  EXPECT_EQ(1u, FindStream(*logfile, "drive_RV2230_TD(3)")->GetRows()->size());
  const CMemDataRow& mark = *first.at(3);
  EXPECT_EQ(1610, IntOf(mark, ie::kEventId));
  EXPECT_EQ(3, mark.GetSynFieldValue());
  EXPECT_EQ(2, second.at(2)->GetSynFieldValue());
  const CMemDataRow& event = *second.at(3);
  EXPECT_EQ(1101, IntOf(event, ie::kEventId));
  EXPECT_FALSE(event.Holds(ie::kMessageId));
  EXPECT_EQ(4, IntOf(*second.at(4), ie::kMessageId));
  EXPECT_EQ((std::list<CString>{"CallAttempt", "FileMark"}),
            FindStream(*logfile, "drive_RV2230_TD(2)")->GetEventNames());
}

TEST_F(LogImportTest, SamplesOfARecordAreRowsOfItsStream) {
  const std::array samples{TdSample{.ie5132 = 1}, TdSample{.ie5132 = 2}, TdSample{.ie5132 = 3}};
  const ILogfile* logfile =
      Import(importer_, WriteLog("drive.log", {Sample(1).With(TdSamples{.count = 3, .samples = samples}), Sample(2)}));
  RowMap& rows = *logfile->GetStreams().front()->GetRows();
  ASSERT_EQ(4u, rows.size());
  for (const int number : {1, 2, 3}) {
    EXPECT_EQ(number, IntOf(*rows.at(number), ie::kMessageId));
    EXPECT_EQ(number, IntOf(*rows.at(number), 5132));
    EXPECT_EQ(1, IntOf(*rows.at(number), ie::kRecordId));
  }
  EXPECT_EQ(2, IntOf(*rows.at(4), ie::kRecordId));
}

TEST_F(LogImportTest, TheStatisticsOfAScannerEndWithTheRunThatTheLogEndsIn) {
  const auto scan = [](std::uint8_t cell_parameter_id) {
    const std::array entries{
        ScanPccpch{.carrier_hz = 2010800000, .cell_parameter_id = cell_parameter_id, .rscp = -80.0f}};
    return RecordBuilder(kRecordScanner)
        .With(ScanBlock{.scan_type = 3, .carriers = ScanCarriers{.pccpch_count = 1, .pccpch = entries}});
  };
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", {scan(1), scan(1), scan(2)}));
  const auto& runs = logfile->GetStreams().front()->GetStatResult()->PccpchRuns();
  ASSERT_EQ(2u, runs.size());
  EXPECT_EQ(2, runs[0].last_row);
  EXPECT_EQ(3, runs[1].first_row);
  EXPECT_EQ(1, runs[1].row_count);
}

TEST_F(LogImportTest, WhatIsSkippedIsCountedByReasonAndNotedWithItsPlace) {
  const Records records{Sample(1),    RecordBuilder(3),          RecordBuilder(3),
                        Sample(2, 0), Sample(3).FailsToDecode(), HandsetRecord().Model(kModelMarlo77),
                        Sample(4)};
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", records));
  EXPECT_EQ(2, logfile->GetRowTotal());
  const std::map<std::string_view, std::uint64_t> expected{
      {"unknown kind", 2}, {"no stream", 1}, {"not decoded", 1}, {"no row", 1}};
  EXPECT_EQ(expected, importer_.SkippedCounts());
  ASSERT_EQ(2u, notes_.Count("unknown kind"));
  const Note& place = notes_.kinds().front().places.front();
  EXPECT_EQ("drive.log", CString(place.file).Right(9));
  EXPECT_NE("byte 0", place.at);
  EXPECT_NE(std::string::npos, place.what.find("kind 3")) << place.what;
}

TEST_F(LogImportTest, WhatIsNotDecodedIsNotedAtItsRecord) {
  const CString path = WriteLog("drive.log", {Sample(1), Sample(2).FailsToDecode(), Sample(3)});
  Import(importer_, path);
  CLogFileManager reader;
  const auto [folder, name] = SplitPath(path);
  ASSERT_NE(0, reader.OpenFile(folder, name, 0));
  RecordPool pool;
  reader.ReadFile(pool.Next());
  reader.ReadFile(pool.Next());
  ASSERT_EQ(1u, notes_.Count("record not decoded"));
  EXPECT_EQ("byte " + std::to_string(reader.GetRecordPosition()), notes_.kinds().front().places.front().at);
}

TEST_F(LogImportTest, ScannerEntriesWithoutAnElementAreNotedAtTheirRecord) {
  const std::vector<ScanPccpch> entries(40, ScanPccpch{.cell_parameter_id = 1, .rscp = -80.0f});
  const ScanBlock block{.scan_type = 3, .carriers = ScanCarriers{.pccpch_count = 40, .pccpch = entries}};
  const CString path = WriteLog("drive.log", {Sample(1), RecordBuilder(kRecordScanner).Id(7).With(block), Sample(2)});
  Import(importer_, path);
  ASSERT_EQ(1u, notes_.Count("scanner entries beyond their arrays"));
  const Note& place = notes_.kinds().front().places.front();
  EXPECT_EQ(path, place.file);
  EXPECT_EQ("record 7: 10 values of the 40 PCCPCH entries have no information element", place.what);
}

// Gives up on the record of one id.
class FailingImporter : public COutdoorLogImporter {
 public:
  static constexpr std::int32_t kFailsAt = 9;
  void UpdateStateRecord(const CTestdataBase& record, StateRecord& state) override {
    if (record.record_id == kFailsAt) throw std::runtime_error("fails");
    COutdoorLogImporter::UpdateStateRecord(record, state);
  }
};

TEST_F(LogImportTest, WhatRowsCarryOnEndsWithAnImportThatThrows) {
  FailingImporter importer;
  const CString failing = WriteLog(
      "a.log", {Sample(1).With(CIE_SCell_Para{.uarfcn = 10054}), Sample(2), Sample(FailingImporter::kFailsAt)});
  ILogfile* logfile = nullptr;
  EXPECT_THROW(importer.Import(failing, &logfile), std::runtime_error);
  EXPECT_TRUE(PresentLogs().empty());
  const ILogfile* next = Import(importer, WriteLog("b.log", {Sample(1)}));
  EXPECT_FALSE(next->GetStreams().front()->GetRows()->at(1)->Holds(147)) << "the serving cell of another log";
}

TEST_F(LogImportTest, AReaderThatGivesUpEndsTheLogAndTheRowsStay) {
  const ILogfile* logfile =
      Import(importer_, WriteLog("drive.log", {Sample(1), Sample(2), Sample(3).FailsToRead(), Sample(4)}));
  EXPECT_EQ(2, logfile->GetRowTotal());
  EXPECT_EQ(1u, notes_.Count("reading ended early"));
}

TEST_F(LogImportTest, ALogWithoutAStreamFailsAndLeavesNothing) {
  Import(importer_, WriteLog("drive.log", {RecordBuilder(3), FileMarkRecord("mark")}), kImportFailed);
  EXPECT_TRUE(PresentLogs().empty());
  std::ofstream(folder_.native() / "text.log") << "no log";
  Import(importer_, folder_.File("text.log"), kImportFailed);
  EXPECT_TRUE(PresentLogs().empty());
  for (const auto& window : user_.progress()) EXPECT_TRUE(window.closed);
}

TEST_F(LogImportTest, ALogThatIsPresentIsNotOpened) {
  const CString path = WriteLog("drive.log", {Sample(1)});
  Import(importer_, path);
  Import(importer_, path, kImportAlreadyPresent);
  EXPECT_EQ(1u, user_.progress().size());
  EXPECT_EQ(1u, PresentLogs().size());
}

Records LongDrive() {
  Records records;
  for (int number = 0; number < 3000; ++number) records.push_back(Sample(number));
  return records;
}

TEST_F(LogImportTest, ProgressMovesAtMultiplesOfThreePercent) {
  Import(importer_, WriteLog("drive.log", LongDrive()));
  ASSERT_EQ(1u, user_.progress().size());
  const auto& window = user_.progress().front();
  EXPECT_EQ("导入日志文件进度"_gbk, window.title);
  EXPECT_EQ((std::vector<CString>{"导入日志文件：drive.log"_gbk}), window.texts);
  std::vector<int> expected;
  for (int percent = 3; percent <= 99; percent += 3) expected.push_back(percent);
  expected.push_back(100);
  std::vector<int> shown = window.positions;
  if (shown.size() > 1 && shown[shown.size() - 2] == 100) shown.pop_back();  // the last record may end at the last byte
  EXPECT_EQ(expected, shown);
  EXPECT_EQ(static_cast<int>(window.positions.size()), window.pumps);
  EXPECT_TRUE(window.closed);
}

TEST_F(LogImportTest, CancellingLeavesNothing) {
  user_.CancelProgressAt(30);
  const CString path = WriteLog("drive.log", LongDrive());
  Import(importer_, path, kImportCancelled);
  EXPECT_EQ(30, user_.progress().front().positions.back());
  EXPECT_TRUE(PresentLogs().empty());
  EXPECT_EQ(3000, Import(importer_, path)->GetRowTotal());
}

TEST_F(LogImportTest, ASecondLogStartsAfresh) {
  Import(importer_, WriteLog("a.log", {GsmRecord(), RecordBuilder(3)}));
  const RecordBuilder keeps_mode = HandsetRecord().Mode(kNetworkModeKeep);
  const RecordBuilder early_event = EventRecord(1101).Mode(kNetworkModeKeep);
  const ILogfile* second = Import(importer_, WriteLog("b.log", {early_event, keeps_mode}));
  EXPECT_EQ((std::vector<CString>{"b_RV2230_TD(1)"}), StreamNames(*second));
  EXPECT_EQ((std::map<std::string_view, std::uint64_t>{{"no stream", 1}}), importer_.SkippedCounts());
  EXPECT_EQ(2u, user_.progress().size());
}

TEST_F(LogImportTest, SettingsOfAnEarlierLogAreForgotten) {
  const CString first = WriteLog("a.log", {Sample(1)});
  const CString second = WriteLog("b.log", {Sample(1)});
  importer_.SetImpIESetting({{"MsgName", {"MsgName"}}});
  const std::size_t selected = Import(importer_, first)->GetStreams().front()->GetRows()->at(1)->GetParamID().size();
  importer_.SetImpIESetting({});
  const std::size_t all = Import(importer_, second)->GetStreams().front()->GetRows()->at(1)->GetParamID().size();
  EXPECT_LT(selected, all);
}

TEST_F(LogImportTest, TotalsComeFromTheStreamsWithPositions) {
  const Records records{Sample(1, 1).Position(116.5, 39.5), Sample(2, 2).NoPosition(),
                        Sample(3, 3).Position(-10.0, -20.0)};
  const ILogfile* logfile = Import(importer_, WriteLog("drive.log", records));
  EXPECT_EQ(116.5, logfile->GetLongitudeMaximum());
  EXPECT_EQ(-10.0, logfile->GetLongitudeMinimum());
  EXPECT_EQ(39.5, logfile->GetLatitudeMaximum());
  EXPECT_EQ(-20.0, logfile->GetLatitudeMinimum());
  EXPECT_EQ(0, FindStream(*logfile, "drive_RV2230_TD(2)")->GetPositionFlag());
}

TEST_F(LogImportTest, TheStateRecordKeepsTheNewestStructuresOfTheNetworkInForce) {
  StateRecord state;
  importer_.UpdateStateRecord(HandsetRecord().Id(7).With(CIE_SCell_Para{.uarfcn = 10054}).Build(), state);
  importer_.UpdateStateRecord(GsmRecord().With(CIE_SCell_Para{.uarfcn = 1}).With(CIE_GSM_RAT_Indicate{}).Build(),
                              state);
  importer_.UpdateStateRecord(EventRecord(1101).Id(9).With(CIE_SCell_Para{.uarfcn = 2}).Build(), state);
  EXPECT_EQ(9, state.record().record_id);
  EXPECT_EQ(10054, state.record().serving_cell->uarfcn);
  EXPECT_NE(nullptr, state.record().gsm_rat);
  EXPECT_EQ(nullptr, state.record().gsm_ms_class);
}

}  // namespace
}  // namespace loom::testing
