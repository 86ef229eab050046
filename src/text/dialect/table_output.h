#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "text/dialect/table_reader.h"

namespace loom::dialect {

// Text that goes out in blocks.
class Output {
 public:
  explicit Output(const CString& path) : file_(path) { text_.reserve(kBlockBytes + 4096); }
  std::string& text() { return text_; }
  void EndLine(std::string_view end) {
    text_ += end;
    if (text_.size() >= kBlockBytes) Flush();
  }
  void Flush() {
    file_.Write(text_);
    text_.clear();
  }
  void Finish() {
    Flush();
    file_.Commit();
  }

 private:
  static constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

  AtomicFile file_;
  std::string text_;
};

// The rows of a file as it was found.
inline TableReader OpenTable(const InputFile& file, const Findings& found) {
  Form form = found.form;
  if (form.quote == 0) form.quote = form.looked_for_quote;
  return {std::make_unique<FileSource>(file, form.encoding), form, found.columns.size()};
}

}  // namespace loom::dialect
