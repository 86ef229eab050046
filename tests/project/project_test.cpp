#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "components/factory.h"
#include "components/stream_manager.h"
#include "host/application.h"
#include "host/netdb/network_database.h"
#include "platform/file.h"
#include "tests/support/temp_folder.h"

namespace loom {
namespace {

IECatalogue SmallCatalogue() {
  return IECatalogue::Parse("2\t1\tRecordTime\t\tfloat\n500\t1\tPCCPCH_RSCP\tdBm\tshort\t-116\t-25\n", "ies",
                            "7\tHandover\n", "events");
}

CProjectLogfile Log(const CString& path, std::int32_t handset_type) {
  CProjectStream td, gsm;
  td.SetStreamName("RV2230_TD(1)");
  td.SetStreamType("1");
  td.SetProtocol("TD-SCDMA");
  td.SetFilterOperator("AND");
  gsm.SetStreamName("RV2230_GSM(1)");
  CProjectLogfile log;
  log.SetLogFilePath(path);
  log.SetLogFileName(path);
  log.SetFacType(handset_type);
  log.SetStreams({{td.GetStreamName(), td}, {gsm.GetStreamName(), gsm}});
  return log;
}

class ProjectTest : public ::testing::Test {
 protected:
  std::unique_ptr<HostApplication> Start() {
    return std::make_unique<HostApplication>(SmallCatalogue(), HostOptions{{}, path_, {}});
  }
  void SaveProjectWithOneLog() {
    const auto application = Start();
    g_project->AddProjectLogFile(Log("/logs/a.log", 3));
    application->project().Save();
  }

