#include <algorithm>
#include <fstream>

#include "host/streams/data_stream.h"
#include "importers/intermediate_file_importer.h"
#include "manager/io_manager.h"
#include "platform/file.h"
#include "platform/file_map.h"
#include "tests/importers/import_test.h"
#include "tests/support/intermediate_builder.h"
#include "tests/support/row_fields.h"

namespace loom::testing {
namespace {

const std::size_t kGranularity = AllocationGranularity();
const std::size_t kRowsPerChunk = (kGranularity * 1024 - kGranularity) / 24;

// Passes everything on to the reference host and remembers the batches.
class RecordingCommunicator final : public IModuleCommunicator {
 public:
  explicit RecordingCommunicator(IModuleCommunicator& host) : host_(host) {}
  ILogfile* MakeLogfile(const CString& path) override { return host_.MakeLogfile(path); }
  IDataStream* MakeStream(const CString& path, const CString& name, std::int32_t kind) override {
    return host_.MakeStream(path, name, kind);
  }
  IDataStream* MakeDualStream(const CString& path, const CString& name) override {
    return host_.MakeDualStream(path, name);
  }
  void TakeFileHeader(ILogfile* logfile, std::span<const std::byte> header, std::span<const std::byte> table) override {
    header_sizes = {header.size(), table.size()};
    host_.TakeFileHeader(logfile, header, table);
  }
  void TakeStreamHeader(IDataStream* stream, std::span<const std::byte> header) override {
    header_sizes.push_back(header.size());
    host_.TakeStreamHeader(stream, header);
  }
  void AddRows(IDataStream* stream, std::span<CMemDataRow* const> rows) override {
    batches.push_back(rows.size());
    host_.AddRows(stream, rows);
  }
  void AddDualRows(IDataStream* stream, std::span<const CMergeDataRow_2M> rows) override {
    batches.push_back(rows.size());
    host_.AddDualRows(stream, rows);
  }
  void LinkDualStream(IDataStream* dual, IDataStream* td_scdma, IDataStream* gsm) override {
    links.push_back({dual->GetName(), td_scdma->GetName(), gsm->GetName()});
    host_.LinkDualStream(dual, td_scdma, gsm);
  }

  std::vector<std::size_t> header_sizes;
  std::vector<std::size_t> batches;
  std::vector<std::vector<CString>> links;

 private:
  IModuleCommunicator& host_;
};

RowSpec IntRow(std::int32_t number) { return {1715910000.0 + number, number, FieldBytes(140, 4, BytesOf(number * 7))}; }

std::vector<RowSpec> IntRows(int count) {
  std::vector<RowSpec> rows;
  rows.reserve(static_cast<std::size_t>(count));
  for (int number = 1; number <= count; ++number) rows.push_back(IntRow(number));
  return rows;
}

class IntermediateImportTest : public ImportTest {
 protected:
  CString Write(const std::string& bytes, const CString& name = "drive.imd") const {
    const CString path = folder_.File(name);
    std::ofstream(GbkPathToNative(path), std::ios::binary) << bytes;  // without the syncing of the file functions
    return path;
  }
  // Imports bytes and gives the log file object, null when there is none.
  ILogfile* ImportBytes(const std::string& bytes, int expected = kImportDone) {
    const CString path = Write(bytes);
    CStreamManagerCreator::CreateStreamManager()->DropLogfile(path);
    ILogfile* logfile = nullptr;
    EXPECT_EQ(expected, CIntermediateFileImporter(&communicator_).Import(path, &logfile));
    EXPECT_EQ(bytes, ReadWholeText(path));
    return logfile;
  }
  RowMap& RowsOf(ILogfile& logfile, std::size_t stream = 0) {
    const auto streams = logfile.GetStreams();
    return *(*std::next(streams.begin(), static_cast<std::ptrdiff_t>(stream)))->GetRows();
  }

