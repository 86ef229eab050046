#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/cstring.h"

struct sqlite3;
struct sqlite3_stmt;

namespace loom {

// One prepared statement; parameters count from 1, columns from 0. Texts are UTF-8 and, like blobs, stay where they are
// until the statement has run.
class SqliteStatement {
 public:
  void BindInt(int parameter, std::int64_t value);
  void BindReal(int parameter, double value);
  void BindText(int parameter, std::string_view value);
  void BindBlob(int parameter, std::string_view value);
  void BindNull(int parameter);
  // Runs it and makes it ready for new parameters.
  void Run();
  bool Step();  // true while there is a row

  bool IsNull(int column) const;
  bool IsText(int column) const;
  std::int64_t Int(int column) const;
  double Real(int column) const;
  std::string_view Text(int column) const;  // until the next step; of a blob its bytes

 private:
  friend class SqliteFile;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  SqliteStatement(class SqliteFile& file, std::string_view sql);

  class SqliteFile& file_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

// A database file that is written by one program in one go. Every failure throws FileError with the path of the file
// that it will be.
class SqliteFile {
 public:
  enum class Use { kWrite, kRead };
  SqliteFile(const std::string& native_path, const CString& path, Use use);

  void Execute(const std::string& sql);
  SqliteStatement Prepare(std::string_view sql) { return SqliteStatement(*this, sql); }
  void Close();

 private:
  friend class SqliteStatement;
  void Check(int result) const;

  struct CloseNow {
    void operator()(sqlite3* connection) const;
  };
  CString path_;
  std::unique_ptr<sqlite3, CloseNow> connection_;
};

// As SQL has names and texts.
std::string SqlName(std::string_view name);
std::string SqlText(std::string_view text);

}  // namespace loom
