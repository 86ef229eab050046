#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/logstore/record_json.h"

namespace loom::records {

// Where in a JSON record something stands. Lives on the stack beside the walk through the record; the text of the place
// is only made when something is wrong.
class JsonPlace {
 public:
  explicit JsonPlace(std::size_t line) : line_(line) {}
  JsonPlace(const JsonPlace& outer, std::string_view name) : outer_(&outer), line_(outer.line_), name_(name) {}
  JsonPlace(const JsonPlace& outer, std::size_t index) : outer_(&outer), line_(outer.line_), index_(index) {}

  // "neighbours.neighbours[2].uarfcn"
  std::string Path() const {
    if (!outer_) return {};
    const std::string front = outer_->Path();
    if (name_.data() == nullptr) return front + "[" + std::to_string(index_) + "]";
    return front.empty() ? std::string(name_) : front + "." + std::string(name_);
  }
  [[noreturn]] void Fail(const std::string& reason) const { throw RecordJsonError(line_, Path(), reason); }

 private:
  const JsonPlace* outer_ = nullptr;
  std::size_t line_;
  std::string_view name_;
  std::size_t index_ = 0;
};

}  // namespace loom::records
