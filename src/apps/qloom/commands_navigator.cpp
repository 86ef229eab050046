#include <iostream>

#include "apps/qloom/commands.h"
#include "platform/encoding.h"
#include "text/navigator/parameter_navigator.h"

namespace loom {
namespace {

void RequireNavigator(CMarkupMSXML& navigator) {
  if (!navigator.Load(NavigatorPath())) throw Error(navigator.GetError());
}

Json TreeJson(const CMarkupMSXML& navigator) {
  Json top = Json::array();
  WalkNavigator(navigator.GetDocumentElement(), &top, [](const NavigatorItem& item, Json* siblings) {
    siblings->push_back({{"text", JsonText(item.text)}, {"image", item.image}, {"children", Json::array()}});
    return &siblings->back()["children"];
  });
  return top;
}

void PrintTree(const CMarkupMSXML& navigator) {
  WalkNavigator(navigator.GetDocumentElement(), 0, [](const NavigatorItem& item, int depth) {
    std::cout << std::string(static_cast<std::size_t>(depth) * 2, ' ') << GbkToUtf8(item.text) << '\n';
    return depth + 1;
  });
}

Json NamesJson(const std::vector<CString>& names) {
  Json json = Json::array();
  for (const CString& name : names) json.push_back(JsonText(name));
  return json;
}

void PrintNames(const char* title, const std::vector<CString>& names) {
  std::cout << title << '\n';
  for (const CString& name : names) std::cout << "  " << GbkToUtf8(name) << '\n';
}

int ShowTree(const CommandLine& line) {
  Session session(line.common, {}, {}, ProjectUse::kRead);
  CMarkupMSXML navigator;
  RequireNavigator(navigator);
  if (!line.common.json) PrintTree(navigator);
  return session.Finish({{"tree", TreeJson(navigator)}}, kExitDone);
}

int ShowLists(const CommandLine& line) {
  Session session(line.common, {}, {}, ProjectUse::kRead);
  CMarkupMSXML navigator;
  RequireNavigator(navigator);
  const NavigatorNames names = ReadNavigatorNames(navigator);
  if (!line.common.json) {
    PrintNames("independent", names.independent);
    PrintNames("GSM", names.gsm);
  }
  return session.Finish({{"independent", NamesJson(names.independent)}, {"gsm", NamesJson(names.gsm)}}, kExitDone);
}

}  // namespace

void AddNavigatorCommands(Command& program, CommandLine& line) {
  Command navigator = program.AddGroup("navigator", "The parameter navigator");
  navigator.AddCommand("tree", "The tree that dialogs show").Runs([&line] { return ShowTree(line); });
  navigator.AddCommand("lists", "The names of protocol-independent and of GSM elements").Runs([&line] {
    return ShowLists(line);
  });
}

}  // namespace loom
