#include "apps/qloom-desktop/shell/file_kind.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "components/intermediate/file.h"
#include "host/logstore/log_reader.h"
#include "host/recordings/make_log.h"
#include "platform/file.h"
#include "platform/notes.h"

namespace loom {
namespace {

constexpr std::string_view kProjectMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeadBytes = 4096;

bool IsProject(const CString&, std::string_view head) { return head.starts_with(kProjectMagic); }

bool IsLog(const CString& path, std::string_view) { return PeekLogHeader(path).has_value(); }

bool IsIntermediate(const CString& path, std::string_view) {
  const IntermediateFile file(path);
  return file.Size() >= intermediate::kHeaderBytes && file.ReadHeader().HasMagic();
}

bool IsRecordingOf(const CString& path, std::string_view) { return IsRecording(path); }

// Of UTF-16 every second byte of a plain letter is 0; other texts hold none but as padding.
bool IsText(const CString&, std::string_view head) {
  const auto zeros = static_cast<std::size_t>(std::ranges::count(head, '\0'));
  const auto controls = static_cast<std::size_t>(std::ranges::count_if(head, [](unsigned char c) {
    return c != 0 && c < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f' && c != 0x1A;
  }));
  return !head.empty() && zeros <= head.size() * 6 / 10 && controls <= head.size() / 50;
}

struct Test {
  FileKind kind;
  bool (*passes)(const CString& path, std::string_view head);
};
// clang-format off
constexpr Test kTests[] = {
    {FileKind::kProject,      &IsProject},
    {FileKind::kLog,          &IsLog},
    {FileKind::kIntermediate, &IsIntermediate},
    {FileKind::kRecording,    &IsRecordingOf},
    {FileKind::kText,         &IsText},
};
// clang-format on

// What a test finds wrong with a file says that it is of another kind.
bool Passes(const Test& test, const CString& path, std::string_view head) {
  Notes unheard;
  const NotesScope scope(unheard);
  try {
    return test.passes(path, head);
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

FileKind KindOfFile(const CString& path) {
  std::array<char, kHeadBytes> head{};
  std::size_t length = 0;
  try {
    if (FolderExists(path)) return FileKind::kMissing;
    const InputFile file(path);
    length = static_cast<std::size_t>(std::min<std::uint64_t>(file.Size(), head.size()));
    file.ReadAt(0, std::as_writable_bytes(std::span(head.data(), length)));
  } catch (const FileError&) {
    return FileKind::kMissing;
  }
  const auto test = std::ranges::find_if(
      kTests, [&](const Test& one) { return Passes(one, path, std::string_view(head.data(), length)); });
  return test != std::end(kTests) ? test->kind : FileKind::kUnknown;
}

}  // namespace loom
