#include "platform/path.h"

#include <gtest/gtest.h>

namespace loom {
namespace {

const CString kTrap(std::string_view("\x81\x5C"));  // its trail byte is a backslash

TEST(Path, SplitsAtTheLastSeparatorOfEitherKind) {
  struct Case {
    CString path, folder, name, title, extension;
  };
  const Case cases[] = {
      {"/a/b.c/file.tar.log", "/a/b.c/", "file.tar.log", "file.tar", "log"},
      {"C:\\x/y\\n.LOG", "C:\\x/y\\", "n.LOG", "n", "LOG"},
      {"bare", "", "bare", "bare", ""},
      {"/a.b/", "/a.b/", "", "", ""},
      {"/", "/", "", "", ""},
      {"dir/.hidden", "dir/", ".hidden", "", "hidden"},
      {"dot.", "", "dot.", "dot", ""},
      {"d\\" + kTrap + "x.log", "d\\", kTrap + "x.log", kTrap + "x", "log"},
      {kTrap, "", kTrap, kTrap, ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.folder, FolderOf(c.path)) << c.path;
    EXPECT_EQ(c.name, NameOf(c.path)) << c.path;
    EXPECT_EQ(c.title, TitleOf(c.path)) << c.path;
    EXPECT_EQ(c.extension, ExtensionOf(c.path)) << c.path;
  }
}

TEST(Path, JoinsWithTheFoldersOwnSeparator) {
  EXPECT_EQ("/a/b", JoinPath("/a", "b"));
  EXPECT_EQ("/a/b", JoinPath("/a/", "b"));
  EXPECT_EQ("C:\\a\\b", JoinPath("C:\\a", "b"));
  EXPECT_EQ("a/b", JoinPath("a", "b"));
  EXPECT_EQ("b", JoinPath("", "b"));
  EXPECT_EQ("C:\\" + kTrap + "\\b", JoinPath("C:\\" + kTrap, "b"));
}

}  // namespace
}  // namespace loom
