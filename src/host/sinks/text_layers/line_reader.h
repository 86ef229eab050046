#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace loom {

// Calls visit(piece) for the file's bytes, block by block.
template <class Visit>
void ForEachBlock(const CString& path, Visit visit) {
  const InputFile file(path);
  std::string block(1 << 18, '\0');
  for (std::uint64_t at = 0; at < file.Size();) {
    const std::size_t got = file.ReadUpTo(at, std::as_writable_bytes(std::span(block)));
    if (got == 0) return;
    visit(std::string_view(block).substr(0, got));
    at += got;
  }
}

// Calls visit(line) for every line, without its end.
template <class Visit>
void ForEachLine(const CString& path, Visit visit) {
  std::string carried;
  ForEachBlock(path, [&](std::string_view block) {
    for (std::size_t end; (end = block.find('\n')) != std::string_view::npos; block.remove_prefix(end + 1)) {
      carried.append(block.substr(0, end));
      visit(std::string_view(carried));
      carried.clear();
    }
    carried.append(block);
  });
  if (!carried.empty()) visit(std::string_view(carried));
}

}  // namespace loom
