#include "host/netdb/network_editor.h"

#include <charconv>

#include "platform/encoding.h"
#include "platform/number.h"

namespace loom {
namespace {

std::optional<std::int64_t> WholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

CString TextOf(const Statement& row, int column) {
  switch (row.ColumnKind(column)) {
    case Statement::Kind::kInt:
      return CString(std::to_string(row.Int(column)));
    case Statement::Kind::kDouble:
      return CString(NumberText(row.Double(column)));
    case Statement::Kind::kText:
      return row.Text(column);
    default:
      return {};
  }
}

// What LIKE takes for any text stands for itself.
CString Escaped(const CString& text) {
  std::string escaped;
  for (const char c : GbkToUtf8(text)) {
    if (c == '%' || c == '_' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return Utf8ToGbk("%" + escaped + "%");
}

}  // namespace

NetworkEditor::NetworkEditor(Database& database, const CString& table)
    : database_(database), table_(table), columns_(NetworkDatabase::ColumnsOf(table)) {
  if (!database.HasTable(table)) return;
  columns_.clear();
  Statement columns = database.Prepare("SELECT name, type FROM pragma_table_info(?)");
  columns.BindText(1, table);
  while (columns.Step()) {
    sql_names_.push_back(columns.Text(0));
    columns_.push_back(NetworkColumnName(columns.Text(0)));
    kinds_.push_back(columns.Text(1));
  }
}

std::vector<std::int64_t> NetworkEditor::RowIds(const CString& holding) {
  std::vector<std::int64_t> ids;
  if (!IsThere()) return ids;
  std::string sql = "SELECT rowid FROM " + table_.str();
  if (!holding.IsEmpty()) {
    std::string condition;
    for (const CString& name : sql_names_)
      condition += (condition.empty() ? " WHERE " : " OR ") + QuotedName(name) + " LIKE ?1 ESCAPE '\\'";
    sql += condition;
  }
  Statement select = database_.Prepare(sql + " ORDER BY rowid");
  if (!holding.IsEmpty()) select.BindText(1, Escaped(holding));
  while (select.Step()) ids.push_back(select.Int(0));
  return ids;
}

std::vector<CString> NetworkEditor::TextsOf(std::int64_t id) {
  std::vector<CString> texts;
  if (!IsThere()) return texts;
  Statement select = database_.Prepare("SELECT * FROM " + table_.str() + " WHERE rowid = ?");
  if (!select.BindInt(1, id).Step()) return texts;
  for (int column = 0; column < select.ColumnCount(); ++column) texts.push_back(TextOf(select, column));
  return texts;
}

NetworkValue NetworkEditor::ValueFrom(const CString& text, std::size_t column) const {
  if (text.IsEmpty()) return {};
  const CString& kind = kinds_[column];
  if (kind == "TEXT") return text;
  if (const auto whole = WholeNumber(text.view()); whole && kind != "REAL") return *whole;
  const auto number = ParseDouble(text);
  if (kind.IsEmpty()) return number ? NetworkValue(*number) : NetworkValue(text);
  if (!number || kind == "INTEGER")
    throw Error("\"" + GbkToUtf8(text) + "\" is no " + (kind == "REAL" ? "number" : "whole number") + ", which " +
                GbkToUtf8(columns_[column]) + " holds");
  return *number;
}

void NetworkEditor::SetText(std::int64_t id, std::size_t column, const CString& text) {
  const NetworkValue value = ValueFrom(text, column);
  Statement update = database_.Prepare("UPDATE OR ABORT " + table_.str() + " SET " + QuotedName(sql_names_.at(column)) +
                                       " = ?1 WHERE rowid = ?2");
  BindNetworkValue(update, 1, value);
  update.BindInt(2, id);
  try {
    update.Run();
  } catch (const DatabaseError& error) {
    throw Error(GbkToUtf8(columns_[column]) + " is not changed to \"" + GbkToUtf8(text) +
                "\": another row has that key (" + error.what() + ")");
  }
}

void NetworkEditor::Remove(const std::vector<std::int64_t>& ids) {
  Transaction transaction(database_);
  Statement remove = database_.Prepare("DELETE FROM " + table_.str() + " WHERE rowid = ?");
  for (const std::int64_t id : ids) remove.BindInt(1, id).Run();
  transaction.Commit();
}

}  // namespace loom
