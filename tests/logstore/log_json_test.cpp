#include <fstream>

#include "tests/logstore/log_files.h"

namespace loom::testing {
namespace {

constexpr const char* kHeader = R"({"kind":"store","version":160,"test_type":1,"date":"2024-05-17"})";

std::string MakeError(const std::string& lines) {
  const TempFolder folder;
  WriteWholeFile(folder.File("lines.jsonl"), lines);
  try {
    MakeLog(folder.File("lines.jsonl"), folder.File("out.log"));
  } catch (const FileError& error) {
    EXPECT_FALSE(FileExists(folder.File("out.log")));
    return error.what();
  }
  ADD_FAILURE() << "taken: " << lines;
  return {};
}

class SampleLog : public ::testing::TestWithParam<const char*> {};

TEST_P(SampleLog, MakeDumpMakeGivesTheSameBytes) {
  const TempFolder folder;
  const CString lines = NativePathToGbk((SourceFolder() / "samples" / GetParam()).string());
  MakeLog(lines, folder.File("first.log"));
  const std::string dump = Dump(folder.File("first.log"));
  EXPECT_EQ(ReadWholeText(lines), dump);
  WriteWholeFile(folder.File("again.jsonl"), dump);
  MakeLog(folder.File("again.jsonl"), folder.File("second.log"));
  EXPECT_EQ(ReadWholeText(folder.File("first.log")), ReadWholeText(folder.File("second.log")));
  EXPECT_LT(ReadWholeText(lines).size(), 300'000U);
}

INSTANTIATE_TEST_SUITE_P(All, SampleLog, ::testing::Values("outdoor_mixed.jsonl", "indoor.jsonl", "merged_600.jsonl"));

TEST(LogJson, ErrorsNameFileAndLine) {
  const std::string header = std::string(kHeader) + "\n";
  const std::pair<std::string, const char*> kWrong[] = {
      {"", "first line is the header"},
      {"{}\n", "line 1: "},
      {R"({"kind":"other","version":160,"test_type":1,"date":"2024-05-17"})", "'other' is no kind of log"},
      {R"({"kind":"store","version":160,"test_type":1,"date":"2024-02-30"})", "'2024-02-30' is no day"},
      {R"({"kind":"store","version":1.5,"test_type":1,"date":"2024-05-17"})", "1.5 is no 32-bit number"},
      {R"({"kind":"store","version":160,"test_type":1,"date":"2024-05-17","more":1})", "no 'more'"},
      {header + "{\"kind\":1}\n\n{\"kind\":1,\n", "line 4: "},
      {header + "{\"kind\":1,\"colour\":2}\n", "line 2: colour: "},
      {header + "{\"kind\":1,\"raw_bytes\":\"" + std::string(600'000, '0') + "\"}\n", "line 2: the record takes"},
  };
  for (const auto& [lines, reason] : kWrong) {
    const std::string error = MakeError(lines);
    EXPECT_NE(std::string::npos, error.find(reason)) << error.substr(0, 300);
    EXPECT_NE(std::string::npos, error.find("lines.jsonl")) << error.substr(0, 300);
  }
}

TEST(LogJson, EmptyLinesAndAMissingLastLineEndAreFine) {
  const TempFolder folder;
  WriteWholeFile(folder.File("a.jsonl"), std::string(kHeader) + "\n\n{\"kind\":1}\n \n{\"kind\":7}");
  MakeLog(folder.File("a.jsonl"), folder.File("a.log"));
  EXPECT_EQ(2U, ReadThrough(folder.File("a.log")).ids.size());
}

TEST(LogJson, RecordMarkedAsUnreadableThrowsWhenItIsReadButIsDumped) {
  const TempFolder folder;
  const std::string lines = std::string(kHeader) + "\n{\"record_id\":1}\n{\"record_id\":2,\"fails\":\"read\"}\n";
  WriteWholeFile(folder.File("a.jsonl"), lines);
  MakeLog(folder.File("a.jsonl"), folder.File("a.log"));
  const ReadLog read = ReadThrough(folder.File("a.log"));
  EXPECT_TRUE(read.threw);
  EXPECT_EQ(Ids(1), read.ids);
  EXPECT_EQ(lines, Dump(folder.File("a.log")));
}

// The drive log of a phone among the samples; empty when there is none.
std::filesystem::path PhoneLog() {
  if (SharedSamples().empty()) return {};
  for (const auto& entry : std::filesystem::directory_iterator(SharedSamples() / "text")) {
    std::ifstream file(entry.path());
    std::string columns;
    std::getline(file, columns);
    if (columns.find("\tNetworkTech\tLevel\tQual\tSNR\t") != std::string::npos &&
        columns.find("BAND") != std::string::npos)
      return entry.path();
  }
  return {};
}

TEST(TabDriveLog, RowsOfARealPhoneBecomeRecords) {
  if (PhoneLog().empty() || !Succeeds("python3 --version")) GTEST_SKIP() << "no sample drive logs";
  const TempFolder folder;
  const std::string lines = (folder.native() / "drive.jsonl").string();
  const std::string script = SourceFolder() / "tools/tab_drive_log_to_jsonl.py";
  ASSERT_EQ(0, std::system(("python3 " + script + " " + PhoneLog().string() + " >" + lines + " 2>/dev/null").c_str()));
  MakeLog(NativePathToGbk(lines), folder.File("drive.log"));
  EXPECT_EQ(Ids(2625), ReadThrough(folder.File("drive.log")).ids);
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder.Folder(), "drive.log", 0));
  EXPECT_EQ("22:11:08.000", log.GetRecordStartTime().toString());
  EXPECT_EQ(7, log.GetLogFile()->getMonth());
}

}  // namespace
}  // namespace loom::testing