  RecordingCommunicator communicator_{host_.communicator()};
};

TEST_F(IntermediateImportTest, EveryFieldComesBackAsItWasWritten) {
  const std::string data = FieldBytes(140, 4, BytesOf(-70000)) + FieldBytes(2379, 5, BytesOf(116.25f)) +
                           FieldBytes(141, 3, BytesOf(std::uint16_t{0xFF01})) + FieldBytes(5, 1, "\x40") +
                           FieldBytes(35, 2, "RRC \xC1\xAC\xBD\xD3") + FieldBytes(35, 2, "") +
                           FieldBytes(262143, 4, BytesOf(std::int64_t{9}));
  ILogfile* logfile = ImportBytes(
      BuildIntermediateFile({{"RV2230_TD(3)", "TD-SCDMA", {{12.5, 77, data}, IntRow(2)}, 1, 1, {140, 35}, {9}, {1101}}})
          .bytes);
  ASSERT_TRUE(logfile);
  IDataStream* stream = FindStream(*logfile, "drive_RV2230_TD(3)");
  ASSERT_TRUE(stream);
  EXPECT_EQ("RV2230_TD(3)", stream->GetDeviceName());
  EXPECT_EQ("TD-SCDMA", stream->GetProtocol());
  EXPECT_EQ(3, stream->GetDeviceNumber());
  EXPECT_EQ(2, stream->GetRowCount());
  EXPECT_EQ(2, logfile->GetRowTotal());
  EXPECT_EQ(12.5, stream->GetEarliestTime());
  EXPECT_EQ(116.25, stream->GetLongitudeMaximum());
  EXPECT_EQ((std::list{g_project->GetIEName(140), g_project->GetIEName(35)}), stream->GetIENames());
  EXPECT_EQ(std::list{g_project->GetEventName(1101)}, stream->GetEventNames());
  EXPECT_EQ((std::vector<std::size_t>{528, 136, 664}), communicator_.header_sizes);

  const CMemDataRow& row = *stream->GetRows()->at(1);
  EXPECT_EQ(12.5, row.GetRecordTime());
  EXPECT_EQ(77, row.GetSynFieldValue());
  ASSERT_EQ((std::vector<std::int32_t>{140, 2379, 141, 5, 35, 35, 262143}), IdsOf(row));
  const auto values = row.GetParamValue();
  EXPECT_EQ(-70000, values[0].int_value);
  EXPECT_EQ(116.25f, values[1].float_value);
  EXPECT_EQ(0xFF01, values[2].int_value);
  EXPECT_EQ(1, values[3].int_value);
  EXPECT_EQ("RRC \xC1\xAC\xBD\xD3", row.GetText(values[4].text));
  EXPECT_NE(0u, values[5].text);
  EXPECT_EQ("", row.GetText(values[5].text));
  EXPECT_EQ(9, values[6].int_value);
  EXPECT_EQ(1u, notes_.kinds().size());
  EXPECT_EQ(1u, notes_.Count("type of a field is not the catalogue's")) << "of the boolean";

  ASSERT_EQ(1u, user_.progress().size());
  const auto& progress = user_.progress().front();
  EXPECT_EQ("导入数据流文件进度"_gbk, progress.title);
  EXPECT_EQ(std::vector{"导入数据流：drive_RV2230_TD(3)"_gbk}, progress.texts);
  EXPECT_FALSE(progress.can_cancel);
  EXPECT_EQ(2, progress.highest);
  EXPECT_EQ((std::vector{77, 2}), progress.positions);
}

TEST_F(IntermediateImportTest, SixteenBitsKeepTheirSignWhereTheCatalogueHasAnotherType) {
  const auto short_field = [](std::uint32_t id) { return FieldBytes(id, 3, BytesOf(std::int16_t{-255})); };
  const std::string data = short_field(140) + short_field(141) + FieldBytes(262143, 5, BytesOf(1.0f));
  const BuiltFile file = BuildIntermediateFile({{"A(1)", "GSM", {{1, 1, data}, {2, 2, data}}}});
  const ILogfile* logfile = ImportBytes(file.bytes);
  ASSERT_TRUE(logfile);
  const CMemDataRow& row = *logfile->GetStreams().front()->GetRows()->at(2);
  EXPECT_EQ(-255, IntOf(row, 140));
  EXPECT_EQ(kInvalidShort, IntOf(row, 141)) << "16 bits in the catalogue, too";
  ASSERT_EQ(2u, notes_.Count("type of a field is not the catalogue's")) << "the first of each information element";
  const std::vector<Note>& places = notes_.kinds().front().places;
  EXPECT_EQ("byte " + std::to_string(file.places[0].data), places[0].at);
  EXPECT_EQ(
      "information element 262143, type 5, 4 bytes: the catalogue lacks the element, which counts as int; the first of "
      "its stream",
      places[1].what);
}

TEST_F(IntermediateImportTest, FieldsThatCannotBeStoredAreLeftOutWithANote) {
  const std::string good = FieldBytes(140, 4, BytesOf(5));
  std::string too_long = FieldBytes(140, 2, "abc");
  Put(too_long, 0, std::uint32_t(140 << 14 | 2 << 11 | 900 << 1));
  std::vector<RowSpec> rows = {
      {1, 1, FieldBytes(1, 0, "ab") + FieldBytes(2, 6, "") + FieldBytes(3, 7, "abcd") + good},
      {2, 2, FieldBytes(4, 4, "ab") + FieldBytes(5, 1, "") + FieldBytes(6, 3, "a") + FieldBytes(7, 5, "abc") + good},
      {3, 3, good + too_long},
      {4, 4, good + "xyz"},
      {5, 5, good},
  };
  ILogfile* logfile = ImportBytes(BuildIntermediateFile({{"A(1)", "GSM", rows}}).bytes);
  ASSERT_TRUE(logfile);
  ASSERT_EQ(5u, RowsOf(*logfile).size());
  for (const auto& [number, row] : RowsOf(*logfile)) EXPECT_EQ(std::vector<std::int32_t>{140}, IdsOf(*row)) << number;
  EXPECT_EQ(7u, notes_.Count("field of an intermediate file not stored"));
  EXPECT_EQ(2u, notes_.Count("row of an intermediate file cut short"));
}

TEST_F(IntermediateImportTest, WhatIsNoIntermediateFileIsRefused) {
  const std::string good = BuildIntermediateFile({{"A(1)", "GSM", IntRows(3)}}).bytes;
  for (std::size_t at = 0; at < 16; ++at) {
    std::string bytes = good;
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    user_.ExpectMessage("不是日志中间文件!"_gbk, MessageIcon::kWarning);
    EXPECT_EQ(nullptr, ImportBytes(bytes, kImportFailed));
  }
  user_.ExpectMessage("不是日志中间文件!"_gbk, MessageIcon::kWarning);
  ImportBytes(good.substr(0, 679), kImportFailed);
  for (const std::uint32_t version : {0u, 749u, 751u, 750u << 16}) {
    std::string bytes = good;
    Put(bytes, 24, version);
    user_.ExpectMessage("日志中间文件版本不支持!"_gbk, MessageIcon::kWarning);
    EXPECT_EQ(nullptr, ImportBytes(bytes, kImportFailed));
  }
  EXPECT_EQ(kImportFailed, CIntermediateFileImporter(nullptr).Import(Write(good), nullptr));
  EXPECT_TRUE(PresentLogs().empty());
}

TEST_F(IntermediateImportTest, AMissingFileIsMadeAndNothingImported) {
  const CString path = folder_.File("missing.imd");
  EXPECT_EQ(kImportDone, CIntermediateFileImporter(&communicator_).Import(path, nullptr));
  EXPECT_EQ("", ReadWholeText(path));
  EXPECT_EQ(kImportDone, CIntermediateFileImporter(&communicator_).Import(folder_.Folder(), nullptr));
  EXPECT_EQ(2u, notes_.Count("not imported"));
  EXPECT_TRUE(PresentLogs().empty());
}

TEST_F(IntermediateImportTest, EntriesThatAreNotForImportArePassedOver) {
  std::vector<StreamSpec> streams;
  for (int number = 1; number <= 22; ++number) {
    streams.push_back({"D" + std::to_string(number), "LTE", IntRows(number)});
  }
  streams[4].flag = 0;
  streams[5].flag = 2;
  streams[6].kind = 99;
  std::string bytes = BuildIntermediateFile(streams).bytes;
  ILogfile* logfile = ImportBytes(bytes);
  ASSERT_TRUE(logfile);
  ASSERT_EQ(19u, logfile->GetStreams().size());
  EXPECT_EQ(22u, RowsOf(*logfile, 18).size());
  EXPECT_EQ(1u, notes_.Count("stream entry skipped"));

  Put(bytes, 676, std::uint16_t{65535});
  ASSERT_EQ(19u, ImportBytes(bytes)->GetStreams().size());
  EXPECT_EQ(1u, notes_.Count("stream table too short"));
}

TEST_F(IntermediateImportTest, StreamsOfADualModeHandsetAreLinked) {
  std::vector<RowSpec> merged = IntRows(3);
  for (std::uint32_t n = 0; n < 3; ++n) merged[n].data = BytesOf(n) + BytesOf(10 - n) + merged[n].data;
  ILogfile* logfile = ImportBytes(BuildIntermediateFile({{"H(2)", "DOUBLEPROTOCOL", merged},
                                                         {"H_TD(2)", "TD-SCDMA", IntRows(2)},
                                                         {"H_GSM(2)", "GSM", IntRows(1)},
                                                         {"K(3)", "DOUBLEPROTOCOL", merged},
                                                         {"K_TD(3)", "TD-SCDMA", IntRows(2)},
                                                         {"L(4)", "DOUBLEPROTOCOL", merged},
                                                         {"L_TD(4)", "TD-SCDMA", IntRows(1)},
                                                         {"L_LTE(4)", "LTE", IntRows(1)}})
                                      .bytes);
  ASSERT_TRUE(logfile);
  ASSERT_EQ(1u, communicator_.links.size());
  EXPECT_EQ((std::vector<CString>{"drive_H(2)", "drive_H_TD(2)", "drive_H_GSM(2)"}), communicator_.links.front());
  IDataStream* dual = FindStream(*logfile, "drive_H(2)");
  EXPECT_EQ(
      (std::vector<const IDataStream*>{FindStream(*logfile, "drive_H_TD(2)"), FindStream(*logfile, "drive_H_GSM(2)")}),
      dynamic_cast<DataStream*>(dual)->Sources());
  const CMergeDataRow_2M& row = dual->GetMergedRows()->at(3);
  EXPECT_EQ(2u, row.td_row_number);
  EXPECT_EQ(8u, row.gsm_row_number);
  EXPECT_EQ(dual->GetRows()->at(3), row.row);
  EXPECT_EQ(21, IntOf(*row.row, 140));
  EXPECT_EQ(7, logfile->GetRowTotal());  // merged rows are those of the sources
}

class ChunkTest : public IntermediateImportTest, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(ChunkTest, EveryRowIsImportedInChunks) {
  const std::size_t count = GetParam();
  ILogfile* logfile = ImportBytes(BuildIntermediateFile({{"A(1)", "GSM", IntRows(static_cast<int>(count))}}).bytes);
  ASSERT_TRUE(logfile);
  RowMap& rows = RowsOf(*logfile);
  ASSERT_EQ(count, rows.size());
  const auto differs = std::ranges::find_if(rows, [](const auto& entry) {
    const auto& [number, row] = entry;
    return row->GetSynFieldValue() != number || IntOf(*row, 140) != number * 7;
  });
  EXPECT_EQ(rows.end(), differs);
  std::vector<std::size_t> batches(count / kRowsPerChunk, kRowsPerChunk);
  if (count % kRowsPerChunk != 0) batches.push_back(count % kRowsPerChunk);
  EXPECT_EQ(batches, communicator_.batches);
}

INSTANTIATE_TEST_SUITE_P(Borders, ChunkTest,
                         ::testing::Values(0, 1, kRowsPerChunk - 1, kRowsPerChunk, kRowsPerChunk + 1,
                                           2 * kRowsPerChunk));

TEST_F(IntermediateImportTest, RowsAcrossWindowsAreWhole) {
  std::vector<RowSpec> rows;
  for (int number = 1; number <= 1500; ++number) {
    std::string data;
    for (int field = 0; field < 1 + number % 60; ++field) {
      data += FieldBytes(35, 2, std::string(1023, static_cast<char>('a' + (number + field) % 26)));
    }
    rows.push_back({1.0, number, data});
  }
  ILogfile* logfile = ImportBytes(BuildIntermediateFile({{"A(1)", "GSM", rows}}).bytes);
  ASSERT_TRUE(logfile);
  ASSERT_EQ(1500u, RowsOf(*logfile).size());
  for (const auto& [number, row] : RowsOf(*logfile)) {
    const int last = number % 60;
    ASSERT_EQ(static_cast<std::size_t>(last) + 1, row->GetParamID().size());
    EXPECT_EQ(std::string(1023, static_cast<char>('a' + (number + last) % 26)),
              row->GetText(row->GetParamValue().back().text));
  }
}

BuiltFile TwoStreams() {
  return BuildIntermediateFile(
      {{"A(1)", "GSM", IntRows(3), 1, 1, {140}, {}, {1101}}, {"B(2)", "LTE", IntRows(2), 14, 1, {140}, {7}, {}}});
}

TEST_F(IntermediateImportTest, AFileThatIsCutAnywhereKeepsItsWholeStreams) {
  const BuiltFile file = TwoStreams();
  for (std::size_t size = 1; size < file.bytes.size(); ++size) {
    notes_.Clear();
    if (size < 680) user_.ExpectMessage("不是日志中间文件!"_gbk, MessageIcon::kWarning);
    ILogfile* logfile = ImportBytes(file.bytes.substr(0, size), size < 680 ? kImportFailed : kImportDone);
    EXPECT_FALSE(notes_.IsEmpty()) << size;
    if (!logfile) continue;
    const std::int32_t rows = size < file.places[1].entry ? 0 : 3;
    EXPECT_EQ(rows, logfile->GetRowTotal()) << size;
  }
}

// One damage to the first of two streams: what is noted, and how many rows of both are left.
struct Damage {
  const char* name;
  void (*apply)(std::string& bytes, const StreamPlace& place);
  const char* note;
  std::int32_t rows;
};

constexpr const char* kEndsEarly = "stream of an intermediate file ends early";
constexpr std::uint32_t kFarAway = 0xFFFFFFF0;

// clang-format off
const Damage kDamages[] = {
    {"base offset",       [](std::string& b, const StreamPlace& p) { Put(b, p.entry, kFarAway); }, kEndsEarly, 2},
    {"short data",        [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 56, 20.0); }, kEndsEarly, 2},
    {"long data",         [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 56, 1e6); }, kEndsEarly, 2},
    {"negative data",     [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 56, -1.0); }, kEndsEarly, 2},
    {"data not a number", [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 56, std::uint64_t{0x7FF8000000000000}); }, kEndsEarly, 2},
    {"infinite data",     [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 56, std::uint64_t{0x7FF0000000000000}); }, kEndsEarly, 2},
    {"row count",         [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 64, kFarAway); }, kEndsEarly, 2},
    {"index offset",      [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 68, kFarAway); }, kEndsEarly, 2},
    {"IE count",          [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 72, kFarAway); }, "id of a stream not handed over", 5},
    {"skip count",        [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 92, 100000u); }, "id of a stream not handed over", 5},
    {"unknown IE",        [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 672, kFarAway); }, "id of a stream not handed over", 5},
    {"device name",       [](std::string& b, const StreamPlace& p) { b.replace(p.entry + 100, 256, std::string(256, 'A')); }, "name without terminator", 5},
    {"lone surrogate",    [](std::string& b, const StreamPlace& p) { Put(b, p.entry + 100, std::uint16_t{0xD800}); }, "name changed", 5},
    {"entry offset",      [](std::string& b, const StreamPlace&) { Put(b, 588, kFarAway); }, "stream entry skipped", 2},
    {"same entry twice",  [](std::string& b, const StreamPlace& p) { Put(b, 592, static_cast<std::uint32_t>(p.entry)); }, "streams overlap", 6},
    {"first row's data",  [](std::string& b, const StreamPlace& p) { Put(b, p.index + 12, kFarAway); }, kEndsEarly, 2},
    {"second row's data", [](std::string& b, const StreamPlace& p) { Put(b, p.index + 24 + 12, 0u); }, "row of an intermediate file not where its index says", 5},
    {"row length",        [](std::string& b, const StreamPlace& p) { Put(b, p.index + 16, std::uint16_t{65535}); }, kEndsEarly, 2},
    {"odd row length",    [](std::string& b, const StreamPlace& p) { Put(b, p.index + 48 + 16, std::uint16_t{3}); }, "row of an intermediate file cut short", 5},
    {"field length",      [](std::string& b, const StreamPlace& p) { b[p.data] = '\xFF'; }, "row of an intermediate file cut short", 5},
    {"dual without room", [](std::string& b, const StreamPlace& p) { PutName(b, p.entry + 612, "DOUBLEPROTOCOL"); Put(b, p.index + 16, std::uint16_t{7}); }, kEndsEarly, 2},
};
// clang-format on

