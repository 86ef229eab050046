#pragma once

#include <map>
#include <string>
#include <vector>

#include "components/data_subjects.h"
#include "platform/error.h"

namespace loom::testing {

// A subject of texts that remembers how it was read; asked for a field that it lacks, it fails.
template <class Data>
class TextSubject : public ISubject, public Data {
 public:
  using Row = std::map<std::string, CString>;
  explicit TextSubject(std::vector<Row> rows, std::int32_t kind = 1) : rows_(std::move(rows)), kind_(kind) {}
  // So many rows with one field.
  static TextSubject Numbered(const std::string& field, int count) {
    std::vector<Row> rows;
    for (int row = 1; row <= count; ++row) rows.push_back({{field, CString(std::to_string(row))}});
    return TextSubject(std::move(rows));
  }

  const std::string& calls() const { return calls_; }

  std::int32_t GetSubjectKind() const override { return kind_; }
  std::int32_t GetRowCount() override { return calls_ += 'n', static_cast<std::int32_t>(rows_.size()); }
  void BeginReading() override { calls_ += 'b'; }
  void MoveFirst() override { calls_ += 'f', at_ = 0; }
  CString GetFieldText(const CString& field) override {
    calls_ += 'v';
    const auto found = rows_.at(at_).find(field.str());
    if (found == rows_[at_].end()) throw Error("no field " + field.str());
    return found->second;
  }
  void Move(std::int32_t rows) override { calls_ += 'm', at_ += static_cast<std::size_t>(rows); }
  void EndReading() override { calls_ += 'e'; }

 private:
  std::vector<Row> rows_;
  std::int32_t kind_;
  std::size_t at_ = 0;
  std::string calls_;
};

using MemorySubject = TextSubject<IMemoryData>;
using RecordsetSubject = TextSubject<IRecordsetData>;

}  // namespace loom::testing
