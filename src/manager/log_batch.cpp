#include "manager/log_batch.h"

#include "manager/present_titles.h"
#include "platform/completes.h"
#include "settings/handset_question.h"

namespace loom {

template <class Work>
int LogBatch::Run(Work work) {
  if (!Completes(work)) is_in_part_ = true;
  if (imported_.GetLogFileNum() == 0) return kBatchNothing;
  return is_in_part_ ? kBatchInPart : kBatchDone;
}

int LogBatch::ImportChosen() {
  return Run([this] {
    const LogSelection selection = ChooseLogs(node_type_);
    if (selection.missing) listener_({.path = *selection.missing});
    if (!selection.paths.empty()) ImportSelected(selection);
  });
}

int LogBatch::ImportOne(const CString& path) {
  return Run([&] { Import(path, {}); });
}

void LogBatch::ImportSelected(const LogSelection& selection) {
  g_handset_question.ResetFlags();
  const HandsetQuestion::Batch question_batch(g_handset_question);
  const PresentTitles present_titles(listener_);
  for (const CString& path : selection.paths) {
    if (!present_titles.Refuse(path)) Import(path, selection.settings);
  }
  if (selection.settings.ies.empty() || imported_.GetLogFileNum() == 0) return;
  imported_.SetParamSetting(selection.settings.ies);
  g_project->AddImpSetting(imported_);
}

void LogBatch::Import(const CString& path, const LogSettings& settings) {
  const int result = opener_.OpenLogFile(path, settings, {.type = node_type_});
  if (result == kImportDone) {
    imported_.AddLogFile(path);
    g_systemConfig->SetRecentLogFile(path);
  }
  is_in_part_ |= result == kImportCancelled || result == kImportAlreadyPresent;
}

}  // namespace loom