  const testing::TempFolder folder_;
  const CString path_ = folder_.File("测试.qlp"_gbk);
};

TEST_F(ProjectTest, EverythingItHoldsComesBack) {
  // A path with a character that GBK has, one in a form that no other text can have, and one of bytes that are no text.
  const CString paths[] = {"/日志/a.log"_gbk, "C:\\logs\\b.log", CString(std::string_view("/logs/\xFF\x80.log", 13))};
  struct_BinningSetting binning;
  binning.binning_type = kBinningByGrid;
  binning.value_type = kBinningAverage;
  binning.grid_height_m = 50;
  binning.grid_width_m = 75;
  binning.scanner_parameter = "Cell_BCH_RQ_32";
  CProjectTxtFile text;
  text.SetTxtName("drive");
  text.SetSeparate("\t");
  text.SetHeadLineIsIgnore(true);
  text.SetStreamType(2);
  text.SetStreams(Log("x", 0).GetStreams());
  text.SetColumnMapIE({{0, "RecordTime"}, {2, ""}});
  text.SetColumnTitle({{0, "Time"}, {1, "Level"}});
  {
    const auto application = Start();
    for (const CString& path : paths) g_project->AddProjectLogFile(Log(path, 1));
    g_project->AddProjectLogFile(Log(paths[0], 24));  // replaces, keeps its place
    for (const CString& path : paths) g_project->AddBinningSetting(path, binning);
    CImportSetting first, second;
    first.AddLogFile(paths[0]);
    first.AddLogFile(paths[1]);
    first.SetParamSetting({{"RSCP", {"PCCPCH_RSCP", -116.5, -25}}});
    second.AddLogFile(paths[1]);
    second.SetParamSetting({{"CI", {"CI"}}});
    for (const CString& path : paths) g_systemConfig->SetRecentLogFile(path);
    g_project->AddImpSetting(first);
    g_project->AddImpSetting(second);
    g_project->AddTxtFile(text);
    application->network().PutRows("tbl_Cell", {{{"CI", std::int64_t{77}}, {"Longitude", 1.5}, {"Latitude", 2.5}}});
    g_project->modified = 1;
    application->project().Save();
    EXPECT_EQ(g_project->modified, 0);
  }
  const auto application = Start();
  const auto logs = g_project->GetNTLog()->GetProjectLogFiles();
  ASSERT_EQ(logs.size(), 3u);
  for (std::size_t at = 0; at < 3; ++at) {
    EXPECT_EQ(logs[at]->GetLogFilePath(), paths[at]);
    struct_BinningSetting read;
    g_project->GetBinningSetting(paths[at], read);
    EXPECT_EQ(read.binning_type, kBinningByGrid);
    EXPECT_EQ(read.value_type, kBinningAverage);
    EXPECT_EQ(read.binning_time_s, 1);
    EXPECT_EQ(read.grid_height_m, 50);
    EXPECT_EQ(read.grid_width_m, 75);
    EXPECT_EQ(read.ue_parameter, "");
    EXPECT_EQ(read.scanner_parameter, "Cell_BCH_RQ_32");
    EXPECT_EQ(g_systemConfig->GetRecentLogFile(static_cast<std::int32_t>(at)), paths[2 - at]);
  }
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(3), "");
  EXPECT_EQ(logs[0]->GetFacType(), 24);
  const CProjectStream& stream = logs[1]->GetStreams().at("RV2230_TD(1)");
  EXPECT_EQ(stream.GetStreamName() + stream.GetStreamType() + stream.GetProtocol() + stream.GetFilterOperator(),
            "RV2230_TD(1)1TD-SCDMAAND");
  const ImpIESettings settings = g_project->GetImpSettingByLogFile(paths[0]);
  ASSERT_EQ(settings.size(), 1u);
  EXPECT_EQ(settings.at("RSCP").ie_name, "PCCPCH_RSCP");
  EXPECT_EQ(settings.at("RSCP").minimum, -116.5);
  EXPECT_EQ(g_project->GetImpSettingByLogFile(paths[1]).count("CI"), 1u) << "the later batch counts";
  EXPECT_TRUE(g_project->GetImpSettingByLogFile(paths[2]).empty());
  const CProjectTxtFile* const read_text = g_project->GetProjectTxtFileByName("drive");
  ASSERT_NE(read_text, nullptr);
  EXPECT_EQ(read_text->GetSeparate(), "\t");
  EXPECT_TRUE(read_text->GetHeadLineIsIgnore());
  EXPECT_EQ(read_text->GetStreamType(), 2);
  EXPECT_EQ(read_text->GetStreams().size(), 2u);
  EXPECT_EQ(read_text->GetColumnMapIE(), text.GetColumnMapIE());
  EXPECT_EQ(read_text->GetColumnTitle(), text.GetColumnTitle());
  double longitude = 0, latitude = 0;
  CFactory::Instance().CreateDBMapper()->GetCellPosition(77, longitude, latitude);
  EXPECT_EQ(std::make_pair(longitude, latitude), std::make_pair(1.5, 2.5));

  g_project->RemoveLogFile(paths[0]);
  g_project->RemoveTxtFile("drive");
  EXPECT_EQ(g_project->GetNTLog()->GetProjectLogFileByPath(paths[0]), nullptr);
  EXPECT_TRUE(g_project->GetImpSettingByLogFile(paths[0]).empty());
  EXPECT_EQ(g_project->GetProjectTxtFileByName("drive"), nullptr);
  EXPECT_NE(g_project->GetNTLog()->GetProjectLogFileByPath(paths[1]), nullptr);
}

TEST_F(ProjectTest, NothingReachesTheFileBeforeSave) {
  SaveProjectWithOneLog();
  const std::string before = ReadWholeText(path_);
  {
    const auto application = Start();
    g_project->RemoveLogFile("/logs/a.log");
    application->network().PutRows("tbl_Cell", {{{"CI", std::int64_t{1}}}});
  }
  EXPECT_EQ(ReadWholeText(path_), before);
}

TEST_F(ProjectTest, ASaveThatFailsLeavesTheOldFile) {
  SaveProjectWithOneLog();
  const std::string before = ReadWholeText(path_);
  const auto application = Start();
  std::vector<NetworkRow> rows;
  for (std::int64_t ci = 0; ci < 5000; ++ci) rows.push_back({{"CI", ci}, {"SiteName", CString('x', 40)}});
  application->network().PutRows("tbl_Cell", rows);
  g_project->modified = 1;

  struct rlimit limit;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const auto previous_handler = signal(SIGXFSZ, SIG_IGN);
  const struct rlimit full_disk = {before.size() + 4096, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full_disk), 0);
  EXPECT_THROW(application->project().Save(), FileError) << "no room";
  setrlimit(RLIMIT_FSIZE, &limit);
  signal(SIGXFSZ, previous_handler);

