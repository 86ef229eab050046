#include "text/selection/ie_selection_page.h"

#include <algorithm>

#include "components/note_kinds.h"
#include "components/project.h"
#include "platform/encoding.h"
#include "platform/log.h"
#include "platform/ui/file_dialog.h"
#include "platform/ui/message_box.h"
#include "resources/images.h"
#include "resources/log_import_templates.h"
#include "text/navigator/parameter_navigator.h"
#include "text/selection/ie_selection_tree.h"

namespace loom {
namespace {

constexpr const char* kAlwaysChosen[] = {"RecordTime", "Longitude", "Latitude"};

CString TemplateFilter() { return "配置模板(*.xml)|*.xml|"_gbk; }

struct_ImpIESetting SettingFor(const CString& ie_name) {
  struct_ImpIESetting setting{.ie_name = ie_name};
  g_project->GetIEValueRangeByName(ie_name, setting.maximum, setting.minimum);
  return setting;
}

}  // namespace

CSelImportDialog::CSelImportDialog() : CPropertyPage(kSelImportTemplate) {
  OnClicked(kButtonLoadIeTemplate, [this] { LoadTemplate(); });
  OnClicked(kButtonSaveIeTemplate, [this] { SaveTemplate(); });
}

CMutiTreeCtrl& CSelImportDialog::Tree() const { return GetDlgItem<CMutiTreeCtrl>(kTreeImportIes); }

void CSelImportDialog::OnInitDialog() {
  Tree().SetImageList(CImageList(kTreeImages));
  Tree().SetStateImageList(CImageList(kTickImages));
  if (!LoadNavigator(navigator_)) ShowMessageBox("加载配置文件失败！"_gbk, MessageIcon::kError);
  BuildTree();
  CPropertyPage::OnInitDialog();
}

// Of a navigator that could not be loaded the tree stays empty.
void CSelImportDialog::BuildTree() {
  CMutiTreeCtrl& tree = Tree();
  tree.DeleteAllItems();
  tree_built_ = true;
  const MarkupElement document_element = navigator_.GetDocumentElement();
  if (!document_element) return;
  const bool follows_template = first_use_ == 0 && !template_.empty();
  const auto is_ticked = [&](const CString& text, bool by_default) {
    return follows_template ? template_.contains(text) : by_default;
  };
  IeSelectionTree(tree, ie_names_, is_ticked).Build(document_element);
}

bool CSelImportDialog::ConfirmSelection() {
  const CMutiTreeCtrl& tree = Tree();
  const HTREEITEM td_scdma = tree.GetRootItem();
  const HTREEITEM gsm = td_scdma ? tree.GetNextSiblingItem(td_scdma) : HTREEITEM();
  const auto is_chosen = [&](HTREEITEM item) { return item && tree.GetCheck(item) != kTreeClear; };
  CString question;
  if (!is_chosen(td_scdma) && !is_chosen(gsm)) {
    question = "没有选择导入IE，文件打开后将不导入任何IE，是否继续？"_gbk;
  } else if (!is_chosen(td_scdma)) {
    question = "没有选择导入TD-SCDMA的IE，文件打开后将不导入任何TD-SCDMA的IE，是否继续？"_gbk;
  } else if (!is_chosen(gsm)) {
    question = "没有选择导入GSM的IE，文件打开后将不导入任何GSM的IE，是否继续？"_gbk;
  } else {
    return true;
  }
  return ShowMessageBox(question, MessageIcon::kNone, MessageButtons::kYesNo) == MessageAnswer::kYes;
}

std::vector<CString> CSelImportDialog::TickedLeaves() const {
  const CMutiTreeCtrl& tree = Tree();
  std::vector<CString> texts;
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    if (!tree.ItemHasChildren(item) && tree.GetCheck(item) == kTreeTicked) texts.push_back(tree.GetItemText(item));
  }
  return texts;
}

CString CSelImportDialog::IeNameOf(const CString& leaf) const {
  const auto found = ie_names_.find(leaf);
  return found != ie_names_.end() ? found->second : leaf;
}

void CSelImportDialog::OnOK() {
  if (tree_built_) CollectResult();
  CPropertyPage::OnOK();
}

void CSelImportDialog::CollectResult() {
  result_.clear();
  for (const char* name : kAlwaysChosen) result_[name] = SettingFor(name);
  for (const CString& text : TickedLeaves()) {
    if (text.IsEmpty()) continue;
    const auto previous = previous_settings_.find(text);
    result_[text] = previous != previous_settings_.end() ? previous->second : SettingFor(IeNameOf(text));
  }
}

void CSelImportDialog::SaveTemplate() {
  CFileDialog dialog(false, CString(), CString(), CFileDialog::kOverwritePrompt, TemplateFilter());
  if (dialog.DoModal() != kIdOk) return;
  template_.clear();
  for (const CString& text : TickedLeaves()) {
    if (!text.IsEmpty()) template_[text] = IeNameOf(text);
  }
  std::string failure;
  ReportTemplate(WriteIeTemplate(dialog.GetPathName(), template_, failure), failure);
}

void CSelImportDialog::LoadTemplate() {
  CFileDialog dialog(true, CString(), CString(), 0, TemplateFilter());
  if (dialog.DoModal() != kIdOk) return;
  std::string failure;
  const auto content = ReadIeTemplate(dialog.GetPathName(), failure);
  ReportTemplate(content.has_value(), failure);
  if (content) template_ = *content;
  first_use_ = 0;
  BuildTree();
  if (content) NoteUnknownEntries(dialog.GetPathName());
}

// Entries that tick nothing: names of another catalogue.
void CSelImportDialog::NoteUnknownEntries(const CString& path) const {
  const std::vector<CString> ticked = TickedLeaves();
  for (const auto& [text, ie_name] : template_) {
    if (std::find(ticked.begin(), ticked.end(), text) != ticked.end()) continue;
    CurrentNotes().Add("template entry unknown"_note, path, "IE '" + GbkToUtf8(text) + "'",
                       "the selection has no such leaf");
  }
}

void CSelImportDialog::ReportTemplate(bool is_done, const std::string& failure) {
  SetOutcome(is_done ? DialogOutcome::kDone : DialogOutcome::kNotDone);
  if (!is_done) Log(LogLevel::kError, failure);
}

}  // namespace loom
