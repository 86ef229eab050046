#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "components/data_subjects.h"
#include "components/excel_wrappers.h"
#include "importers/exporter.h"
#include "platform/automation/safe_array.h"

namespace loom {

// Puts tables into a new workbook of the spreadsheet server, which is left open and visible. A table is a
// two-dimensional array of texts, its first row the header; one of more than 65,534 records is split over several
// worksheets. Tables have at most 702 columns.
class CExcelExporter : public CExporter {
 public:
  CExcelExporter() { exporter_type_ = kExporterExcel; }

  // Always 0. What fails is told by a message, and a server that was started for the export is ended.
  int Export(CString name, std::vector<COleSafeArray>& tables, std::vector<CString>& sheet_names) override;
  // Always 0. Lets out what a subject or the server throws; the unfinished workbook is given up.
  int Export(CString name, std::vector<ISubject*> subjects, std::vector<CString>& sheet_names,
             std::vector<std::vector<CString>>& column_lists) override;
  // 1 done, 0 when there is no server, which a message has told. Throws as the export of several subjects.
  int Export(CString name, ISubject* subject, std::vector<CString>& columns) override;
  int Export(CString name, ISubject* subject) override;  // nothing: 0
  int Export() override;                                 // nothing: 0

  // The running server, or one that is started (`created` 1). 1 when the wrapper holds it, 0 after a message.
  int GetExcelApplication(_Application& application, int& created);
  // Fits the columns of every worksheet of the active workbook and keeps its header and first column in view.
  void AutoFit(_Application& application);
  // The table of a subject, as the export of ready tables takes it.
  void BuildTable(ISubject* subject, COleSafeArray& table, std::vector<CString>& columns);

 private:
  void ArrangeExcelData(IRecordsetData* data, COleSafeArray& table, std::vector<CString>& columns);
  void ArrangeExcelData(IMemoryData* data, COleSafeArray& table, std::vector<CString>& columns);
  // Appends the number of rows of each piece of a table of so many rows, the header included in both.
  void CaculateArray(std::int32_t row_count, std::vector<std::int32_t>& pieces);
  // Fills pieces that have their size already.
  void SplitSafeArray(COleSafeArray* table, std::vector<COleSafeArray>& pieces);
  void WriteMultiSheetFile(COleSafeArray* table);
  int GetCurSysProcessIDList(std::list<std::uint32_t>& ids);
  int GetNewExcelAppProcessID(const std::list<std::uint32_t>& earlier_ids, std::uint32_t& id);

  void WritePieces(COleSafeArray& table, const std::string& letters, const std::vector<std::int32_t>& piece_rows);
  void WriteSheet(const CString& sheet_name, const std::string& last_cell, const COleSafeArray& values);
  void AddSheetBehind(std::int32_t number);
  void StartWorkbook(_Application& application);
  void FinishWorkbook(_Application& application);
  void WriteTables(_Application& application, std::vector<COleSafeArray>& tables,
                   const std::vector<CString>& sheet_names);

  std::int32_t is_multi_subject_ = 0;  // the one-subject export writes into the open workbook
  Sheets sheets_;                      // of the workbook being filled
  std::int32_t current_sheet_ = 0;     // position of the worksheet that is written next, from 1
  CString current_sheet_name_;
};

}  // namespace loom
