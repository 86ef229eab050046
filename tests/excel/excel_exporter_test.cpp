#include "excel/excel_exporter.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "host/application.h"
#include "host/workbook/workbook_server.h"
#include "platform/automation/process.h"
#include "platform/clock.h"
#include "platform/ui/message_box.h"
#include "tests/excel/text_subject.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/scripted_user_gtest.h"
#include "tests/support/temp_folder.h"
#include "tests/support/workbook_reading.h"

namespace loom::testing {
namespace {

using nlohmann::json;
using Rows = std::vector<MemorySubject::Row>;

const CString kTablesFailed = "导出数据失败，请减少导出数据量再重试，若问题仍然存在，建议重启软件！"_gbk;

COleSafeArray TableOf(const std::vector<std::vector<CString>>& rows) {
  COleSafeArray table;
  table.Create(VT_VARIANT, std::vector<std::uint32_t>{static_cast<std::uint32_t>(rows.size()),
                                                      static_cast<std::uint32_t>(rows.front().size())});
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t at = 0; at < rows[row].size(); ++at)
      table.Row(static_cast<std::int32_t>(row))[at] = VARIANT(rows[row][at]);
  }
  return table;
}

// A header and so many records of one column.
COleSafeArray NumberedTable(int records) {
  std::vector<std::vector<CString>> rows{{"Number"}};
  for (int record = 1; record <= records; ++record) rows.push_back({CString(std::to_string(record))});
  return TableOf(rows);
}

std::vector<std::string> NamesIn(const json& book) {
  std::vector<std::string> names;
  for (const json& sheet : book["sheets"]) names.push_back(sheet["name"]);
  return names;
}

int SpreadsheetProcesses() {
  int count = 0;
  ProcessSnapshot snapshot;
  ProcessEntry entry;
  for (bool more = snapshot.First(entry); more; more = snapshot.Next(entry))
    count += entry.image_name.CompareNoCase("excel.exe") == 0 ? 1 : 0;
  return count;
}

class ExcelExporterTest : public ::testing::Test {
 protected:
  ExcelExporterTest() : host_(IECatalogue(), HostOptions{}) { host_.workbooks().UseFolder(folder_.Folder()); }

  json Saved() {
    EXPECT_FALSE(host_.workbooks().SavedPaths().empty());
    return ReadWorkbook(host_.workbooks().SavedPaths().back());
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_.native()), {}));
  }
  int ExportTables(std::vector<COleSafeArray> tables, std::vector<CString> names) {
    return exporter_.Export("", tables, names);
  }
  int ExportOne(ISubject& subject, std::vector<CString> columns) { return exporter_.Export("", &subject, columns); }
  void ExpectASingleExportWorks() {
    MemorySubject subject(Rows{{{"A", "1"}}});
    EXPECT_EQ(1, ExportOne(subject, {"A"}));
    EXPECT_EQ((json{{"A1", "A"}, {"A2", 1}}), Saved()["sheets"][0]["cells"]);
    EXPECT_EQ("导出数据", NamesIn(Saved())[0]);
  }

  TempFolder folder_;
  HostApplication host_;
  ScriptedUser user_;
  CExcelExporter exporter_;
};

