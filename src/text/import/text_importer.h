#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "components/progress_wnd.h"
#include "importers/importer.h"
#include "text/import/column_map.h"
#include "text/import/text_row_builder.h"
#include "text/navigator/parameter_navigator.h"

namespace loom {

class TextLines;

// What a stream type of the text import becomes as a kind of stream.
std::int32_t StreamKindOf(std::int32_t text_stream_type);

// Importer type 6: a delimited text file becomes one stream, a row per line. The settings stay from one import to the
// next, but for the column map.
class CTextImporter : public CImporter {
 public:
  CTextImporter();

  // Gives an ImportResult; the log file object is null unless it is 1. Nothing of a failed or cancelled import stays.
  // What is wrong with single rows goes to the current notes.
  int Import(const CString& path, ILogfile** logfile) override;

  virtual void SetSpareText(const CString& text) { spare_text_ = text; }
  virtual void SetDataFormat(const CString& name) { data_format_ = name; }
  virtual void SetSeparate(const CString& separator) { separator_ = separator; }
  virtual void SetHeadLineIsIgnore(std::int32_t ignored) { first_line_flag_ = ignored; }
  virtual void SetColumnMapIE(ColumnMap map) { column_map_ = std::move(map); }
  virtual void SetStreamFullName(const CString& name) { stream_full_name_ = name; }
  virtual void SetStreamName(const CString& name) { stream_name_ = name; }
  // The row of one line, the caller's own, after the column map was set. A valid time extends the bounds, which are
  // -255 while there is none.
  virtual CMemDataRow* BuildRow(CString line, int row_number, double* minimum_time_s, double* maximum_time_s);
  void SetStreamType(std::int32_t type) { stream_type_ = type; }  // 0 downlink, 1 uplink, 2 scan

 private:
  struct Run;

  int ImportFile(Run& run);
  int ReadLines(Run& run, TextLines& lines);
  void ReadPosition(Run& run, const CMemDataRow& row) const;
  void FinishStream(Run& run) const;
  bool LoadNavigatorNames();
  bool PrepareProtocol();
  void NoteProtocol(const CString& path) const;
  std::vector<TextColumn> Columns() const;
  void NoteColumns(const CString& path) const;
  void ResetColumns();

  CString stream_full_name_;
  CString stream_name_;
  CString spare_text_;  // not read by the import
  CString data_format_;
  CString separator_;
  std::int32_t first_line_flag_ = 1;  // nonzero: the first line holds names
  ColumnMap column_map_;
  std::int32_t stream_type_ = 0;
  NavigatorNames names_;
  CString protocol_ = "TD-SCDMA";     // stays where the columns belong to no protocol
  bool protocol_is_assumed_ = false;  // of columns that rows of every protocol hold, and no others
  std::vector<CString> lte_columns_;
};

}  // namespace loom
