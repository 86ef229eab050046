#include "host/netdb/text_config.h"

#include <gtest/gtest.h>

#include "host/netdb/db_mapper.h"
#include "platform/file.h"
#include "platform/log.h"
#include "tests/support/temp_folder.h"

namespace loom {
namespace {

CProjectTxtFile Configuration(const CString& separator) {
  CProjectTxtFile record;
  record.SetTxtName("<上行> & \"UE1\""_gbk);
  record.SetSeparate(separator);
  record.SetDataFormat("yyyy-mm-dd hh:nn:ss.ms");
  record.SetHeadLineIsIgnore(true);
  record.SetColumnMapIE({{0, "RecordTime"}, {12, "PCCPCH_RSCP"}});
  return record;
}

TEST(TextConfig, GivesBackItsFivePropertiesAndLeavesTheOthers) {
  const testing::TempFolder folder;
  const CString path = folder.File("配置.imcf"_gbk);
  for (const char* separator : {"\t", ",", ";", " ", "<"}) {
    const CProjectTxtFile saved = Configuration(separator);
    ASSERT_TRUE(DBMapper::Instance().SaveTextConfig(path, saved));
    CProjectTxtFile loaded;
    loaded.SetTxtPath("/data/drive.txt");
    loaded.SetStreamType(1);
    ASSERT_TRUE(DBMapper::Instance().LoadTextConfig(path, loaded));
    EXPECT_EQ(loaded.GetSeparate(), separator);
    EXPECT_EQ(loaded.GetTxtName(), saved.GetTxtName());
    EXPECT_EQ(loaded.GetDataFormat(), saved.GetDataFormat());
    EXPECT_TRUE(loaded.GetHeadLineIsIgnore());
    EXPECT_EQ(loaded.GetColumnMapIE(), saved.GetColumnMapIE());
    EXPECT_EQ(loaded.GetTxtPath(), "/data/drive.txt");
    EXPECT_EQ(loaded.GetStreamType(), 1);
  }
}

TEST(TextConfig, WhatIsNoConfigurationIsRefusedAndLogged) {
  const testing::TempFolder folder;
  std::string logged;
  const LogSink previous = SetLogSink([&](LogLevel, std::string_view line) { logged = line; });
  const char* const documents[] = {
      "",
      "no document",
      "<Other/>",
      "<TextImport version=\"1\"/>",
      "<TextImport version=\"2\"><Setting stream=\"\" separator=\",\" format=\"\" "
      "head_line_ignored=\"0\"/></TextImport>",
      "<TextImport version=\"1\"><Setting stream=\"\" format=\"\" head_line_ignored=\"0\"/></TextImport>",
      "<TextImport version=\"1\"><Setting stream=\"\" separator=\",\" format=\"\" head_line_ignored=\"0\"/>"
      "<Column number=\"-1\" ie=\"a\"/></TextImport>",
      "<TextImport version=\"1\"><Setting stream=\"\" separator=\",\" format=\"\" head_line_ignored=\"0\"/>"
      "<Column number=\"1\" ie=\"a\"/><Column number=\"1\" ie=\"b\"/></TextImport>",
  };
  CProjectTxtFile record = Configuration(";");
  for (const char* document : documents) {
    WriteWholeFile(folder.File("bad.imcf"), document);
    logged.clear();
    EXPECT_FALSE(DBMapper::Instance().LoadTextConfig(folder.File("bad.imcf"), record)) << document;
    EXPECT_NE(logged.find("bad.imcf"), std::string::npos) << document;
  }
  EXPECT_FALSE(DBMapper::Instance().LoadTextConfig(folder.File("missing.imcf"), record));
  EXPECT_FALSE(DBMapper::Instance().SaveTextConfig(folder.File("missing/a.imcf"), record));
  EXPECT_EQ(record.GetColumnMapIE().size(), 2u);
  SetLogSink(previous);
}

}  // namespace
}  // namespace loom