TEST_F(ExcelExporterTest, OneSubjectBecomesTheFirstSheetOfANewWorkbook) {
  const double noon_s = static_cast<double>(SecondsOf({.day = {2010, 3, 5}, .hour = 12})) + 0.25;
  const CString noon(std::to_string(noon_s));
  MemorySubject subject(Rows{{{"RecordTime", noon}, {"RSCP", "-255"}, {"Event", "切换"_gbk}},
                             {{"RecordTime", "-255.0"}, {"RSCP", "-255.0"}, {"Event", ""}},
                             {{"RecordTime", "-255"}, {"RSCP", "-95.25"}, {"Event", "x"}},
                             {{"RecordTime", ""}, {"RSCP", " -255"}, {"Event", "y"}}});
  EXPECT_EQ(1, ExportOne(subject, {"RecordTime", "RSCP", "Event"}));
  const json book = Saved();
  EXPECT_EQ((std::vector<std::string>{"导出数据", "Sheet2", "Sheet3"}), NamesIn(book));
  EXPECT_EQ(0, book["active"]);
  const json& sheet = book["sheets"][0];
  EXPECT_EQ((json{{"A1", "RecordTime"},
                  {"B1", "RSCP"},
                  {"C1", "Event"},
                  {"A2", 40242.50000289352},
                  {"C2", "切换"},
                  {"A3", -255},
                  {"B3", -255},
                  {"B4", -95.25},
                  {"C4", "x"},
                  {"B5", " -255"},
                  {"C5", "y"}}),
            sheet["cells"]);
  EXPECT_EQ("center", sheet["align"]);
  EXPECT_EQ((json{{"1:1", 24.7}, {"2:2", 7.7}, {"3:3", 6.7}}), sheet["widths"]);
  for (const json& any : book["sheets"]) EXPECT_EQ("B2", any["pane"]);
  EXPECT_TRUE(book["sheets"][1]["cells"].empty());
}

TEST_F(ExcelExporterTest, SubjectsAreReadInTheOrderOfTheirInterface) {
  const Rows two{{{"A", "1"}, {"B", "2"}}, {{"A", "3"}, {"B", "4"}}};
  for (const std::int32_t kind : {0, 1, 2, 3, 4, 5, 6, 7}) {
    MemorySubject memory(two, kind);
    RecordsetSubject recordset(two, kind);
    const bool is_recordset = kind == 2 || kind == 4 || kind == 6;
    COleSafeArray table;
    std::vector<CString> columns{"A", "B"};
    ISubject* right = is_recordset ? static_cast<ISubject*>(&recordset) : &memory;
    ISubject* wrong = is_recordset ? static_cast<ISubject*>(&memory) : &recordset;
    exporter_.BuildTable(right, table, columns);
    EXPECT_EQ("nbfvvmvvmne", is_recordset ? recordset.calls() : memory.calls()) << kind;
    EXPECT_EQ("4", table.Row(2)[1].Text());
    EXPECT_THROW(exporter_.BuildTable(wrong, table, columns), Error) << kind;
  }
  MemorySubject empty(Rows{});
  EXPECT_EQ(1, ExportOne(empty, {"A", "B"}));
  EXPECT_EQ("nn", empty.calls());
  EXPECT_EQ((json{{"A1", "A"}, {"B1", "B"}}), Saved()["sheets"][0]["cells"]);
}

TEST_F(ExcelExporterTest, A65535thRecordOpensASecondSheet) {
  struct Case {
    int records;
    std::vector<std::string> names;
    std::vector<std::size_t> cells;
  };
  const Case cases[] = {
      {65534, {"导出数据", "Sheet2", "Sheet3"}, {65535, 0, 0}},
      {65535, {"导出数据_1", "导出数据_2", "Sheet2", "Sheet3"}, {65535, 2, 0, 0}},
      {131069, {"导出数据_1", "导出数据_2", "导出数据_3", "Sheet2", "Sheet3"}, {65535, 65535, 2, 0, 0}},
  };
  for (const Case& split : cases) {
    MemorySubject subject = MemorySubject::Numbered("Number", split.records);
    EXPECT_EQ(1, ExportOne(subject, {"Number"}));
    const json book = Saved();
    EXPECT_EQ(split.names, NamesIn(book));
    for (std::size_t at = 0; at < split.cells.size(); ++at) {
      const json& sheet = book["sheets"][at];
      ASSERT_EQ(split.cells[at], sheet["cells"].size()) << split.records << ' ' << at;
      if (sheet["cells"].empty()) continue;
      const std::size_t last = sheet["cells"].size();
      EXPECT_EQ("Number", sheet["cells"]["A1"]);
      EXPECT_EQ(at * 65534 + 1, sheet["cells"]["A2"]);
      EXPECT_EQ(at * 65534 + last - 1, sheet["cells"]["A" + std::to_string(last)]);
      EXPECT_EQ(last, sheet["rows"].size());
    }
  }
}

