#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "tests/qloom/program.h"
#include "tests/support/temp_folder.h"

namespace loom::test {
namespace {

using nlohmann::json;

const char* const kNoTdScdma = "没有选择导入TD-SCDMA的IE，文件打开后将不导入任何TD-SCDMA的IE，是否继续？";

class SettingsCommands : public ::testing::Test {
 protected:
  SettingsCommands() { Make("drive"); }

  ProgramRun Run(const std::string& arguments) { return RunQloom(folder_.native().string(), arguments); }
  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }
  // A log of one TD-SCDMA handset.
  void Make(const std::string& name, const std::string& kind = "store") {
    const json header{{"kind", kind}, {"version", 160}, {"test_type", 1}, {"date", "2024-05-17"}};
    const json record{{"kind", 1},        {"device_number", 1},
                      {"model_code", 7},  {"network_mode", 2},
                      {"time", 36000},    {"longitude", 116.5},
                      {"latitude", 39.5}, {"serving_cell", {{"uarfcn", 10054}, {"cell_parameter_id", 12}}}};
    WriteText(Path(name + ".jsonl"), header.dump() + "\n" + record.dump() + "\n");
    const ProgramRun made = Run("log make " + name + ".jsonl " + name + ".log");
    ASSERT_EQ(0, made.exit_code) << made.err;
  }
  json Project() { return Run("project show p.qlp --json").Json(); }
  // Plays the steps and gives the states.
  ProgramRun Play(const std::string& command, const std::vector<json>& steps) {
    std::string lines;
    for (const json& step : steps) lines += step.dump() + "\n";
    WriteText(Path("steps.jsonl"), lines);
    return Run("ui " + command + " --script steps.jsonl");
  }
  static json Control(const json& state, int id) {
    for (const json& control : state["controls"]) {
      if (control["id"] == id) return control;
    }
    return {};
  }

