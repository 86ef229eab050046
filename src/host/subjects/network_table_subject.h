#pragma once

#include <string>
#include <vector>

#include "components/data_subjects.h"
#include "host/netdb/network_database.h"

namespace loom {

// The rows of a network-element table as they stand when the subject is made. The case of a column's name counts only
// where a column has just that name.
class NetworkTableSubject final : public ISubject, public IRecordsetData {
 public:
  // Throws Error for an unknown table.
  NetworkTableSubject(NetworkDatabase& database, const CString& table);

  // The columns that hold a value in any row, in the table's order; all of an empty table.
  const std::vector<CString>& Columns() const { return columns_; }

  std::int32_t GetSubjectKind() const override { return kind_; }

  std::int32_t GetRowCount() override { return static_cast<std::int32_t>(rows_.size()); }
  void BeginReading() override {}
  void MoveFirst() override { at_ = 0; }
  CString GetFieldText(const CString& field) override;
  void Move(std::int32_t rows) override { at_ += static_cast<std::size_t>(rows); }
  void EndReading() override {}

 private:
  std::vector<NetworkRow> rows_;
  std::vector<CString> columns_;
  std::int32_t kind_;
  std::size_t at_ = 0;
};

}  // namespace loom