  ASSERT_EQ(chmod(folder_.native().c_str(), 0555), 0);
  const uid_t user = geteuid();
  if (user == 0) {
    ASSERT_EQ(seteuid(65534), 0);  // permissions do not hold root back
  }
  EXPECT_THROW(application->project().Save(), FileError) << "a folder that may not be written";
  ASSERT_EQ(seteuid(user), 0);
  ASSERT_EQ(chmod(folder_.native().c_str(), 0755), 0);

  EXPECT_EQ(g_project->modified, 1);
  EXPECT_EQ(ReadWholeText(path_), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.native()), {}), 2) << "project and lock";
  application->project().Save();
  EXPECT_GT(ReadWholeText(path_).size(), before.size() + 4096);
}

// What one process does with a project while another, or this one twice, has it open.
class ProjectLockTest : public ProjectTest {
 protected:
  using Mode = ProjectAccess::Mode;
  std::unique_ptr<StoredProject> Open(Mode mode) { return StoredProject::Open(catalogue_, path_, {.mode = mode}); }
  bool HasLockFile() const { return FileExists(path_ + ".lock"); }

  const IECatalogue catalogue_ = SmallCatalogue();
};

TEST_F(ProjectLockTest, OneHoldsItOthersReadWhatWasSavedLast) {
  SaveProjectWithOneLog();
  EXPECT_FALSE(HasLockFile());
  const auto holder = Open(Mode::kWrite);
  holder->AddProjectLogFile(Log("/logs/b.log", 3));
  EXPECT_THROW(Open(Mode::kWrite), ProjectInUse);
  const auto reader = Open(Mode::kRead);
  EXPECT_EQ(1u, reader->Content().logs.size());
  EXPECT_THROW(reader->Save(), FileError);
  const auto desktop = Open(Mode::kWriteIfPossible);
  EXPECT_NE(std::string::npos, desktop->ReadOnlyReason().find(std::to_string(getpid()))) << desktop->ReadOnlyReason();
  EXPECT_THROW(desktop->Save(), FileError);
  holder->Save();
  EXPECT_EQ(2u, Open(Mode::kRead)->Content().logs.size());

  // Under another name it is somebody's own again; the way back is closed as long as the name is held.
  const CString other = folder_.File("other.qlp");
  desktop->SaveAs(other);
  EXPECT_EQ("", desktop->ReadOnlyReason());
  EXPECT_THROW(desktop->SaveAs(path_), ProjectInUse);
  EXPECT_THROW(StoredProject::Open(catalogue_, other, {}), ProjectInUse);
}

TEST_F(ProjectLockTest, WhoWaitsGetsItOnceItIsReleased) {
  auto holder = Open(Mode::kWrite);
  std::filesystem::create_symlink("测试.qlp", folder_.native() / "link.qlp");
  int asked = 0;
  const auto wait = [&](const ProjectInUse&) {
    if (++asked == 3) holder.reset();
  };
  const auto next = StoredProject::Open(catalogue_, folder_.File("link.qlp"), {.mode = Mode::kWrite, .wait = wait});
  EXPECT_EQ(3, asked);
  next->Save();
  EXPECT_TRUE(FileExists(path_)) << "what the link stands for";
}