  testing::TempFolder folder_;
};

TEST_F(SettingsCommands, WithoutSettingsTheSheetStaysClosed) {
  const ProgramRun run = Run("import drive.log --project p.qlp --trace-ui");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(std::string::npos, run.err.find("\"window\":9005")) << run.err;
  EXPECT_TRUE(Project()["settings"].empty());
}

TEST_F(SettingsCommands, ChosenElementsAloneAreImported) {
  const json report = Run("import drive.log --project p.qlp --json --ie UARFCN L3").Json();
  EXPECT_EQ(1, report["result"]);
  // UARFCN is one of TD-SCDMA; nothing of GSM is ticked.
  ASSERT_EQ(1u, report["messages"].size());
  EXPECT_EQ("yesno", report["messages"][0]["buttons"]);
  EXPECT_EQ("yes", report["messages"][0]["answer"]);
  const json settings = Project()["settings"][0]["ies"];
  ASSERT_EQ(5u, settings.size()) << settings;
  EXPECT_EQ("MsgName", settings["L3"]["ie"]);
  EXPECT_TRUE(settings.contains("Longitude"));
  const auto ies_of = [this](const std::string& options) {
    return Run("import drive.log --json " + options)
        .Json()["logs"][0]["streams"][0]["ies"]
        .get<std::set<std::string>>();
  };
  EXPECT_TRUE(ies_of("--ie UARFCN").contains("UARFCN"));
  EXPECT_FALSE(ies_of("--ie UARFCN").contains("CellParameterID"));
  EXPECT_TRUE(ies_of("--bin time=2 --bin-ue PBCH_RSRP").contains("CellParameterID"));
  const ProgramRun rows = Run("rows drive.log --stream 'drive_RV2230_TD(1)' --ie CellParameterID --trace-ui");
  EXPECT_EQ(1u, rows.Lines().size());
  EXPECT_NE(std::string::npos, rows.err.find("\"window\":9005")) << rows.err;
}

TEST_F(SettingsCommands, WhatTheSheetRefusesIsNotImported) {
  const json declined = Run("import drive.log --project p.qlp --json --no --ie RxLev").Json();
  EXPECT_EQ(0, declined["result"]);
  EXPECT_EQ(kNoTdScdma, declined["messages"][0]["text"]);
  EXPECT_EQ("no", declined["messages"][0]["answer"]);
  struct {
    const char* options;
    const char* said;
  } const cases[] = {
      {"--bin time=0 --bin-ue PBCH_RSRP", "请输入一个在1 和100000 之间的整数."},
      {"--bin grid=5x100001 --bin-ue PBCH_RSRP", "请输入一个在1 和100000 之间的整数."},
      {"--bin distance=9", "请至少选择一种处理方式."},
      {"--bin time= --bin-ue PBCH_RSRP", "请输入一个整数."},
      {"--bin time=1 --bin-ue Nothing", "Nothing"},
      {"--bin time=-5 --bin-ue PBCH_RSRP", "-5"},
      {"--ie NoSuchElement", "NoSuchElement"},
      {"--ie-template missing.xml", "missing.xml"},
      {"--ie-template drive.jsonl", "drive.jsonl"},
      {"--save-ie-template no/such/folder.xml", "folder.xml"},
  };
  for (const auto& [options, said] : cases) {
    const ProgramRun run = Run(std::string("import drive.log --project p.qlp ") + options);
    EXPECT_EQ(1, run.exit_code) << options;
    EXPECT_NE(std::string::npos, run.err.find(said)) << run.err;
  }
  EXPECT_FALSE(std::filesystem::exists(Path("p.qlp")));
  for (const char* wrong : {"--bin hour=3", "--bin time", "--bin grid=5", "--bin-value most"}) {
    EXPECT_EQ(2, Run(std::string("import drive.log ") + wrong).exit_code) << wrong;
  }
}

TEST_F(SettingsCommands, MergingIsStoredWithTheLog) {
  const std::string options = "--bin grid=50x70 --bin-value avg --bin-scanner Cell_BCH_RQ_32";
  ASSERT_EQ(0, Run("import drive.log --project p.qlp " + options).exit_code);
  const json binning = Project()["binning"];
  ASSERT_EQ(1u, binning.size());
  const json& setting = *binning.begin();
  EXPECT_EQ(2, setting["BiningType"]);
  EXPECT_EQ(2, setting["ValueType"]);
  EXPECT_EQ(50, setting["GridHeight"]);
  EXPECT_EQ(70, setting["GridWidth"]);
  EXPECT_EQ("", setting["UEParam"]);
  EXPECT_EQ("Cell_BCH_RQ_32", setting["ScannerParam"]);
}

TEST_F(SettingsCommands, ATemplateGivesTheSameSelectionAgain) {
  ASSERT_EQ(0, Run("import drive.log --project p.qlp --ie UARFCN RxLev --save-ie-template t.xml").exit_code);
  const json chosen = Project()["settings"][0]["ies"];
  std::filesystem::remove(Path("p.qlp"));
  const ProgramRun again = Run("import drive.log --project p.qlp --json --ie-template t.xml");
  EXPECT_EQ(0, again.exit_code) << again.err;
  EXPECT_EQ(json::array(), again.Json()["messages"]);
  EXPECT_EQ(chosen, Project()["settings"][0]["ies"]);

  const std::string before = ReadText(Path("t.xml"));
  ASSERT_EQ(0, Run("import drive.log --no --save-ie-template t.xml").exit_code);
  EXPECT_EQ(before, ReadText(Path("t.xml")));
  WriteText(Path("t.xml"),
            "<IMPSETTING><IE name='RxLev'>RxLev</IE><IE name='X'>X</IE><IE name='UARFCN'>UARFCN</IE></IMPSETTING>");
  const json notes = Run("import drive.log --json --ie-template t.xml").Json()["notes"];
  ASSERT_EQ(1u, notes.size());
  EXPECT_EQ("IE 'X'", notes[0]["at"]);
}

TEST_F(SettingsCommands, OpenImportsWhatTheProjectLists) {
  Make("cm", "cmcc");
  ASSERT_EQ(0, Run("import drive.log --project p.qlp --ie UARFCN --bin time=7 --bin-ue PBCH_RSRP").exit_code);
  ASSERT_EQ(0, Run("import cm.log --node cmcc --project p.qlp").exit_code);
  const std::string before = ReadText(Path("p.qlp"));
  const ProgramRun opened = Run("open p.qlp --json");
  EXPECT_EQ(0, opened.exit_code) << opened.err;
  const json report = opened.Json();
  EXPECT_EQ(1, report["result"]);
  ASSERT_EQ(2u, report["logs"].size());
  for (const json& name : report["logs"][0]["streams"][0]["ies"]) EXPECT_NE("CellParameterID", name);
  EXPECT_EQ(before, ReadText(Path("p.qlp")));

  // A log that is gone, with the file as it was and, when asked for, without the log.
  std::filesystem::remove(Path("cm.log"));
  const json in_part = Run("open p.qlp --json").Json();
  EXPECT_EQ(2, in_part["result"]);
  EXPECT_EQ(0u, in_part["messages"][0]["text"].get<std::string>().find("找不到日志文件："));
  EXPECT_EQ(2u, Project()["logs"].size());
  EXPECT_EQ(3, Run("open p.qlp --save").exit_code);
  const json left = Project();
  ASSERT_EQ(1u, left["logs"].size());
  EXPECT_EQ(7, left["binning"].begin()->at("BinningTime"));
  EXPECT_TRUE(left["settings"][0]["ies"].contains("UARFCN"));

  std::filesystem::remove(Path("drive.log"));
  EXPECT_EQ(1, Run("open p.qlp --save").exit_code);
  EXPECT_EQ(left, Project());
}

TEST_F(SettingsCommands, WhatIsNoProjectIsSaidAndLeftAlone) {
  ASSERT_EQ(0, Run("import drive.log --project p.qlp").exit_code);
  const std::string whole = ReadText(Path("p.qlp"));
  for (const std::string& bytes : {std::string("no project"), whole.substr(0, whole.size() / 2)}) {
    WriteText(Path("p.qlp"), bytes);
    const ProgramRun run = Run("open p.qlp --save");
    EXPECT_EQ(1, run.exit_code);
    EXPECT_NE(std::string::npos, run.err.find("p.qlp")) << run.err;
    EXPECT_EQ(bytes, ReadText(Path("p.qlp")));
  }
  EXPECT_EQ(1, Run("open missing.qlp").exit_code);
  EXPECT_FALSE(std::filesystem::exists(Path("missing.qlp")));
}

TEST_F(SettingsCommands, TheNavigatorIsShownAsTheDialogsShowIt) {
  const json tree = Run("navigator tree --json").Json()["tree"];
  EXPECT_EQ("TD-SCDMA", tree[0]["text"]);
  EXPECT_EQ(0, tree[0]["image"]);
  EXPECT_EQ("GSM", tree[1]["text"]);
  EXPECT_NE(std::string::npos, Run("navigator tree").out.find("\n    Serving_Cell\n"));
  const json lists = Run("navigator lists --json").Json();
  EXPECT_EQ("RecordTime", lists["independent"][0]);
  EXPECT_FALSE(lists["gsm"].empty());

  // A configuration of one's own, its navigator cut.
  std::filesystem::copy(testing::SourceFolder() / "config", Path("own"));
  WriteText(Path("own/Navigator.xml"), "<Navigator type='NAVIGATORSTREAM'><Cut");
  const ProgramRun cut = Run("navigator tree --config own");
  EXPECT_EQ(1, cut.exit_code);
  EXPECT_NE(std::string::npos, cut.err.find("Navigator.xml at byte ")) << cut.err;
  const json refused = Run("import drive.log --config own --json --bin time=2 --bin-ue PBCH_RSRP").Json();
  EXPECT_EQ("加载配置文件失败！", refused["messages"][0]["text"]);
  EXPECT_EQ("error", refused["messages"][0]["icon"]);
  EXPECT_EQ(1, refused["result"]) << "with time and position alone";
}

TEST_F(SettingsCommands, AScriptPlaysTheWindowsOfACommand) {
  const ProgramRun run = Play("import-log --project p.qlp", {{{"press", 9063}},
                                                             {{"tick", {9064, "TD-SCDMA", false}}},
                                                             {{"page", 106}},
                                                             {{"check", {9116, true}}},
                                                             {{"type", {9093, "12"}}},
                                                             {{"check", {9117, true}}},
                                                             {{"choose", {9111, "PBCH_RSRQ"}}},
                                                             {{"button", "ok"}},
                                                             {{"answer", "yes"}},
                                                             {{"files", {"drive.log"}}}});
  EXPECT_EQ(0, run.exit_code) << run.err;
  const auto states = run.Lines();
  ASSERT_EQ(10u, states.size());
  EXPECT_EQ(json({{"template", 9005}, {"title", "文件导入设置"}}), states[0]["window"]);
  EXPECT_EQ("All Event/Event", Control(states[0], 9064)["items"].back());
  EXPECT_EQ(json({{"ok", true}, {"cancel", true}}), states[0]["buttons"]);
  EXPECT_EQ(0, Control(states[1], 9064)["ticks"][0]);
  EXPECT_EQ(106, states[2]["window"]["template"]);
  EXPECT_EQ(false, Control(states[2], 9093)["enabled"]);
  EXPECT_EQ("12", Control(states[4], 9093)["text"]);
  EXPECT_EQ(json({"PBCH_RSRP", "PBCH_RSRQ"}), Control(states[6], 9111)["items"]);
  EXPECT_EQ(json({1}), Control(states[6], 9111)["selected"]);
  EXPECT_EQ(kNoTdScdma, states[7]["messages"][0]["text"]);
  EXPECT_EQ("yes", states[7]["messages"][0]["answer"]);
  EXPECT_EQ("选择日志文件", states[8]["window"]["title"]);
  EXPECT_EQ(json({{{"name", "Log(*.log)"}, {"patterns", {"*.log"}}}}), states[8]["window"]["filters"]);
  EXPECT_EQ("导入设置(&I)", Control(states[8], 9063)["text"]);
  EXPECT_EQ(json(), states[9]["window"]);
  EXPECT_EQ(12, Project()["binning"].begin()->at("BinningTime"));
}

TEST_F(SettingsCommands, AScriptEndsAtWhatAPersonCannotDo) {
  const ProgramRun disabled = Play(
      "import-log --project p.qlp",
      {{{"press", 9063}}, {{"page", 106}}, {{"type", {9093, "12"}}}, {{"button", "ok"}}, {{"files", {"drive.log"}}}});
  EXPECT_EQ(2, disabled.exit_code);
  EXPECT_NE(std::string::npos, disabled.err.find("it is disabled")) << disabled.err;
  EXPECT_FALSE(std::filesystem::exists(Path("p.qlp")));
  EXPECT_EQ(2, Play("import-log", {{{"files", {"drive.log"}}}, {{"button", "ok"}}}).exit_code);  // no window left
  EXPECT_EQ(1, Play("import-log", {{{"files", json::array()}}}).exit_code);
  const ProgramRun wrong = Play("import-log", {{{"press", 9063}}, {{"jump", 1}}});
  EXPECT_EQ(2, wrong.exit_code);
  EXPECT_NE(std::string::npos, wrong.err.find("steps.jsonl, line 2: there is no action \"jump\"")) << wrong.err;
  EXPECT_EQ(2, Run("ui no-command --script steps.jsonl").exit_code);
}

}  // namespace
}  // namespace loom::test
