#pragma once

#include "components/project.h"
#include "manager/log_selection.h"

namespace loom {

// One batch of logs under one node of the project, and what became of it. An exception cuts a batch short.
class LogBatch {
 public:
  // The opener and the listener outlive the batch.
  LogBatch(ImporterTypeEnum node_type, LogOpener& opener, const LogListener& listener)
      : node_type_(node_type), opener_(opener), listener_(listener) {}

  // What a person chooses, and one log: a BatchResult.
  int ImportChosen();
  int ImportOne(const CString& path);

 private:
  template <class Work>
  int Run(Work work);
  void ImportSelected(const LogSelection& selection);
  void Import(const CString& path, const LogSettings& settings);

  ImporterTypeEnum node_type_;
  LogOpener& opener_;
  const LogListener& listener_;
  CImportSetting imported_;
  bool is_in_part_ = false;
};

}  // namespace loom