TEST_F(IntermediateImportTest, ALieIsNotedWithItsPlaceAndCostsOnlyItsOwnStream) {
  const BuiltFile good = TwoStreams();
  for (const Damage& damage : kDamages) {
    notes_.Clear();
    std::string bytes = good.bytes;
    damage.apply(bytes, good.places[0]);
    const ILogfile* logfile = ImportBytes(bytes);
    ASSERT_TRUE(logfile) << damage.name;
    EXPECT_EQ(damage.rows, logfile->GetRowTotal()) << damage.name;
    EXPECT_LE(1u, notes_.Count(damage.note)) << damage.name;
    for (const Notes::Kind& kind : notes_.kinds()) {
      EXPECT_EQ(0u, kind.places.front().at.find("byte ")) << damage.name;
    }
  }
}

TEST_F(IntermediateImportTest, ChunksBeforeADamageAreKept) {
  BuiltFile file = BuildIntermediateFile({{"A(1)", "GSM", IntRows(static_cast<int>(kRowsPerChunk) + 5)}});
  ILogfile* logfile = ImportBytes(file.bytes.substr(0, file.bytes.size() - 1));
  ASSERT_TRUE(logfile);
  EXPECT_EQ(kRowsPerChunk, RowsOf(*logfile).size());
  EXPECT_EQ(static_cast<std::int32_t>(kRowsPerChunk), logfile->GetStreams().front()->GetRowCount());
  EXPECT_EQ(1u, notes_.Count(kEndsEarly));
}

