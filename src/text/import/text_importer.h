#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "components/progress_wnd.h"
#include "importers/importer.h"
#include "text/import/text_row_builder.h"
#include "text/import/text_stream_settings.h"
#include "text/navigator/parameter_navigator.h"

namespace loom {

class TextLines;

// Importer type 6: a delimited text file becomes one stream, a row per line. The settings stay from one import to the
// next, but for the column map.
class CTextImporter : public CImporter {
 public:
  CTextImporter();

  // Gives an ImportResult; the log file object is null unless it is 1. Nothing of a failed or cancelled import stays.
  // What is wrong with single rows goes to the current notes.
  int Import(const CString& path, ILogfile** logfile) override;

  void SetSettings(TextStreamSettings settings) { settings_ = std::move(settings); }
  // The settings one by one.
  virtual void SetSpareText(const CString& text) { settings_.spare_text = text; }
  virtual void SetDataFormat(const CString& name) { settings_.time_layout = name; }
  virtual void SetSeparate(const CString& separator) { settings_.separator = separator; }
  virtual void SetHeadLineIsIgnore(std::int32_t ignored) { settings_.has_header_line = ignored; }
  virtual void SetColumnMapIE(ColumnMap map) { settings_.columns = std::move(map); }
  virtual void SetStreamFullName(const CString& name) { settings_.stream_full_name = name; }
  virtual void SetStreamName(const CString& name) { settings_.stream_name = name; }
  void SetStreamType(std::int32_t type) { settings_.stream_type = type; }
  // The row of one line, the caller's own, after the column map was set. A valid time extends the bounds, which are
  // -255 while there is none.
  virtual CMemDataRow* BuildRow(CString line, int row_number, double* minimum_time_s, double* maximum_time_s);

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

  TextStreamSettings settings_;
  NavigatorNames names_;
  CString protocol_ = "TD-SCDMA";     // stays where the columns belong to no protocol
  bool protocol_is_assumed_ = false;  // of columns that rows of every protocol hold, and no others
  std::vector<CString> lte_columns_;
};

}  // namespace loom
