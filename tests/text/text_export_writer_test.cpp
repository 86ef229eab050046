#include "text/export/text_export_writer.h"

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "components/dt_time.h"
#include "platform/interrupt.h"
#include "platform/log.h"
#include "tests/text/export_streams.h"

namespace loom::testing {
namespace {

class TextExportWriter : public ExportTest {
 protected:
  TextExportWriter() {
    SetLogSink([this](LogLevel, std::string_view text) { log_ += std::string(text) + "\n"; });
  }
  ~TextExportWriter() override { SetLogSink({}); }

  int Write(IDataStream& stream, std::vector<CString> names, TextExportSettings settings = {}) {
    if (settings.file_name.IsEmpty()) settings.file_name = Path();
    if (settings.separator == "\t") settings.separator = ",";
    names_ = std::move(names);
    return WriteStreamAsText(settings, &stream, names_);
  }
  static std::string Time(double time_s) { return CDTTime(time_s).ToString(127).str(); }

  std::vector<CString> names_;
  std::string log_;
};

TEST_F(TextExportWriter, ColumnsHaveTheirOrderWhateverThePersonChose) {
  IDataStream& stream = *AddTdStream();
  AddRow(stream, 100000.25,
         {{kUarfcnIe, uniFieldValue(10054)},
          {kLongitudeIe, uniFieldValue(116.5f)},
          {kLatitudeIe, uniFieldValue(39.25f)},
          {2381, uniFieldValue(1.5f)},
          {2386, uniFieldValue(77)}});
  struct {
    std::vector<CString> names;
    const char* header;
    const char* row;
  } const cases[] = {
      {{"UARFCN"}, "RecordTime,Longitude,Latitude,UARFCN,Distance,TimeStamp", ",116.5,39.25,10054,1.5,77"},
      {{"Latitude", "LAC"}, "RecordTime,Longitude,Latitude,LAC,Distance,TimeStamp", ",116.5,39.25, ,1.5,77"},
      {{"LAC", "Longitude"}, "RecordTime,Latitude,LAC,Longitude,Distance,TimeStamp", ",39.25, ,116.5,1.5,77"},
  };
  for (const auto& [names, header, row] : cases) {
    ASSERT_EQ(1, Write(stream, names));
    EXPECT_EQ(std::string(header) + "\r\n" + Time(100000.25) + row + "\r\n", Written());
  }
  EXPECT_EQ("RecordTime", names_.front());
  EXPECT_EQ(3, user_.wait_cursor_count());
  EXPECT_EQ(0, user_.wait_cursor_depth());
}

TEST_F(TextExportWriter, WhoeverWatchesHearsOfTheRowsAndMayEndIt) {
  struct Watch : WorkWatch {
    void Look(std::uint64_t done, std::uint64_t whole) override {
      seen.emplace_back(done, whole);
      if (seen.size() == most) throw Interrupted();
    }
    std::vector<std::pair<std::uint64_t, std::uint64_t>> seen;
    std::size_t most = 0;
  } watch;
  IDataStream& stream = *AddTdStream();
  for (int row = 0; row < 1000; ++row) AddRow(stream, 100000.0 + row, {{kUarfcnIe, uniFieldValue(10054)}});
  WorkWatch* const before = SetWorkWatch(&watch);
  EXPECT_EQ(1, Write(stream, {"UARFCN"}));
  const std::string whole = Written();
  const std::vector<std::pair<std::uint64_t, std::uint64_t>> expected{{256, 1000}, {512, 1000}, {768, 1000}};
  EXPECT_EQ(expected, watch.seen);
  watch = {};
  watch.most = 2;
  EXPECT_THROW(Write(stream, {"LAC"}), Interrupted);
  SetWorkWatch(before);
  EXPECT_EQ(whole, Written());
}

TEST_F(TextExportWriter, AStreamWithoutRowsGivesOneLineOfBlanks) {
  IDataStream& stream = *AddTdStream();
  ASSERT_EQ(1, Write(stream, {"LAC"}, {.separator = ": ", .write_header = 0}));
  EXPECT_EQ(" :  :  :  :  :  \r\n", Written());
}

TEST_F(TextExportWriter, EveryRowIsWrittenOnceInOrder) {
  IDataStream& stream = *AddTdStream();
  std::string expected;
  for (int number = 1; number <= 20000; ++number) {
    AddRow(stream, number, {{kUarfcnIe, uniFieldValue(number)}});
    expected += Time(number) + "; ; ;" + std::to_string(number) + "; ; \r\n";
  }
  ASSERT_EQ(1, Write(stream, {"UARFCN"}, {.separator = ";", .write_header = 0}));
  EXPECT_EQ(expected, Written());
}

TEST_F(TextExportWriter, LimitsMakeValuesInvalid) {
  IDataStream& stream = *AddTdStream();
  const ExportLimits limits{{"TrCHBLER_Total", {"TrCHBLER_Total", 0, 10}},
                            {"PCCPCH_RSCP", {"PCCPCH_RSCP", -100, -40}},
                            {"LAC", {"LAC", 5, 9}}};
  const auto written = [&](std::initializer_list<std::pair<std::int32_t, uniFieldValue>> values) {
    stream.GetRows()->clear();
    AddRow(stream, kInvalidDouble, values);
    EXPECT_EQ(1, Write(stream, {"TrCHBLER_Total", "PCCPCH_RSCP"}, {.write_header = 0, .limits = &limits}));
    return Written();
  };
  const std::string time = Time(-255);  // also a time that is invalid is written as a time
  EXPECT_EQ(time + ", , ,-255,-100, , \r\n",
            written({{kBlerIe, uniFieldValue(12.5f)}, {kRscpIe, uniFieldValue(-100)}}));
  EXPECT_EQ(time + ", , ,10,-255, , \r\n", written({{kBlerIe, uniFieldValue(10.0f)}, {kRscpIe, uniFieldValue(-101)}}));
  EXPECT_EQ(time + ", , ,-255,-255, , \r\n",
            written({{kBlerIe, uniFieldValue(-255.0f)}, {kRscpIe, uniFieldValue(-255)}}));
  // A blank counts as 0.
  EXPECT_EQ(time + ", , , ,-255, , \r\n", written({}));
}

TEST_F(TextExportWriter, ANameThatTheCatalogueLacksStaysBlankAndIsNoted) {
  IDataStream& stream = *AddTdStream();
  AddRow(stream, 1, {{kRscpIe, uniFieldValue(-70)}});
  ASSERT_EQ(1, Write(stream, {"信号"_gbk, "PCCPCH_RSCP"}, {.write_units = 1}));
  EXPECT_NE(std::string::npos, Written().find(",\xD0\xC5\xBA\xC5(),PCCPCH_RSCP(dBm),"));
  EXPECT_NE(std::string::npos, Written().find(", , , ,-70, , \r\n"));
  EXPECT_EQ(1u, notes_.Count("unknown information element"));
}

TEST_F(TextExportWriter, AFileThatCannotBeWrittenLeavesTheOldOne) {
  IDataStream& stream = *AddTdStream();
  for (int number = 1; number <= 20000; ++number) AddRow(stream, number, {{kUarfcnIe, uniFieldValue(number)}});
  WriteWholeFile(Path(), "old");
  for (const CString& target :
       {CString("/dev/full"), CString("/"), folder_.Folder(), folder_.File("no such folder/out.txt")}) {
    log_.clear();
    EXPECT_EQ(0, Write(stream, {"UARFCN"}, {.file_name = target})) << target;
    EXPECT_FALSE(log_.empty()) << target;
  }
  // A disk that is full in the middle: files may not grow beyond 100 kB.
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit unlimited{};
  getrlimit(RLIMIT_FSIZE, &unlimited);
  rlimit limited = unlimited;
  limited.rlim_cur = 100'000;
  setrlimit(RLIMIT_FSIZE, &limited);
  log_.clear();
  const int result = Write(stream, {"UARFCN"});
  setrlimit(RLIMIT_FSIZE, &unlimited);
  EXPECT_EQ(0, result);
  EXPECT_NE(std::string::npos, log_.find("out.txt")) << log_;
  EXPECT_EQ("old", Written());
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder_.native())) ++files;
  EXPECT_EQ(2u, files) << "the navigator and the old file, nothing half written";
}

}  // namespace
}  // namespace loom::testing
