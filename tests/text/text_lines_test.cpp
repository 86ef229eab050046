#include "text/import/text_lines.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temp_folder.h"
#include "text/import/line_splitter.h"
#include "text/import/title_tokens.h"

namespace loom {
namespace {

using Texts = std::vector<std::string>;

Texts Cells(const CString& separator, const CString& line, std::size_t most = static_cast<std::size_t>(-1)) {
  std::vector<std::string_view> cells{"of an earlier line"};
  LineSplitter(separator).Split(line, cells, most);
  return Texts(cells.begin(), cells.end());
}

TEST(LineSplitter, CutsAtTheSeparatorButNotAtTheVeryEnd) {
  EXPECT_EQ((Texts{"a", " b", "c,"}), Cells(",", "a, b,c,"));
  EXPECT_EQ((Texts{"a", "", "", ","}), Cells(",", "a,,,,"));
  EXPECT_EQ((Texts{"eight_by", "tes__and", "more_than_that", "x"}),
            Cells("\t", "eight_by\ttes__and\tmore_than_that\tx"));
  EXPECT_EQ(Texts{""}, Cells(",", ""));
  EXPECT_EQ(Texts{","}, Cells(",", ","));
  EXPECT_EQ(Texts{"a,b"}, Cells("", "a,b"));
  EXPECT_EQ((Texts{"a", "b"}), Cells(",", "a,b,c,d", 2));
}

TEST(LineSplitter, WidensBlankDashColonAndPoint) {
  EXPECT_EQ((Texts{"12:00:01", "5"}), Cells(":", "12:00:01: 5"));
  EXPECT_EQ((Texts{"a b", "c"}), Cells(" ", "a b  c"));
  EXPECT_EQ((Texts{"2010-03", "5"}), Cells("-", "2010-03- 5"));
  EXPECT_EQ((Texts{"1.5", "2"}), Cells(".", "1.5. 2"));
}

TEST(LineSplitter, ASeparatorIsNeverTheTrailByteOfACharacter) {
  const CString backslash_trail(std::string_view("\x8e\x5c"));
  EXPECT_EQ((Texts{backslash_trail.str(), "b"}), Cells("\\", backslash_trail + "\\b"));
  EXPECT_EQ((Texts{backslash_trail.str() + "ab", "c"}), Cells("\x5c", backslash_trail + "ab\\c"));
}

TEST(TitleTokens, EmptyFieldsCountAndRunsOfBlanksDoNot) {
  EXPECT_EQ(3, CountTitleTokens("a,,b", ","));
  EXPECT_EQ(3, CountTitleTokens("a,b,", ","));
  EXPECT_EQ(2, CountTitleTokens("a  b", " "));
  EXPECT_EQ(0, CountTitleTokens("", ","));
  EXPECT_EQ(1, CountTitleTokens("a,b", ""));
}

class TextLinesTest : public ::testing::Test {
 protected:
  Texts LinesOf(const std::string& bytes) const {
    WriteWholeFile(path_, bytes);
    TextLines reader(path_);
    Texts lines;
    for (std::string_view line; reader.Next(line);) lines.emplace_back(line);
    EXPECT_EQ(bytes.size(), reader.Position());
    return lines;
  }

  testing::TempFolder folder_;
  CString path_ = folder_.File("a.txt");
};

TEST_F(TextLinesTest, LinesEndAtLineFeedsWithOrWithoutCarriageReturn) {
  EXPECT_EQ((Texts{"a", "b\rc", "", "d\r"}), LinesOf("a\r\nb\rc\n\nd\r"));
  EXPECT_EQ(Texts{}, LinesOf(""));
  EXPECT_EQ(Texts{std::string("\0x", 2)}, LinesOf(std::string("\0x\n", 3)));
}

TEST_F(TextLinesTest, LinesRunAcrossBlocksWhateverTheirLength) {
  for (const std::size_t length : {262142u, 262143u, 262144u, 600000u}) {
    const std::string line(length, 'x');
    EXPECT_EQ((Texts{line, "short", line}), LinesOf(line + "\r\nshort\n" + line)) << length;
  }
}

TEST_F(TextLinesTest, AFileThatBecomesShorterIsAnError) {
  WriteWholeFile(path_, std::string(600000, 'x') + "\nb");
  TextLines reader(path_);
  std::filesystem::resize_file(folder_.native() / "a.txt", 1000);
  std::string_view line;
  EXPECT_THROW(reader.Next(line), FileError);
}

}  // namespace
}  // namespace loom
