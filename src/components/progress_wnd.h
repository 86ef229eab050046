#pragma once

#include <memory>

#include "platform/cstring.h"

namespace loom {

// Modal progress window over the work of the calling thread.
class CProgressWnd {
 public:
  explicit CProgressWnd(int with_cancel);  // 1: the user may cancel; 0: no cancel button
  virtual ~CProgressWnd();                 // closes the window
  CProgressWnd(const CProgressWnd&) = delete;
  CProgressWnd& operator=(const CProgressWnd&) = delete;

  void GoModal(const CString& title, int flags);
  void SetText(const CString& text);
  void SetRange(int lower, int upper, int step);
  void SetPos(int position);
  void PeekAndPump(int flags);  // lets the window handle its messages
  int Cancelled() const;        // 1 once the user cancelled

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace loom
