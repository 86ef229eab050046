#include "platform/encoding.h"
#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/scripted_user.h"

// The steps that a script is written in.
namespace loom {
namespace {

std::string InQuotes(const CString& text) { return "'" + GbkToUtf8(text) + "'"; }

std::string ListText(const std::vector<CString>& texts) {
  std::string list;
  for (const CString& text : texts) list += (list.empty() ? "" : ", ") + InQuotes(text);
  return "[" + list + "]";
}

template <class T>
T& ItemFor(CDialog& dialog, int id, const char* class_text) {
  auto* const item = dynamic_cast<T*>(dialog.FindItem(id));
  if (!item) throw UiRefused("there is no " + std::string(class_text) + " " + std::to_string(id));
  return *item;
}

std::string NumbersText(const std::vector<int>& numbers) {
  std::string list;
  for (const int number : numbers) list += (list.empty() ? "" : ", ") + std::to_string(number);
  return "[" + list + "]";
}

std::string RowsText(const std::vector<std::vector<CString>>& rows) {
  std::string list;
  for (const auto& cells : rows) list += (list.empty() ? "" : ", ") + ListText(cells);
  return "[" + list + "]";
}

template <class Tree>
HTREEITEM FindItem(const Tree& tree, const CString& path) {
  const HTREEITEM item = tree.FindPath(path);
  if (!item) throw UiRefused("the tree " + std::to_string(tree.GetDlgCtrlID()) + " has no item " + InQuotes(path));
  return item;
}

}  // namespace

ScriptedUser& ScriptedUser::Add(Step step) {
  steps_.push_back(std::move(step));
  return *this;
}

ScriptedUser& ScriptedUser::Expect(int dialog_id) {
  return Add({.kind = StepKind::kDialog, .description = "dialog " + std::to_string(dialog_id), .id = dialog_id});
}

ScriptedUser& ScriptedUser::ExpectMessage(const CString& text, std::optional<MessageIcon> icon) {
  return Add({.kind = StepKind::kMessage, .description = "message " + InQuotes(text), .text = text, .icon = icon});
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
  return Add({.kind = StepKind::kFiles, .description = "pick files " + ListText(paths), .paths = std::move(paths)});
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

ScriptedUser& ScriptedUser::Press(int id) {
  return Do("press " + std::to_string(id), [id](CDialog& dialog) { dialog.UserPress(id); });
}

ScriptedUser& ScriptedUser::Cancel() {
  return Do("cancel", [](CDialog& dialog) { dialog.UserClose(); });
}

ScriptedUser& ScriptedUser::CheckState(int id, int state) {
  return Do("put " + std::to_string(id) + " to " + std::to_string(state),
            [=](CDialog& dialog) { ItemFor<CButton>(dialog, id, "button").UserCheck(state); });
}

ScriptedUser& ScriptedUser::Type(int id, const CString& text) {
  return Do("type " + InQuotes(text) + " into " + std::to_string(id), [=](CDialog& dialog) {
    if (auto* const combo = dynamic_cast<CComboBox*>(dialog.FindItem(id)))
      combo->UserType(text);
    else
      ItemFor<CEdit>(dialog, id, "edit").UserType(text);
  });
}

ScriptedUser& ScriptedUser::Choose(int id, const CString& entry) {
  return Do("choose " + InQuotes(entry) + " in " + std::to_string(id),
            [=](CDialog& dialog) { ItemFor<CComboBox>(dialog, id, "combo box").UserChoose(entry); });
}

ScriptedUser& ScriptedUser::ChooseAt(int id, int position) {
  return Do("choose entry " + std::to_string(position) + " in " + std::to_string(id),
            [=](CDialog& dialog) { ItemFor<CComboBox>(dialog, id, "combo box").UserChoose(position); });
}

ScriptedUser& ScriptedUser::See(const std::string& what, std::function<std::string(CDialog&)> seen,
                                const std::string& wanted) {
  return Do("see " + what + " = " + wanted, [=, this](CDialog& dialog) {
    const std::string actual = seen(dialog);
    if (actual != wanted)
      Fail(what + " of dialog " + std::to_string(dialog.GetTemplate().id) + " is " + actual + ", not " + wanted);
  });
}

ScriptedUser& ScriptedUser::SeeTitle(const CString& title) {
  return See(
      "the title",
      [](CDialog& dialog) { return InQuotes(dialog.GetSheet() ? dialog.GetSheet()->GetTitle() : dialog.GetTitle()); },
      InQuotes(title));
}

ScriptedUser& ScriptedUser::SeeText(int id, const CString& text) {
  return See(
      "the text of " + std::to_string(id),
      [id](CDialog& dialog) { return InQuotes(ItemFor<CWnd>(dialog, id, "control").GetWindowText()); }, InQuotes(text));
}

ScriptedUser& ScriptedUser::SeeChecked(int id, int state) {
  return See(
      "the check of " + std::to_string(id),
      [id](CDialog& dialog) { return std::to_string(ItemFor<CButton>(dialog, id, "button").GetCheck()); },
      std::to_string(state));
}

ScriptedUser& ScriptedUser::SeeItems(int combo_id, const std::vector<CString>& items) {
  const auto seen = [combo_id](CDialog& dialog) {
    const auto& combo = ItemFor<CComboBox>(dialog, combo_id, "combo box");
    std::vector<CString> texts;
    for (int at = 0; at < combo.GetCount(); ++at) texts.push_back(combo.GetLBText(at));
    return ListText(texts);
  };
  return See("the list of " + std::to_string(combo_id), seen, ListText(items));
}

ScriptedUser& ScriptedUser::SeeEnabled(int id, bool enabled) {
  return See(
      "the state of " + std::to_string(id),
      [id](CDialog& dialog) {
        return std::string(ItemFor<CWnd>(dialog, id, "control").IsWindowEnabled() ? "enabled" : "disabled");
      },
      enabled ? "enabled" : "disabled");
}

ScriptedUser& ScriptedUser::SeeVisible(int id, bool visible) {
  return See(
      "the state of " + std::to_string(id),
      [id](CDialog& dialog) {
        return std::string(ItemFor<CWnd>(dialog, id, "control").IsWindowVisible() ? "visible" : "hidden");
      },
      visible ? "visible" : "hidden");
}

ScriptedUser& ScriptedUser::SelectRows(int list_id, const std::vector<int>& rows) {
  return Do("select rows " + NumbersText(rows) + " of " + std::to_string(list_id),
            [=](CDialog& dialog) { ItemFor<CListCtrl>(dialog, list_id, "list").UserSelectRows(rows); });
}

ScriptedUser& ScriptedUser::DoubleClick(int list_id, int row) {
  return Do("double-click row " + std::to_string(row) + " of " + std::to_string(list_id),
            [=](CDialog& dialog) { ItemFor<CListCtrl>(dialog, list_id, "list").UserDoubleClick(row); });
}

ScriptedUser& ScriptedUser::ClickHeader(int list_id, int column) {
  return Do("click the header of column " + std::to_string(column) + " of " + std::to_string(list_id),
            [=](CDialog& dialog) { ItemFor<CListCtrl>(dialog, list_id, "list").UserClickHeader(column); });
}

ScriptedUser& ScriptedUser::SelectItems(int tree_id, const std::vector<CString>& paths) {
  return Do("select " + ListText(paths) + " in " + std::to_string(tree_id), [=](CDialog& dialog) {
    auto& tree = ItemFor<CTreeCtrl>(dialog, tree_id, "tree");
    std::vector<HTREEITEM> items;
    for (const CString& path : paths) items.push_back(FindItem(tree, path));
    if (auto* const several = dynamic_cast<CMutiTreeCtrl*>(&tree)) return several->UserSelectItems(items);
    if (items.size() != 1) throw UiRefused("the tree has one selected item");
    tree.UserSelect(items.front());
  });
}

ScriptedUser& ScriptedUser::DoubleClickItem(int tree_id, const CString& path, TreeHitPart part) {
  return Do("double-click " + InQuotes(path) + " in " + std::to_string(tree_id), [=](CDialog& dialog) {
    auto& tree = ItemFor<CTreeCtrl>(dialog, tree_id, "tree");
    tree.UserDoubleClick(FindItem(tree, path), part);
  });
}

ScriptedUser& ScriptedUser::Tick(int tree_id, const CString& path, bool ticked) {
  return Do((ticked ? "tick " : "clear ") + InQuotes(path) + " in " + std::to_string(tree_id), [=](CDialog& dialog) {
    auto& tree = ItemFor<CMutiTreeCtrl>(dialog, tree_id, "tree with boxes");
    tree.UserTick(FindItem(tree, path), ticked);
  });
}

ScriptedUser& ScriptedUser::Expand(int tree_id, const CString& path, bool expanded) {
  return Do((expanded ? "open " : "close ") + InQuotes(path) + " in " + std::to_string(tree_id), [=](CDialog& dialog) {
    auto& tree = ItemFor<CTreeCtrl>(dialog, tree_id, "tree");
    tree.UserExpand(FindItem(tree, path), expanded);
  });
}

ScriptedUser& ScriptedUser::PickDate(int id, const CalendarDay& day) {
  return Do("pick a date in " + std::to_string(id),
            [=](CDialog& dialog) { ItemFor<CDateTimeCtrl>(dialog, id, "date picker").UserPickDate(day); });
}

ScriptedUser& ScriptedUser::PickTime(int id, int hour, int minute, int second) {
  return Do("pick a time in " + std::to_string(id), [=](CDialog& dialog) {
    ItemFor<CDateTimeCtrl>(dialog, id, "time picker").UserPickTime(hour, minute, second);
  });
}

ScriptedUser& ScriptedUser::SheetPage(int page_id) {
  return Do("go to page " + std::to_string(page_id), [=](CDialog& dialog) {
    if (!dialog.GetSheet()) throw UiRefused("the window in front is no sheet");
    dialog.GetSheet()->UserSelectPage(dialog.GetSheet()->FindPage(page_id));
  });
}

ScriptedUser& ScriptedUser::SeeFocus(int id) {
  return See(
      "the focus", [](CDialog& dialog) { return std::to_string(dialog.GetFocusId()); }, std::to_string(id));
}

ScriptedUser& ScriptedUser::SeeRows(int list_id, const std::vector<std::vector<CString>>& rows) {
  const auto seen = [list_id](CDialog& dialog) {
    ItemFor<CListCtrl>(dialog, list_id, "list");
    for (const ControlState& control : StateOf(dialog).controls) {
      if (control.id == list_id) return RowsText(*control.rows);
    }
    return std::string();
  };
  return See("the rows of " + std::to_string(list_id), seen, RowsText(rows));
}

ScriptedUser& ScriptedUser::SeeSelectedRows(int list_id, const std::vector<int>& rows) {
  return See(
      "the selected rows of " + std::to_string(list_id),
      [=](CDialog& dialog) { return NumbersText(ItemFor<CListCtrl>(dialog, list_id, "list").GetSelectedRows()); },
      NumbersText(rows));
}

ScriptedUser& ScriptedUser::SeeTicked(int tree_id, const CString& path, TreeCheck check) {
  const auto seen = [=](CDialog& dialog) {
    const auto& tree = ItemFor<CMutiTreeCtrl>(dialog, tree_id, "tree with boxes");
    return std::to_string(tree.GetCheck(FindItem(tree, path)));
  };
  return See("the box of " + InQuotes(path), seen, std::to_string(check));
}

ScriptedUser& ScriptedUser::SeePage(int page_id) {
  return See(
      "the page in front",
      [](CDialog& dialog) { return std::to_string(dialog.GetSheet() ? dialog.GetTemplate().id : 0); },
      std::to_string(page_id));
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
