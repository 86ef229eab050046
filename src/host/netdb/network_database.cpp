#include "host/netdb/network_database.h"

#include <algorithm>
#include <set>

#include "host/netdb/network_tables.h"
#include "platform/encoding.h"

namespace loom {
namespace {

const NetworkTable& KnownTable(const CString& name) {
  if (const NetworkTable* const table = FindNetworkTable(name)) return *table;
  std::string known;
  for (const NetworkTable& table : NetworkTables()) known += std::string(known.empty() ? "" : ", ") + table.name;
  throw Error("there is no table \"" + GbkToUtf8(name) + "\"; the tables are " + known);
}

std::vector<std::string> CellKeyExpressions(const NetworkTable& table) {
  std::vector<std::string> expressions;
  if (table.cell_key_index == nullptr) return expressions;
  for (const CString& part : CString(table.cell_key_index).Split(';')) expressions.push_back(part.str());
  return expressions;
}

void CreateTable(Database& database, const NetworkTable& table) {
  if (database.HasTable(table.name)) return;
  const std::string name = table.name;
  database.Execute("CREATE TABLE " + name + "(" + table.columns + ")");
  database.Execute("CREATE UNIQUE INDEX " + name + "_key ON " + name + "(" + table.key + ")");
  int number = 0;
  for (const std::string& expression : CellKeyExpressions(table))
    database.Execute("CREATE INDEX " + name + "_cell_key_" + std::to_string(++number) + " ON " + name + "(" +
                     expression + ")");
}

CString LowerCase(CString text) { return text.MakeLower(); }

class ColumnAdder {
 public:
  ColumnAdder(Database& database, const NetworkTable& table) : database_(database), table_(table) {
    Statement columns = database.Prepare("SELECT name FROM pragma_table_info(?)");
    columns.BindText(1, table.name);
    while (columns.Step()) present_.insert(LowerCase(columns.Text(0)));
  }
  void Need(const CString& column) {
    if (!present_.insert(LowerCase(column)).second) return;
    if (column.IsEmpty() || column.Find('\0') >= 0) throw Error("a column has no usable name");
    database_.Execute("ALTER TABLE " + std::string(table_.name) + " ADD COLUMN " + QuotedName(column));
  }

 private:
  Database& database_;
  const NetworkTable& table_;
  std::set<CString> present_;
};

void Bind(Statement& statement, int parameter, const NetworkValue& value) {
  if (const auto* const number = std::get_if<std::int64_t>(&value)) {
    statement.BindInt(parameter, *number);
  } else if (const auto* const real = std::get_if<double>(&value)) {
    statement.BindDouble(parameter, *real);
  } else if (const auto* const text = std::get_if<CString>(&value)) {
    statement.BindText(parameter, *text);
  } else {
    statement.BindNull(parameter);
  }
}

// Inserts rows; the statement is kept while their columns stay the same.
class RowInserter {
 public:
  RowInserter(Database& database, const NetworkTable& table) : database_(database), table_(table) {}

  void UseColumns(const std::vector<CString>& columns) {
    if (statement_ && columns == columns_) return;
    if (columns.empty()) throw Error("it has no column");
    std::set<CString> seen;
    std::string names, marks;
    for (const CString& column : columns) {
      if (!seen.insert(LowerCase(column)).second)
        throw Error("the column \"" + GbkToUtf8(column) + "\" is there twice");
      names += (names.empty() ? "" : ", ") + QuotedName(column);
      marks += marks.empty() ? "?" : ", ?";
    }
    columns_ = columns;
    statement_ = database_.Prepare("INSERT OR REPLACE INTO " + std::string(table_.name) + "(" + names + ") VALUES(" +
                                   marks + ")");
  }
  void Insert(const std::vector<NetworkValue>& values) {
    int parameter = 0;
    for (const NetworkValue& value : values) Bind(*statement_, ++parameter, value);
    statement_->Run();
  }

