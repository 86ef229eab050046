#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "host/logstore/log_writer.h"
#include "tests/qloom/program.h"
#include "tests/support/records.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

class IntermediateCommandTest : public ::testing::Test {
 protected:
  ProgramRun Qloom(const std::string& arguments) const { return RunQloom(folder_.native().string(), arguments); }
  std::string Rows(const std::string& source, const std::string& stream) const {
    const ProgramRun run = Qloom("rows " + source + " --stream '" + stream + "'");
    EXPECT_EQ(0, run.exit_code) << source << ' ' << stream << '\n' << run.err;
    return run.out;
  }
  std::string Content(const std::string& name) const { return ReadText((folder_.native() / name).string()); }
  void WriteLog(const std::string& name, const std::vector<RecordBuilder>& records) const {
    LogHeader header;
    header.day = {2024, 5, 17};
    LogWriter writer(folder_.File(CString(name)), header);
    for (const RecordBuilder& record : records) writer.Append(record.Encode(), record.Build().time.seconds);
    writer.Finish();
  }

  testing::TempFolder folder_;
};

// The format carries no spectra.
std::string WithoutSpectra(std::string rows) {
  const std::string head = ",\"spectrum\":[";
  for (std::size_t at; (at = rows.find(head)) != std::string::npos;) rows.erase(at, rows.find(']', at) + 1 - at);
  return rows;
}

TEST_F(IntermediateCommandTest, ALogComesBackAsItsOwnRows) {
  ASSERT_EQ(0, Qloom("log simulate drive.log --minutes 3 --handsets td,gsm,lte --scanner").exit_code);
  EXPECT_EQ(1, Qloom("log to-intermediate drive.log missing-folder/drive.imd").exit_code);
  const ProgramRun written = Qloom("log to-intermediate drive.log drive.imd --json");
  ASSERT_EQ(0, written.exit_code);
  const json direct = Qloom("import drive.log --json").Json()["logs"][0];
  const json back = Qloom("import-intermediate drive.imd --json").Json();
  EXPECT_EQ(1, back["result"]);
  const json& log = back["logs"][0];
  EXPECT_EQ(direct["rows"], log["rows"]);
  EXPECT_EQ(direct["merged_rows"], log["merged_rows"]);
  EXPECT_EQ(160, direct["version"]);
  EXPECT_EQ(750, log["version"]);  // of the intermediate form
  EXPECT_EQ(direct["bounds"], log["bounds"]);
  EXPECT_EQ(direct["handset_type"], log["handset_type"]);
  ASSERT_LE(4u, direct["streams"].size());
  ASSERT_EQ(direct["streams"].size(), log["streams"].size());
  for (std::size_t at = 0; at < log["streams"].size(); ++at) {
    const json& stream = log["streams"][at];
    for (const char* member : {"name", "device", "device_number", "stream_type", "stream_class", "protocol",
                               "filter_operator", "rows", "time", "longitude", "latitude", "position_flag", "ies"}) {
      EXPECT_EQ(direct["streams"][at][member], stream[member]) << stream["name"] << ' ' << member;
    }
    const std::string name = stream["name"];
    const std::string rows = Rows("drive.log", name);
    EXPECT_EQ(static_cast<std::size_t>(stream["rows"].get<int>()),
              static_cast<std::size_t>(std::count(rows.begin(), rows.end(), '\n')));
    EXPECT_TRUE(WithoutSpectra(rows) == Rows("drive.imd --intermediate", name)) << name;
  }
}

TEST_F(IntermediateCommandTest, TextsThatAreTooLongAreLeftOutWithANote) {
  WriteLog("drive.log", {HandsetRecord().Id(1).At(36000).Text(CString(std::string(1023, 'a'))),
                         HandsetRecord().Id(2).At(36001).Text(CString(std::string(1024, 'b')))});
  const json written = Qloom("log to-intermediate drive.log drive.imd --json").Json();
  EXPECT_EQ(2, written["rows"]);
  EXPECT_NE(std::string::npos, written["notes"].dump().find("a text has at most 1023 bytes"));
  const std::string rows = Rows("drive.imd --intermediate", "drive_RV2230_TD(1)");
  EXPECT_NE(std::string::npos, rows.find(std::string(1023, 'a')));
  EXPECT_EQ(std::string::npos, rows.find("bb"));
}

TEST_F(IntermediateCommandTest, AStreamThatEndsEarlyDoesNotHaveTheTimesOfTheWhole) {
  WriteLog("drive.log", {HandsetRecord().Id(1).At(36000), HandsetRecord().Id(2).At(36001)});
  ASSERT_EQ(0, Qloom("log to-intermediate drive.log drive.imd").exit_code);
  const std::filesystem::path file = folder_.native() / "drive.imd";
  std::filesystem::resize_file(file, std::filesystem::file_size(file) - 1);
  const json document = Qloom("import-intermediate drive.imd --json").Json();
  const json& stream = document["logs"][0]["streams"][0];
  EXPECT_EQ(0, stream["rows"]);
  EXPECT_EQ(json({-255.0, -255.0}), stream["time"]);
  EXPECT_NE(std::string::npos, document["notes"].dump().find("ends early"));
}

TEST_F(IntermediateCommandTest, AFileThatCannotBeWrittenStaysAsItWas) {
  WriteLog("drive.log", {HandsetRecord().Id(1).At(36000)});
  ASSERT_EQ(0, Qloom("log to-intermediate drive.log drive.imd").exit_code);
  const std::string before = Content("drive.imd");
  EXPECT_EQ(1, Qloom("log to-intermediate missing.log drive.imd").exit_code);
  EXPECT_EQ(1, Qloom("log to-intermediate drive.imd drive.imd").exit_code);
  EXPECT_EQ(1, Qloom("log to-intermediate drive.log /dev/null").exit_code);
  EXPECT_EQ(before, Content("drive.imd"));
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.native())) files += entry.is_regular_file();
  EXPECT_EQ(4u, files);  // the log, the file, and the program's two outputs
}

TEST_F(IntermediateCommandTest, AMissingFileIsAnErrorAndIsNotMade) {
  WriteLog("drive.log", {HandsetRecord().Id(1).At(36000)});
  ASSERT_EQ(0, Qloom("log to-intermediate drive.log drive.imd").exit_code);
  EXPECT_EQ(1, Qloom("import-intermediate drive.imd missing.imd").exit_code);
  EXPECT_EQ(1, Qloom("rows missing.imd --intermediate --stream x").exit_code);
  EXPECT_FALSE(std::filesystem::exists(folder_.native() / "missing.imd"));
  const ProgramRun mixed = Qloom("import-intermediate drive.imd drive.log --json");
  EXPECT_EQ(3, mixed.exit_code);
  const json document = mixed.Json();
  EXPECT_EQ(2, document["result"]);
  EXPECT_EQ("不是日志中间文件!", document["messages"][0]["text"]);
}

}  // namespace
}  // namespace loom::test
