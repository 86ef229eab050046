#include "apps/qloom/mixed_sources.h"

#include <algorithm>
#include <array>
#include <span>

#include "apps/qloom/commands.h"
#include "apps/text_files/text_file_import.h"
#include "components/note_kinds.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/path.h"

namespace loom {
namespace {

enum class SourceKind { kLog, kIntermediate, kText };

constexpr unsigned char kIntermediateMagic[] = {0x00, 0x08, 0x43, 0xD0, 0x27, 0x74, 0xC9, 0x46,
                                                0x92, 0x7E, 0xB3, 0xA0, 0xEE, 0x47, 0xD0, 0x63};

bool HasTextExtension(const CString& path) {
  const CString extension = ExtensionOf(path);
  return std::ranges::any_of(std::array{"txt", "csv", "tsv", "tab"},
                             [&](const char* known) { return extension.CompareNoCase(known) == 0; });
}

// Text files have no zero bytes, logs and intermediate files have many.
SourceKind KindOf(const CString& path) {
  std::array<std::byte, 4096> start;
  const InputFile file(path);
  const std::span<const std::byte> bytes(start.data(), file.ReadUpTo(0, start));
  const bool is_intermediate =
      bytes.size() >= std::size(kIntermediateMagic) &&
      std::ranges::equal(bytes.first(std::size(kIntermediateMagic)), std::as_bytes(std::span(kIntermediateMagic)));
  if (is_intermediate) return SourceKind::kIntermediate;
  const bool is_text = HasTextExtension(path) || std::ranges::find(bytes, std::byte{0}) == bytes.end();
  return is_text && !bytes.empty() ? SourceKind::kText : SourceKind::kLog;
}

}  // namespace

MixedSources::MixedSources(const ImportOptions& options, const std::string& project)
    : files_(ExistingFiles(options.logs)), logs_(options) {
  logs_.logs.clear();
  for (const std::string& name : options.logs) {
    const CString path = AbsolutePath(name);
    const SourceKind kind = IsRecording(path) ? SourceKind::kLog : KindOf(path);
    if (kind == SourceKind::kLog) logs_.logs.push_back(name);
    if (kind == SourceKind::kIntermediate) intermediate_.push_back(path);
    if (kind == SourceKind::kText) texts_.push_back(path);
  }
  recordings_.emplace(logs_.logs, std::nullopt, project);
  logs_.logs = recordings_->Files();
}

int MixedSources::ImportLogs(Session& session) {
  if (logs_.logs.empty()) return kBatchDone;
  recordings_->MakeLogs();
  return session.manager().ImportLog(LogNodes().at(logs_.node));
}

int MixedSources::ImportIntermediate(Session& session) {
  if (!intermediate_.empty()) session.manager().OpenImmediateLogFile(intermediate_);
  return kBatchDone;
}

int MixedSources::ImportTexts(Session& session) {
  int result = kBatchDone;
  for (const CString& path : texts_) {
    if (WasInterrupted()) return kBatchInPart;
    try {
      const ImportedTextFile imported =
          ImportTextFile(session.host().project(), session.manager(), InspectTextFile(path, {}));
      if (imported.result != kImportDone) result = kBatchInPart;
    } catch (const Error& error) {
      CurrentNotes().Add("text file not imported"_note, path, std::string_view("the file"), error.what());
      result = kBatchInPart;
    }
  }
  return result;
}

int MixedSources::Import(Session& session, LogReport& report) {
  std::vector<CString> expected = Answers().files;
  expected.insert(expected.end(), intermediate_.begin(), intermediate_.end());
  report.Expect(std::move(expected));
  const int logs = ImportLogs(session);
  const int intermediate = ImportIntermediate(session);
  const int texts = ImportTexts(session);
  const bool is_done = logs == kBatchDone && intermediate == kBatchDone && texts == kBatchDone;
  const int exit_code = report.ExitCodeOf(is_done ? kBatchDone : kBatchNothing);
  return WasInterrupted() && exit_code == kExitInPart ? kExitCancelled : exit_code;
}

}  // namespace loom
