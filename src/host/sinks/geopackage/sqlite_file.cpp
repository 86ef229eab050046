#include "host/sinks/geopackage/sqlite_file.h"

#include <sqlite3.h>

#include "platform/file.h"

namespace loom {
namespace {

std::string Quoted(std::string_view text, char quote) {
  std::string out(1, quote);
  for (const char c : text) {
    if (c == quote) out += quote;
    out += c;
  }
  return out + quote;
}

}  // namespace

std::string SqlName(std::string_view name) { return Quoted(name, '"'); }
std::string SqlText(std::string_view text) { return Quoted(text, '\''); }

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
void SqliteFile::CloseNow::operator()(sqlite3* connection) const { sqlite3_close(connection); }

SqliteFile::SqliteFile(const std::string& native_path, const CString& path, Use use) : path_(path) {
  sqlite3* connection = nullptr;
  const int flags = use == Use::kRead ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int result = sqlite3_open_v2(native_path.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  Check(result);
  if (use == Use::kWrite)
    Execute("PRAGMA page_size=4096; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA locking_mode=EXCLUSIVE");
}

void SqliteFile::Check(int result) const {
  if (result == SQLITE_OK || result == SQLITE_DONE || result == SQLITE_ROW) return;
  const int error = sqlite3_system_errno(connection_.get());
  const bool is_of_system = (result & 0xFF) == SQLITE_IOERR || (result & 0xFF) == SQLITE_CANTOPEN;
  if (is_of_system && error != 0) throw SystemFileError(path_, 0, "cannot write", error);
  throw FileError(path_, 0, std::string("the database says: ") + sqlite3_errmsg(connection_.get()));
}

void SqliteFile::Execute(const std::string& sql) {
  Check(sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr));
}

void SqliteFile::Close() {
  Check(sqlite3_close(connection_.get()));
  connection_.release();
}

SqliteStatement::SqliteStatement(SqliteFile& file, std::string_view sql) : file_(file) {
  sqlite3_stmt* statement = nullptr;
  file.Check(sqlite3_prepare_v2(file.connection_.get(), sql.data(), static_cast<int>(sql.size()), &statement, nullptr));
  statement_.reset(statement);
}

void SqliteStatement::BindInt(int parameter, std::int64_t value) {
  file_.Check(sqlite3_bind_int64(statement_.get(), parameter, value));
}

void SqliteStatement::BindReal(int parameter, double value) {
  file_.Check(sqlite3_bind_double(statement_.get(), parameter, value));
}

void SqliteStatement::BindText(int parameter, std::string_view value) {
  file_.Check(sqlite3_bind_text64(statement_.get(), parameter, value.data(), value.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void SqliteStatement::BindBlob(int parameter, std::string_view value) {
  file_.Check(sqlite3_bind_blob64(statement_.get(), parameter, value.data(), value.size(), SQLITE_STATIC));
}

void SqliteStatement::BindNull(int parameter) { file_.Check(sqlite3_bind_null(statement_.get(), parameter)); }

void SqliteStatement::Run() {
  const int result = sqlite3_step(statement_.get());
  if (result != SQLITE_DONE) file_.Check(result == SQLITE_ROW ? SQLITE_MISUSE : result);
  sqlite3_reset(statement_.get());
}

bool SqliteStatement::Step() {
  const int result = sqlite3_step(statement_.get());
  file_.Check(result);
  if (result == SQLITE_DONE) sqlite3_reset(statement_.get());
  return result == SQLITE_ROW;
}

bool SqliteStatement::IsNull(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL; }
bool SqliteStatement::IsText(int column) const { return sqlite3_column_type(statement_.get(), column) == SQLITE_TEXT; }
std::int64_t SqliteStatement::Int(int column) const { return sqlite3_column_int64(statement_.get(), column); }
double SqliteStatement::Real(int column) const { return sqlite3_column_double(statement_.get(), column); }

std::string_view SqliteStatement::Text(int column) const {
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

}  // namespace loom