TEST_F(ExcelExporterTest, TablesHaveUpTo702Columns) {
  const std::pair<int, const char*> columns[] = {{1, "A1"},   {26, "Z1"},  {27, "AA1"}, {28, "AB1"},
                                                 {52, "AZ1"}, {53, "BA1"}, {702, "ZZ1"}};
  for (const auto& [count, last] : columns) {
    std::vector<CString> header;
    for (int at = 1; at <= count; ++at) header.push_back(CString(std::to_string(at)));
    ExportTables({TableOf({header})}, {"t"});
    const json cells = Saved()["sheets"][0]["cells"];
    EXPECT_EQ(static_cast<std::size_t>(count), cells.size());
    EXPECT_EQ(std::to_string(count), cells[last]);
  }
  const std::size_t files = FilesInFolder();
  const std::vector<CString> too_many(703, "x");
  user_.ExpectMessage(kTablesFailed, MessageIcon::kNone);
  EXPECT_EQ(0, ExportTables({TableOf({too_many})}, {"t"}));
  MemorySubject subject(Rows{});
  EXPECT_THROW(ExportOne(subject, too_many), AutomationError);
  EXPECT_EQ(files, FilesInFolder());
}

TEST_F(ExcelExporterTest, SeveralSubjectsBecomeConsecutiveSheets) {
  MemorySubject first(Rows{{{"A", "1"}}});
  RecordsetSubject second(Rows{{{"B", "2"}, {"C", "-255"}}}, 4);
  MemorySubject third = MemorySubject::Numbered("N", 65535);
  MemorySubject fourth(Rows{{{"D", "4"}}});
  std::vector<CString> names{"甲"_gbk, "b", "c", "d"};
  std::vector<std::vector<CString>> columns{{"A"}, {"B", "C"}, {"N"}, {"D"}};
  EXPECT_EQ(0, exporter_.Export("", std::vector<ISubject*>{&first, &second, &third, &fourth}, names, columns));
  const json book = Saved();
  std::vector<std::string> written = NamesIn(book);
  EXPECT_EQ(6u, written.size());
  written.resize(5);
  EXPECT_EQ((std::vector<std::string>{"甲", "b", "c_1", "c_2", "d"}), written);
  EXPECT_EQ((json{{"A1", "A"}, {"A2", 1}}), book["sheets"][0]["cells"]);
  EXPECT_EQ((json{{"A1", "B"}, {"B1", "C"}, {"A2", 2}}), book["sheets"][1]["cells"]);
  EXPECT_EQ((json{{"A1", "N"}, {"A2", 65535}}), book["sheets"][3]["cells"]);
  EXPECT_EQ((json{{"A1", "D"}, {"A2", 4}}), book["sheets"][4]["cells"]);
}

TEST_F(ExcelExporterTest, FromTheThirdSheetOnTheNextOneIsMadeInAdvance) {
  const COleSafeArray table = TableOf({{"A", "B"}, {"1", "2"}});
  const std::pair<std::size_t, std::size_t> sheets_of_tables[] = {{1, 3}, {2, 3}, {3, 4}, {4, 5}, {6, 7}};
  for (const auto& [tables, sheets] : sheets_of_tables) {
    std::vector<CString> names;
    for (std::size_t at = 0; at < tables; ++at) names.push_back(Format("t%d", at));
    EXPECT_EQ(0, ExportTables(std::vector<COleSafeArray>(tables, table), names));
    const json book = Saved();
    ASSERT_EQ(sheets, book["sheets"].size());
    for (std::size_t at = 0; at < sheets; ++at)
      EXPECT_EQ(at < tables ? 4u : 0u, book["sheets"][at]["cells"].size()) << tables << ' ' << at;
    EXPECT_EQ("t0", NamesIn(book)[0]);
    EXPECT_EQ("t" + std::to_string(tables - 1), NamesIn(book)[tables - 1]);
  }
}

