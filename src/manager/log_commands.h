#pragma once

#include <vector>

#include "manager/log_opener.h"

namespace loom {

class IModuleCommunicator;

// The commands that bring logs into the project. None lets an exception out.
class LogCommands {
 public:
  // Both outlive the commands.
  LogCommands(IORegistry& registry, const LogListener& listener) : listener_(listener), opener_(registry, listener) {}

  int ImportLog(ImporterTypeEnum node_type);
  int ImportLogByName(const CString& path);
  int OpenLog(const CString& path, bool node_check);
  int OpenRecentLog(const CString& path);
  int OpenImmediateLogFile(const std::vector<CString>& paths, IModuleCommunicator* communicator);

 private:
  int OpenListed(const CString& path, bool node_check);
  int OpenRecent(const CString& path);
  void OpenIntermediate(const CString& path, IModuleCommunicator* communicator);

  const LogListener& listener_;
  LogOpener opener_;
};

}  // namespace loom
