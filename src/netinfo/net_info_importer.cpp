#include "netinfo/net_info_importer.h"

#include <algorithm>
#include <cmath>

#include "components/note_kinds.h"
#include "components/resource_handle.h"
#include "netinfo/net_import_page1.h"
#include "netinfo/net_import_page2.h"
#include "platform/encoding.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"

namespace loom {
namespace {

constexpr double kLargestShownWhole = 1e15;  // larger numbers are shown with an exponent

// A value as a message shows it.
CString ShownValue(const NetValue& value) {
  if (const auto* const text = std::get_if<CString>(&value)) return *text;
  double number = 0;
  if (const auto* const real = std::get_if<double>(&value)) {
    number = *real;
  } else if (const auto* const date = std::get_if<NetDate>(&value)) {
    number = date->number;
  } else {
    return {};
  }
  const bool is_whole = std::trunc(number) == number && std::abs(number) < kLargestShownWhole;
  return CString(is_whole ? NumberText(number, 0) : NumberText(number));
}

CString CpiGroupMessage(NetCheck check) {
  switch (check) {
    case NetCheck::kIncomplete:
      return "自定义扰码组数据不完整,扰码或扰码组对应的值不能为空!!"_gbk;
    case NetCheck::kSeveralGroups:
      return "自定义扰码组数据非法,一个扰码对应了多个扰码组!"_gbk;
    default:
      return "自定义扰码组数据非法,扰码必须为0-127之间的整数,扰码组编号必须为大于0的整数!"_gbk;
  }
}

}  // namespace

CNetInfoImporter::CNetInfoImporter() { importer_type_ = kImporterNetInfo; }

int CNetInfoImporter::Import(const CString&, ILogfile**) {
  // Nothing of one run but its scalars survives into the next.
  struct Emptied {
    CNetInfoImporter& importer;
    ~Emptied() {
      importer.mapping_.Clear();
      importer.rows_ = {};
    }
  } emptied{*this};
  const CResourceHandle resources;
  if (!RunWizard() || source_file_type_ != kSourceWorkbook) return 0;
  return ImportRows();
}

bool CNetInfoImporter::RunWizard() {
  CPropertySheet sheet("网元数据导入向导"_gbk);
  sheet.SetWizardMode();
  CNetInfoImportWizPage1 first_page;
  CNetInfoImportWizPage2 second_page(first_page);
  sheet.AddPage(first_page);
  sheet.AddPage(second_page);
  if (sheet.DoModal() != kIdWizardFinish) return false;
  TakeSettings(second_page);
  return true;
}

void CNetInfoImporter::TakeSettings(const CNetInfoImportWizPage2& page) {
  data_type_ = page.GetDataType();
  mapping_ = page.GetMapping();
  file_path_ = page.GetFilePath();
  source_file_type_ = page.GetSourceFileType();
  protocol_ = page.GetProtocol();
  worksheet_ = page.GetWorksheet();
}

int CNetInfoImporter::ImportRows() {
  if (GetNetInfoFromExcel() != 1) return 0;
  if (data_type_ == kNetCustomCpiGroup) {
    const int check = IsValidCustomCPIGroupData(mapping_.parameters.front() != "CellParameterID");
    if (check != 1) return ReportCheck(CpiGroupMessage(NetCheck{check})), 0;
  }
  if (data_type_ == kNetCell && IsValidCellData() != 1)
    return ReportCheck("小区数据非法, 有重复小区, 请核查小区表!"_gbk), 0;
  const int result = cell_mapper_->StoreRows(data_type_, protocol_, mapping_.parameters, mapping_.attributes, rows_);
  return result == 1 ? data_type_ : result;
}

int CNetInfoImporter::GetNetInfoFromExcel() {
  const CWaitCursor wait;
  rows_.clear();
  cell_mapper_->OpenWorkbook(file_path_);
  const int result = cell_mapper_->ReadRows(worksheet_, protocol_, mapping_.source_columns, rows_);
  cell_mapper_->CloseWorkbook();
  return result;
}

int CNetInfoImporter::IsValidCellData() {
  if (protocol_ != kProtocolTdScdma && protocol_ != kProtocolGsm) return 1;
  const auto place_of = [this](const char* parameter) {
    return static_cast<std::size_t>(mapping_.PlaceOfParameter(parameter));
  };
  std::optional<std::size_t> lac;
  if (protocol_ == kProtocolGsm) lac = place_of("LAC");
  return Judge(CheckCells(rows_, place_of("CI"), lac), "duplicate cell"_note);
}

// Only the first two cells of a row are looked at.
int CNetInfoImporter::IsValidCustomCPIGroupData(bool group_first) {
  return Judge(CheckCpiGroups(rows_, group_first ? 0 : 1, group_first ? 1 : 0), "custom CPI group"_note);
}

// Keeps where a value is no integer for the message; where else a check failed becomes a note.
int CNetInfoImporter::Judge(const NetCheckResult& result, const NoteKind& kind) {
  fault_text_.Empty();
  if (result.check == NetCheck::kValid) return 1;
  const NetFault& fault = result.fault;
  if (fault.column) {
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const NetInfoRow& read) { return read.sheet_row == fault.sheet_row; });
    fault_text_ = Format("\r\n数据页“%s”第%u行“%s”列的值“%s”不是整数！"_gbk, worksheet_, fault.sheet_row,
                         mapping_.source_columns[*fault.column], ShownValue(row->values[*fault.column]));
  }
  CurrentNotes().Add(fault.column ? "value that is no integer"_note : kind, file_path_,
                     GbkToUtf8(worksheet_) + " row " + std::to_string(fault.sheet_row),
                     fault.column ? "a value is no integer" : "the check stopped here");
  return static_cast<int>(result.check);
}

void CNetInfoImporter::ReportCheck(const CString& message) const {
  ShowMessageBox(message + fault_text_, MessageIcon::kError);
}

}  // namespace loom
