#include "host/workbook/workbook_server.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/workbook/spreadsheet_model.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr const char* kProgId = "Excel.Application";
constexpr const char* kImageName = "EXCEL.EXE";
constexpr CLSID kClassId = {0x1D, 0x6B, 0x3A, 0x52, 0x8E, 0x40, 0x4C, 0x17,
                            0x9B, 0x05, 0x6E, 0x2F, 0x71, 0xC4, 0x0A, 0x93};
constexpr std::size_t kFirstSheets = 3;

bool HasDisplay() { return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr; }

// Leaves the file to the program that the desktop has for it.
void OpenOnDesktop(const CString& path) {
  if (!HasDisplay()) return;
  // The shell leaves the program to itself and ends at once.
  std::string program = "sh";
  std::string option = "-c";
  std::string command = "xdg-open \"$1\" >/dev/null 2>&1 &";
  std::string file = GbkPathToNative(path);
  char* const arguments[] = {program.data(), option.data(), command.data(), program.data(), file.data(), nullptr};
  pid_t child = 0;
  if (const int error = posix_spawnp(&child, program.c_str(), nullptr, nullptr, arguments, environ)) {
    Log(LogLevel::kWarning, "the workbook cannot be shown: " + std::system_category().message(error));
    return;
  }
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

WorkbookServer::WorkbookServer(const CString& folder) : folder_(folder) {
  class_ = std::make_unique<RegisteredClass>(
      AutomationClass{kProgId, kClassId, [this] { return Start(); }, [this] { return Running(); }});
}

WorkbookServer::~WorkbookServer() {
  class_.reset();
  for (const auto& started : started_) {
    if (const auto running = started.lock()) running->End();
  }
}

CString WorkbookServer::TargetOfNext() const {
  if (next_path_) return *next_path_;
  for (int number = 1;; ++number) {
    const CString path = WithSeparator(folder_) + Format("Book%d.xlsx", number);
    if (!FileExists(path)) return path;
  }
}

CString WorkbookServer::TakeTarget() {
  const CString path = TargetOfNext();
  next_path_.reset();
  return path;
}

ComPtr<IUnknown> WorkbookServer::Start() {
  const CString folder = FolderOf(TargetOfNext());
  if (!folder.IsEmpty() && !FolderExists(folder)) throw FileError(folder, 0, "there is no such folder for workbooks");
  const auto application = std::make_shared<SpreadsheetApplication>(*this);
  std::erase_if(started_, [](const auto& started) { return started.expired(); });
  started_.push_back(application);
  return MakeApplicationObject(application);
}

ComPtr<IUnknown> WorkbookServer::Running() const {
  for (const auto& started : started_) {
    if (const auto application = started.lock(); application && application->Runs())
      return MakeApplicationObject(application);
  }
  return nullptr;
}

void WorkbookServer::Saved(const CString& path, std::shared_ptr<SpreadsheetApplication> application) {
  saved_.push_back(path);
  if (std::find(visible_.begin(), visible_.end(), application) == visible_.end()) visible_.push_back(application);
  if (open_saved_) OpenOnDesktop(path);
}

SpreadsheetApplication::SpreadsheetApplication(WorkbookServer& server)
    : server_(&server), process_(std::make_unique<LocalProcess>(kImageName, [this](int) { End(); })) {}

void SpreadsheetApplication::CheckRuns() const {
  if (!Runs()) throw AutomationError("the spreadsheet program has ended");
}

void SpreadsheetApplication::End() {
  const auto self = shared_from_this();
  process_.reset();
  active_.reset();
  if (server_ != nullptr) std::erase(server_->visible_, self);
  server_ = nullptr;
}

std::shared_ptr<WorkbookWriter> SpreadsheetApplication::AddWorkbook() {
  CheckRuns();
  active_ = std::make_shared<WorkbookWriter>(server_->TakeTarget());
  active_is_saved_ = false;
  for (std::size_t at = 0; at < kFirstSheets; ++at) active_->AddSheet(at);
  return active_;
}

const std::shared_ptr<WorkbookWriter>& SpreadsheetApplication::ActiveWorkbook() const {
  CheckRuns();
  if (!active_) throw AutomationError("no workbook is open");
  return active_;
}

void SpreadsheetApplication::SetVisible(bool visible) {
  CheckRuns();
  if (visible && active_ && !active_is_saved_) {
    active_->Save();
    active_is_saved_ = true;
    server_->Saved(active_->target(), shared_from_this());
  }
  visible_ = visible;
}

}  // namespace loom
