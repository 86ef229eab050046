#pragma once

#include <cstdint>

namespace loom {

// The question which handset a log comes from, as it stands for the whole module.
struct HandsetQuestion {
  std::int32_t ask = 1;                // 1: it may be asked for the current log
  std::int32_t keep_for_this_log = 1;  // the dialog's check boxes
  std::int32_t keep_for_all_logs = 1;
  std::int32_t corrected_type = -1;  // model code answered last, -1 before the first answer

  void Rearm() { ask = 1; }
  void ResetFlags() { ask = keep_for_this_log = keep_for_all_logs = 1; }
};

extern HandsetQuestion g_handset_question;

}  // namespace loom
