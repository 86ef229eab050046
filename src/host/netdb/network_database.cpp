#include "host/netdb/network_database.h"

#include <algorithm>
#include <set>

#include "host/netdb/network_tables.h"
#include "platform/encoding.h"
#include "platform/interrupt.h"

namespace loom {
namespace {

const NetworkTable& KnownTable(const CString& name) {
  if (const NetworkTable* const table = FindNetworkTable(name)) return *table;
  std::string known;
  for (const NetworkTable& table : NetworkTables()) known += std::string(known.empty() ? "" : ", ") + table.name;
  throw Error("there is no table \"" + GbkToUtf8(name) + "\"; the tables are " + known);
}

std::vector<std::string> CellKeyExpressions(const NetworkTable& table) {
  return table.cell_keys != nullptr ? table.cell_keys() : std::vector<std::string>();
}

std::string KeyIndexSql(const NetworkTable& table) {
  const std::string name = table.name;
  return "CREATE UNIQUE INDEX " + name + "_key ON " + name + "(" + table.key + ")";
}

// Of the rows that have one key now, the one stored last stays.
void RenewKey(Database& database, const NetworkTable& table) {
  const std::string name = table.name;
  Statement index = database.Prepare("SELECT sql FROM sqlite_master WHERE name = ?");
  index.BindText(1, CString(name + "_key"));
  if (index.Step() && index.Text(0).view() == KeyIndexSql(table)) return;
  index.Reset();
  database.Execute("CREATE TEMP TABLE kept AS SELECT * FROM main." + name + " ORDER BY rowid");
  database.Execute("DELETE FROM " + name);
  database.Execute("DROP INDEX IF EXISTS " + name + "_key");
  database.Execute(KeyIndexSql(table));
  database.Execute("INSERT OR REPLACE INTO " + name + " SELECT * FROM temp.kept ORDER BY rowid");
  database.Execute("DROP TABLE temp.kept");
}

void CreateTable(Database& database, const NetworkTable& table) {
  if (database.HasTable(table.name)) return RenewKey(database, table);
  const std::string name = table.name;
  database.Execute("CREATE TABLE " + name + "(" + table.columns + ")");
  database.Execute(KeyIndexSql(table));
  int number = 0;
  for (const std::string& expression : CellKeyExpressions(table))
    database.Execute("CREATE INDEX " + name + "_cell_key_" + std::to_string(++number) + " ON " + name + "(" +
                     expression + ")");
}

CString LowerCase(CString text) { return text.MakeLower(); }

// SQL does not tell names apart by case: a column whose name another has but for the case is called by its name, this
// mark and a number.
constexpr char kNameMark = '\x1F';

CString NameOfColumn(const CString& column) { return NetworkColumnName(column); }

// The columns of a table by the names that they were stored under.
class TableColumns {
 public:
  TableColumns(Database& database, const NetworkTable& table) : database_(database), table_(table) {
    Statement columns = database.Prepare("SELECT name FROM pragma_table_info(?)");
    columns.BindText(1, table.name);
    while (columns.Step()) Know(columns.Text(0));
    own_ = NetworkDatabase::ColumnsOf(table.name);
  }

  // What SQL calls the column; one that is missing is added.
  const CString& Named(const CString& name) {
    if (const auto known = columns_.find(name); known != columns_.end()) return known->second;
    if (name.IsEmpty() || name.Find('\0') >= 0 || name.Find(kNameMark) >= 0) throw Error("a column has no usable name");
    CString column = name;
    for (int number = 2; taken_.contains(LowerCase(column)); ++number)
      column = name + CString(kNameMark + std::to_string(number));
    database_.Execute("ALTER TABLE " + std::string(table_.name) + " ADD COLUMN " + QuotedName(column));
    Know(column);
    return columns_.at(name);
  }

  // The name of a value of a row: one that is that of a column which the table has from the start but for the case
  // means this column, unless the row has a value of that name or the table a column of its own for it.
  CString MeantBy(const CString& name, const NetworkRow& row) const {
    if (columns_.contains(name)) return name;
    for (const CString& own : own_) {
      if (own.CompareNoCase(name) != 0) continue;
      const bool is_given = std::any_of(row.begin(), row.end(), [&](const auto& value) { return value.first == own; });
      return is_given ? name : own;
    }
    return name;
  }

 private:
  void Know(const CString& column) {
    columns_.emplace(NameOfColumn(column), column);
    taken_.insert(LowerCase(column));
  }

