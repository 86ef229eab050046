#include "components/workbook_reader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"
#include "tests/support/xls_builder.h"
#include "tests/support/xlsx_builder.h"

namespace loom::testing {
namespace {

constexpr const char* kStyles =
    "<styleSheet><numFmts><numFmt numFmtId=\"164\" formatCode=\"yyyy&quot;h&quot;\"/>"
    "<numFmt numFmtId=\"165\" formatCode=\"0.0&quot;day&quot;\\d[Red]_h\"/><numFmt numFmtId=\"166\" "
    "formatCode=\"[h]\"/></numFmts>"
    "<cellStyleXfs><xf numFmtId=\"14\"/></cellStyleXfs>"
    "<cellXfs><xf numFmtId=\"0\"/><xf numFmtId=\"14\"/><xf numFmtId=\"164\"/><xf numFmtId=\"165\"/><xf "
    "numFmtId=\"166\"/></cellXfs>"
    "</styleSheet>";
constexpr const char* kStrings =
    "<sst><si><t>plain</t></si><si><r><t>ri</t></r><r><rPr/><t xml:space=\"preserve\">ch </t></r><rPh sb=\"0\" "
    "eb=\"1\"><t>phonetic"
    "</t></rPh></si><si><t/></si><si><t>a_x000D_b_x005F_x0041_ _xD83D__xDE00_ _xDC00_</t></si></sst>";

std::string Shown(const WorksheetCell& cell) {
  constexpr const char* kKinds[] = {"number ", "", "bool ", "date ", "error ", "no value"};
  const std::string kind = kKinds[static_cast<int>(cell.kind)];
  if (cell.kind == WorksheetCell::Kind::kText || cell.kind == WorksheetCell::Kind::kError)
    return kind + std::string(cell.text);
  if (cell.kind == WorksheetCell::Kind::kNoValue) return kind;
  if (cell.kind == WorksheetCell::Kind::kDate && cell.days != cell.number)
    return kind + NumberText(cell.days) + " of " + NumberText(cell.number);
  return kind + NumberText(cell.number);
}

// "row:column=value" of every cell, columns from 0.
class Listing final : public IWorksheetSink {
 public:
  explicit Listing(std::size_t most_rows = 1'000'000) : left_(most_rows) {}
  bool OnRow(std::uint32_t row, std::span<const WorksheetCell> cells) override {
    for (const WorksheetCell& cell : cells)
      values.push_back(std::to_string(row) + ":" + std::to_string(cell.column) + "=" + Shown(cell));
    return --left_ > 0;
  }
  void OnMergedRanges(std::uint32_t ranges) override { merged = ranges; }
  std::vector<std::string> values;
  std::uint32_t merged = 0;

