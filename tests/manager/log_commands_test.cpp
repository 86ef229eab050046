#include <filesystem>

#include "manager/io_manager.h"
#include "platform/file.h"
#include "resources/handset_type_templates.h"
#include "tests/importers/import_test.h"

namespace loom::testing {
namespace {

class LogCommands : public ImportTest {
 protected:
  LogCommands() {
    manager_.SetLogListener([this](const LogOutcome& outcome) { outcomes_.push_back(outcome); });
  }

  CString OutdoorLog(const CString& name) const { return WriteLog(name, {HandsetRecord()}); }
  CString IndoorLog(const CString& name) const { return WriteLog(name, {HandsetRecord()}, Indoor()); }
  CString ChinaMobileLog(const CString& name) const {
    return WriteLog(name, {HandsetRecord()}, Header(160, 1, LogKind::kCmcc));
  }
  std::vector<int> Results() const {
    std::vector<int> results;
    for (const LogOutcome& outcome : outcomes_) results.push_back(outcome.result);
    return results;
  }
  const CProjectLogfile* Listed(const CString& path) { return g_project->GetNTLog()->GetProjectLogFileByPath(path); }

  CIOManager manager_;
  std::vector<LogOutcome> outcomes_;
};

TEST_F(LogCommands, AnImportedLogIsRegisteredWithItsStreams) {
  const CString path = WriteLog("drive.log", {HandsetRecord(), GsmRecord(), RecordBuilder(3)});
  user_.PickFiles({path});
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  const FileDialogRequest& dialog = user_.file_dialogs().front();
  EXPECT_EQ("选择日志文件"_gbk, dialog.title);
  EXPECT_TRUE(dialog.multi_select && dialog.must_exist);
  EXPECT_EQ((std::vector<CString>{"*.log"}), dialog.filters.front().patterns);

  const CProjectLogfile* log = Listed(path);
  ASSERT_TRUE(log);
  EXPECT_EQ(path, log->GetLogFileName());
  EXPECT_EQ(kModelRv2230, log->GetFacType());
  ASSERT_EQ(3u, log->GetStreams().size());
  const CProjectStream& merged = log->GetStreams().at("drive_RV2230(1)");
  EXPECT_EQ("DOUBLEPROTOCOL", merged.GetProtocol());
  const CProjectStream& gsm = log->GetStreams().at("drive_RV2230_GSM(1)");
  EXPECT_EQ("GSM", gsm.GetProtocol());
  EXPECT_EQ("1", gsm.GetStreamType());
  EXPECT_EQ("AND", gsm.GetFilterOperator());
  EXPECT_EQ(1, g_project->modified);
  EXPECT_EQ(path, g_systemConfig->GetRecentLogFile(0));

  ASSERT_EQ(1u, outcomes_.size());
  EXPECT_EQ(path, outcomes_[0].path);
  EXPECT_EQ(kImporterOutdoorLog, outcomes_[0].type);
  EXPECT_EQ(3u, outcomes_[0].logfile->GetStreams().size());
}

TEST_F(LogCommands, WhatALogLeavesOutIsToldWhoeverReadsIt) {
  struct {
    CString name;
    LogHeader header;
    ImporterTypeEnum node;
  } const cases[] = {{"out.log", Header(160, 1), kImporterOutdoorLog},
                     {"in.log", Indoor(), kImporterIndoorLog},
                     {"auto.log", Header(160, 1, LogKind::kAuto), kImporterOutdoorLog},
                     {"cm.log", Header(160, 1, LogKind::kCmcc), kImporterChinaMobileLog}};
  for (const auto& [name, header, node] : cases) {
    user_.PickFiles({WriteLog(name, {HandsetRecord(), RecordBuilder(3)}, header)});
    EXPECT_EQ(kBatchDone, manager_.ImportLog(node)) << name;
    EXPECT_EQ((std::map<std::string_view, std::uint64_t>{{"unknown kind", 1}}), outcomes_.back().skipped) << name;
  }
  manager_.SetLogListener({});
  user_.PickFiles({OutdoorLog("unheard.log")});
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ(std::size(cases), outcomes_.size());
}

TEST_F(LogCommands, ALogGoesUnderItsOwnNodeOnly) {
  struct {
    CString path;
    ImporterTypeEnum node;
    CString objection;
  } const cases[] = {
      {IndoorLog("in.log"), kImporterOutdoorLog, "室外日志节点下不能导入室内日志:in.log."_gbk},
      {OutdoorLog("out.log"), kImporterIndoorLog, "室内日志节点下不能导入室外日志:out.log "_gbk},
      {OutdoorLog("out.log"), kImporterChinaMobileLog, "中国移动日志节点下不能导入非中国移动日志:out.log"_gbk},
      {ChinaMobileLog("cm.log"), kImporterOutdoorLog, "该节点下不能导入中国移动日志:cm.log"_gbk},
  };
  for (const auto& [path, node, objection] : cases) {
    user_.PickFiles({path}).ExpectMessage(objection, MessageIcon::kNone);
    EXPECT_EQ(kBatchNothing, manager_.ImportLog(node)) << objection;
  }
  EXPECT_EQ((std::vector<int>{0, 0, 0, 0}), Results());
  EXPECT_TRUE(PresentLogs().empty());

  user_.PickFiles({ChinaMobileLog("cm.log")});
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterChinaMobileLog));
  EXPECT_EQ(kImporterChinaMobileLog, outcomes_.back().type);
}