TEST_F(ProjectLockTest, ItDiesWithItsProcess) {
  const pid_t child = fork();
  if (child == 0) {
    Open(Mode::kWrite).release();
    _exit(0);
  }
  ASSERT_EQ(child, waitpid(child, nullptr, 0));
  EXPECT_TRUE(HasLockFile());
  Open(Mode::kWrite)->Save();
  EXPECT_FALSE(HasLockFile());
}

TEST_F(ProjectLockTest, AFileThatIsNotTheOneThatWasReadStays) {
  SaveProjectWithOneLog();
  const std::string saved = ReadWholeText(path_);
  const auto project = Open(Mode::kWrite);
  std::string foreign = saved;
  foreign.back() = static_cast<char>(foreign.back() ^ 1);
  WriteWholeFile(path_, foreign);
  EXPECT_THROW(project->Save(), FileError);
  EXPECT_THROW(project->SaveAs(path_), FileError);
  EXPECT_EQ(foreign, ReadWholeText(path_));
  RemoveFile(path_);
  EXPECT_THROW(project->Save(), FileError);
  WriteWholeFile(path_, saved);
  project->Save();
  project->AddProjectLogFile(Log("/logs/b.log", 3));
  project->Save();
  EXPECT_EQ(2u, Open(Mode::kRead)->Content().logs.size());
}

TEST_F(ProjectLockTest, WhatCannotBeReplacedIsKnownWhenItIsOpened) {
  SaveProjectWithOneLog();
  std::filesystem::permissions(folder_.native() / "测试.qlp", std::filesystem::perms{0444});
  EXPECT_THROW(Open(Mode::kWrite), FileError);
  EXPECT_NE("", Open(Mode::kWriteIfPossible)->ReadOnlyReason());
  EXPECT_FALSE(HasLockFile());
}

TEST_F(ProjectTest, ALogImportedAgainWithEverythingLosesItsSelection) {
  const auto application = Start();
  CImportSetting batch;
  for (const char* const path : {"/logs/a.log", "/logs/b.log"}) batch.AddLogFile(path);
  batch.SetParamSetting({{"CI", {"CI"}}});
  g_project->AddImpSetting(batch);
  g_systemConfig->SetRecentLogFile("/logs/a.log");
  EXPECT_TRUE(g_project->GetImpSettingByLogFile("/logs/a.log").empty());
  EXPECT_FALSE(g_project->GetImpSettingByLogFile("/logs/b.log").empty());
}

CImportSetting Batch(const std::vector<CString>& paths, const CString& ie) {
  CImportSetting batch;
  for (const CString& path : paths) batch.AddLogFile(path);
  batch.SetParamSetting({{ie, {ie, -100, 0}}});
  return batch;
}

TEST_F(ProjectTest, ItIsChangedWhenItsContentIs) {
  SaveProjectWithOneLog();
  const auto application = Start();
  StoredProject& project = application->project();
  EXPECT_FALSE(project.HasChanged());
  g_project->AddProjectLogFile(Log("/logs/a.log", 3));
  g_project->modified = 1;
  EXPECT_FALSE(project.HasChanged());
  g_project->AddProjectLogFile(Log("/logs/a.log", 4));
  EXPECT_TRUE(project.HasChanged());
  project.Save();
  EXPECT_FALSE(project.HasChanged());
  const auto cell = [](std::int64_t ci) { return NetworkRow{{"CI", ci}, {"CellName", CString("a")}}; };
  EXPECT_THROW(application->network().PutRows("tbl_Cell", {cell(1), {{"CI", std::int64_t{2}}, {"", 1.0}}}), Error);
  EXPECT_FALSE(project.HasChanged());
  application->network().PutRows("tbl_Cell", {cell(1)});
  EXPECT_TRUE(project.HasChanged());
}

