#include "platform/encoding.h"

#include <gtest/gtest.h>

namespace loom {
namespace {

using std::string_view_literals::operator""sv;

TEST(Encoding, EveryGbkCharacterSurvivesUtf8AndUtf16) {
  int characters = 0;
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0x40; trail <= 0xFE; ++trail) {
      const std::string gbk = {static_cast<char>(lead), static_cast<char>(trail)};
      const std::string utf8 = GbkToUtf8(gbk);
      if (utf8.find("\\x") != std::string::npos) continue;  // not assigned
      ++characters;
      ASSERT_EQ(gbk, Utf8ToGbk(utf8).view());
      ASSERT_EQ(gbk, Utf16LeToGbk(GbkToUtf16Le(gbk)).view());
    }
  }
  EXPECT_GT(characters, 21003);  // the ideographs alone
}

TEST(Encoding, InvalidGbkBytesShowAsHex) {
  EXPECT_EQ("a\\xFFb", GbkToUtf8("a\xFF"
                                 "b"));
  EXPECT_EQ("中\\xD6", GbkToUtf8("\xD6\xD0\xD6"));
  EXPECT_EQ("\\xD6,b", GbkToUtf8("\xD6,b"));
  EXPECT_EQ("a\0b"sv, GbkToUtf8("a\0b"sv));
}

// Longer than one block of the converter, with a bad byte on either side of the border.
TEST(Encoding, LongTextsConvertWhole) {
  std::string gbk;
  std::string utf8;
  for (int i = 0; i < 5000; ++i) {
    gbk += i % 1000 == 999 ? "\xFF" : "\xD6\xD0";
    utf8 += i % 1000 == 999 ? "\\xFF" : "中";
  }
  EXPECT_EQ(utf8, GbkToUtf8(gbk));
}

void ExpectEncodingError(std::string_view utf8, std::uint64_t position, std::string_view reason) {
  try {
    Utf8ToGbk(utf8);
    ADD_FAILURE() << "no error for " << utf8;
  } catch (const EncodingError& error) {
    EXPECT_EQ(position, error.position_bytes());
    EXPECT_NE(std::string::npos, error.reason().find(reason)) << error.what();
  }
}

TEST(Encoding, Utf8ErrorsNamePositionAndCharacter) {
  ExpectEncodingError("中😀", 3, "😀");
  ExpectEncodingError("ab\xFF", 2, "\\xFF");
  ExpectEncodingError("ab\xE4\xB8", 2, "\\xE4");  // cut off
  EXPECT_EQ("a?b?"_gbk, Utf8ToGbkOr("a😀b\xFF", '?'));
}

TEST(Encoding, Utf16OfEitherByteOrder) {
  EXPECT_EQ("中a", Utf16ToUtf8("\xFE\xFF\x4E\x2D\0a"sv));
  EXPECT_EQ("中a", Utf16ToUtf8("\xFF\xFE\x2D\x4E"
                               "a\0"sv));
  EXPECT_EQ("a", Utf16ToUtf8("a\0"sv));
  EXPECT_THROW(Utf16LeToGbk("a\0b"sv), EncodingError);
  EXPECT_THROW(Utf16LeToGbk("\x3D\xD8\x00\xDE"sv), EncodingError);  // 😀
}

TEST(Encoding, NativePathsOpenByTheNameTheyWereListedWith) {
  for (const std::string native : {"/data/日志/a.log", "/x/😀 ü.log", "/x/\xFF\x80\xBF\xC0 raw", "/x/乗"})
    EXPECT_EQ(native, GbkPathToNative(NativePathToGbk(native)));
}

TEST(Encoding, OnlyRealBackslashesSeparateFolders) {
  const CString path = CString("C\\") + CString("\x81\x5C"sv) + "\\a";
  EXPECT_EQ("C/乗/a", GbkPathToNative(path));
}

}  // namespace
}  // namespace loom
