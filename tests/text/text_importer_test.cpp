#include "text/import/text_importer.h"

#include <filesystem>

#include "platform/path.h"
#include "tests/support/row_fields.h"
#include "tests/text/navigator_test.h"

namespace loom::testing {
namespace {

using Fields = std::vector<std::pair<std::int32_t, double>>;

constexpr const char* kNavigator = R"(<Independent type="NAVIGATORPARAMROOT"><G type="NAVIGATORPARAMTYPE">
  <RecordTime type="NAVIGATORPARAMITEM"/><Longitude type="NAVIGATORPARAMITEM"/><Latitude type="NAVIGATORPARAMITEM"/>
  <Flag type="NAVIGATORPARAMITEM"/></G></Independent><PROTOCOL type="NAVIGATORPROTOCOL" value="GSM"><R type="NAVIGATORPARAMROOT">
  <OfGsm type="NAVIGATORPARAMITEM"/><Flag type="NAVIGATORPARAMITEM"/></R></PROTOCOL>
  <PROTOCOL type="NAVIGATORPROTOCOL" value="LTE"><R type="NAVIGATORPARAMROOT"><G><Small type="NAVIGATORPARAMITEM"/></G>
  </R></PROTOCOL>)";

IECatalogue Catalogue() {
  return IECatalogue::Parse(
      "1\t1\tFlag\t\tbool\n2\t1\tRecordTime\t\tfloat\n3\t1\tSmall\t\tshort\n4\t1\tNumber\t\tint\n5\t1\tDecimal\t\tfloat"
      "\n"
      "6\t1\tOfGsm\t\tint\n7\t1\tText\t\ttext\n2379\t1\tLongitude\t\tfloat\n2380\t1\tLatitude\t\tfloat\n",
      "ies", "", "events");
}

class TextImporterTest : public ::testing::Test {
 protected:
  TextImporterTest() {
    WriteWholeFile(folder_.File("Navigator.xml"), std::string("<N>") + kNavigator + "</N>");
    importer_.SetStreamFullName("a_UE1");
    importer_.SetStreamName("UE1");
    importer_.SetDataFormat("seconds");
    importer_.SetSeparate(",");
  }

  ILogfile* Import(const std::string& bytes, const ColumnMap& columns, int expected = kImportDone) {
    CStreamManagerCreator::CreateStreamManager()->DropLogfile(path_);
    WriteWholeFile(path_, bytes);
    importer_.SetColumnMapIE(columns);
    ILogfile* logfile = nullptr;
    EXPECT_EQ(expected, importer_.Import(path_, &logfile));
    EXPECT_EQ(expected == kImportDone, logfile != nullptr);
    return logfile;
  }
  static IDataStream& StreamOf(const ILogfile* logfile) { return *logfile->GetStreams().front(); }
  static const CMemDataRow& RowOf(const ILogfile* logfile, int number) {
    return *StreamOf(logfile).GetRows()->at(number);
  }
  static Fields FieldsOf(const CMemDataRow& row) {
    Fields fields;
    for (std::size_t at = 0; at < row.GetParamID().size(); ++at) {
      const std::int32_t id = row.GetParamID()[at];
      const uniFieldValue value = row.GetParamValue()[at];
      const bool is_float = g_sysProject->GetIEMemType(id) == kFieldFloat;
      fields.emplace_back(id, is_float ? double{value.float_value} : double{static_cast<double>(value.int_value)});
    }
    return fields;
  }

