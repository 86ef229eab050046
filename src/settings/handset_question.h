#pragma once

#include <cstdint>

namespace loom {

// The question which handset a log comes from, as it stands for the whole module.
struct HandsetQuestion {
  std::int32_t ask = 1;                // 1: it may be asked for the current log
  std::int32_t keep_for_this_log = 1;  // the dialog's check boxes
  std::int32_t keep_for_all_logs = 1;
  std::int32_t corrected_type = -1;  // model code answered last, -1 before the first answer
  enum class Kept { kNoBatch, kNoAnswerYet, kAnswer } kept = Kept::kNoBatch;

  void Rearm() { ask = 1; }
  void ResetFlags() { ask = keep_for_this_log = keep_for_all_logs = 1; }

  // The logs that one command imports. Within them an answer that is kept for all logs is not asked for again.
  class Batch {
   public:
    explicit Batch(HandsetQuestion& question) : question_(question) { question_.kept = Kept::kNoAnswerYet; }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch() { question_.kept = Kept::kNoBatch; }

   private:
    HandsetQuestion& question_;
  };
  void Answered() {
    if (kept == Kept::kNoAnswerYet) kept = Kept::kAnswer;
  }
  bool IsAnswerKept() const { return kept == Kept::kAnswer && keep_for_all_logs != 0; }
};

extern HandsetQuestion g_handset_question;

}  // namespace loom