TEST_F(IntermediateImportTest, TheFacadeImportsFileByFile) {
  CIOManager manager;
  manager.RegisterModuleCommunicator(&host_.communicator());
  std::vector<int> results;
  manager.SetLogListener([&](const LogOutcome& outcome) { results.push_back(outcome.result); });
  const std::string good = TwoStreams().bytes;
  std::vector<CString> first{Write(good, "one.imd")};
  EXPECT_EQ(1, manager.OpenImmediateLogFile(first));
  std::vector<CString> more{folder_.File("one.xyz"), Write("nothing", "two.imd"), Write(good, "three.imd")};
  user_.ExpectMessage("已导入同名日志文件:one !"_gbk, MessageIcon::kWarning);
  user_.ExpectMessage("不是日志中间文件!"_gbk, MessageIcon::kWarning);
  EXPECT_EQ(1, manager.OpenImmediateLogFile(more));
  EXPECT_EQ((std::vector<int>{kImportDone, kImportAlreadyPresent, kImportFailed, kImportDone}), results);
  EXPECT_FALSE(FileExists(more[0]));
  EXPECT_EQ(2u, PresentLogs().size());
}

TEST_F(IntermediateImportTest, RowsOfAnotherMemoryAreCopied) {
  const CString path = folder_.File("own.imd");
  host_.communicator().MakeLogfile(path)->AddStream(host_.communicator().MakeStream(path, "own", 1));
  IDataStream* stream = PresentLogs().at(path)->GetStreams().front();
  {
    CMemDataRow row;
    row.QuickAddIE(35, uniFieldValue::Text(row.AddText("kept")));
    CMemDataRow* const rows[] = {&row, &row};
    host_.communicator().AddRows(stream, rows);
  }
  ASSERT_EQ(2u, stream->GetRows()->size());
  const CMemDataRow& kept = *stream->GetRows()->at(2);
  EXPECT_EQ("kept", kept.GetText(kept.GetIEValueByID(35)->text));
  EXPECT_EQ(nullptr, host_.communicator().MakeLogfile(path));
}

}  // namespace
}  // namespace loom::testing