TEST_F(LogCommands, AnUnknownVersionUnderTheChinaMobileNodeIsRefusedTwice) {
  user_.PickFiles({WriteLog("a.log", {}, Header(170, 1))})
      .ExpectMessage("日志文件：a.log 版本不正确！"_gbk, MessageIcon::kError)
      .ExpectMessage("中国移动日志节点下不能导入非中国移动日志:a.log"_gbk);
  EXPECT_EQ(kBatchNothing, manager_.ImportLog(kImporterChinaMobileLog));
}

TEST_F(LogCommands, ABatchGoesOnAfterACancelledLog) {
  Records records;
  for (int number = 0; number < 500; ++number) records.push_back(HandsetRecord());
  const std::vector<CString> paths{WriteLog("a.log", records), WriteLog("b.log", records), WriteLog("c.log", records)};
  user_.PickFiles(paths).CancelProgressAt(30, 1);
  EXPECT_EQ(kBatchInPart, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ((std::vector<int>{1, -1, 1}), Results());
  EXPECT_EQ(2u, PresentLogs().size());
  EXPECT_FALSE(Listed(paths[1]));
}

TEST_F(LogCommands, ATitleThatIsPresentIsPassedOver) {
  std::filesystem::create_directories(folder_.native() / "other");
  const CString first = OutdoorLog("drive.log");
  const CString same_title = OutdoorLog("other/drive.log");
  user_.PickFiles({first, same_title});
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));  // both: the titles are those before the batch
  EXPECT_EQ(2u, PresentLogs().size());
  user_.PickFiles({first}).ExpectMessage("已导入同名日志文件:drive !"_gbk, MessageIcon::kWarning);
  EXPECT_EQ(kBatchNothing, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ((std::vector<int>{1, 1, -2}), Results());
}

TEST_F(LogCommands, ALogThatFailsIsReportedAndTheBatchGoesOn) {
  const CString empty = WriteLog("empty.log", {});
  user_.PickFiles({empty, OutdoorLog("drive.log")})
      .ExpectMessage(Format("导入日志文件：%s 失败! \n"_gbk, empty), MessageIcon::kError);
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ((std::vector<int>{0, 1}), Results());
}

