#include "platform/cstring.h"

#include <gtest/gtest.h>

#include <sstream>
#include <unordered_set>

namespace loom {
namespace {

// Characters whose trail byte is an ASCII separator or letter: 诚 B3 CF is plain, the ones below are the traps.
const CString kBackslash(std::string_view("\x81\x5C"));   // 乗
const CString kUnderscore(std::string_view("\x81\x5F"));  // 乢
const CString kBar(std::string_view("\x81\x7C"));
const CString kBrace(std::string_view("\x81\x7B"));
const CString kLetter(std::string_view("\x81\x41"));  // trail 'A'

TEST(CString, LengthsCountBytesAndComparisonIsByBytes) {
  const CString text = "中a"_gbk;
  EXPECT_EQ(3, text.GetLength());
  EXPECT_EQ("\xD6\xD0\x61", text.view());
  EXPECT_LT(CString("z"), text);  // bytes compare unsigned
  EXPECT_GT(text.Compare("z"), 0);
  EXPECT_LT(CString("ab"), CString("abc"));
}

TEST(CString, SearchingNeverMatchesATrailByte) {
  for (const CString& trap : {kBackslash, kUnderscore, kBar, kBrace, kLetter}) {
    const char trail = trap[1];
    const CString text = trap + "x" + trap + trail + trap;
    EXPECT_EQ(5, text.Find(trail)) << text;
    EXPECT_EQ(5, text.ReverseFind(trail)) << text;
    EXPECT_EQ(-1, trap.Find(trail));
    EXPECT_EQ(-1, trap.ReverseFind(trail));
    const CString head = trap + "x" + trap;
    EXPECT_EQ((std::vector<CString>{head, trap}), text.Split(trail));
  }
}

TEST(CString, ADoubleByteNeedleMatchesOnCharacterBordersOnly) {
  // B0 A1 B0 A1 holds A1 B0 in its middle bytes.
  const CString text(std::string_view("\xB0\xA1\xB0\xA1"));
  EXPECT_EQ(-1, text.Find(CString(std::string_view("\xA1\xB0"))));
  EXPECT_EQ(2, text.Find(CString(std::string_view("\xB0\xA1")), 2));
}

TEST(CString, AStrayLeadByteDoesNotSwallowASeparatorBehindIt) {
  const CString text(std::string_view("a\xD6,b\xD6"));
  EXPECT_EQ((std::vector<CString>{CString(std::string_view("a\xD6")), CString(std::string_view("b\xD6"))}),
            text.Split(','));
}

TEST(CString, FindStartsWhereItIsToldAndClamps) {
  const CString text = "a,b,c";
  EXPECT_EQ(3, text.Find(',', 2));
  EXPECT_EQ(1, text.Find(",", -5));
  EXPECT_EQ(-1, text.Find(',', 99));
  EXPECT_EQ(2, text.Find("", 2));
}

TEST(CString, ReplaceLeavesTrailBytesAndCountsOnce) {
  CString text = kBackslash + "\\" + kBackslash + "\\";
  EXPECT_EQ(2, text.Replace("\\", "//"));
  EXPECT_EQ(kBackslash + "//" + kBackslash + "//", text);
  CString growing = "aaa";
  EXPECT_EQ(3, growing.Replace("a", "aa"));
  EXPECT_EQ("aaaaaa", growing);
  EXPECT_EQ(0, growing.Replace("", "x"));
}

TEST(CString, CaseFoldingChangesLatinLettersOnly) {
  CString text = kLetter + "AbC";
  EXPECT_EQ(kLetter + "abc", CString(text).MakeLower());
  EXPECT_EQ(kLetter + "ABC", CString(text).MakeUpper());
  EXPECT_EQ(0, CString("Log").CompareNoCase("lOG"));
  const CString other_character(std::string_view("\x81\x61"));  // differs from kLetter in "case" of its trail
  EXPECT_NE(0, kLetter.CompareNoCase(other_character));
}

TEST(CString, PartsAreClamped) {
  const CString text = "abcdef";
  EXPECT_EQ("cd", text.Mid(2, 2));
  EXPECT_EQ("", text.Mid(9, 2));
  EXPECT_EQ("ab", text.Left(2));
  EXPECT_EQ(text, text.Left(99));
  EXPECT_EQ("", text.Left(-1));
  EXPECT_EQ("ef", text.Right(2));
  EXPECT_EQ(text, text.Right(99));
  EXPECT_EQ("x y", CString(" \t x y\r\n").Trim());
  EXPECT_EQ("", CString(" \n").Trim());
}

TEST(CString, SplitKeepsEmptyParts) {
  EXPECT_EQ((std::vector<CString>{"", "a", "", ""}), CString(",a,,").Split(','));
  EXPECT_EQ((std::vector<CString>{""}), CString().Split(','));
}

TEST(CString, HashesByContentAndPrintsUtf8) {
  const std::unordered_set<CString> set = {"中"_gbk, "a"};
  EXPECT_TRUE(set.contains(CString(std::string_view("\xD6\xD0"))));
  std::ostringstream out;
  out << CString(std::string_view("\xD6\xD0\xFF"));
  EXPECT_EQ("中\\xFF", out.str());
}

TEST(Format, FillsInOrderAndKeepsPatternBytes) {
  EXPECT_EQ("日志：乗，第 3 个，共 -7 个 100%"_gbk,
            Format("日志：%s，第 %d 个，共 %I32d 个 100%%"_gbk, "乗"_gbk, std::size_t{3}, -7));
  EXPECT_EQ("5 %d", Format("%s %s", 5, "%d"));  // an argument is not a pattern
}

TEST(Format, RefusesArgumentsThatDoNotFitThePattern) {
  EXPECT_THROW(Format("%s"), std::logic_error);
  EXPECT_THROW(Format("x", 1), std::logic_error);
  EXPECT_THROW(Format("%d", "1"), std::logic_error);
  EXPECT_THROW(Format("%q", 1), std::logic_error);
}

}  // namespace
}  // namespace loom
