#include "host/streams/data_stream.h"

#include "host/streams/row_cursor.h"

namespace loom {

DataStream::DataStream(const CString& name, std::int32_t stream_type)
    : rows_(std::pmr::polymorphic_allocator<>(&memory_).new_object<RowMap>()),
      merged_rows_(std::pmr::polymorphic_allocator<>(&memory_).new_object<MergedRowMap>()),
      key_rows_(std::pmr::polymorphic_allocator<>(&memory_).new_object<RowMap>()),
      name_(name),
      stream_type_(stream_type) {}

void DataStream::FinishRows() {
  if (row_count_ == 0) row_count_ = static_cast<std::int32_t>(rows_->size());
}

std::unique_ptr<IRowCursor> DataStream::MakeRowCursor() { return std::make_unique<RowCursor>(*rows_); }

}  // namespace loom