TEST_F(ProjectTest, WhatIsPutBackStandsWhereItStoodWithItsSettings) {
  const auto application = Start();
  StoredProject& project = application->project();
  for (const char* path : {"a", "b", "c", "d"}) {
    g_project->AddProjectLogFile(Log(path, 1));
    struct_BinningSetting binning;
    binning.grid_width_m = path[0];
    g_project->AddBinningSetting(path, binning);
  }
  g_project->AddImpSetting(Batch({"a", "b"}, "CI"));
  g_project->AddImpSetting(Batch({"c", "d"}, "LAC"));
  for (const char* name : {"s", "t"}) {
    CProjectTxtFile text;
    text.SetTxtName(name);
    g_project->AddTxtFile(text);
  }
  project.SaveAs(path_);
  const ProjectContent before = project.Content();
  for (const char* path : {"a", "b", "c"}) g_project->RemoveLogFile(path);
  g_project->RemoveTxtFile("s");
  project.PutBack(before, [](const CString& path) { return path != "b"; });
  std::string order;
  for (const CProjectLogfile& log : project.Content().logs) order += log.GetLogFilePath().str();
  EXPECT_EQ("acd", order);
  EXPECT_EQ(1u, g_project->GetImpSettingByLogFile("a").size());
  EXPECT_EQ(0u, g_project->GetImpSettingByLogFile("b").size());
  struct_BinningSetting binning;
  g_project->GetBinningSetting("c", binning);
  EXPECT_EQ('c', binning.grid_width_m);
  EXPECT_TRUE(project.HasChanged());
  project.PutBack(before, [](const CString&) { return true; });
  EXPECT_FALSE(project.HasChanged());
}

TEST_F(ProjectTest, AFileThatIsNoWholeProjectIsRefusedWithItsReason) {
  SaveProjectWithOneLog();
  const std::string whole = ReadWholeText(path_);
  const auto with = [&](std::size_t at, const std::string& bytes) {
    return std::string(whole).replace(at, bytes.size(), bytes);
  };
  struct Case {
    std::string content;
    const char* reason;
  };
  const Case cases[] = {
      {"", "is not a project file"},
      {"just a text, longer than the header of a database file would be: 0123456789012345678901234567890123456789",
       "is not a project file"},
      {with(68, std::string(4, '\0')), "another program"},
      {with(60, std::string("\0\0\0\x63", 4)), "newer version of this program (schema 99"},
      {whole.substr(0, 100), "was cut"},
      {whole.substr(0, whole.size() - 1), "was cut"},
      {with(100, std::string(300, '\x5A')), "damaged"},
      {with(4096, std::string(200, '\xA5')), "damaged"},
  };
  for (const Case& c : cases) {
    WriteWholeFile(path_, c.content);
    try {
      Start();
      ADD_FAILURE() << "accepted: " << c.reason;
    } catch (const FileError& error) {
      EXPECT_NE(std::string(error.what()).find(c.reason), std::string::npos) << error.what();
    }
    EXPECT_EQ(g_project, nullptr);
    EXPECT_EQ(ReadWholeText(path_), c.content);
  }
}

TEST_F(ProjectTest, AnyDamageIsAnErrorOrHarmless) {
  SaveProjectWithOneLog();
  const std::string whole = ReadWholeText(path_);
  for (std::size_t at = 0; at < whole.size(); at += at < 120 ? 1 : 397) {
    for (const char flip : {'\x01', '\xFF'}) {
      std::string damaged = whole;
      damaged[at] = static_cast<char>(damaged[at] ^ flip);
      std::ofstream(folder_.native() / "测试.qlp", std::ios::binary) << damaged;
      try {
        const auto application = Start();
        EXPECT_LE(g_project->GetNTLog()->GetProjectLogFiles().size(), 1u);
      } catch (const FileError& error) {
        EXPECT_NE(std::string(error.what()), "");
      }
    }
  }
}

