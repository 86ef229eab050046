#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/cstring.h"
#include "platform/file.h"

// Processes by id and image name: those of the system, and servers that run inside this process.
namespace loom {

struct ProcessEntry {
  std::uint32_t id = 0;
  CString image_name;  // as the system's process table has it; at most 15 bytes
};

// The processes at one moment.
class ProcessSnapshot {
 public:
  ProcessSnapshot();
  bool IsTaken() const { return taken_; }
  // Each false when there is no such entry, the entry untouched.
  bool First(ProcessEntry& entry);
  bool Next(ProcessEntry& entry);

 private:
  bool taken_ = false;
  std::vector<ProcessEntry> entries_;
  std::size_t next_ = 0;
};

// An open process; the id cannot come to mean another process meanwhile.
class ProcessHandle {
 public:
  static ProcessHandle OpenForTermination(std::uint32_t id);  // IsOpen() tells
  bool IsOpen() const { return local_id_ != 0 || handle_.IsOpen(); }
  // Ends the process at once; false when the system refuses. The exit code reaches servers of this process only.
  bool Terminate(int exit_code);

 private:
  std::uint32_t local_id_ = 0;
  FileHandle handle_;
};

// A server inside this process that appears in the process table for its lifetime.
class LocalProcess {
 public:
  LocalProcess(const CString& image_name, std::function<void(int exit_code)> terminate);
  LocalProcess(const LocalProcess&) = delete;
  LocalProcess& operator=(const LocalProcess&) = delete;
  ~LocalProcess();
  std::uint32_t id() const { return id_; }

 private:
  std::uint32_t id_;
};

}  // namespace loom
