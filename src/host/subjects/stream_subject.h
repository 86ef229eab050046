#pragma once

#include <cstdint>
#include <vector>

#include "components/data_subjects.h"
#include "components/stream_manager.h"
#include "host/streams/row_cursor.h"
#include "platform/text_buffer.h"

namespace loom {

// The rows of a stream, by the names of information elements. The stream outlives the subject.
class StreamSubject final : public ISubject, public IMemoryData {
 public:
  explicit StreamSubject(IDataStream& stream) : stream_(stream), cursor_(*stream.GetRows()) {}

  std::int32_t GetSubjectKind() const override { return kSubjectStream; }

  std::int32_t GetRowCount() override { return static_cast<std::int32_t>(stream_.GetRows()->size()); }
  void BeginReading() override { next_column_ = 0; }
  void MoveFirst() override { cursor_.GoToFirstRow(); }
  // Throws Error for a name that the catalogue lacks.
  CString GetFieldText(const CString& field) override;
  void Move(std::int32_t rows) override { cursor_.Move(rows); }
  void EndReading() override { columns_.clear(); }

 private:
  struct Column {
    CString name;
    std::uint32_t column;  // of the cursor
  };
  std::uint32_t ColumnOf(const CString& field);

  IDataStream& stream_;
  RowCursor cursor_;
  std::vector<Column> columns_;  // asked for so far
  std::size_t next_column_ = 0;  // fields are asked for in the same order in every row
  TextBuffer text_;
};

// What a stream is exported with unless told otherwise: time and position, then everything that it recorded.
std::vector<CString> ColumnsOfStream(const IDataStream& stream);

}  // namespace loom