TEST_F(ExcelExporterTest, TheServerThatRunsIsUsedAndOneThatDoesNotIsStarted) {
  EXPECT_EQ(0, SpreadsheetProcesses());
  _Application started;
  int created = -1;
  EXPECT_EQ(1, exporter_.GetExcelApplication(started, created));
  EXPECT_EQ(1, created);
  EXPECT_EQ(1, SpreadsheetProcesses());
  _Application running;
  EXPECT_EQ(1, exporter_.GetExcelApplication(running, created));
  EXPECT_EQ(0, created);
  started.ReleaseDispatch();
  EXPECT_EQ(1, SpreadsheetProcesses());
  running.ReleaseDispatch();
  EXPECT_EQ(0, SpreadsheetProcesses());
  // Once it is visible it is the user's and stays.
  ExpectASingleExportWorks();
  EXPECT_EQ(1, SpreadsheetProcesses());
  ExpectASingleExportWorks();
  EXPECT_EQ(1, SpreadsheetProcesses());
  EXPECT_EQ(2u, FilesInFolder());
}

TEST_F(ExcelExporterTest, AFailedExportOfTablesEndsTheServerThatItStarted) {
  user_.ExpectMessage(kTablesFailed, MessageIcon::kNone);
  EXPECT_EQ(0, ExportTables({NumberedTable(3), NumberedTable(3)}, {"only one name"}));
  EXPECT_EQ(0, SpreadsheetProcesses());
  EXPECT_EQ(0u, FilesInFolder());
  ExpectASingleExportWorks();
}

TEST_F(ExcelExporterTest, AFailedExportOfTablesLeavesTheServerThatRan) {
  _Application users;
  int created = 0;
  ASSERT_EQ(1, exporter_.GetExcelApplication(users, created));
  user_.ExpectMessage(kTablesFailed, MessageIcon::kNone);
  EXPECT_EQ(0, ExportTables({NumberedTable(3), COleSafeArray()}, {"a", "b"}));
  EXPECT_EQ(1, SpreadsheetProcesses());
  EXPECT_EQ(0u, FilesInFolder());
  EXPECT_EQ(3, users.GetWorksheets().GetCount());
  ExpectASingleExportWorks();
  EXPECT_EQ(1u, FilesInFolder());
}

TEST_F(ExcelExporterTest, ASubjectThatFailsHalfWayLeavesNothing) {
  MemorySubject whole(Rows{{{"A", "1"}}});
  MemorySubject failing(Rows{{{"A", "1"}}, {}});
  std::vector<CString> names{"a", "b"};
  std::vector<std::vector<CString>> columns{{"A"}, {"A"}};
  EXPECT_THROW(exporter_.Export("", std::vector<ISubject*>{&whole, &failing}, names, columns), Error);
  EXPECT_THROW(ExportOne(failing, {"A"}), Error);
  EXPECT_EQ(0, SpreadsheetProcesses());
  EXPECT_EQ(0u, FilesInFolder());
  ExpectASingleExportWorks();
}

TEST_F(ExcelExporterTest, AServerThatCannotStartIsToldByMessages) {
  host_.workbooks().UseFolder(folder_.File("missing/"));
  const CString cannot_start = "不能打开Excel,请检查是否安装正确！"_gbk;
  MemorySubject subject(Rows{{{"A", "1"}}});
  std::vector<CString> names{"a"};
  std::vector<std::vector<CString>> columns{{"A"}};
  user_.ExpectMessage(cannot_start).ExpectMessage(cannot_start).ExpectMessage(cannot_start);
  EXPECT_EQ(0, exporter_.Export("", std::vector<ISubject*>{&subject}, names, columns));
  EXPECT_EQ(0, ExportOne(subject, {"A"}));
  EXPECT_EQ(0, ExportTables({NumberedTable(1)}, {"a"}));
  EXPECT_EQ(0, SpreadsheetProcesses());
  host_.workbooks().UseFolder(folder_.Folder());
  ExpectASingleExportWorks();
}

TEST_F(ExcelExporterTest, ADiskThatFillsLeavesNoFile) {
  const COleSafeArray large = NumberedTable(60000);
  MemorySubject subject = MemorySubject::Numbered("N", 60000);
  {
    const FileSizeLimit limit(20000);
    user_.ExpectMessage(kTablesFailed, MessageIcon::kNone);
    EXPECT_EQ(0, ExportTables({large}, {"a"}));
    EXPECT_THROW(ExportOne(subject, {"N"}), FileError);
  }
  EXPECT_EQ(0u, FilesInFolder());
  EXPECT_EQ(0, SpreadsheetProcesses());
  ExpectASingleExportWorks();
}

