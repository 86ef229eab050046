#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

constexpr const char* kForeignDrive =
    "Time;Lat;Lon;rsrp;pci;note\n"
    "2021-05-13T12:58:50Z;48,1;11,5;-80;7;a|b\n"
    "2021-05-13T12:58:51Z;48,2;11,6;-;8;\"c;d\"\n"
    "2021-05-13T12:58:52Z;48,3;11,7;-82;9;e\n";

class TextAutoImportTest : public ::testing::Test {
 protected:
  ProgramRun Qloom(const std::string& arguments) const { return RunQloom(folder_.native(), arguments); }
  std::string Path(const std::string& name) const { return folder_.native() / name; }
  void Write(const std::string& name, const std::string& text) const { WriteText(Path(name), text); }
  static std::set<std::string> NoteKindsOf(const json& document) {
    std::set<std::string> kinds;
    for (const json& note : document["notes"]) kinds.insert(note["kind"].get<std::string>());
    return kinds;
  }

  testing::TempFolder folder_;
};

TEST_F(TextAutoImportTest, AFileOfAnotherToolBecomesAStreamOfItsElements) {
  Write("drive.csv", kForeignDrive);
  const ProgramRun run = Qloom("import-text drive.csv --auto --json");
  ASSERT_EQ(0, run.exit_code) << run.err;
  const json document = run.Json();
  EXPECT_EQ(1, document["result"]);
  EXPECT_EQ(3, document["rows"]);
  EXPECT_EQ("LTE", document["stream"]["protocol"]);
  EXPECT_EQ((json{1620910730.0, 1620910732.0}), document["stream"]["time"]);
  EXPECT_EQ("note", document["unmapped"][0]["name"]);
  std::set<std::string> elements;
  for (const json& element : document["elements"]) elements.insert(element["element"].get<std::string>());
  EXPECT_EQ((std::set<std::string>{"PBCH_RSRP", "LTE_PCI"}), elements);
  // The stream is of LTE in the end: nothing is to be told of its protocol.
  EXPECT_FALSE(NoteKindsOf(document).contains("LTE columns"));
}

TEST_F(TextAutoImportTest, OverridesAndMapsOfAPersonGoBeforeWhatIsFound) {
  Write("drive.csv", kForeignDrive);
  const json document =
      Qloom("import-text drive.csv --auto --json --map 3=LTE_PCI --zone +08:00 --time none --stream-name A").Json();
  EXPECT_TRUE(document["found"]["time"].is_null());
  EXPECT_EQ("drive_A", document["stream"]["name"]);
  ASSERT_EQ(1u, document["elements"].size());
  EXPECT_EQ((json{{"column", 3}, {"name", "rsrp"}, {"element", "LTE_PCI"}}), document["elements"][0]);
  EXPECT_EQ(1, Qloom("import-text drive.csv --auto --map 3=NoSuchElement").exit_code);
  EXPECT_EQ(2, Qloom("import-text drive.csv --auto --imcf x.imcf").exit_code);
  EXPECT_EQ(2, Qloom("import-text drive.csv --decimal ,").exit_code);
}

TEST_F(TextAutoImportTest, FilesOfAFolderMayHaveOneTitle) {
  std::filesystem::create_directories(Path("in/sub"));
  Write("in/a.csv", kForeignDrive);
  Write("in/sub/a.csv", kForeignDrive);
  Write("in/c.bin", kForeignDrive);
  const ProgramRun run = Qloom("import-text in --auto --json");
  EXPECT_EQ(0, run.exit_code);
  const json document = run.Json();
  ASSERT_EQ(2u, document["texts"].size());
  EXPECT_EQ("a_UnknownDevice", document["texts"][0]["stream"]["name"]);
  EXPECT_EQ("a-2_UnknownDevice", document["texts"][1]["stream"]["name"]);
}

TEST_F(TextAutoImportTest, OpenConvertsAgainWhatHasChanged) {
  Write("drive.csv", kForeignDrive);
  ASSERT_EQ(0, Qloom("import-text drive.csv --auto --project p.qlp --map 3=LTE_PCI").exit_code);
  EXPECT_TRUE(std::filesystem::exists(Path("drive.imp")));
  const json same = Qloom("open p.qlp --json").Json();
  EXPECT_EQ(1, same["texts"][0]["result"]);
  EXPECT_FALSE(NoteKindsOf(same).contains("text file converted again"));

  Write("drive.csv", kForeignDrive + std::string("2021-05-13T12:58:53Z;48,4;11,8;-83;10;f\n"));
  const json changed = Qloom("open p.qlp --json --save").Json();
  EXPECT_TRUE(NoteKindsOf(changed).contains("text file converted again"));
  const std::string converted = ReadText(Path("drive.imp"));
  EXPECT_NE(std::string::npos, converted.find("1620910733"));
  EXPECT_EQ(std::string::npos, converted.find("PBCH_RSRP"));  // the person's map holds
  EXPECT_FALSE(NoteKindsOf(Qloom("open p.qlp --json").Json()).contains("text file converted again"));

  std::filesystem::remove(Path("drive.csv"));
  const json gone = Qloom("open p.qlp --json").Json();
  EXPECT_EQ(1, gone["texts"][0]["result"]);
  EXPECT_TRUE(NoteKindsOf(gone).contains("source of a converted text file is missing"));
}

TEST_F(TextAutoImportTest, ASavedDialectIsTakenAsItStands) {
  Write("a.csv", kForeignDrive);
  ASSERT_EQ(0, Qloom("text inspect a.csv --save-dialect d.json").exit_code);
  const json before = Qloom("text inspect a.csv --json").Json();
  json after = Qloom("text inspect a.csv --json --dialect d.json").Json();
  for (const char* key : {"separator", "quote", "decimal", "header_rows", "rows", "columns", "latitude", "longitude"})
    EXPECT_EQ(before[key], after[key]) << key;
  EXPECT_EQ(before["time"]["earliest"], after["time"]["earliest"]);
  // Without it the lines would be of one column; an option goes before the file.
  Write("b.csv", "only a line;1;2\n");
  const json forced = Qloom(
                          "text inspect b.csv --json --dialect d.json --header 0 --time none --latitude none "
                          "--longitude none")
                          .Json();
  EXPECT_EQ(";", forced["separator"]);
  EXPECT_EQ(1, forced["rows"]);
  Write("bad.json", "{\"separator\": 5}");
  EXPECT_EQ(1, Qloom("text inspect a.csv --dialect bad.json").exit_code);
}

TEST_F(TextAutoImportTest, WordsForNothingAreThoseOfThePerson) {
  Write("n.csv", "t,v\n1,-999\n2,5\n3,x\n4,7\n5,-\n");
  const json guessed = Qloom("text inspect n.csv --json").Json();
  EXPECT_EQ("text", guessed["columns"][1]["kind"]);
  const json given = Qloom("text inspect n.csv --json --null x --null=-999 --null=-").Json();
  EXPECT_EQ("integer", given["columns"][1]["kind"]);
  EXPECT_EQ(3, given["columns"][1]["empty"]);
}

}  // namespace
}  // namespace loom::test