 private:
  Database& database_;
  const NetworkTable& table_;
  std::vector<CString> columns_;
  std::optional<Statement> statement_;
};

}  // namespace

NetworkDatabase::Counts NetworkDatabase::PutInOneGo(const NetworkTable& table, const PutAll& put_all) {
  position_queries_.reset();
  Transaction transaction(database_);
  CreateTable(database_, table);
  const std::string count_sql = "SELECT count(*) FROM " + std::string(table.name);
  const std::int64_t before = database_.ReadInt(count_sql);
  std::int64_t number = 0;
  try {
    put_all(number);
  } catch (const Error& error) {
    throw Error(std::string(table.name) + ", row " + std::to_string(number) + ": " + error.what());
  }
  Counts counts;
  counts.added = database_.ReadInt(count_sql) - before;
  counts.replaced = number - counts.added;
  transaction.Commit();
  return counts;
}

NetworkDatabase::Counts NetworkDatabase::PutRows(const CString& table_name, const std::vector<NetworkRow>& rows) {
  const NetworkTable& table = KnownTable(table_name);
  return PutInOneGo(table, [&](std::int64_t& number) {
    ColumnAdder adder(database_, table);
    RowInserter inserter(database_, table);
    std::vector<CString> columns;
    std::vector<NetworkValue> values;
    for (const NetworkRow& row : rows) {
      ++number;
      columns.clear();
      values.clear();
      for (const auto& [column, value] : row) {
        adder.Need(column);
        columns.push_back(column);
        values.push_back(value);
      }
      inserter.UseColumns(columns);
      inserter.Insert(values);
    }
  });
}

NetworkDatabase::Counts NetworkDatabase::PutRows(const CString& table_name, const std::vector<CString>& columns,
                                                 const NextRow& next) {
  const NetworkTable& table = KnownTable(table_name);
  return PutInOneGo(table, [&](std::int64_t& number) {
    ColumnAdder adder(database_, table);
    for (const CString& column : columns) adder.Need(column);
    RowInserter inserter(database_, table);
    inserter.UseColumns(columns);
    for (std::vector<NetworkValue> values(columns.size()); next(values); inserter.Insert(values)) ++number;
  });
}

std::vector<CString> NetworkDatabase::ColumnsOf(const CString& table_name) {
  std::vector<CString> columns;
  std::string_view rest = KnownTable(table_name).columns;
  while (!rest.empty()) {
    const std::string_view column = rest.substr(0, rest.find(','));
    columns.emplace_back(column.substr(0, column.find(' ')));
    rest.remove_prefix(std::min(rest.size(), column.size() + 2));
  }
  return columns;
}

std::vector<NetworkRow> NetworkDatabase::ListRows(const CString& table_name) {
  const NetworkTable& table = KnownTable(table_name);
  std::vector<NetworkRow> rows;
  if (!database_.HasTable(table.name)) return rows;
  Statement select = database_.Prepare("SELECT * FROM " + std::string(table.name) + " ORDER BY rowid");
  std::vector<CString> columns;
  for (int column = 0; column < select.ColumnCount(); ++column) columns.push_back(select.ColumnName(column));
  while (select.Step()) {
    NetworkRow& row = rows.emplace_back();
    for (int column = 0; column < select.ColumnCount(); ++column) {
      const CString& name = columns[static_cast<std::size_t>(column)];
      switch (select.ColumnKind(column)) {
        case Statement::Kind::kNull:
          break;
        case Statement::Kind::kInt:
          row.emplace_back(name, select.Int(column));
          break;
        case Statement::Kind::kDouble:
          row.emplace_back(name, select.Double(column));
          break;
        case Statement::Kind::kText:
          row.emplace_back(name, select.Text(column));
          break;
      }
    }
  }
  return rows;
}

bool NetworkDatabase::HoldsRows(const CString& table_name) {
  const NetworkTable* const table = FindNetworkTable(table_name);
  return table != nullptr && database_.HasTable(table->name) &&
         database_.ReadInt("SELECT 1 FROM " + std::string(table->name) + " LIMIT 1") != 0;
}

std::vector<Statement>& NetworkDatabase::PositionQueries() {
  if (position_queries_) return *position_queries_;
  position_queries_.emplace();
  for (const NetworkTable& table : NetworkTables()) {
    std::string condition;
    for (const std::string& expression : CellKeyExpressions(table))
      condition += (condition.empty() ? "(" : " OR (") + expression + ") = ?1";
    if (condition.empty() || !database_.HasTable(table.name)) continue;
    position_queries_->push_back(database_.Prepare("SELECT Longitude, Latitude FROM " + std::string(table.name) +
                                                   " WHERE " + condition + " LIMIT 2"));
  }
  return *position_queries_;
}

std::optional<std::pair<double, double>> NetworkDatabase::LongitudeLatitudeOf(std::int32_t cell_key) {
  int cells = 0;
  std::optional<std::pair<double, double>> position;
  for (Statement& query : PositionQueries()) {
    query.BindInt(1, static_cast<std::uint32_t>(cell_key));
    while (query.Step()) {
      ++cells;
      const bool is_known =
          query.ColumnKind(0) == Statement::Kind::kDouble && query.ColumnKind(1) == Statement::Kind::kDouble;
      if (is_known) position = {query.Double(0), query.Double(1)};
    }
  }
  return cells == 1 ? position : std::nullopt;
}

}  // namespace loom
