#include <optional>

#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/message_box.h"
#include "resources/text_import_templates.h"
#include "text/import/byte_order_mark.h"
#include "text/import/text_import_pages.h"
#include "text/import/text_lines.h"
#include "text/import/time_text.h"
#include "text/separator.h"
#include "text/separator_edit.h"

namespace loom {
namespace {

constexpr int kFirstFormatShown = 1;

struct SeparatorButton {
  int id;
  const char* separator;
};
constexpr SeparatorButton kSeparatorButtons[] = {{kRadioTab, "\t"}, {kRadioComma, ","}, {kRadioSemicolon, ";"}};

}  // namespace

CTextImportWizPage2::CTextImportWizPage2(TextImportSettings& settings)
    : CPropertyPage(kTextImport2Template), settings_(settings) {
  for (const SeparatorButton& button : kSeparatorButtons) {
    OnClicked(button.id, [this, &button] {
      GetDlgItem(kEditCustomSeparator).EnableWindow(false);
      UseSeparator(button.separator);
    });
  }
  OnClicked(kRadioCustom, [this] { OnCustomSeparator(); });
  OnChange(kEditCustomSeparator, [this] { OnCustomEdited(); });
  OnClicked(kCheckFirstLineIsNames, [this] { UpdateData(true); });
  OnSelChange(kComboTimeFormat, [this] { TakeFormat(); });
  OnChange(kEditStreamName, [this] {
    UpdateData(true);
    ShowButtons();
  });
}

void CTextImportWizPage2::OnInitDialog() {
  for (const char* type : kStreamTypeTexts) GetDlgItem<CComboBox>(kComboStreamType).AddString(Utf8ToGbk(type));
  auto& formats = GetDlgItem<CComboBox>(kComboTimeFormat);
  for (const TimeLayout& layout : kTimeLayouts) formats.AddString(layout.name);
  formats.SetCurSel(kFirstFormatShown);
  CheckRadio(kRadioTab);
  CPropertyPage::OnInitDialog();
}

void CTextImportWizPage2::DoDataExchange(CDataExchange& exchange) {
  exchange.Text(kEditStreamName, settings_.stream_name);
  exchange.ComboIndex(kComboStreamType, settings_.stream_type);
  exchange.Check(kCheckFirstLineIsNames, settings_.has_header_line);
}

bool CTextImportWizPage2::OnSetActive() {
  if (!ReadFirstLines()) {
    ShowMessageBox("初始化信息失败，请重试！"_gbk, MessageIcon::kError);
    return false;
  }
  settings_.stream_name = "UnknownDevice";
  UpdateData(false);
  RebuildPreview();
  ShowButtons();
  return CPropertyPage::OnSetActive();
}

// A file that is there but cannot be opened leaves the lines as they are.
bool CTextImportWizPage2::ReadFirstLines() {
  if (!FileExists(settings_.path)) return false;
  std::optional<TextLines> reader;
  if (!Completes([&] { reader.emplace(settings_.path); })) return true;
  return Completes([&] {
    std::vector<CString> lines;
    for (std::string_view line; lines.size() < kPreviewLines && reader->Next(line);) lines.emplace_back(line);
    if (!lines.empty()) NoteByteOrderMark(settings_.path, lines.front().view());
    lines_ = std::move(lines);
  });
}

void CTextImportWizPage2::ShowButtons() {
  GetSheet()->SetWizardButtons(settings_.stream_name.IsEmpty() ? kWizardBack : kWizardBack | kWizardNext);
}

void CTextImportWizPage2::RebuildPreview() {
  settings_.preview = PreviewRows(lines_, settings_.separator);
  const int width = PreviewColumnWidth(PreviewColumnCount(settings_.preview));
  ShowPreview(GetDlgItem<CListCtrl>(kListTextPreview), settings_.preview, width);
}

void CTextImportWizPage2::UseSeparator(const CString& separator) {
  settings_.separator = separator;
  RebuildPreview();
}

void CTextImportWizPage2::OnCustomSeparator() {
  auto& edit = GetDlgItem<CEdit>(kEditCustomSeparator);
  edit.EnableWindow(true);
  edit.SetFocus();
  UseSeparator(custom_separator_);
}

void CTextImportWizPage2::OnCustomEdited() {
  const auto symbol = TypedSeparator(GetDlgItem<CEdit>(kEditCustomSeparator));
  if (!symbol) return;
  custom_separator_ = *symbol;
  UseSeparator(custom_separator_);
}

void CTextImportWizPage2::TakeFormat() {
  const int chosen = GetDlgItem<CComboBox>(kComboTimeFormat).GetCurSel();
  const bool is_listed = chosen >= 0 && chosen < static_cast<int>(kTimeLayouts.size());
  settings_.time_layout = kTimeLayouts[is_listed ? static_cast<std::size_t>(chosen) : 0].name;
}

bool CTextImportWizPage2::OnKillActive() {
  TakeFormat();
  return CPropertyPage::OnKillActive();
}

int CTextImportWizPage2::OnWizardNext() { return settings_.stream_name.IsEmpty() ? kWizardStay : kWizardGoOn; }

}  // namespace loom