 private:
  std::size_t left_;
};

class WorkbookReader : public ::testing::Test {
 protected:
  std::vector<std::string> Read(const XlsxBuilder& workbook, std::size_t sheet = 0) {
    Listing listing;
    OpenWorkbookReader(workbook.Write(folder_.File("a.xlsx")))->ReadSheet(sheet, listing);
    return listing.values;
  }
  std::string Refusal(const std::string& bytes) {
    const CString path = folder_.File("b.xlsx");
    std::ofstream(GbkPathToNative(path), std::ios::binary) << bytes;
    try {
      Listing listing;
      const auto workbook = OpenWorkbookReader(path);
      for (std::size_t sheet = 0; sheet < workbook->SheetNames().size(); ++sheet) workbook->ReadSheet(sheet, listing);
    } catch (const Error& error) {
      return error.what();
    }
    return "";
  }
  TempFolder folder_;
};

TEST_F(WorkbookReader, GivesEveryKindOfCell) {
  const struct {
    const char* cell;
    const char* value;  // "" for a cell that holds nothing
  } kCells[] = {
      {"<c r=\"A1\"><v>-1.5E2</v></c>", "1:0=number -150"},
      {"<c r=\"XFD1\"><v> 7 </v></c>", "1:16383=number 7"},
      {"<c><v>1</v></c><c/><c><v>3</v></c>", "1:0=number 1 1:2=number 3"},
      {"<c t=\"n\"><v>1,5</v></c>", "1:0=1,5"},
      {"<c t=\"s\"><v>0</v></c>", "1:0=plain"},
      {"<c t=\"s\"><v>1</v></c>", "1:0=rich "},
      {"<c t=\"s\"><v>2</v></c>", ""},
      {"<c t=\"s\"><v>3</v></c>", "1:0=a\rb_x0041_ \xF0\x9F\x98\x80 \xEF\xBF\xBD"},
      {"<c t=\"inlineStr\"><is><r><t>in</t></r><r><t>line</t></r><rPh><t>x</t></rPh></is></c>", "1:0=inline"},
      {"<c t=\"str\"><f>A1&amp;B1</f><v>joined</v></c>", "1:0=joined"},
      {"<c t=\"str\"><f>A1</f><v></v></c>", ""},
      {"<c><f>1+1</f><v>2</v></c>", "1:0=number 2"},
      {"<c><f>1+1</f></c>", "1:0=no value"},
      {"<c s=\"1\"/>", ""},
      {"<c t=\"b\"><v>1</v></c><c t=\"b\"><v>0</v></c>", "1:0=bool 1 1:1=bool 0"},
      {"<c t=\"e\"><v>#DIV/0!</v></c>", "1:0=error #DIV/0!"},
      {"<c t=\"d\"><v>2012-05-03T12:00:00Z</v></c>", "1:0=date 41032.5"},
      {"<c t=\"d\"><v>2012-13-03</v></c>", "1:0=2012-13-03"},
      {"<c s=\"1\"><v>41032</v></c>", "1:0=date 41032"},
      {"<c s=\"1\"><v>59</v></c><c s=\"1\"><v>61</v></c>", "1:0=date 60 of 59 1:1=date 61"},
      {"<c s=\"1\"><v>0.25</v></c>", "1:0=date 0.25"},
      {"<c s=\"1\"><v>-1</v></c><c s=\"1\"><v>3e6</v></c>", "1:0=number -1 1:1=number 3e+06"},
      {"<c s=\"2\"><v>41032</v></c>", "1:0=date 41032"},
      {"<c s=\"3\"><v>41032</v></c>", "1:0=number 41032"},
      {"<c s=\"4\"><v>1.5</v></c>", "1:0=date 2.5 of 1.5"},
      {"<c s=\"99\"><v>1</v></c>", "1:0=number 1"},
      {"<c><v>1</v><extLst><v>2</v></extLst></c>", "1:0=number 1"},
  };
  XlsxBuilder workbook;
  workbook.Part("xl/styles.xml", kStyles).Part("xl/sharedStrings.xml", kStrings);
  for (const auto& [cell, value] : kCells) {
    std::string seen;
    for (const std::string& one : Read(workbook.Cells("<row r=\"1\">" + std::string(cell) + "</row>")))
      seen += (seen.empty() ? "" : " ") + one;
    EXPECT_EQ(value, seen) << cell;
  }
}

TEST_F(WorkbookReader, CountsDatesFrom1904WhereTheWorkbookSaysSo) {
  XlsxBuilder workbook;
  workbook
      .Part("xl/workbook.xml",
            XlsxBuilder::Workbook("<sheet name=\"S\" r:id=\"rId1\"/>", "<workbookPr date1904=\"true\"/>"))
      .Part("xl/styles.xml", kStyles)
      .Cells("<row><c s=\"1\"><v>39570</v></c><c s=\"1\"><v>0.5</v></c><c t=\"d\"><v>2012-05-03</v></c></row>");
  EXPECT_EQ((std::vector<std::string>{"1:0=date 41032 of 39570", "1:1=date 0.5", "1:2=date 41032 of 39570"}),
            Read(workbook));
}

// Both versions, in small streams and beyond them.
TEST_F(WorkbookReader, GivesEveryKindOfCellOfABinaryWorkbook) {
  using B = XlsBuilder;
  const auto special = [](unsigned kind, unsigned value) {
    return B::N(kind, 1) + B::N(0, 1) + B::N(value, 1) + B::N(0, 3) + B::N(0xFFFF, 2);
  };
  const auto rk = [](std::int32_t integer, bool hundredths) {
    return B::N(static_cast<std::uint32_t>(integer) << 2 | 2 | (hundredths ? 1 : 0), 4);
  };
  for (const unsigned version : {5u, 8u}) {
    for (const bool is_long : {false, true}) {
      B book(version);
      const std::string flag = version == 8 ? std::string(1, '\0') : "";
      const std::string north = version == 8 ? std::string("\x01\x17\x53", 3) : "\xB1\xB1";
      book.Number(0, 0, 0, 116.5).Number(0, 1, 1, 39.9).Number(0, 2, 2, 41032.5).Number(0, 3, 1, 0.9999999);
      book.Cell(0x027E, 1, 0, 1, rk(3990, true)).Cell(0x027E, 1, 1, 0, rk(-7, false));
      book.Add(0x00BD, B::N(1, 2) + B::N(2, 2) + B::N(0, 2) + rk(5, false) + B::N(1, 2) + rk(61, false) + B::N(3, 2));
      book.Formula(2, 0, 0, B::Bits(2.5)).Formula(2, 1, 1, B::Bits(41032)).Formula(2, 2, 0, special(1, 1));
      book.Formula(2, 3, 0, special(2, 0x07)).Formula(2, 4, 0, special(3, 0)).Formula(2, 5, 0, special(0, 0));
      book.Cell(0x0205, 3, 0, 0, B::N(1, 1) + B::N(0, 1)).Cell(0x0205, 3, 1, 0, B::N(0x2A, 1) + B::N(1, 1));
      book.Formula(4, 0, 0, special(0, 0)).Add(0x0207, B::N(version == 8 ? 1 : 2, 2) + north);
      book.Formula(4, 1, 0, special(0, 0)).Add(0x0207, B::N(4, 2) + flag + "ab").Add(0x003C, flag + "cd");
      book.Formula(4, 2, 0, special(0, 0)).Add(0x0207, B::N(9, 2) + flag + "cut");
      if (is_long) book.Add(0x00EC, std::string(5000, 'x'));
      Listing listing;
      OpenWorkbookReader(book.Write(folder_.File("a.xls")))->ReadSheet(0, listing);
      EXPECT_EQ((std::vector<std::string>{"1:0=number 116.5", "1:1=date 40.9 of 39.9", "1:2=date 41032.5",
                                          "1:3=date 0.9999999", "2:0=date 40.9 of 39.9", "2:1=number -7",
                                          "2:2=number 5", "2:3=date 61", "3:0=number 2.5", "3:1=date 41032",
                                          "3:2=bool 1", "3:3=error #DIV/0!", "3:5=no value", "4:0=bool 1",
                                          "4:1=error #N/A", "5:0=北", "5:1=abcd", "5:2=no value"}),
                listing.values)
          << version << ' ' << is_long;
    }
  }
  Listing listing;
  OpenWorkbookReader(B().From1904().Number(0, 0, 1, 116.5).Write(folder_.File("b.xls")))->ReadSheet(0, listing);
  EXPECT_EQ(std::vector<std::string>{"1:0=date 1578.5 of 116.5"}, listing.values);
}

TEST_F(WorkbookReader, FindsThePartsHoweverTheyAreNamed) {
  const std::vector<std::string> expected{"2:1=number 5"};
  const std::string row = "<x:row r=\"2\"><x:c r=\"B2\"><x:v>5</x:v></x:c></x:row>";
  const std::string sheet =
      "<?xml version=\"1.0\"?><x:worksheet xmlns:x=\"http://purl.oclc.org/ooxml/main\"><x:sheetData>" + row +
      "</x:sheetData><x:mergeCells><x:mergeCell ref=\"A1:B1\"/></x:mergeCells></x:worksheet>";
  XlsxBuilder workbook;
  workbook.Part("xl/worksheets/sheet1.xml", sheet);
  EXPECT_EQ(expected, Read(workbook)) << "prefixed names";
  std::string utf16 = "\xFF\xFE";
  for (const char c : sheet) utf16.append({c, '\0'});
  EXPECT_EQ(expected, Read(XlsxBuilder(workbook).Part("xl/worksheets/sheet1.xml", utf16))) << "UTF-16";
  const auto moved = [&](const std::string& target, const std::string& part) {
    return Read(XlsxBuilder(workbook)
                    .Without("xl/worksheets/sheet1.xml")
                    .Part("xl/_rels/workbook.xml.rels", XlsxBuilder::Relations({{"rId1", "worksheet", target}}))
                    .Part(part, sheet));
  };
  EXPECT_EQ(expected, moved("/elsewhere/S.xml", "elsewhere/s.xml")) << "absolute, another case";
  EXPECT_EQ(expected, moved("../sheets/./s.xml", "sheets/s.xml"));
  EXPECT_EQ(expected, moved("worksheets\\s.xml", "xl\\worksheets\\s.xml"));
}

TEST_F(WorkbookReader, ListsHiddenSheetsButNoCharts) {
  XlsxBuilder workbook;
  workbook
      .Part("xl/workbook.xml",
            XlsxBuilder::Workbook(
                "<sheet name=\"小区\" r:id=\"rId1\" state=\"veryHidden\"/><sheet name=\"图\" r:id=\"rId2\"/>"))
      .Part("xl/_rels/workbook.xml.rels", XlsxBuilder::Relations({{"rId1", "worksheet", "worksheets/sheet1.xml"},
                                                                  {"rId2", "chartsheet", "charts/1.xml"}}));
  EXPECT_EQ(std::vector<CString>{"小区"_gbk}, OpenWorkbookReader(workbook.Write(folder_.File("a")))->SheetNames());
}

TEST_F(WorkbookReader, StopsWhereNoMoreRowsAreWanted) {
  std::string rows = "<row><c><v>1</v></c></row>";
  for (int row = 0; row < 20000; ++row) rows += "<row><c s=\"" + std::to_string(row) + "\"/></row>";
  XlsxBuilder workbook;
  workbook.Cells(rows + "<row r=\"0\"/>");
  Listing first_row(1);
  OpenWorkbookReader(workbook.Write(folder_.File("a.xlsx")))->ReadSheet(0, first_row);
  EXPECT_EQ(std::vector<std::string>{"1:0=number 1"}, first_row.values);
  EXPECT_NE("", Refusal(workbook.Bytes())) << "a fault behind the rows that are wanted";
}

TEST_F(WorkbookReader, RefusesWhatIsNoWorkbookItCanRead) {
  std::string compound("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
  compound.resize(2048);
  std::string encrypted = compound;
  for (std::size_t at = 0; at < 16; ++at) encrypted[1024 + 128 + at * 2] = "EncryptedPackage"[at];
  std::string damaged = XlsxBuilder().Rows({{"headings and more"}, {"1"}}).Bytes();
  damaged[damaged.find("sheet1.xml") + 20] ^= 0x10;
  const auto with_cells = [](const std::string& cells) { return XlsxBuilder().Cells(cells).Bytes(); };
  const auto with_sheet = [](const std::string& xml) {
    return XlsxBuilder().Part("xl/worksheets/sheet1.xml", xml).Bytes();
  };
  std::string deep;
  for (int depth = 0; depth < 1000; ++depth) deep += "<a>";
  const struct {
    const char* what;
    std::string bytes;
    const char* reason;
  } kFiles[] = {
      {"empty", "", "is no workbook"},
      {"text", "MCC,MNC\n460,0\n", "is no workbook"},
      {"damaged BIFF", compound, "damaged workbook"},
      {"encrypted package", encrypted, "is encrypted"},
      {"encrypted part", XlsxBuilder().Encrypted().Bytes(), "is encrypted"},
      {"no workbook part", XlsxBuilder().Without("xl/workbook.xml").Bytes(), "no workbook"},
      {"no sheet part", XlsxBuilder().Without("xl/worksheets/sheet1.xml").Bytes(),
       "has no part xl/worksheets/sheet1.xml"},
      {"sheet without relation", XlsxBuilder().Part("xl/_rels/workbook.xml.rels", "<R/>").Bytes(), "has no part"},
      {"damaged part", damaged, "damaged"},
      {"cut", XlsxBuilder().Bytes().substr(0, 300), "zip"},
      {"external entity",
       with_sheet("<!DOCTYPE w [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><w><sheetData><row><c "
                  "t=\"str\"><v>&e;</v></c></row></sheetData></w>"),
       "document type"},
      {"open tag", with_sheet("<worksheet><sheetData>"), "no element found"},
      {"nesting", with_sheet(deep), "nested too deep"},
      {"shared text", with_cells("<row><c t=\"s\"><v>0</v></c></row>"), "cell A1: there is no shared text 0"},
      {"row number", with_cells("<row r=\"1048577\"/>"), "usable number"},
      {"column", with_cells("<row><c r=\"XFE1\"><v>1</v></c></row>"), "none that a sheet can have"},
      {"order", with_cells("<row r=\"3\"><c r=\"B3\"/><c r=\"A3\"/></row>"), "row 3 are out of order"},
      {"long text", with_cells("<row><c t=\"str\"><v>" + std::string(300'000, 'x') + "</v></c></row>"),
       "more text than a cell can"},
      {"bomb", with_cells(std::string(140 << 20, ' ')), "unpacks to far more"},
  };
  for (const auto& [what, bytes, reason] : kFiles) {
    const std::string refusal = Refusal(bytes);
    EXPECT_NE(std::string::npos, refusal.find(reason)) << what << ": " << refusal;
    EXPECT_NE(std::string::npos, refusal.find("b.xlsx")) << what << ": " << refusal;
  }
}

TEST_F(WorkbookReader, AnswersWhateverIsWrongWithTheBytes) {
  const std::string whole =
      XlsxBuilder().Part("xl/sharedStrings.xml", kStrings).Rows({{"CI", "名"}, {"1", "x"}}).Bytes();
  int refused = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    refused += Refusal(whole.substr(0, at)).empty() ? 0 : 1;
    std::string flipped = whole;
    flipped[at] = static_cast<char>(~flipped[at]);
    Refusal(flipped);
  }
  EXPECT_LE(static_cast<int>(whole.size()) - 4, refused) << "cut anywhere but in the length of the archive's comment";
}

class SampleWorkbooks : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(kFolder)) GTEST_SKIP() << "no samples beside the project";
  }
  const std::filesystem::path kFolder = SharedSamples() / "excel";
};

TEST_F(SampleWorkbooks, AreAllRead) {
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    if (!entry.path().string().ends_with(".xlsx") && !entry.path().string().ends_with(".xls")) continue;
    const auto workbook = OpenWorkbookReader(NativePathToGbk(entry.path().string()));
    EXPECT_FALSE(workbook->SheetNames().empty()) << entry.path();
    for (std::size_t sheet = 0; sheet < workbook->SheetNames().size(); ++sheet) {
      Listing listing;
      EXPECT_NO_THROW(workbook->ReadSheet(sheet, listing)) << entry.path();
    }
  }
}

