#include "host/project/database.h"

#include <sqlite3.h>

#include <cstring>
#include <limits>

#include "platform/encoding.h"
#include "platform/log.h"

namespace loom {
namespace {

// The text in UTF-8 when that gives back the same bytes.
std::optional<std::string> ExactUtf8(const CString& text) {
  std::string utf8 = GbkToUtf8(text);
  try {
    if (Utf8ToGbk(utf8) == text) return utf8;
  } catch (const EncodingError&) {
    return std::nullopt;  // the caller keeps the bytes
  }
  return std::nullopt;
}

}  // namespace

void Statement::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
void Database::Close::operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }

Statement::Statement(sqlite3* connection, std::string_view sql) : connection_(connection) {
  sqlite3_stmt* statement = nullptr;
  const int result = sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
  statement_.reset(statement);
  Check(result);
}

void Statement::Check(int result) const {
  if (result != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection_));
}

Statement& Statement::BindInt(int parameter, std::int64_t value) {
  Check(sqlite3_bind_int64(statement_.get(), parameter, value));
  return *this;
}

Statement& Statement::BindDouble(int parameter, double value) {
  Check(sqlite3_bind_double(statement_.get(), parameter, value));
  return *this;
}

Statement& Statement::BindText(int parameter, const CString& value) {
  if (const auto utf8 = ExactUtf8(value)) {
    Check(sqlite3_bind_text64(statement_.get(), parameter, utf8->data(), utf8->size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  } else {
    Check(sqlite3_bind_blob64(statement_.get(), parameter, value.c_str(), value.view().size(), SQLITE_TRANSIENT));
  }
  return *this;
}

Statement& Statement::BindNull(int parameter) {
  Check(sqlite3_bind_null(statement_.get(), parameter));
  return *this;
}

bool Statement::Step() {
  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_ROW) return true;
  const std::string reason = result == SQLITE_DONE ? std::string() : sqlite3_errmsg(connection_);
  sqlite3_reset(statement_.get());
  if (result != SQLITE_DONE) throw DatabaseError(reason);
  return false;
}

void Statement::Run() {
  while (Step()) continue;
}

void Statement::Reset() { sqlite3_reset(statement_.get()); }  // reports the last Step's failure, which Step has thrown

int Statement::ColumnCount() const { return sqlite3_column_count(statement_.get()); }

CString Statement::ColumnName(int column) const {
  const char* const name = sqlite3_column_name(statement_.get(), column);
  if (name == nullptr) throw DatabaseError("out of memory");
  return Utf8ToGbk(name);
}

Statement::Kind Statement::ColumnKind(int column) const {
  switch (sqlite3_column_type(statement_.get(), column)) {
    case SQLITE_NULL:
      return Kind::kNull;
    case SQLITE_INTEGER:
      return Kind::kInt;
    case SQLITE_FLOAT:
      return Kind::kDouble;
    default:
      return Kind::kText;
  }
}

std::int64_t Statement::Int(int column) const { return sqlite3_column_int64(statement_.get(), column); }

std::int32_t Statement::Int32(int column) const {
  const std::int64_t value = Int(column);
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    throw DatabaseError("the number " + std::to_string(value) + " in the column \"" +
                        sqlite3_column_name(statement_.get(), column) + "\" is out of range");
  return static_cast<std::int32_t>(value);
}

double Statement::Double(int column) const { return sqlite3_column_double(statement_.get(), column); }

CString Statement::Text(int column) const {
  sqlite3_stmt* const statement = statement_.get();
  const bool is_bytes = sqlite3_column_type(statement, column) == SQLITE_BLOB;
  const void* const data = is_bytes ? sqlite3_column_blob(statement, column)
                                    : static_cast<const void*>(sqlite3_column_text(statement, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  const std::string_view bytes(static_cast<const char*>(data), data != nullptr ? size : 0);
  return is_bytes ? CString(bytes) : Utf8ToGbk(bytes);
}

Database::Database() {
  sqlite3* connection = nullptr;
  const int result = sqlite3_open_v2(":memory:", &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  connection_.reset(connection);
  if (result != SQLITE_OK) throw DatabaseError(sqlite3_errstr(result));
  // A file from elsewhere may hold triggers and views: they call nothing but harmless functions.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

Database::Database(std::span<const std::byte> image) : Database() {
  auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(image.size()));
  if (copy == nullptr) throw DatabaseError("out of memory");
  std::memcpy(copy, image.data(), image.size());
  const auto size = static_cast<sqlite3_int64>(image.size());
  // The connection owns the copy from here on, also when it refuses it.
  const int result = sqlite3_deserialize(connection_.get(), "main", copy, size, size,
                                         SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
  if (result != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection_.get()));
}

void Database::Execute(const std::string& sql) {
  char* message = nullptr;
  if (sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return;
  const std::string reason = message != nullptr ? message : "out of memory";
  sqlite3_free(message);
  throw DatabaseError(reason);
}

std::int64_t Database::ReadInt(std::string_view sql) {
  Statement statement = Prepare(sql);
  return statement.Step() ? statement.Int(0) : 0;
}

std::int64_t Database::LastRowId() const { return sqlite3_last_insert_rowid(connection_.get()); }

bool Database::HasTable(const CString& name) {
  Statement statement = Prepare("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?");
  return statement.BindText(1, name).Step();
}

std::int64_t Database::ChangeCount() const { return sqlite3_total_changes64(connection_.get()) - undone_changes_; }

std::string Database::Image() {
  sqlite3_int64 size = 0;
  struct Free {
    void operator()(unsigned char* bytes) const { sqlite3_free(bytes); }
  };
  const std::unique_ptr<unsigned char, Free> bytes(sqlite3_serialize(connection_.get(), "main", &size, 0));
  if (bytes == nullptr) throw DatabaseError("out of memory");
  return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
}

Transaction::~Transaction() {
  if (!is_open_) return;
  database_.undone_changes_ += database_.ChangeCount() - changes_before_;
  try {
    database_.Execute("ROLLBACK");
  } catch (const Error& error) {
    // SQLite itself rolls back on some failures; a second time is refused.
    Log(LogLevel::kDebug, std::string("rollback: ") + error.what());
  }
}

void Transaction::Commit() {
  database_.Execute("COMMIT");
  is_open_ = false;
}

std::string QuotedName(const CString& name) {
  std::string quoted = "\"";
  for (const char c : GbkToUtf8(name)) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace loom
