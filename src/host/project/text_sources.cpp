#include "host/project/text_sources.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/time_units.h"

namespace loom {
namespace {

constexpr const char* kTable =
    "CREATE TABLE IF NOT EXISTS text_sources(converted TEXT PRIMARY KEY, source TEXT NOT NULL, size_bytes INTEGER NOT "
    "NULL, "
    "changed_ns INTEGER NOT NULL, settings TEXT NOT NULL)";

std::optional<TextSource> Find(StoredProject& project, const char* column, const CString& value) {
  Database& database = project.WorkingCopy();
  if (!database.HasTable("text_sources")) return std::nullopt;
  Statement select =
      database.Prepare("SELECT converted, source, size_bytes, changed_ns, settings FROM text_sources WHERE " +
                       std::string(column) + " = ?");
  select.BindText(1, value);
  if (!select.Step()) return std::nullopt;
  return TextSource{select.Text(0), select.Text(1), select.Int(2), select.Int(3), select.Text(4).str()};
}

}  // namespace

void TakeStamp(TextSource& source) {
  struct stat info {};
  if (stat(GbkPathToNative(source.source).c_str(), &info) != 0)
    throw SystemFileError(source.source, 0, "cannot be looked at", errno);
  source.size_bytes = info.st_size;
  source.changed_ns = static_cast<std::int64_t>(info.st_mtim.tv_sec) * kSecond_ns + info.st_mtim.tv_nsec;
}

bool HasChanged(const TextSource& source) {
  if (!FileExists(source.source)) return false;
  TextSource now = source;
  TakeStamp(now);
  return now.size_bytes != source.size_bytes || now.changed_ns != source.changed_ns;
}

void PutTextSource(StoredProject& project, const TextSource& source) {
  Database& database = project.WorkingCopy();
  database.Execute(kTable);
  Statement insert = database.Prepare("INSERT OR REPLACE INTO text_sources VALUES(?, ?, ?, ?, ?)");
  insert.BindText(1, source.converted)
      .BindText(2, source.source)
      .BindInt(3, source.size_bytes)
      .BindInt(4, source.changed_ns);
  insert.BindText(5, CString(std::string_view(source.settings))).Run();
}

std::optional<TextSource> FindTextSource(StoredProject& project, const CString& converted) {
  return Find(project, "converted", converted);
}

std::optional<TextSource> FindConverted(StoredProject& project, const CString& source) {
  return Find(project, "source", source);
}

}  // namespace loom
