#include "host/workbook/workbook_writer.h"

#include <gtest/gtest.h>

#include "host/workbook/zip_writer.h"
#include "platform/notes.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/temp_folder.h"
#include "tests/support/workbook_reading.h"

namespace loom::testing {
namespace {

using nlohmann::json;

class WorkbookWriterTest : public ::testing::Test {
 protected:
  WorkbookWriterTest() : path_(folder_.File("book.xlsx")), scope_(notes_), writer_(path_) {}

  WrittenSheet& AddSheet(const CString& name) {
    WrittenSheet& sheet = writer_.AddSheet(writer_.SheetCount());
    writer_.Rename(sheet, name);
    return sheet;
  }
  static COleSafeArray Column(std::vector<VARIANT> values) {
    COleSafeArray array;
    array.Create(VT_VARIANT, std::vector<std::uint32_t>{static_cast<std::uint32_t>(values.size()), 1});
    for (std::size_t row = 0; row < values.size(); ++row) array.Row(static_cast<std::int32_t>(row))[0] = values[row];
    return array;
  }
  json SaveAndRead() {
    writer_.Save();
    return ReadWorkbook(path_);
  }

  TempFolder folder_;
  CString path_;
  Notes notes_;
  NotesScope scope_;
  WorkbookWriter writer_;
};

// Text, and what readers must give back.
const std::pair<CString, std::string> kTexts[] = {
    {"plain", "plain"},
    {"=1+1", "=1+1"},
    {"<a href=\"x\">&'</a>", "<a href=\"x\">&'</a>"},
    {" blanks at both ends ", " blanks at both ends "},
    {"two\nlines\tand a tab", "two\nlines\tand a tab"},
    {"北京，上海"_gbk, "北京，上海"},
    {"一个足够长的文本，放不进一个值里"_gbk, "一个足够长的文本，放不进一个值里"},
    {CString(std::string("bad \xFF byte")), "bad \\xFF byte"},
};

TEST_F(WorkbookWriterTest, IndependentReadersGiveTheTextsBack) {
  std::vector<VARIANT> values;
  for (const auto& [text, read] : kTexts) values.push_back(VARIANT(text));
  writer_.Fill(AddSheet("texts"), Column(values), {});
  writer_.Save();
  std::vector<json> books{ReadWorkbook(path_)};
  if (HasOpenpyxl()) books.push_back(ReadWorkbookByOpenpyxl(path_));
  for (const json& book : books) {
    int row = 0;
    for (const auto& [text, read] : kTexts) EXPECT_EQ(read, book["sheets"][0]["cells"]["A" + std::to_string(++row)]);
  }
}

// Below the first row, which holds headings.
TEST_F(WorkbookWriterTest, PlainNumbersAndTimesBecomeCellsOfTheirKind) {
  const std::pair<const char*, json> kAssigned[] = {
      {"-95.25", -95.25},
      {"0", 0.0},
      {"-0.05", -0.05},
      {"1.50", 1.5},
      {"123456789012345", 123456789012345.0},
      {"1234567890123456", "1234567890123456"},
      {"007", "007"},
      {"-01.5", "-01.5"},
      {"1e5", "1e5"},
      {"+5", "+5"},
      {".5", ".5"},
      {"5.", "5."},
      {"-", "-"},
      {" 5", " 5"},
      {"=1+1", "=1+1"},
      {"2012-05-03 10:30:00.250", 41032.43750289352},
      {"2012-05-03 00:00:00.000", 41032.0},
      {"2012-02-30 10:30:00.250", "2012-02-30 10:30:00.250"},
      {"1900-02-28 10:30:00.250", "1900-02-28 10:30:00.250"},
      {"2012-05-03 10:30:60.250", "2012-05-03 10:30:60.250"},
      {"2012-05-03 10:30:00", "2012-05-03 10:30:00"},
  };
  std::vector<VARIANT> values{VARIANT("1")};
  for (const auto& [text, read] : kAssigned) values.push_back(VARIANT(text));
  WrittenSheet& sheet = AddSheet("s");
  sheet.fits_columns = true;
  writer_.Fill(sheet, Column(values), {});
  const json read_sheet = SaveAndRead()["sheets"][0];
  EXPECT_EQ("1", read_sheet["cells"]["A1"]);
  EXPECT_EQ((json{{"1:1", 24.7}}), read_sheet["widths"]);
  for (std::size_t at = 0; at < std::size(kAssigned); ++at)
    EXPECT_EQ(kAssigned[at].second, read_sheet["cells"]["A" + std::to_string(at + 2)]) << kAssigned[at].first;
  if (!HasOpenpyxl()) return;
  const json cells = ReadWorkbookByOpenpyxl(path_)["sheets"][0]["cells"];
  EXPECT_EQ("2012-05-03 10:30:00.250000", cells["A17"]);
  EXPECT_EQ("2012-05-03 00:00:00", cells["A18"]);
  EXPECT_EQ(-95.25, cells["A2"]);
}

TEST_F(WorkbookWriterTest, CharactersThatXmlCannotHoldAreEscaped) {
  const CString texts[] = {CString(std::string("\x01\x1F\r|")), "_x0041_", "_x00G1_", "__x0041_"};
  writer_.Fill(AddSheet("s"), Column({VARIANT(texts[0]), VARIANT(texts[1]), VARIANT(texts[2]), VARIANT(texts[3])}), {});
  const json cells = SaveAndRead()["sheets"][0]["cells"];
  for (std::size_t at = 0; at < std::size(texts); ++at) EXPECT_EQ(texts[at].str(), cells["A" + std::to_string(at + 1)]);
}

TEST_F(WorkbookWriterTest, EmptyValuesAreNoCellsAndOtherKindsKeepTheirs) {
  WrittenSheet& sheet = AddSheet("s");
  sheet.fits_columns = true;
  const COleSafeArray values = Column({VARIANT::R8(-95.25), VARIANT(""), VARIANT(), VARIANT::Bool(true),
                                       VARIANT::I4(123456), VARIANT::R8(1e300 * 1e10), VARIANT("宽的文字"_gbk)});
  writer_.Fill(sheet, values, {4, 27});
  const json read = SaveAndRead()["sheets"][0];
  EXPECT_EQ((json{{"AB5", -95.25}, {"AB8", true}, {"AB9", 123456.0}, {"AB10", "inf"}, {"AB11", "宽的文字"}}),
            read["cells"]);
  EXPECT_EQ((json{5, 6, 8, 9, 10, 11}), read["rows"]);
  EXPECT_EQ((json{{"28:28", 9.7}}), read["widths"]);
  EXPECT_THROW(writer_.Fill(sheet, values, {}), AutomationError);
  EXPECT_THROW(writer_.Fill(AddSheet("t"), values, {kMaxSheetRows - 3, 0}), AutomationError);
  EXPECT_THROW(writer_.Fill(AddSheet("u"), Column({VARIANT::Missing()}), {}), AutomationError);
}

TEST_F(WorkbookWriterTest, TextsAreCutToTheLengthOfACell) {
  const std::string exact(kMaxCellCharacters, 'a');
  const CString chinese = [] {
    std::string text;
    for (std::size_t at = 0; at <= kMaxCellCharacters; ++at) text += "\xD6\xD0";
    return CString(text);
  }();
  writer_.Fill(AddSheet("s"), Column({VARIANT(CString(exact)), VARIANT(CString(exact + "b")), VARIANT(chinese)}), {});
  const json cells = SaveAndRead()["sheets"][0]["cells"];
  EXPECT_EQ(exact, cells["A1"]);
  EXPECT_EQ(exact, cells["A2"]);
  EXPECT_EQ(3 * kMaxCellCharacters, cells["A3"].get<std::string>().size());
  EXPECT_EQ(2u, notes_.Count("text cut to the length of a cell"));
  EXPECT_EQ("s A2", notes_.kinds()[0].places[0].at);
}

TEST_F(WorkbookWriterTest, SheetNamesAreMendedAndNoted) {
  const CString long_name = "drive_RV2230_TD(1)_and_so_on_and_on";
  const std::tuple<CString, std::string, bool> names[] = {
      {"plain", "plain", false},
      {"sheet3", "sheet3", false},
      {"PLAIN", "PLAIN(2)", true},
      {"a:b\\c/d?e*f[g]", "a_b_c_d_e_f_g_", true},
      {"'it''s'", "_it''s_", true},
      {"", "_", true},
      {CString(std::string("x\x01")), "x_", true},
      {long_name, "drive_RV2230_TD(1)_and_so_on_an", true},
      {long_name, "drive_RV2230_TD(1)_and_so_on(2)", true},
      {long_name + "_12", "drive_RV2230_TD(1)_and_so_on_12", true},
      {"三十一个字的名字一二三四五六七八九十一二三四五六七八九十一二三"_gbk,
       "三十一个字的名字一二三四五六七八九十一二三四五六七八九十一二三", false},
  };
  for (std::size_t at = 0; at < 3; ++at) writer_.AddSheet(at);
  for (const auto& [name, mended, noted] : names) {
    notes_.Clear();
    AddSheet(name);
    EXPECT_EQ(noted ? 1u : 0u, notes_.Count("sheet name mended")) << name;
  }
  writer_.Save();
  std::vector<json> books{ReadWorkbook(path_)};
  if (HasOpenpyxl()) books.push_back(ReadWorkbookByOpenpyxl(path_));
  for (const json& book : books) {
    for (std::size_t at = 0; at < std::size(names); ++at)
      EXPECT_EQ(std::get<1>(names[at]), book["sheets"][at + 3]["name"]);
    EXPECT_EQ("Sheet4", book["sheets"][2]["name"]);  // gave way to the name that was chosen
  }
}

TEST_F(WorkbookWriterTest, TheLookOfASheetReachesIndependentReaders) {
  AddSheet("empty");
  WrittenSheet& sheet = AddSheet("full");
  sheet.vertical_align = -4108;
  sheet.selection = {1, 1};
  sheet.frozen = true;
  writer_.Fill(sheet, Column({VARIANT("head"), VARIANT("1")}), {});
  writer_.SetActiveSheet(1);
  writer_.Save();
  std::vector<json> books{ReadWorkbook(path_)};
  if (HasOpenpyxl()) books.push_back(ReadWorkbookByOpenpyxl(path_));
  for (const json& book : books) {
    EXPECT_EQ(1, book["active"]);
    EXPECT_EQ("B2", book["sheets"][1]["pane"]);
    EXPECT_EQ("center", book["sheets"][1]["align"]);
    EXPECT_EQ(nullptr, book["sheets"][0]["pane"]);
    EXPECT_TRUE(book["sheets"][0]["cells"].empty());
  }
}

TEST_F(WorkbookWriterTest, ASpreadsheetProgramOpensIt) {
  if (!HasLibreOffice()) GTEST_SKIP() << "LibreOffice is not installed";
  writer_.Fill(AddSheet("数据"_gbk), Column({VARIANT("时间"_gbk), VARIANT("-95.25"), VARIANT(" a,b"), VARIANT("<&>")}),
               {});
  writer_.Save();
  EXPECT_EQ("时间\n-95.25\n\" a,b\"\n<&>\n", FirstSheetByLibreOffice(path_));
}

TEST_F(WorkbookWriterTest, TheSameContentGivesTheSameBytes) {
  const CString again = folder_.File("again.xlsx");
  WorkbookWriter second(again);
  for (WorkbookWriter* writer : {&writer_, &second}) {
    writer->Fill(writer->AddSheet(0), Column(std::vector<VARIANT>(50000, VARIANT("0123456789"))), {});
    writer->Save();
  }
  EXPECT_TRUE(ReadWholeText(path_) == ReadWholeText(again));
  EXPECT_EQ(50000u, ReadWorkbook(path_)["sheets"][0]["cells"].size());
}

// Noise of bytes, so that it does not shrink.
COleSafeArray Noise(int rows) {
  COleSafeArray array;
  array.Create(VT_VARIANT, std::vector<std::uint32_t>{static_cast<std::uint32_t>(rows), 1});
  std::uint32_t state = 1;
  for (int row = 0; row < rows; ++row) {
    std::string text;
    for (int at = 0; at < 64; ++at) text += static_cast<char>('!' + (state = state * 1664525 + 1013904223) / 0x3000000);
    array.Row(row)[0] = VARIANT(std::string_view(text));
  }
  return array;
}

TEST_F(WorkbookWriterTest, WhenWritingFailsTheOlderFileStays) {
  WriteWholeFile(path_, "old");
  const COleSafeArray noise = Noise(10000);
  for (const rlim_t limit_bytes : {rlim_t{1}, rlim_t{100000}}) {
    const FileSizeLimit limit(limit_bytes);
    EXPECT_THROW(writer_.Fill(AddSheet("s"), noise, {}), FileError);
  }
  writer_.Fill(AddSheet("t"), noise, {});
  for (const rlim_t limit_bytes : {rlim_t{1}, rlim_t{100000}, rlim_t{300000}}) {
    const FileSizeLimit limit(limit_bytes);
    EXPECT_THROW(writer_.Save(), FileError);
  }
  EXPECT_EQ("old", ReadWholeText(path_));
  EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder_.native()), {}));
  EXPECT_EQ(10000u, SaveAndRead()["sheets"][2]["cells"].size());
}

TEST(CellAddressTest, CellsHaveTheirNames) {
  const std::pair<CellAddress, const char*> cells[] = {{{0, 0}, "A1"},     {{1, 25}, "Z2"},
                                                       {{9, 26}, "AA10"},  {{0, 701}, "ZZ1"},
                                                       {{0, 702}, "AAA1"}, {{1048575, 16383}, "XFD1048576"}};
  for (const auto& [cell, name] : cells) {
    EXPECT_EQ(name, CellText(cell));
    EXPECT_EQ(cell, ParseCell(name));
  }
  for (const char* name : {"", "A", "1", "A0", "A-1", "[A1", "a1", "A1 ", "XFE1", "A1048577", "AAAAAAAAAAAAAA1"})
    EXPECT_FALSE(ParseCell(name)) << name;
}

}  // namespace
}  // namespace loom::testing
