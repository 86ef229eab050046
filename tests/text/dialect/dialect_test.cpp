#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "host/application.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"
#include "text/dialect/converter.h"
#include "text/dialect/finder.h"
#include "text/dialect/instant_reader.h"
#include "text/dialect/layout_reader.h"
#include "text/dialect/position_cell.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {
namespace {

using loom::testing::SharedSamples;
using loom::testing::TempFolder;

class DialectTest : public ::testing::Test {
 protected:
  DialectTest() {
    setenv("TZ", "UTC", 1);
    tzset();
  }
  Findings InspectText(std::string_view bytes, const Overrides& overrides = {}) {
    WriteWholeFile(path_, bytes);
    return Inspect(path_, overrides);
  }
  std::string ToCsv(const Findings& found) {
    ConvertToCsv(path_, found, out_);
    return ReadWholeText(out_);
  }

  TempFolder folder_;
  CString path_ = folder_.File("in.txt");
  CString out_ = folder_.File("out.csv");
};

// Rows with a number, a time and a text between a separator.
std::string Rows(const std::string& separator, int count = 12) {
  std::string text;
  for (int row = 0; row < count; ++row) {
    const std::string number = std::to_string(10 + row);
    text += number + separator + "2021-05-13 12:58:" + number + separator + "cell" + number + "\n";
  }
  return text;
}

struct FormCase {
  const char* name;
  std::string text;
  const char* separator;
  char quote;
  int preamble;
  int header;
  int footer;
  std::uint64_t rows;
};

class DialectForms : public DialectTest, public ::testing::WithParamInterface<FormCase> {};

TEST_P(DialectForms, AreFound) {
  const FormCase& one = GetParam();
  const Findings found = InspectText(one.text);
  EXPECT_EQ(one.separator, found.form.separator);
  EXPECT_EQ(one.quote, found.form.quote);
  EXPECT_EQ(one.preamble, found.form.preamble_rows);
  EXPECT_EQ(one.header, found.form.header_rows);
  EXPECT_EQ(one.footer, found.form.footer_rows);
  EXPECT_EQ(one.rows, found.rows);
}

std::string QuotedLists() {
  std::string text = "id,list,n\n";
  for (int row = 0; row < 9; ++row) text += std::to_string(row) + ",\"[1,2,3,4,5,6]\",7\n";
  return text;
}

std::string StrayQuotes() {
  std::string text = "mac,ssid,n\n";
  for (int row = 0; row < 40; ++row)
    text += "aa," + std::string(row == 5 || row == 30 ? "\"x" : "net") + "," + std::to_string(row) + "\n";
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    Tables, DialectForms,
    ::testing::Values(
        FormCase{"Tab", "id\ttime\tname\n" + Rows("\t"), "\t", 0, 0, 1, 0, 12},
        FormCase{"NoHeader", Rows(","), ",", 0, 0, 0, 0, 12},
        FormCase{"Preamble", "Report of today\nunit: 5\n\nid;time;name\n" + Rows(";"), ";", 0, 3, 1, 0, 12},
        FormCase{"UnitsBelowNames", "id,time,name\n(no),(UTC),(text)\n" + Rows(","), ",", 0, 0, 2, 0, 12},
        FormCase{"Footer", "id,time,name\n" + Rows(",") + "Total: twelve\n", ",", 0, 0, 1, 1, 12},
        FormCase{"CutOffRow", "id,time,name\n" + Rows(",") + "99,2021-0", ",", 0, 0, 1, 0, 13},
        FormCase{"Comments", "# a, b, c\n# d\nid,time,name\n" + Rows(","), ",", 0, 0, 1, 0, 12},
        FormCase{"QuotedLists", QuotedLists(), ",", '"', 0, 1, 0, 9},
        FormCase{"UnescapedInnerQuote", "id,a,b\n1,\"x, 5\" y\",2\n2,\"z, w\"\",3\n3,u,4\n4,v,5\n", ",", '"', 0, 1, 0,
                 4},
        FormCase{"BlanksBeforeQuotes", "id, a, b\n1, \"x, y\", 2\n2, \"z\", 3\n3, u, 4\n", ",", '"', 0, 1, 0, 3},
        FormCase{"WordsInOneColumn", "site name\nSite A\nSite B\nSite C\nSite D\n", "", 0, 0, 1, 0, 4},
        FormCase{"WiderLineBeforeTheHeader", "tool=1,b=2,c=3,d=4,e=5\nid,time,name\n" + Rows(","), ",", 0, 1, 1, 0, 12},
        FormCase{"StrayQuotes", StrayQuotes(), ",", 0, 0, 1, 0, 40},
        FormCase{"QuotedLineEnds", "id,text\n1,\"a\nb\"\n2,\"c\n\nd\"\n3,e\n", ",", '"', 0, 1, 0, 3},
        FormCase{"OneColumn", "rsrp\n-80\n-81\n-82\n", "", 0, 0, 1, 0, 3},
        FormCase{"HeaderOnly", "id,name,lat\n", ",", 0, 0, 1, 0, 0}, FormCase{"Empty", "", "", 0, 0, 0, 0, 0}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(DialectTest, CarriageReturnsAloneEndLines) {
  std::string text = "id,time,name\n" + Rows(",");
  std::ranges::replace(text, '\n', '\r');
  const Findings found = InspectText(text);
  EXPECT_EQ(12u, found.rows);
  EXPECT_EQ(LineEnd::kCr, found.form.line_end);
}

TEST_F(DialectTest, ZeroBytesArePassedOverAndCounted) {
  const Findings found = InspectText("id,time,name\n" + Rows(",") + std::string(100, '\0'));
  EXPECT_EQ(12u, found.rows);
  EXPECT_EQ("zero byte passed over", found.remarks.all().at(0).kind->name);
  EXPECT_EQ(100u, found.remarks.all().at(0).count);
}

TEST_F(DialectTest, EncodingsAreTold) {
  const std::string text = "名称,时间,值\n北京,2021-05-13 12:00:00,1\n上海,2021-05-13 12:00:01,2\n";
  const CString gbk = Utf8ToGbk(text);
  EXPECT_EQ("UTF-8", InspectText(text).form.encoding);
  EXPECT_EQ("GBK", InspectText(gbk.view()).form.encoding);
  const std::string utf16 = GbkToUtf16Le(gbk);
  const Findings found = InspectText("\xFF\xFE" + utf16);
  EXPECT_EQ("UTF-16LE", found.form.encoding);
  EXPECT_TRUE(found.form.has_bom);
  EXPECT_EQ("时间", found.columns.at(1).name);
  EXPECT_EQ("Windows-1252", InspectText("H\xF6he,Temp \xB0"
                                        "C\n100,5\n101,6\n102,7\n")
                                .form.encoding);
}

TEST_F(DialectTest, DayAndMonthThatCannotBeToldApartAreNotSure) {
  const Findings unclear = InspectText("date,v\n03/04/2021 10:00:00,1\n03/04/2021 10:00:01,2\n04/04/2021 10:00:00,3\n");
  ASSERT_TRUE(unclear.time);
  EXPECT_FALSE(unclear.time->ambiguous.empty());
  EXPECT_LE(unclear.confidence, 0.5);
  const Findings clear = InspectText("date,v\n03/04/2021 10:00:00,1\n13/04/2021 10:00:01,2\n04/04/2021 10:00:00,3\n");
  EXPECT_TRUE(clear.time->ambiguous.empty());
  EXPECT_EQ("dd/MM/yyyy HH:mm:ss", clear.time->layout);
}

// 13 May 2021 in both; read the other way they lie in the past or the future.
TEST_F(DialectTest, ShortYearsAreTheNewestThatHavePassed) {
  for (const auto& [layout, text] :
       {std::pair{"dd.MM.yy HH:mm:ss", "13.05.21 10:00:00"}, {"yy/MM/dd HH:mm:ss", "21/05/13 10:00:00"}}) {
    const Findings found = InspectText("date,v\n" + std::string(text) + ",1\n" + text + ",2\n" + text + ",3\n");
    ASSERT_TRUE(found.time);
    EXPECT_EQ(layout, found.time->layout);
    EXPECT_LE(found.confidence, 0.5);
  }
}

// The reader remembers where the newest text had its seconds.
TEST(LayoutReaders, ReadTextsThatFollowEachOther) {
  LayoutReader reader("H:mm:ss.SSS");
  const std::pair<const char*, double> kCases[] = {{"9:59:59.5", 35999.5},    {"9:59:60", 36000},
                                                   {"10:00:00.25", 36000.25}, {"10:00:01", 36001},
                                                   {"1:00:02.125", 3602.125}, {"10:00", 36000}};
  for (const auto& [text, seconds] : kCases) EXPECT_DOUBLE_EQ(seconds, reader.Read(text).value().second_of_day) << text;
  EXPECT_FALSE(reader.Read("10:00:0x"));
  LayoutReader digits("HHmmss");
  EXPECT_DOUBLE_EQ(45530, digits.Read("123850").value().second_of_day);
  EXPECT_DOUBLE_EQ(754, digits.Read("1234").value().second_of_day);
  LayoutReader whole("yyyyMMddHHmmssSSS");
  EXPECT_DOUBLE_EQ(46730.25, whole.Read("20210513125850250").value().second_of_day);
}

TEST_F(DialectTest, SecondsSinceStartStayNumbers) {
  const Findings found = InspectText("time,v\n0.0,1.5\n0.1,2.5\n0.2,3.5\n86000,1\n");
  EXPECT_FALSE(found.time);
  EXPECT_EQ(Kind::kNumber, found.columns[0].kind);
}

TEST_F(DialectTest, OverridesAreTakenAsTheyAre) {
  Overrides overrides;
  overrides.separator = ";";
  overrides.header_rows = 0;
  overrides.preamble_rows = 1;
  overrides.quote = "";
  const Findings found = InspectText("id,time,name\n" + Rows(","), overrides);
  EXPECT_EQ(";", found.form.separator);
  EXPECT_EQ(1u, found.columns.size());
  EXPECT_EQ(12u, found.rows);
  EXPECT_EQ(1, found.form.preamble_rows);
  Overrides time;
  time.time_columns = {"b", "a"};
  time.time_layout = "ddMMyy HHmmss";
  time.zone = "+08:00";
  const Findings timed = InspectText("a,b\n120000,040921\n120001,040921\n", time);
  ASSERT_TRUE(timed.time);
  EXPECT_DOUBLE_EQ(1630728000.0, *timed.time->first);
  time.zone = "nowhere";
  EXPECT_THROW(InspectText("a,b\n1,2\n", time), Error);
}

TEST_F(DialectTest, CsvKeepsEveryCell) {
  const Findings found = InspectText("a;b;c\n1;\"x;\"\"y\"\"\";3\n2;z\n3;u;v;w\n4;\"two\nlines\";5\n5;6;7\n");
  EXPECT_EQ("a,b,c\r\n1,\"x;\"\"y\"\"\",3\r\n2,z,\r\n3,u,v,w\r\n4,\"two\nlines\",5\r\n5,6,7\r\n", ToCsv(found));
}

TEST_F(DialectTest, QuotesThatAPersonRulesOutAreCharacters) {
  Overrides overrides;
  overrides.quote = "";
  const Findings found = InspectText("a,b\n\"1\n2\",3\n\"4,5\n6,7\n", overrides);
  EXPECT_EQ(4u, found.rows);
  EXPECT_EQ("a,b\r\n\"\"\"1\",\r\n\"2\"\"\",3\r\n\"\"\"4\",5\r\n6,7\r\n", ToCsv(found));
}

TEST_F(DialectTest, EmptyCellsBehindTheLastColumnStayUnlessEveryRowHasThem) {
  EXPECT_EQ("a,b\r\n1,2\r\n3,4,\r\n5,6\r\n", ToCsv(InspectText("a,b\n1,2\n3,4,\n5,6\n")));
  EXPECT_EQ("a,b\r\n1,2\r\n3,4\r\n5,6\r\n", ToCsv(InspectText("a,b,\n1,2,\n3,4,\n5,6,\n")));
}

TEST_F(DialectTest, LineOfManyCellsComesInParts) {
  std::string text = "a,b,c\n1,2,3\n4,5,6\n7,8,9\n";
  for (int cell = 0; cell < 300000; ++cell) text += "12345678901234567890,";
  const Findings found = InspectText(text + "\n1,2,3\n");
  EXPECT_EQ(5u, found.rows);
  EXPECT_EQ(text.size() + 13, ToCsv(found).size());  // its last cell is empty
}

TEST_F(DialectTest, EverySampleIsFoundAndComesOutWhole) {
  const std::filesystem::path samples = SharedSamples() / "text";
  if (SharedSamples().empty() || !std::filesystem::exists(samples / "answers.jsonl")) GTEST_SKIP();
  std::ifstream answers(samples / "answers.jsonl");
  for (std::string line; std::getline(answers, line);) {
    const auto answer = nlohmann::json::parse(line);
    const std::string name = answer["file"];
    SCOPED_TRACE(name);
    path_ = NativePathToGbk((samples / name).native());
    const Findings found = Inspect(path_, {});
    EXPECT_EQ(answer["separator"], found.form.separator);
    EXPECT_EQ(answer["rows"], found.rows);
    EXPECT_EQ(answer["header_rows"], found.form.header_rows);
    EXPECT_EQ(answer["time"].is_null(), !found.time.has_value());
    EXPECT_EQ(answer["latitude"].is_null(), !found.latitude.has_value());
    if (found.time) {
      EXPECT_NEAR(answer["time"]["earliest"].get<double>(), *found.time->earliest, 1e-3);
    }
    ASSERT_EQ(answer["kinds"].size(), found.columns.size());
    for (std::size_t at = 0; at < found.columns.size(); ++at)
      EXPECT_EQ(answer["kinds"][at].get<std::string>(), KindName(found.columns[at].kind)) << at;
    EXPECT_EQ(found.rows, ConvertToCsv(path_, found, out_).rows);
    EXPECT_EQ(found.rows, Inspect(out_, {}).rows);
  }
}

TEST(TimeCells, AreReadInManyLayouts) {
  const std::pair<const char*, const char*> kCases[] = {{"2025.07.18_22.11.08", "yyyy.MM.dd_HH.mm.ss"},
                                                        {"2023-05-17T14:15:57.455211Z", "yyyy-MM-dd'T'HH:mm:ss.SSSXXX"},
                                                        {"2020-12-10 17:10:38.558 EST", "yyyy-MM-dd HH:mm:ss.SSS z"},
                                                        {"13-May-2021 12:58:50", "dd-MMM-yyyy HH:mm:ss"},
                                                        {"1/16/2021, 4:04 PM", "M/d/yyyy, h:mm a"},
                                                        {"Mon May 13 12:58:50 2021", "EEE MMM dd HH:mm:ss yyyy"},
                                                        {"May 13 12:58:50 UTC 2021", "MMM dd HH:mm:ss z yyyy"},
                                                        {"[2021-05-13 12:58:50 +0200]", "[yyyy-MM-dd HH:mm:ss XXX]"},
                                                        {"2021年05月13日12时58分50秒", "yyyy年MM月dd日HH时mm分ss秒"},
                                                        {"14:15:57", "HH:mm:ss"}};
  for (const auto& [text, layout] : kCases) {
    const auto time = ParseTimeText(text);
    ASSERT_TRUE(time) << text;
    const DateOrder order = (time->OrderMask() & 1) != 0   ? DateOrder::kYmd
                            : (time->OrderMask() & 2) != 0 ? DateOrder::kDmy
                                                           : DateOrder::kMdy;
    EXPECT_EQ(layout, LayoutText(time->shape, order));
    EXPECT_TRUE(LayoutReader(layout).Read(text)) << text;
  }
  for (const char* text : {"0-0-0", "00:11:22:33:44:55", "10.0.0.1", "HSPA+", "2021-02-30 10:00:00"})
    EXPECT_FALSE(ParseTimeText(text)) << text;
}

TEST(TimeCells, MeanTheSameInstantInEveryZoneAndOnEitherClock) {
  const struct {
    const char* layout;
    const char* zone;
    const char* cell;
    double seconds;
  } kCases[] = {{"yyyy-MM-dd HH:mm:ss", "UTC", "2021-05-13 12:58:50", 1620910730},
                {"yyyy-MM-dd HH:mm:ss", "+08:00", "2021-05-13 20:58:50", 1620910730},
                {"yyyy-MM-dd'T'HH:mm:ssXXX", "", "2021-05-13T05:28:50-07:30", 1620910730},
                {"M/d/yyyy, h:mm:ss a", "UTC", "5/13/2021, 12:58:50 PM", 1620910730},
                {"M/d/yyyy, h:mm:ss a", "UTC", "5/13/2021, 12:58:50 AM", 1620867530},
                {"M/d/yyyy, h:mm:ss a", "UTC", "5/13/2021, 1:58:50 PM", 1620914330},
                {"epoch ms", "", "1620910730250", 1620910730.25},
                {"days since 1899-12-30", "UTC", "44329.5", 1620907200}};
  for (const auto& [layout, zone, cell, seconds] : kCases) {
    const auto read = InstantReader({0}, layout, zone, '.').Read({cell});
    ASSERT_TRUE(read) << cell;
    EXPECT_EQ(seconds, *read) << layout << ' ' << cell;
  }
}

TEST(Degrees, AreReadInManyForms) {
  const std::tuple<const char*, bool, double> kCases[] = {{"51.5", false, 51.5},
                                                          {"031.7S", false, -31.7},
                                                          {"57\xC2\xB0"
                                                           "30'36.0\"N",
                                                           false, 57.51},
                                                          {"1\xC2\xB0"
                                                           "30,0'",
                                                           false, 1.5},
                                                          {"5730.6", true, 57.51}};
  for (const auto& [text, is_nmea, degrees] : kCases) {
    const auto cell = ParseDegrees(text, '.', is_nmea);
    ASSERT_TRUE(cell) << text;
    EXPECT_NEAR(degrees, cell->degrees, 1e-9) << text;
  }
  EXPECT_FALSE(ParseDegrees("57 61 0", '.', false));
}

// What the importer takes of a file, with elements of the catalogue that the project ships.
TEST_F(DialectTest, ImportFormHasElementsInTheirUnits) {
  HostApplication host(loom::testing::PlainHost());
  const Findings found = InspectText(
      "Time;Lat;Lon;Speed;rsrp;pci;note\n2021-05-13T12:58:50Z;48,1;11,5;10,0 mps;-80,5;7;a|b\n"
      "2021-05-13T12:58:51Z;48,2;11,6;20,0 mps;-;8;c\n2021-05-13T12:58:52Z;48,3;11,7;0,0 mps;-82;9;d\n");
  const ElementMapping mapping = MapElements(found, LoadElementRules(), {});
  EXPECT_EQ("LTE", mapping.protocol);
  EXPECT_EQ(std::vector<std::size_t>{6}, mapping.unmapped);
  const Converted converted = ConvertToImport(path_, found, mapping, TimeForm::kSeconds, out_);
  EXPECT_EQ(
      "RecordTime;Longitude;Latitude;Speed;PBCH_RSRP;LTE_PCI;note;SourceLine\r\n"
      "1620910730.000000;11.5;48.1;36;-81;7;a|b;2\r\n1620910731.000000;11.6;48.2;72;;8;c;3\r\n"
      "1620910732.000000;11.7;48.3;0;-82;9;d;4\r\n",
      ReadWholeText(out_));
  EXPECT_EQ(6u, converted.elements.size());
  EXPECT_EQ("rounded to a whole number, which the element takes", converted.remarks.all().at(0).kind->name);
  EXPECT_THROW(MapElements(found, LoadElementRules(), {{6, "NoSuchElement"}}), Error);
}

}  // namespace
}  // namespace loom::dialect