TEST_F(LogCommands, TooManyFilesAreAskedForAgain) {
  std::vector<CString> many;
  const CString long_name(std::string(200, 'x'));
  for (int number = 0; number < 350; ++number) {
    many.push_back(folder_.File(Format("%s%d.log", long_name, number)));
    WriteWholeFile(many.back(), "");
  }
  user_.PickFiles(many)
      .ExpectMessage("选择文件个数过多，请减少文件个数后重试!"_gbk, MessageIcon::kWarning)
      .CancelFiles();
  EXPECT_EQ(kBatchNothing, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_TRUE(outcomes_.empty());
}

TEST_F(LogCommands, TheHandsetQuestionIsAskedForEachLogOfABatchUnlessItsAnswerIsKeptForAll) {
  const Records no_model{HandsetRecord().Model(0), HandsetRecord().Model(0).Device(2)};
  const std::vector<CString> tessary{"_TESSARY_TN300_LTE(1)", "_TESSARY_TN300_LTE(2)"};
  const auto names = [this](std::size_t log) {
    std::vector<CString> names;
    for (const CString& name : StreamNames(*outcomes_.at(log).logfile)) names.push_back(name.Mid(1));
    return names;
  };
  user_.PickFiles({WriteLog("a.log", no_model), WriteLog("b.log", no_model), WriteLog("c.log", no_model)});
  user_.Expect(kDialogHandsetType).Cancel();  // which is no answer
  user_.Expect(kDialogHandsetType).Choose(kComboHandsetType, "Tessary TN300").Check(kCheckKeepForThisLog, false).Ok();
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ((std::vector<CString>{"_RV2230_TD(1)", "_RV2230_TD(2)"}), names(0));
  EXPECT_EQ(tessary, names(1));
  EXPECT_EQ(tessary, names(2));
  EXPECT_EQ(1, g_handset_question.ask);

  // The next batch asks anew.
  user_.PickFiles({WriteLog("d.log", no_model), WriteLog("e.log", no_model)});
  user_.Expect(kDialogHandsetType).Check(kCheckKeepForAllLogs, false).Ok();
  user_.Expect(kDialogHandsetType).Choose(kComboHandsetType, "Tessary TN300").Ok();
  EXPECT_EQ(kBatchDone, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ((std::vector<CString>{"_RV2230_TD(1)", "_RV2230_TD(2)"}), names(3));
  EXPECT_EQ(tessary, names(4));
}

TEST_F(LogCommands, OneIndoorLogIsImportedByName) {
  EXPECT_EQ(kBatchNothing, manager_.ImportLogByName(""));
  user_.ExpectMessage("室内日志节点下不能导入室外日志:out.log "_gbk);
  EXPECT_EQ(kBatchNothing, manager_.ImportLogByName(OutdoorLog("out.log")));
  const CString missing = folder_.File("missing.log");
  user_.ExpectMessage(Format("找不到日志文件：%s ，请确认路径! \n"_gbk, missing), MessageIcon::kWarning);
  EXPECT_EQ(kBatchNothing, manager_.ImportLogByName(missing));
  const CString path = IndoorLog("in.log");
  EXPECT_EQ(kBatchDone, manager_.ImportLogByName(path));
  EXPECT_EQ(path, g_systemConfig->GetRecentLogFile(0));
  user_.ExpectMessage("已有同名日志文件：in.log ! \n"_gbk, MessageIcon::kWarning);
  EXPECT_EQ(kBatchNothing, manager_.ImportLogByName(path));
}

TEST_F(LogCommands, AListedLogIsOpenedWithItsSettingsOrLeavesTheProject) {
  const CString path = ChinaMobileLog("cm.log");
  struct_BinningSetting binning;
  binning.binning_time_s = 17;
  g_project->AddBinningSetting(path, binning);
  EXPECT_EQ(kImportDone, manager_.OpenLog(path, false));
  ASSERT_TRUE(Listed(path));
  struct_BinningSetting kept;
  g_project->GetBinningSetting(path, kept);
  EXPECT_EQ(17, kept.binning_time_s);

  user_.ExpectMessage("已有同名日志文件：cm.log ! \n"_gbk);
  EXPECT_EQ(kImportAlreadyPresent, manager_.OpenLog(path, false));
  EXPECT_TRUE(Listed(path));
  user_.ExpectMessage("该节点下不能导入中国移动日志:cm.log"_gbk);
  EXPECT_EQ(kImportFailed, manager_.OpenLog(path, true));
  EXPECT_FALSE(Listed(path));
}

TEST_F(LogCommands, AnIndoorLogOfAnotherPlaceIsCopiedIntoTheProject) {
  std::filesystem::create_directories(folder_.native() / "elsewhere/Indoor Test");
  const CString path = IndoorLog("elsewhere/Indoor Test/f1.log");
  EXPECT_EQ(kImportDone, manager_.OpenRecentLog(path));
  EXPECT_EQ(folder_.File("Indoor Test/f1.log"), outcomes_[0].path);
  EXPECT_EQ((std::vector<CString>{"Indoor Test_f1_RV2230_TD(1)"}), StreamNames(*outcomes_[0].logfile));
  EXPECT_EQ(ReadWholeText(path), ReadWholeText(folder_.File("Indoor Test/f1.log")));
  user_.ExpectMessage("未找到文件，请检查文件是否存在！"_gbk, MessageIcon::kWarning);
  EXPECT_EQ(kImportFailed, manager_.OpenRecentLog(folder_.File("missing.log")));
}

TEST_F(LogCommands, AnExceptionCutsABatchShort) {
  const std::vector<CString> paths{OutdoorLog("a.log"), OutdoorLog("b.log"), OutdoorLog("c.log")};
  manager_.SetLogListener([this, &paths](const LogOutcome& outcome) {
    outcomes_.push_back(outcome);
    if (outcome.path == paths[1]) throw Error("the host gives up");
  });
  user_.PickFiles(paths);
  EXPECT_EQ(kBatchInPart, manager_.ImportLog(kImporterOutdoorLog));
  EXPECT_EQ(2u, outcomes_.size());
}

}  // namespace
}  // namespace loom::testing
