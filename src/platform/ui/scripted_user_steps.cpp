#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/scripted_user.h"

// The steps that a script is written in.
namespace loom {
ScriptedUser& ScriptedUser::Add(Step step) {
  steps_.push_back(std::move(step));
  return *this;
}

ScriptedUser& ScriptedUser::Expect(int dialog_id) {
  return Add({.kind = StepKind::kDialog, .description = "dialog " + std::to_string(dialog_id), .id = dialog_id});
}

ScriptedUser& ScriptedUser::ExpectMessage(const CString& text, std::optional<MessageIcon> icon) {
  return Add({.kind = StepKind::kMessage, .description = "message " + Shown(text), .text = text, .icon = icon});
}

ScriptedUser& ScriptedUser::Answer(MessageAnswer answer) {
  if (steps_.empty() || steps_.back().kind != StepKind::kMessage)
    throw std::logic_error("an answer stands behind the message that it answers");
  steps_.back().answer = answer;
  return *this;
}

ScriptedUser& ScriptedUser::AnswerNext(MessageAnswer answer) {
  return Add({.kind = StepKind::kMessage,
              .description = std::string("answer ") + MessageAnswerName(answer),
              .answer = answer,
              .any_message = true});
}

ScriptedUser& ScriptedUser::PickFiles(std::vector<CString> paths) {
  return Add({.kind = StepKind::kFiles, .description = "pick files " + Shown(paths), .paths = std::move(paths)});
}

ScriptedUser& ScriptedUser::Overwrite(bool overwrite) {
  if (steps_.empty() || steps_.back().kind != StepKind::kFiles)
    throw std::logic_error("overwriting stands behind the files that are picked");
  steps_.back().overwrite = overwrite;
  return *this;
}

ScriptedUser& ScriptedUser::CancelFiles() {
  return Add({.kind = StepKind::kFiles, .description = "cancel a file dialog"});
}

ScriptedUser& ScriptedUser::PressInFiles(int extra_button_id) {
  return Add({.kind = StepKind::kFileButton,
              .description = "press " + std::to_string(extra_button_id) + " in a file dialog",
              .id = extra_button_id});
}

ScriptedUser& ScriptedUser::Do(const std::string& description, std::function<void(CDialog&)> action) {
  return Add({.kind = StepKind::kAction, .description = description, .action = std::move(action)});
}

ScriptedUser& ScriptedUser::Do(int id, const UserAction& action) {
  return Do(action.text + " " + Shown(id), [id, perform = action.perform](CDialog& dialog) { perform(dialog, id); });
}

ScriptedUser& ScriptedUser::Cancel() {
  return Do("cancel", [](CDialog& dialog) { dialog.UserClose(); });
}

ScriptedUser& ScriptedUser::SelectItems(int id, const std::vector<CString>& paths) {
  std::vector<TreeItem> items;
  for (const CString& path : paths) items.push_back(ItemAtPath(path));
  return Do(id, act::SelectItems(items));
}

ScriptedUser& ScriptedUser::See(const std::string& what, std::function<std::string(CDialog&)> seen,
                                const std::string& wanted) {
  return Do("see " + what + " = " + wanted, [=, this](CDialog& dialog) {
    const std::string actual = seen(dialog);
    if (actual != wanted)
      Fail(what + " of dialog " + std::to_string(dialog.GetTemplate().id) + " is " + actual + ", not " + wanted);
  });
}

// Of a control: what `get` gives.
template <class Control, class Get, class Value>
ScriptedUser& ScriptedUser::SeeOf(const std::string& what, int id, Get get, const Value& wanted) {
  return See(
      what + " of " + Shown(id), [=](CDialog& dialog) { return Shown(get(ItemFor<Control>(dialog, id))); },
      Shown(wanted));
}

ScriptedUser& ScriptedUser::SeeTitle(const CString& title) {
  return See(
      "the title",
      [](CDialog& dialog) { return Shown(dialog.GetSheet() ? dialog.GetSheet()->GetTitle() : dialog.GetTitle()); },
      Shown(title));
}

ScriptedUser& ScriptedUser::SeeText(int id, const CString& text) {
  return SeeOf<CWnd>(
      "the text", id, [](const CWnd& control) { return control.GetWindowText(); }, text);
}

ScriptedUser& ScriptedUser::SeeChecked(int id, int state) {
  return SeeOf<CButton>(
      "the check", id, [](const CButton& button) { return button.GetCheck(); }, state);
}

ScriptedUser& ScriptedUser::SeeItems(int combo_id, const std::vector<CString>& items) {
  return SeeOf<CComboBox>(
      "the list", combo_id, [](const CComboBox& combo) { return StateOf(combo).items.value(); }, items);
}

ScriptedUser& ScriptedUser::SeeEnabled(int id, bool enabled) {
  return SeeOf<CWnd>(
      "whether enabled", id, [](const CWnd& control) { return int{control.IsWindowEnabled()}; }, int{enabled});
}

ScriptedUser& ScriptedUser::SeeVisible(int id, bool visible) {
  return SeeOf<CWnd>(
      "whether visible", id, [](const CWnd& control) { return int{control.IsWindowVisible()}; }, int{visible});
}

ScriptedUser& ScriptedUser::SeeFocus(int id) {
  return See(
      "the focus", [](CDialog& dialog) { return Shown(dialog.GetFocusId()); }, Shown(id));
}

ScriptedUser& ScriptedUser::SeeRows(int list_id, const std::vector<std::vector<CString>>& rows) {
  return SeeOf<CListCtrl>(
      "the rows", list_id, [](const CListCtrl& list) { return StateOf(list).rows.value(); }, rows);
}

ScriptedUser& ScriptedUser::SeeSelectedRows(int list_id, const std::vector<int>& rows) {
  return SeeOf<CListCtrl>(
      "the selected rows", list_id, [](const CListCtrl& list) { return list.GetSelectedRows(); }, rows);
}

ScriptedUser& ScriptedUser::SeeTicked(int tree_id, const CString& path, TreeCheck check) {
  const auto seen = [item = ItemAtPath(path)](const CMutiTreeCtrl& tree) { return int{tree.GetCheck(item.In(tree))}; };
  return SeeOf<CMutiTreeCtrl>("the box " + Shown(path), tree_id, seen, int{check});
}

ScriptedUser& ScriptedUser::SeePage(int page_id) {
  return See(
      "the page in front", [](CDialog& dialog) { return Shown(dialog.GetSheet() ? dialog.GetTemplate().id : 0); },
      Shown(page_id));
}

ScriptedUser& ScriptedUser::SeeButtons(const std::string& names) {
  const auto seen = [](CDialog& dialog) {
    std::string text;
    for (const ButtonState& button : StateOf(dialog).buttons) {
      if (button.enabled) text += (text.empty() ? "" : " ") + std::string(button.name);
    }
    return text;
  };
  return See("the buttons that can be pressed", seen, names);
}

}  // namespace loom
