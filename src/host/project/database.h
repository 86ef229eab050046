#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/cstring.h"
#include "platform/error.h"

struct sqlite3;
struct sqlite3_stmt;

namespace loom {

class DatabaseError : public Error {
 public:
  using Error::Error;
};

// One prepared SQL statement. Parameters count from 1, columns from 0. A text is kept as UTF-8; bytes that are no valid
// GBK are kept as they are, so that every CString comes back unchanged.
class Statement {
 public:
  Statement(Statement&&) = default;
  Statement& operator=(Statement&&) = default;

  Statement& BindInt(int parameter, std::int64_t value);
  Statement& BindDouble(int parameter, double value);
  Statement& BindText(int parameter, const CString& value);
  Statement& BindNull(int parameter);

  // True while there is a row. A statement that is done starts again with the next Step.
  bool Step();
  // Runs a statement that gives no rows, and makes it ready for new parameters.
  void Run();
  void Reset();

  enum class Kind { kNull, kInt, kDouble, kText };
  int ColumnCount() const;
  CString ColumnName(int column) const;
  Kind ColumnKind(int column) const;
  std::int64_t Int(int column) const;
  std::int32_t Int32(int column) const;  // throws DatabaseError when the value does not fit
  double Double(int column) const;
  CString Text(int column) const;

 private:
  friend class Database;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  Statement(sqlite3* connection, std::string_view sql);
  void Check(int result) const;

  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// An SQLite database in memory: the working copy of a project file. Every failure throws DatabaseError.
class Database {
 public:
  Database();                                           // empty
  explicit Database(std::span<const std::byte> image);  // from the bytes of a database file

  void Execute(const std::string& sql);
  Statement Prepare(std::string_view sql) { return Statement(connection_.get(), sql); }
  std::int64_t ReadInt(std::string_view sql);  // first column of the first row, 0 without one
  std::int64_t LastRowId() const;
  bool HasTable(const CString& name);
  // Grows with every row that is stored, changed or removed; what a transaction undoes does not count.
  std::int64_t ChangeCount() const;

  // The bytes of a database file with this content.
  std::string Image();

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
  };
  friend class Transaction;
  std::unique_ptr<sqlite3, Close> connection_;
  std::int64_t undone_changes_ = 0;
};

// Everything done during its lifetime is undone unless Commit() was called. Do not nest.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database), changes_before_(database.ChangeCount()) {
    database_.Execute("BEGIN");
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();
  void Commit();

 private:
  Database& database_;
  std::int64_t changes_before_;
  bool is_open_ = true;
};

// The name as it stands in SQL.
std::string QuotedName(const CString& name);

}  // namespace loom
