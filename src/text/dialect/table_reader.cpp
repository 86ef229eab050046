#include "text/dialect/table_reader.h"

namespace loom::dialect {

TableReader::TableReader(std::unique_ptr<ByteSource> source, const Form& form, std::size_t width)
    : source_(std::move(source)),
      reader_(*source_, form, width),
      preamble_rows_(form.preamble_rows),
      header_rows_(form.header_rows) {}

void TableReader::PassHead() {
  is_in_head_ = false;
  Record record;
  for (std::int64_t passed = 0; passed < preamble_rows_ && reader_.Next(record);) {
    if (record.is_comment)
      ++comments_;
    else if (!record.goes_on)
      ++passed;
  }
  for (std::int64_t passed = 0; passed < header_rows_ && reader_.Next(record);) {
    if (record.is_comment)
      ++comments_;
    else if (!record.is_blank && !record.goes_on)
      ++passed;
  }
}

bool TableReader::Next(Record& record) {
  if (is_in_head_) PassHead();
  while (reader_.Next(record)) {
    if (record.is_comment)
      ++comments_;
    else if (!record.is_blank)
      return true;
  }
  return false;
}

}  // namespace loom::dialect
