#include "platform/automation/process.h"

#include <dirent.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <system_error>

#include "platform/encoding.h"
#include "platform/log.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr std::uint32_t kFirstLocalId = 1u << 24;  // beyond the largest process id of the system, 2^22

struct LocalEntry {
  CString image_name;
  std::function<void(int)> terminate;
};

std::map<std::uint32_t, LocalEntry>& LocalProcesses() {
  static std::map<std::uint32_t, LocalEntry> processes;
  return processes;
}

// Nothing when the process has ended meanwhile.
std::optional<CString> ImageNameOf(const std::string& id) {
  std::ifstream file("/proc/" + id + "/comm");
  std::string name;
  if (!std::getline(file, name)) return std::nullopt;
  return NativePathToGbk(name);
}

bool ListSystemProcesses(std::vector<ProcessEntry>& entries) {
  const std::unique_ptr<DIR, decltype([](DIR* folder) { closedir(folder); })> folder(opendir("/proc"));
  if (!folder) return false;
  while (const dirent* file = readdir(folder.get())) {
    const auto id = ParseInt<std::uint32_t>(file->d_name);
    if (!id) continue;
    if (const auto name = ImageNameOf(file->d_name)) entries.push_back({*id, *name});
  }
  return true;
}

void LogRefusal(const std::string& what) { Log(LogLevel::kError, what + ": " + std::system_category().message(errno)); }

}  // namespace

ProcessSnapshot::ProcessSnapshot() {
  taken_ = ListSystemProcesses(entries_);
  for (const auto& [id, entry] : LocalProcesses()) entries_.push_back({id, entry.image_name});
}

bool ProcessSnapshot::First(ProcessEntry& entry) {
  next_ = 0;
  return Next(entry);
}

bool ProcessSnapshot::Next(ProcessEntry& entry) {
  if (!taken_ || next_ == entries_.size()) return false;
  entry = entries_[next_++];
  return true;
}

ProcessHandle ProcessHandle::OpenForTermination(std::uint32_t id) {
  ProcessHandle process;
  if (LocalProcesses().contains(id)) {
    process.local_id_ = id;
    return process;
  }
  process.handle_ = FileHandle(static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(id), 0)));
  if (!process.handle_.IsOpen()) LogRefusal("process " + std::to_string(id) + " cannot be opened");
  return process;
}

bool ProcessHandle::Terminate(int exit_code) {
  if (local_id_ != 0) {
    const auto found = LocalProcesses().find(local_id_);
    if (found == LocalProcesses().end()) return false;
    const auto terminate = found->second.terminate;  // the call takes the entry away
    terminate(exit_code);
    return true;
  }
  const bool done = syscall(SYS_pidfd_send_signal, handle_.get(), SIGKILL, nullptr, 0) == 0;
  if (!done) LogRefusal("a process cannot be ended");
  return done;
}

LocalProcess::LocalProcess(const CString& image_name, std::function<void(int)> terminate) {
  static std::uint32_t next_id = kFirstLocalId;
  id_ = next_id++;
  LocalProcesses().emplace(id_, LocalEntry{image_name, std::move(terminate)});
}

LocalProcess::~LocalProcess() { LocalProcesses().erase(id_); }

}  // namespace loom
