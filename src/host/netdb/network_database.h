#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "host/project/database.h"
#include "platform/cstring.h"

namespace loom {

struct NetworkTable;
class Statement;

// A row of a network-element table: column name -> value, monostate where it is empty.
using NetworkValue = std::variant<std::monostate, std::int64_t, double, CString>;
using NetworkRow = std::vector<std::pair<CString, NetworkValue>>;

void BindNetworkValue(Statement& statement, int parameter, const NetworkValue& value);
// The name that a column of the database was stored under.
CString NetworkColumnName(const CString& column);
// The names of all tables.
std::vector<CString> NetworkTableNames();

// The network-element tables of a project's working copy: "tbl_RNC", "tbl_NodeB", "tbl_Cell" (TD-SCDMA),
// "tbl_Cell_GSM", "tbl_Cell_LTE", "tbl_AdjCell", "tbl_AdjCell_GSM", "tbl_CustomCPIGroup", "tbl_NetDataConfig".
// Column names are the network element parameters ("CI", "LAC", "Longitude" ...), which may differ
// from another in case alone.
class NetworkDatabase {
 public:
  explicit NetworkDatabase(Database& database) : database_(database) {}

  struct Counts {
    std::int64_t added = 0;
    std::int64_t replaced = 0;
    std::vector<std::int64_t> superseded;  // positions, from 0, of the rows given that a later one of them replaced
  };
  // Stores the rows; one of the same key (CI and so on) is replaced as a whole. All of them or, with an Error that
  // names the row, none. A name that is that of a column which the table has from the start but for the case means this
  // column, where nothing else of the table or the row has it.
  Counts PutRows(const CString& table, const std::vector<NetworkRow>& rows);
  // The same for rows that all have these columns, whose names count as they are. `next` fills in the values of one
  // row, false behind the last.
  using NextRow = std::function<bool(std::vector<NetworkValue>& values)>;
  Counts PutRows(const CString& table, const std::vector<CString>& columns, const NextRow& next);
  // The rows with their values that are not empty, columns in the table's order. Throws Error for an unknown table.
  std::vector<NetworkRow> ListRows(const CString& table);
  // The columns that the table has from the start. Throws Error for an unknown table.
  static std::vector<CString> ColumnsOf(const CString& table);

  bool HoldsRows(const CString& table);  // false for an unknown table too
  // Degrees of the one cell with the key; empty when no cell or more than one has it, or its position is not known.
  // See IDBMapper for the key.
  std::optional<std::pair<double, double>> LongitudeLatitudeOf(std::int32_t cell_key);

 private:
  using PutAll = std::function<void(std::int64_t& number)>;  // counts the rows it puts
  Counts PutInOneGo(const NetworkTable& table, const PutAll& put_all);
  std::vector<std::int64_t> SupersededRows(const NetworkTable& table, std::int64_t last_before, std::int64_t rows);
  std::vector<Statement>& PositionQueries();

  Database& database_;
  std::optional<std::vector<Statement>> position_queries_;  // prepared with the first question after a change
};

}  // namespace loom
