#include "components/markup.h"

#include <gtest/gtest.h>

#include "platform/file.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {
namespace {

class Markup : public ::testing::Test {
 protected:
  CString Write(std::string_view bytes) const {
    const CString path = folder_.File("a.xml");
    WriteWholeFile(path, bytes);
    return path;
  }

  TempFolder folder_;
  CMarkupMSXML document_;
};

TEST_F(Markup, WhatIsSavedReadsBack) {
  MarkupElement root = document_.Create("ROOT");
  root.AddChild("IE", "覆盖率 <&>\""_gbk).SetAttribute("name", "小区'&\""_gbk);
  root.AddChild("OTHER").AddChild("IE", "inner");
  root.AddChild("IE").SetAttribute("name", "");
  const CString path = folder_.File("out.xml");
  ASSERT_TRUE(document_.Save(path)) << document_.GetError();

  CMarkupMSXML read;
  ASSERT_TRUE(read.Load(path)) << read.GetError();
  const MarkupElement first = read.GetDocumentElement().FirstChild("IE");
  EXPECT_EQ("覆盖率 <&>\""_gbk, first.GetText());
  EXPECT_EQ("小区'&\""_gbk, first.GetAttribute("name"));
  EXPECT_EQ("OTHER", first.NextSibling().GetTagName());
  EXPECT_EQ("", first.NextSibling().GetText());
  EXPECT_EQ("", first.NextSibling("IE").GetText());
  EXPECT_FALSE(first.NextSibling("IE").NextSibling());
}

TEST_F(Markup, FilesInOtherEncodingsAreReadAsDeclared) {
  const CString name = "采样"_gbk;
  const std::string declaration = R"(<?xml version="1.0" encoding="gb2312"?>)";
  ASSERT_TRUE(document_.Load(Write(declaration + "<a n=\"" + name.str() + "\"/>"))) << document_.GetError();
  EXPECT_EQ(name, document_.GetDocumentElement().GetAttribute("n"));
  std::string utf16 = "\xFF\xFE";
  for (const char c : std::string_view("<a n='x'/>")) utf16 += {c, '\0'};
  ASSERT_TRUE(document_.Load(Write(utf16))) << document_.GetError();
  EXPECT_EQ("x", document_.GetDocumentElement().GetAttribute("n"));
}

TEST_F(Markup, ElementsBetweenCommentsAndTextsAreWalked) {
  ASSERT_TRUE(document_.Load(Write("<?xml version='1.0'?><!-- c --><a>t<!-- c --><b/>u<?pi?><c/></a>")));
  const MarkupElement root = document_.GetDocumentElement();
  EXPECT_EQ("tu", root.GetText());
  EXPECT_EQ("b", root.FirstChild().GetTagName());
  EXPECT_EQ("c", root.FirstChild().NextSibling().GetTagName());
  EXPECT_FALSE(root.FirstChild("d"));
  EXPECT_EQ("", MarkupElement().GetTagName());
  EXPECT_FALSE(MarkupElement().FirstChild());
}

TEST_F(Markup, BadFilesAreRefusedWithPlaceAndReason) {
  std::string deep;
  for (int level = 0; level < 100000; ++level) deep += "<a>";
  std::string closed = deep;
  for (int level = 0; level < 100000; ++level) closed += "</a>";
  struct {
    std::string bytes;
    const char* said;
  } const cases[] = {
      {"", "no well-formed XML"},
      {"<a><b></a>", "byte "},
      {"<a n='1' </a>", "byte "},
      {"<a>\xE2\x82\xAC</a><", "byte "},
      {"<a><b>\xF0\x9F\x98\x80</b></a>", "a.xml at byte "},  // a character outside GBK
      {"<a n='\xFF'/>", "a.xml"},
      {std::string("\x00\x01\x02PK", 5), "no well-formed XML"},
      {deep, "no well-formed XML"},
      {closed, "200 deep"},
  };
  for (const auto& [bytes, said] : cases) {
    EXPECT_FALSE(document_.Load(Write(bytes))) << bytes.substr(0, 40);
    EXPECT_NE(std::string::npos, document_.GetError().find(said)) << document_.GetError();
    EXPECT_FALSE(document_.GetDocumentElement());
  }
  EXPECT_FALSE(document_.Load(folder_.File("missing.xml")));
  EXPECT_NE(std::string::npos, document_.GetError().find("missing.xml"));
}

TEST_F(Markup, ADocumentThatCannotBeWrittenLeavesNothing) {
  document_.Create("ROOT");
  EXPECT_FALSE(document_.Save(folder_.File("no/such/folder.xml")));
  EXPECT_NE(std::string::npos, document_.GetError().find("folder.xml"));
  EXPECT_FALSE(FileExists(folder_.File("no")));
}

}  // namespace
}  // namespace loom::testing
