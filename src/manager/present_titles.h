#pragma once

#include <set>

#include "manager/log_outcome.h"

namespace loom {

// Titles of the logs that are there when a batch begins. A log of such a title is passed over.
class PresentTitles {
 public:
  explicit PresentTitles(const LogListener& listener);  // which outlives the titles

  // Whether the log is passed over, which a message says and the listener hears.
  bool Refuse(const CString& path) const;

 private:
  const LogListener& listener_;
  std::set<CString> titles_;
};

}  // namespace loom
