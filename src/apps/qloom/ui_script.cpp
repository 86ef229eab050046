#include "apps/qloom/ui_script.h"

#include <filesystem>
#include <map>

#include "apps/qloom/session.h"
#include "platform/encoding.h"
#include "platform/number.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/log_import_templates.h"
#include "resources/text_import_templates.h"

namespace loom {
namespace {

CString TextOf(const Json& json) { return Utf8ToGbk(json.get<std::string>()); }

bool FlagOf(const Json& json) { return json.is_boolean() ? json.get<bool>() : json.get<int>() != 0; }

// What a person types; the path of a text file, which the project keeps, from the root.
CString TypedText(int id, const Json& text) {
  const bool is_path = id == kEditTextPath && !text.get<std::string>().empty();
  return is_path ? AbsolutePath(text.get<std::string>()) : TextOf(text);
}

std::vector<CString> PathsOf(const Json& json) {
  std::vector<CString> paths;
  for (const Json& path : json) paths.push_back(AbsolutePath(path.get<std::string>()));
  return paths;
}

// The numbers of "2024-05-17" or "10:00:00".
std::vector<int> NumbersOf(const Json& json, char separator) {
  std::vector<int> numbers;
  for (const CString& part : TextOf(json).Split(separator)) {
    const auto number = ParseInt<int>(part);
    if (!number) throw Error("'" + json.get<std::string>() + "' is no date or time of day");
    numbers.push_back(*number);
  }
  if (numbers.size() != 3) throw Error("'" + json.get<std::string>() + "' is no date or time of day");
  return numbers;
}

HTREEITEM ItemAt(const CTreeCtrl& tree, int position) {
  HTREEITEM item = tree.GetRootItem();
  for (; item && position > 0; --position) item = tree.GetNextItem(item);
  return item;
}

// Logs stand in a tree under their paths from the root; a script may name them from the working folder.
HTREEITEM ItemByPath(const CTreeCtrl& tree, const std::string& path) {
  if (const HTREEITEM item = tree.FindPath(NativeNameToGbk(path))) return item;
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    const std::string text = GbkNameToNative(tree.GetItemText(item));
    if (!text.starts_with('/')) continue;
    const std::string from_here =
        std::filesystem::path(text).lexically_relative(std::filesystem::current_path()).string();
    const std::size_t at = path.find(from_here + '/');
    if (at == path.npos) continue;
    if (const HTREEITEM found = tree.FindPath(NativeNameToGbk(std::string(path).replace(at, from_here.size(), text))))
      return found;
  }
  return {};
}

// By its position in the tree or its path.
TreeItem ItemFor(const Json& item) {
  if (item.is_number())
    return {item.dump(), [at = item.get<int>()](const CTreeCtrl& tree) { return ItemAt(tree, at); }};
  return {Shown(TextOf(item)),
          [path = item.get<std::string>()](const CTreeCtrl& tree) { return ItemByPath(tree, path); }};
}

// An action in the control that the window has, a list or a tree.
template <class InList, class InTree>
UserAction InListOrTree(const std::string& text, InList in_list, InTree in_tree) {
  return {text + " in", [=](CDialog& dialog, int id) {
            const CWnd* const control = dialog.FindItem(id);
            if (dynamic_cast<const CListCtrl*>(control) != nullptr) return in_list().perform(dialog, id);
            if (dynamic_cast<const CTreeCtrl*>(control) != nullptr) return in_tree().perform(dialog, id);
            throw UiRefused("control " + std::to_string(id) + " is no list or tree");
          }};
}

UserAction Select(const Json& items) {
  return InListOrTree(
      "select " + items.dump(), [items] { return act::SelectRows(items.get<std::vector<int>>()); },
      [items] {
        std::vector<TreeItem> found;
        for (const Json& item : items) found.push_back(ItemFor(item));
        return act::SelectItems(found);
      });
}

UserAction DoubleClick(const Json& item) {
  return InListOrTree(
      "double-click " + item.dump(), [item] { return act::DoubleClickRow(item.get<int>()); },
      [item] { return act::DoubleClickItem(ItemFor(item)); });
}

const std::map<std::string, int> kButtons{
    {"ok", kIdOk}, {"back", kIdWizardBack}, {"next", kIdWizardNext}, {"finish", kIdWizardFinish}};
const std::map<std::string, MessageAnswer> kAnswers{{"ok", MessageAnswer::kOk},
                                                    {"cancel", MessageAnswer::kCancel},
                                                    {"yes", MessageAnswer::kYes},
                                                    {"no", MessageAnswer::kNo}};

template <class Value>
Value Named(const std::map<std::string, Value>& names, const Json& name) {
  const auto found = names.find(name.get<std::string>());
  if (found == names.end()) throw Error("unknown name " + name.dump());
  return found->second;
}

// Actions on a control, whose id is the first of the arguments.
using MakeAction = UserAction (*)(const Json& arguments);
const std::map<std::string, MakeAction> kActions{
    {"type", [](const Json& a) { return act::Type(TypedText(a.at(0).get<int>(), a.at(1))); }},
    {"choose",
     [](const Json& a) {
       return a.at(1).is_number() ? act::ChooseAt(a.at(1).get<int>()) : act::Choose(TextOf(a.at(1)));
     }},
    {"check", [](const Json& a) { return act::Check(a.at(1).is_number() ? a.at(1).get<int>() : FlagOf(a.at(1))); }},
    {"select", [](const Json& a) { return Select(a.at(1)); }},
    {"double_click", [](const Json& a) { return DoubleClick(a.at(1)); }},
    {"header", [](const Json& a) { return act::ClickHeader(a.at(1).get<int>()); }},
    {"tick", [](const Json& a) { return act::Tick(ItemAtPath(TextOf(a.at(1))), FlagOf(a.at(2))); }},
    {"expand", [](const Json& a) { return act::Expand(ItemAtPath(TextOf(a.at(1))), FlagOf(a.at(2))); }},
    {"date",
     [](const Json& a) {
       const std::vector<int> day = NumbersOf(a.at(1), '-');
       return act::PickDate({day[0], day[1], day[2]});
     }},
    {"time",
     [](const Json& a) {
       const std::vector<int> time = NumbersOf(a.at(1), ':');
       return act::PickTime(time[0], time[1], time[2]);
     }},
};

using AddStep = void (*)(ScriptedUser&, const Json& argument);
const std::map<std::string, AddStep> kSteps{
    {"press",
     [](ScriptedUser& user, const Json& id) {
       // The extra button of the file dialog; no other window has it.
       if (id.get<int>() == kButtonImportSettings) return void(user.PressInFiles(kButtonImportSettings));
       user.Press(id.get<int>());
     }},
    {"button",
     [](ScriptedUser& user, const Json& name) {
       if (name == "cancel") return void(user.Cancel());
       user.Press(Named(kButtons, name));
     }},
    {"page", [](ScriptedUser& user, const Json& id) { user.SheetPage(id.get<int>()); }},
    {"files",
     [](ScriptedUser& user, const Json& paths) {
       if (paths.empty()) return void(user.CancelFiles());
       user.PickFiles(PathsOf(paths));
     }},
    {"overwrite", [](ScriptedUser& user, const Json& on) { user.Overwrite(FlagOf(on)); }},
    {"answer", [](ScriptedUser& user, const Json& answer) { user.AnswerNext(Named(kAnswers, answer)); }},
};

void AddAction(ScriptedUser& user, const std::string& name, const Json& arguments) {
  if (const auto step = kSteps.find(name); step != kSteps.end()) return step->second(user, arguments);
  const auto action = kActions.find(name);
  if (action == kActions.end()) throw Error("there is no action \"" + name + "\"");
  user.Do(arguments.at(0).get<int>(), action->second(arguments));
}

void AddLine(ScriptedUser& user, const Json& line) {
  if (!line.is_object() || line.empty()) throw Error("a step is an object {action: arguments}");
  for (const auto& [action, arguments] : line.items()) AddAction(user, action, arguments);
}

Json TextsJson(const std::vector<CString>& texts) {
  Json json = Json::array();
  for (const CString& text : texts) json.push_back(JsonText(text));
  return json;
}

Json ControlJson(const ControlState& control) {
  Json json{{"id", control.id},
            {"class", control.class_name},
            {"text", JsonText(control.text)},
            {"enabled", control.enabled},
            {"visible", control.visible}};
  if (control.checked) json["checked"] = *control.checked;
  if (control.items) json["items"] = TextsJson(*control.items);
  if (control.columns) json["columns"] = TextsJson(*control.columns);
  if (control.rows) {
    json["rows"] = Json::array();
    for (const auto& row : *control.rows) json["rows"].push_back(TextsJson(row));
  }
  if (control.selected) json["selected"] = *control.selected;
  if (control.ticks) json["ticks"] = *control.ticks;
  return json;
}

void AddFileDialog(const FileDialogRequest& request, Json& json) {
  Json filters = Json::array();
  for (const FileFilter& filter : request.filters)
    filters.push_back({{"name", JsonText(filter.name)}, {"patterns", TextsJson(filter.patterns)}});
  json["window"] = {{"template", nullptr},
                    {"title", JsonText(request.title)},
                    {"file_dialog", request.save ? "save" : "open"},
                    {"several", request.multi_select},
                    {"filters", std::move(filters)}};
  if (request.extra_button) {
    json["controls"].push_back(ControlJson({.id = request.extra_button->id,
                                            .class_name = ControlClassName(ControlClass::kPushButton),
                                            .text = request.extra_button->text,
                                            .enabled = true,
                                            .visible = true}));
  }
  json["buttons"] = {{"ok", true}, {"cancel", true}};
}

}  // namespace

void AddScript(ScriptedUser& user, const std::string& path) {
  ReadJsonLines(path, [&](const Json& line) { AddLine(user, line); });
}

Json FrontStateJson(const ScriptedUser& user, Json messages) {
  Json json{{"window", nullptr}, {"controls", Json::array()}, {"buttons", Json::object()}};
  if (const FileDialogRequest* const files = user.FrontFileDialog()) AddFileDialog(*files, json);
  if (const auto state = user.FrontState()) {
    json["window"] = {{"template", state->template_id}, {"title", JsonText(state->title)}};
    for (const ControlState& control : state->controls) json["controls"].push_back(ControlJson(control));
    for (const ButtonState& button : state->buttons) json["buttons"][button.name] = button.enabled;
  }
  json["messages"] = std::move(messages);
  return json;
}

}  // namespace loom
