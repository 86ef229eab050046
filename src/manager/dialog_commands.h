#pragma once

#include "components/net_info.h"

namespace loom {

class IORegistry;

// The commands that are one dialog of another room. None lets an exception out.
class DialogCommands {
 public:
  explicit DialogCommands(IORegistry& registry) : registry_(registry) {}  // outlives the commands

  int ExportTxt();
  int ImportNetInfo(ProtocolTypeEnum& protocol);
  void CombineLogFile();
  void PartitionLogfile();

 private:
  IORegistry& registry_;
};

}  // namespace loom