// A file that is there stays as it is until the new one is complete.
TEST_F(ExcelExporterTest, AnOlderWorkbookIsReplacedAsAWhole) {
  const CString path = folder_.File("report.xlsx");
  WriteWholeFile(path, "old");
  host_.workbooks().SaveNextAs(path);
  MemorySubject failing(Rows{{{"B", "1"}}});
  std::vector<CString> names{"a"};
  std::vector<std::vector<CString>> columns{{"A"}};
  EXPECT_THROW(exporter_.Export("", std::vector<ISubject*>{&failing}, names, columns), Error);
  EXPECT_EQ("old", ReadWholeText(path));
  host_.workbooks().SaveNextAs(path);
  ExpectASingleExportWorks();
  EXPECT_EQ(path, host_.workbooks().SavedPaths().back());
  EXPECT_EQ(1u, FilesInFolder());
}

// A server in a process of its own, whose objects refuse every call.
class RefusingServer {
 public:
  RefusingServer()
      : class_({std::string(kExcelProgId), {1}, [this] { return Start(); }, [] { return ComPtr<IUnknown>(); }}) {
    std::filesystem::copy_file("/bin/sleep", program_.native() / "EXCEL.EXE");
  }
  ~RefusingServer() {
    if (child_ > 0) kill(child_, SIGKILL);
  }
  // How the process ended: the signal, 0 while it runs.
  int EndedBy() {
    int status = 0;
    if (child_ <= 0 || waitpid(child_, &status, 0) != child_) return 0;
    child_ = -1;
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
  }

 private:
  class Refusing : public IDispatch {
    VARIANT Invoke(std::string_view, InvokeKind, std::span<const VARIANT>) override {
      throw AutomationError("refused");
    }
  };
  ComPtr<IUnknown> Start() {
    const std::string path = (program_.native() / "EXCEL.EXE").string();
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0) return nullptr;
    child_ = fork();
    if (child_ == 0) {
      execl(path.c_str(), "EXCEL.EXE", "60", nullptr);
      _exit(127);
    }
    close(ready[1]);
    char end;
    while (read(ready[0], &end, 1) > 0) continue;  // until the program has replaced the child
    close(ready[0]);
    return new Refusing;
  }

  TempFolder program_;
  RegisteredClass class_;
  pid_t child_ = -1;
};

TEST_F(ExcelExporterTest, AProcessThatWasStartedForTablesIsTerminated) {
  RefusingServer server;
  user_.ExpectMessage(kTablesFailed, MessageIcon::kNone);
  EXPECT_EQ(0, ExportTables({NumberedTable(1)}, {"a"}));
  EXPECT_EQ(SIGKILL, server.EndedBy());
}

TEST(ExcelWithoutServer, EachReasonHasItsMessage) {
  ScriptedUser user;
  CExcelExporter exporter;
  _Application application;
  int created = -1;
  user.ExpectMessage("不能打开Excel,请检查是否安装！"_gbk);
  EXPECT_EQ(0, exporter.GetExcelApplication(application, created));
  EXPECT_EQ(0, created);
  const RegisteredClass failing({std::string(kExcelProgId), {1}, {}, []() -> ComPtr<IUnknown> {
                                   throw AutomationError("the running object cannot be asked");
                                 }});
  user.ExpectMessage("获取Excel应用程序指针失败，请确认Excel已正确安装！"_gbk, MessageIcon::kError);
  EXPECT_EQ(0, exporter.GetExcelApplication(application, created));
}

TEST(ExcelWithoutServer, TheOtherOperationsDoNothing) {
  CExcelExporter exporter;
  MemorySubject subject(Rows{{{"A", "1"}}});
  EXPECT_EQ(0, exporter.Export("", &subject));
  EXPECT_EQ(0, exporter.Export());
  EXPECT_EQ("", subject.calls());
  EXPECT_EQ(kExporterExcel, exporter.exporter_type());
}

}  // namespace
}  // namespace loom::testing