  TempFolder folder_;
  Notes notes_;
  NotesScope notes_scope_{notes_};
  HostApplication host_{Catalogue(), {.config_folder = folder_.Folder(), .project_path = {}, .recent_logs_path = {}}};
  ScriptedUser user_;
  CString path_ = folder_.File("a.txt");
  CTextImporter importer_;
};

const ColumnMap kAll{{0, "RecordTime"}, {1, "Flag"}, {2, "Small"}, {4, "Number"}, {5, "Decimal"}, {6, "Text"}};

TEST_F(TextImporterTest, CellsBecomeFieldsOfTheirType) {
  const ILogfile* log = Import(
      "titles\n"
      "100000,TRUE,-70,ignored, 123456 ,1.5,hello\r\n"
      "100001,,,,,,\n"
      "100002,0,70000,,-9999999999,1e2x,\n"
      "100003,maybe,x,,0x10,-.5\n"
      "100004,1\n",
      kAll);
  EXPECT_EQ(5, log->GetRowTotal());
  EXPECT_EQ((Fields{{1, 1}, {3, 0xFFBA}, {4, 123456}, {5, 1.5}, {7, 1}}), FieldsOf(RowOf(log, 1)));
  EXPECT_EQ("hello", RowOf(log, 1).GetText(1));
  EXPECT_EQ(100000.0, RowOf(log, 1).GetRecordTime());
  EXPECT_EQ(1, RowOf(log, 1).GetSynFieldValue());
  // Of line 3 the sixth cell is "," and the text is missing: empty cells are left out, missing ones take the default.
  EXPECT_EQ((Fields{{5, 0}, {7, 0}}), FieldsOf(RowOf(log, 2)));
  EXPECT_EQ((Fields{{1, 0}, {3, 70000 - 65536}, {4, -2147483648.0}, {5, 100}, {7, 0}}), FieldsOf(RowOf(log, 3)));
  EXPECT_EQ((Fields{{1, 0}, {3, 0}, {4, 0}, {5, -.5}, {7, 0}}), FieldsOf(RowOf(log, 4)));
  EXPECT_EQ((Fields{{1, 1}, {3, 0xFF01}, {4, -255}, {5, -255}, {7, 0}}), FieldsOf(RowOf(log, 5)));
  EXPECT_EQ(1u, notes_.Count("no truth value"));
  EXPECT_EQ(2u, notes_.Count("no number"));
  EXPECT_EQ(4u, notes_.Count("number cut"));
  EXPECT_EQ(4u, notes_.Count("columns missing in the line"));
}

TEST_F(TextImporterTest, AnInvalidTimeChangesNoBoundAndIsNoted) {
  const ILogfile* log = Import("t\n100000\nsoon\n200000\n150000\n", {{0, "RecordTime"}});
  IDataStream& stream = StreamOf(log);
  EXPECT_EQ(100000.0, stream.GetEarliestTime());
  EXPECT_EQ(200000.0, stream.GetLatestTime());
  EXPECT_EQ(kInvalidDouble, RowOf(log, 2).GetRecordTime());
  ASSERT_EQ(1u, notes_.kinds().size());
  EXPECT_EQ("line 3", notes_.kinds()[0].places[0].at);
  EXPECT_EQ("'soon' does not fit seconds", notes_.kinds()[0].places[0].what);
}

TEST_F(TextImporterTest, ALineThatEndsBeforeItsTimeHasNone) {
  const ILogfile* log = Import("n,t\n5,100000\n6\n7,100001\n", {{0, "Number"}, {1, "RecordTime"}});
  EXPECT_EQ(kInvalidDouble, RowOf(log, 2).GetRecordTime());
  EXPECT_EQ(100001.0, RowOf(log, 3).GetRecordTime());
}

TEST_F(TextImporterTest, WhatIsStoredOtherThanMeantIsNotedWithItsLine) {
  const ColumnMap columns{{0, "RecordTime"}, {1, "Number"}, {2, "Text"}};
  const struct {
    const char* line;
    const char* kind;  // null: nothing to note
  } cases[] = {
      {"100000,1,a,b,", nullptr},
      {"100000,1,a,b,c", "more cells than titles"},
      {"100000,1,\"a b\"", "quoted cell"},
      {"100000,\"1\",a", "quoted cell"},
      {"100000,1,\xE5\x88\x87\xE6\x8D\xA2", "cell in UTF-8"},  // as GBK well-formed, too
      {"100000,1,\xC7\xD0\xBB\xBB", nullptr},                  // the same in GBK
      {"100000,1,\xC3\xB6", nullptr},                          // one character in either
      {"100000s,1,a", "text behind the time"},
      {"1e12,1,a", "time beyond the year 9999"},
  };
  for (const auto& [line, kind] : cases) {
    notes_.Clear();
    Import(std::string("t,s,x,y\n100000,1,a,b\n") + line + "\n", columns);
    ASSERT_EQ(kind != nullptr ? 1u : 0u, notes_.kinds().size()) << line;
    if (kind == nullptr) continue;
    EXPECT_EQ(kind, notes_.kinds()[0].name()) << line;
    EXPECT_EQ("line 3", notes_.kinds()[0].places[0].at) << line;
  }
}

TEST_F(TextImporterTest, CellsAreCountedAgainstTheTitlesWhateverIsMapped) {
  const struct {
    const char* separator;
    const char* bytes;
    bool is_noted;
  } cases[] = {{",", "t,u,v\n100000,2,3,\n", false},
               {",", "t,u,v\n100000,2,3,,\n", true},
               {",", "t\n100000,2\n", true},
               {":", "t: u\n100000: 2: \n", false},
               {":", "t: u\n100000: 2: 3\n", true},
               {"|", "t|u|v\n100000|2|3|4\n", true},
               {"|", "t|u|v\n100000|2|\x81|3\n", false}};
  for (const ColumnMap& columns : {ColumnMap{{0, "RecordTime"}}, ColumnMap{{0, "RecordTime"}, {2, "Text"}}}) {
    for (const auto& [separator, bytes, is_noted] : cases) {
      notes_.Clear();
      importer_.SetSeparate(separator);
      Import(bytes, columns);
      EXPECT_EQ(is_noted ? 1u : 0u, notes_.Count("more cells than titles")) << bytes;
    }
  }
}

TEST_F(TextImporterTest, OnlyPositionsWithinTheGlobeWidenTheBounds) {
  const ColumnMap columns{{0, "RecordTime"}, {1, "Longitude"}, {2, "Latitude"}};
  IDataStream& stream = StreamOf(Import("t\n0,10,20\n0,190,0\n0,0,-91\n0,-20.5,30\n0,99,\n0,99\n", columns));
  EXPECT_EQ(-20.5, stream.GetLongitudeMinimum());
  EXPECT_EQ(10.0, stream.GetLongitudeMaximum());
  EXPECT_EQ(20.0, stream.GetLatitudeMinimum());
  EXPECT_EQ(30.0, stream.GetLatitudeMaximum());
}

TEST_F(TextImporterTest, TheStreamIsDescribedByTheSettings) {
  const struct { std::int32_t type, kind, stream_class; } cases[] = {{0, 1, 1}, {1, 6, 1}, {2, 14, 2}};
  for (const auto& [type, kind, stream_class] : cases) {
    importer_.SetStreamType(type);
    IDataStream& stream = StreamOf(Import("t\n100000,1\n", {{0, "RecordTime"}, {1, "Unheard"}, {3, ""}}));
    EXPECT_EQ("a_UE1", stream.GetName());
    EXPECT_EQ("UE1", stream.GetDeviceName());
    EXPECT_EQ(kind, stream.GetStreamType());
    EXPECT_EQ(stream_class, stream.GetStreamClass());
    EXPECT_EQ("AND", stream.GetFilterOperator());
    EXPECT_TRUE(stream.IsCompleted());
    EXPECT_EQ((std::list<CString>{"RecordTime", "Unheard"}), stream.GetIENames());
  }
  EXPECT_EQ(6u, notes_.Count("unknown information element"));
}

TEST_F(TextImporterTest, TheProtocolFollowsFromTheNavigatorAndStaysWithoutOne) {
  const struct {
    ColumnMap columns;
    CString protocol;
  } cases[] = {{{{0, "RecordTime"}}, "TD-SCDMA"},
               {{{0, "RecordTime"}, {1, "OfGsm"}, {2, "Unheard"}}, "GSM"},
               {{{0, "RecordTime"}, {1, "Longitude"}}, "GSM"},
               {{{0, "RecordTime"}, {1, "Flag"}}, "TD-SCDMA"},
               {{{0, "OfGsm"}, {1, "Flag"}}, "GSM"},
               {{{0, "Small"}, {1, "Flag"}}, "TD-SCDMA"},
               {{{0, "OfGsm"}, {1, "Number"}}, "DOUBLEPROTOCOL"},
               {{{0, "Number"}}, "TD-SCDMA"}};
  for (const auto& [columns, protocol] : cases) {
    EXPECT_EQ(protocol, StreamOf(Import("t,u,v\n1,2,3\n", columns)).GetProtocol());
  }
  EXPECT_EQ(1u, notes_.Count("protocol assumed"));
  EXPECT_EQ(1u, notes_.Count("LTE columns"));
}

TEST_F(TextImporterTest, TheFirstRowAndEvery500thAreKeyRows) {
  std::string bytes;
  for (int row = 1; row <= 1001; ++row) bytes += std::to_string(row) + "," + std::to_string(row) + "\n";
  importer_.SetHeadLineIsIgnore(0);
  IDataStream& stream = StreamOf(Import(bytes, {{1, "Number"}}));
  std::vector<std::int32_t> keys;
  for (const auto& [number, row] : *stream.GetKeyRows()) {
    keys.push_back(number);
    EXPECT_NE(stream.GetRows()->at(number), row);
    EXPECT_EQ((Fields{{4, number}}), FieldsOf(*row));
  }
  EXPECT_EQ((std::vector<std::int32_t>{1, 500, 1000}), keys);
  EXPECT_EQ(1001, stream.GetRowCount());
}

TEST_F(TextImporterTest, AnElementThatIsMappedTwiceLosesItsFirstFieldToAnEmptyCell) {
  const ColumnMap columns{{0, "Number"}, {1, "Decimal"}, {2, "Number"}};
  const ILogfile* log = Import("t\n1,2,3\n1,2, \n,2,3\n", columns);
  EXPECT_EQ((Fields{{4, 1}, {5, 2}, {4, 3}}), FieldsOf(RowOf(log, 1)));
  EXPECT_EQ((std::vector<std::int32_t>{5, 4}), IdsOf(RowOf(log, 2)));
  EXPECT_EQ(2u, RowOf(log, 2).GetParamValue().size());
  EXPECT_EQ((Fields{{5, 2}, {4, 3}}), FieldsOf(RowOf(log, 3)));
  EXPECT_EQ(1u, notes_.Count("information element mapped twice"));
}

TEST_F(TextImporterTest, BuildRowMakesOneRowOfOneLine) {
  importer_.SetColumnMapIE(kAll);
  double minimum = kInvalidDouble;
  double maximum = 100000;
  const std::unique_ptr<CMemDataRow> row(importer_.BuildRow("90000,0,5,,6", 7, &minimum, &maximum));
  EXPECT_EQ(7, row->GetSynFieldValue());
  EXPECT_EQ((Fields{{1, 0}, {3, 5}, {4, 6}, {5, -255}, {7, 0}}), FieldsOf(*row));
  EXPECT_EQ(90000.0, minimum);
  EXPECT_EQ(100000.0, maximum);
}

TEST_F(TextImporterTest, NothingStaysOfAnImportThatFailsOrIsCancelled) {
  const auto is_present = [&] { return CStreamManagerCreator::CreateStreamManager()->FindLogfile(path_) != nullptr; };
  std::string bytes;
  for (int row = 0; row < 5000; ++row) bytes += "100000,1\n";
  user_.CancelProgressAt(300);
  Import(bytes, {{0, "RecordTime"}}, kImportCancelled);
  EXPECT_FALSE(is_present());
  EXPECT_EQ((std::pair{0, 1000}), (std::pair{user_.progress()[0].lowest, user_.progress()[0].highest}));
  EXPECT_EQ("导入文本文件：a.txt"_gbk, user_.progress()[0].texts.at(0));

  user_.ExpectMessage("加载配置文件失败！文本文件不能正常导入！"_gbk, MessageIcon::kError);
  SetChosenConfigFolder(folder_.File("nowhere"));
  Import(bytes, {{0, "RecordTime"}}, kImportFailed);
  EXPECT_FALSE(is_present());
  SetChosenConfigFolder(folder_.Folder());

  ILogfile* logfile = nullptr;
  const CString missing = folder_.File("missing.txt");
  for (const CString& path : {missing, folder_.Folder().Left(folder_.Folder().GetLength() - 1)}) {
    user_.ExpectMessage(Format("载入文本文件：%s 失败！"_gbk, NameOf(path)), MessageIcon::kError);
    EXPECT_EQ(kImportFailed, importer_.Import(path, &logfile));
    EXPECT_EQ(nullptr, logfile);
  }
  Import("t\n100000\n", {{0, "RecordTime"}});
  EXPECT_EQ(kImportAlreadyPresent, importer_.Import(path_, &logfile));
  EXPECT_EQ(nullptr, logfile);
}

// A progress window that cuts the file short when it is pumped.
class ShrinkingProgress final : public ProgressView {
 public:
  explicit ShrinkingProgress(std::filesystem::path path) : path_(std::move(path)) {}
  void SetText(const CString&) override {}
  void SetRange(int, int) override {}
  void SetPos(int) override {}
  void Pump() override { std::filesystem::resize_file(path_, 1000); }
  bool Cancelled() const override { return false; }

 private:
  std::filesystem::path path_;
};

class ShrinkingUser final : public ScriptedUser {
 public:
  explicit ShrinkingUser(std::filesystem::path path) : path_(std::move(path)) {}
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest&) override {
    return std::make_unique<ShrinkingProgress>(path_);
  }

 private:
  std::filesystem::path path_;
};

TEST_F(TextImporterTest, AFileThatShrinksMeanwhileFails) {
  ShrinkingUser user(folder_.native() / "a.txt");
  user.ExpectMessage("加载文本文件数据发生错误!"_gbk, MessageIcon::kError);
  std::string bytes;
  for (int row = 0; row < 100000; ++row) bytes += "100000,1\n";
  Import(bytes, {{0, "RecordTime"}}, kImportFailed);
  EXPECT_EQ(nullptr, CStreamManagerCreator::CreateStreamManager()->FindLogfile(path_));
}

}  // namespace
}  // namespace loom::testing
