#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "components/mem_row.h"
#include "components/value_range.h"
#include "text/import/line_splitter.h"
#include "text/import/text_row_notes.h"
#include "text/import/time_text.h"

namespace loom {

// A column of a text file that becomes the time or a field of its rows.
struct TextColumn {
  std::size_t number = 0;  // from 0
  std::int32_t ie_id = kInvalidInt;
  MemTableFieldTypeEnum type = kFieldNone;
  CString name = {};
  bool is_time = false;     // sets the row's time, no field
  bool lists_field = true;  // its information element is one of the row's fields
};

// Makes rows of the lines of a text file.
class TextRowBuilder {
 public:
  // Columns in ascending order. `notes` outlives the builder.
  TextRowBuilder(std::vector<TextColumn> columns, const CString& separator, const CString& time_layout,
                 RowNotes& notes);

  // The line of titles, when the file has one: no other line should have more cells.
  void ReadTitles(std::string_view line);

  // Replaces what the row holds; its time, when it is valid, extends `time_s`.
  // `readable_behind` bytes behind the line may be looked at.
  void Fill(CMemDataRow& row, std::string_view line, std::int32_t number, ValueRange& time_s,
            std::size_t readable_behind = 0);

 private:
  void SetTime(CMemDataRow& row, std::string_view cell, ValueRange& time_s);
  [[gnu::cold]] void NoteTime(std::string_view cell, double seconds);
  uniFieldValue Convert(CMemDataRow& row, const TextColumn& column, std::string_view cell);
  template <class Number>
  [[gnu::cold]] void NoteNumber(const TextColumn& column, std::string_view cell, Number stored);
  bool TruthOf(const TextColumn& column, std::string_view cell);
  std::uint32_t AddText(CMemDataRow& row, const TextColumn& column, std::string_view cell);
  void FillFields(CMemDataRow& row, ValueRange& time_s);
  std::string_view WithoutLineEnd(const TextColumn& column, std::string_view cell) const;
  bool HasMoreCellsThanTitles(std::string_view line) const;
  void NoteMissingCells();
  [[gnu::cold]] void NoteMoreCells(std::string_view line);
  void ListFieldsOneByOne(CMemDataRow& row) const;

  std::vector<TextColumn> columns_;
  std::size_t most_cells_ = 1;  // nothing behind the last column is looked at
  std::size_t titles_ = 0;      // cells of the line of titles; 0: there is none
  bool is_regular_ = true;      // no information element is there twice: fields and their ids run in step
  LineSplitter splitter_;
  TimeTextConverter time_;
  CString time_layout_;
  RowNotes& notes_;
  std::string_view line_end_;            // what the separator leaves at the end of a line
  std::vector<std::string_view> cells_;  // of the newest line; those of columns trimmed
  const char* readable_end_ = nullptr;
};

}  // namespace loom
