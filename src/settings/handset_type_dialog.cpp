#include "settings/handset_type_dialog.h"

#include <iterator>

#include "components/resource_handle.h"
#include "platform/encoding.h"
#include "resources/handset_type_templates.h"
#include "settings/handset_question.h"

namespace loom {

namespace {

constexpr int kPreselected = 2;
constexpr std::int32_t kDefaultModel = kHandsetChoices[kPreselected].model_code;

std::int32_t ModelAt(int position) {
  return position >= 0 && position < std::ssize(kHandsetChoices) ? kHandsetChoices[position].model_code : kDefaultModel;
}

}  // namespace

CFixUEFacDlg::CFixUEFacDlg() : CDialog(kHandsetTypeTemplate) {}

void CFixUEFacDlg::OnInitDialog() {
  auto& list = GetDlgItem<CComboBox>(kComboHandsetType);
  for (const HandsetChoice& choice : kHandsetChoices) list.AddString(Utf8ToGbk(choice.name));
  list.SetCurSel(kPreselected);
  g_handset_question.corrected_type = kDefaultModel;
  CDialog::OnInitDialog();
}

void CFixUEFacDlg::OnOK() {
  if (!UpdateData(true)) return;
  HandsetQuestion& question = g_handset_question;
  question.corrected_type = ModelAt(GetDlgItem<CComboBox>(kComboHandsetType).GetCurSel());
  question.Answered();
  if (question.keep_for_this_log != 0 || question.keep_for_all_logs != 0) question.ask = 0;
  EndDialog(kIdOk);
}

void CFixUEFacDlg::DoDataExchange(CDataExchange& exchange) {
  exchange.Check(kCheckKeepForThisLog, g_handset_question.keep_for_this_log);
  exchange.Check(kCheckKeepForAllLogs, g_handset_question.keep_for_all_logs);
}

std::int32_t AskForHandsetType() {
  if (g_handset_question.IsAnswerKept()) return g_handset_question.corrected_type;
  const CResourceHandle resources;
  CFixUEFacDlg dialog;
  dialog.DoModal();
  return g_handset_question.corrected_type;
}

}  // namespace loom
