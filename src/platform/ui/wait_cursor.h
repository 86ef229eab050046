#pragma once

#include "platform/ui/front_end.h"

namespace loom {

// Shows the wait cursor for its lifetime; may be nested, a front end counts. Both calls go to the same front end.
class CWaitCursor {
 public:
  CWaitCursor() : front_end_(CurrentFrontEnd()) { front_end_.SetWaitCursor(true); }
  CWaitCursor(const CWaitCursor&) = delete;
  CWaitCursor& operator=(const CWaitCursor&) = delete;
  ~CWaitCursor() { front_end_.SetWaitCursor(false); }

 private:
  FrontEnd& front_end_;
};

}  // namespace loom