  Database& database_;
  const NetworkTable& table_;
  std::vector<CString> own_;
  std::map<CString, CString> columns_;
  std::set<CString> taken_;  // in lower case
};

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
      if (!seen.insert(column).second)
        throw Error("the column \"" + GbkToUtf8(NameOfColumn(column)) + "\" is there twice");
      names += (names.empty() ? "" : ", ") + QuotedName(column);
      marks += marks.empty() ? "?" : ", ?";
    }
    columns_ = columns;
    statement_ = database_.Prepare("INSERT OR REPLACE INTO " + std::string(table_.name) + "(" + names + ") VALUES(" +
                                   marks + ")");
  }
  void Insert(const std::vector<NetworkValue>& values) {
    int parameter = 0;
    for (const NetworkValue& value : values) BindNetworkValue(*statement_, ++parameter, value);
    statement_->Run();
  }

 private:
  Database& database_;
  const NetworkTable& table_;
  std::vector<CString> columns_;
  std::optional<Statement> statement_;
};

}  // namespace

CString NetworkColumnName(const CString& column) {
  const int mark = column.Find(kNameMark);
  return mark < 0 ? column : column.Left(mark);
}

void BindNetworkValue(Statement& statement, int parameter, const NetworkValue& value) {
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

std::vector<CString> NetworkTableNames() {
  std::vector<CString> names;
  for (const NetworkTable& table : NetworkTables()) names.emplace_back(table.name);
  return names;
}

NetworkDatabase::Counts NetworkDatabase::PutInOneGo(const NetworkTable& table, const PutAll& put_all) {
  position_queries_.reset();
  Transaction transaction(database_);
  CreateTable(database_, table);
  const std::string from_table = " FROM " + std::string(table.name);
  const std::string count_sql = "SELECT count(*)" + from_table;
  const std::int64_t before = database_.ReadInt(count_sql);
  const std::int64_t last_before = database_.ReadInt("SELECT max(rowid)" + from_table);
  std::int64_t number = 0;
  try {
    put_all(number);
  } catch (const Interrupted&) {
    throw;
  } catch (const Error& error) {
    throw Error(std::string(table.name) + ", row " + std::to_string(number) + ": " + error.what());
  }
  Counts counts;
  counts.added = database_.ReadInt(count_sql) - before;
  counts.replaced = number - counts.added;
  counts.superseded = SupersededRows(table, last_before, number);
  transaction.Commit();
  return counts;
}

// A row stored takes the next row id; the ids that are gone were those of rows that a later one replaced.
std::vector<std::int64_t> NetworkDatabase::SupersededRows(const NetworkTable& table, std::int64_t last_before,
                                                          std::int64_t rows) {
  std::vector<std::int64_t> superseded;
  const std::string behind = " FROM " + std::string(table.name) + " WHERE rowid > " + std::to_string(last_before);
  if (database_.ReadInt("SELECT count(*)" + behind) == rows) return superseded;
  Statement left = database_.Prepare("SELECT rowid" + behind + " ORDER BY rowid");
  std::int64_t row = 0;
  while (left.Step()) {
    const std::int64_t kept = left.Int(0) - last_before - 1;
    for (; row < kept; ++row) superseded.push_back(row);
    row = kept + 1;
  }
  return superseded;
}

NetworkDatabase::Counts NetworkDatabase::PutRows(const CString& table_name, const std::vector<NetworkRow>& rows) {
  const NetworkTable& table = KnownTable(table_name);
  return PutInOneGo(table, [&](std::int64_t& number) {
    TableColumns known(database_, table);
    RowInserter inserter(database_, table);
    std::vector<CString> columns;
    std::vector<NetworkValue> values;
    for (const NetworkRow& row : rows) {
      ++number;
      columns.clear();
      values.clear();
      for (const auto& [column, value] : row) {
        columns.push_back(known.Named(known.MeantBy(column, row)));
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
    TableColumns known(database_, table);
    std::vector<CString> called;
    for (const CString& column : columns) called.push_back(known.Named(column));
    RowInserter inserter(database_, table);
    inserter.UseColumns(called);
    for (std::vector<NetworkValue> values(columns.size()); next(values); inserter.Insert(values)) {
      ++number;
      StopIfInterrupted();
    }
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
  for (int column = 0; column < select.ColumnCount(); ++column)
    columns.push_back(NameOfColumn(select.ColumnName(column)));
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