TEST_F(ProjectTest, AnApplicationInstallsItsObjectsAndTakesThemAway) {
  for (int round = 0; round < 2; ++round) {
    const auto application = Start();
    EXPECT_THROW(Start(), std::logic_error);
    EXPECT_EQ(g_sysProject->GetIEID("PCCPCH_RSCP"), 500);
    EXPECT_EQ(g_project->GetIEID("pccpch_rscp"), -255);
    EXPECT_EQ(g_project->GetIEName(500), "PCCPCH_RSCP");
    EXPECT_EQ(g_project->GetIEName(501), "");
    EXPECT_EQ(g_project->GetIEUnitByIEName("PCCPCH_RSCP"), "dBm");
    EXPECT_EQ(g_sysProject->GetEventName(7), "Handover");
    EXPECT_EQ(g_memDataType->GetType(500), kFieldShort);
    double maximum = 1, minimum = 1;
    EXPECT_FALSE(g_project->GetIEValueRangeByName("RecordTime", maximum, minimum));
    EXPECT_EQ(maximum, 1);
    EXPECT_TRUE(g_project->GetIEValueRangeByName("PCCPCH_RSCP", maximum, minimum));
    EXPECT_EQ(std::make_pair(maximum, minimum), std::make_pair(-25.0, -116.0));
    IStreamManager* const streams = CStreamManagerCreator::CreateStreamManager();
    EXPECT_EQ(streams->FindLogfile("a.log"), nullptr) << "left from the round before";
    streams->MakeLogfile("a.log");
  }
  EXPECT_EQ(g_project, nullptr);
  EXPECT_EQ(g_sysProject, nullptr);
  EXPECT_FALSE(CFactory::Instance().CreateDBMapper()->TableExists("tbl_Cell"));
}

TEST_F(ProjectTest, AProjectLivesInTheFolderOfItsFileATemporaryOneInThatOfTheLog) {
  const CString folder = NativePathToGbk(folder_.native().native());
  {
    const auto application = Start();
    application->UseFolderOfLog("/elsewhere/a.log");
    EXPECT_EQ(g_project->GetPath(), folder);
  }
  HostApplication temporary(SmallCatalogue(), {});
  EXPECT_EQ(g_project->GetPath(), NativePathToGbk(std::filesystem::current_path().native()));
  temporary.UseFolderOfLog(folder_.File("sub\\..\\a.log"));
  EXPECT_EQ(g_project->GetPath(), folder);
  EXPECT_THROW(temporary.project().Save(), std::logic_error);
}

TEST_F(ProjectTest, RecentLogsOfTheUserOutliveTheProject) {
  const HostOptions options{{}, {}, folder_.File("recent")};
  {
    const HostApplication application(SmallCatalogue(), options);
    for (int number = 1; number <= 30; ++number) g_systemConfig->SetRecentLogFile(Format("/logs/%d.log", number));
    g_systemConfig->SetRecentLogFile("/logs/29.log");
  }
  const HostApplication application(SmallCatalogue(), options);
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(0), "/logs/29.log");
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(1), "/logs/30.log");
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(2), "/logs/28.log");
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(19), "/logs/11.log");
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(20), "");
  EXPECT_EQ(g_systemConfig->GetRecentLogFile(-1), "");
}

TEST(BinningSetting, ItsDescriptionRefersToItself) {
  struct_BinningSetting original;
  original.binning_time_s = 5;
  original.ue_parameter = "PBCH_RSRP";
  struct_BinningSetting copy(original), assigned;
  assigned = original;
  for (struct_BinningSetting* setting : {&original, &copy, &assigned}) {
    const auto& entries = setting->description.Entries();
    ASSERT_EQ(entries.size(), 8u);
    EXPECT_EQ(entries[0].name, "BiningType");
    EXPECT_EQ(entries[2].name, "BinningTime");
    EXPECT_EQ(std::get<std::int32_t*>(entries[2].field), &setting->binning_time_s);
    EXPECT_EQ(*std::get<std::int32_t*>(entries[2].field), 5);
    EXPECT_EQ(std::get<CString*>(entries[6].field), &setting->ue_parameter);
    EXPECT_EQ(*std::get<CString*>(entries[6].field), "PBCH_RSRP");
  }
}

}  // namespace
}  // namespace loom