TEST_F(SampleWorkbooks, HoldWhatTheirMakersPutIn) {
  const struct {
    const char* file;
    std::size_t sheet;
    const char* value;
  } kValues[] = {
      {"calamine_date.xlsx", 0, "1:0=date 44197"},
      {"calamine_date.xls", 0, "2:0=date 44198"},
      {"libxls_dates-1904.xls", 0, "1:0=date 36526 of 35064"},
      {"libxls_types.xls", 2, "2:1=HELLO WORLD"},
      {"libxls_types.xls", 2, "9:1=bool 1"},
      {"libxls_types.xls", 2, "13:1=error #N/A"},
      {"roo_1904_base.xlsx", 0, "1:0=date 39979 of 38517"},
      {"calamine_issues.xls", 0, "4:0=bool 0"},
      {"poi_noSharedStringTable.xlsx", 0, "1:1=number 123"},
  };
  for (const auto& [file, sheet, value] : kValues) {
    Listing listing;
    OpenWorkbookReader(NativePathToGbk((kFolder / file).string()))->ReadSheet(sheet, listing);
    EXPECT_NE(listing.values.end(), std::find(listing.values.begin(), listing.values.end(), value))
        << file << ": " << ::testing::PrintToString(listing.values);
  }
}

}  // namespace
}  // namespace loom::testing
