#pragma once

#include <cstdint>
#include <memory>

#include "text/dialect/record_reader.h"

namespace loom::dialect {

// The rows of a table: what stands before them, comments and blank lines are passed over.
class TableReader {
 public:
  TableReader(std::unique_ptr<ByteSource> source, const Form& form, std::size_t width);

  // The next row, or a part of a very long one.
  bool Next(Record& record);

  const RecordReader& records() const { return reader_; }
  std::uint64_t Comments() const { return comments_; }

 private:
  void PassHead();

  std::unique_ptr<ByteSource> source_;
  RecordReader reader_;
  std::int64_t preamble_rows_;
  std::int64_t header_rows_;
  std::uint64_t comments_ = 0;
  bool is_in_head_ = true;
};

}  // namespace loom::dialect
