#include "text/navigator/parameter_navigator.h"

#include "components/host_folders.h"
#include "platform/log.h"
#include "platform/path.h"
#include "resources/images.h"

namespace loom {
namespace {

struct TypeName {
  const char* name;
  NavigatorType type;
};

// clang-format off
constexpr TypeName kNavigatorTypeNames[] = {
    {"NAVIGATORPROTOCOL",     NavigatorType::kProtocol},
    {"NAVIGATORSTREAM",       NavigatorType::kStream},
    {"NAVIGATORPARAMROOT",    NavigatorType::kParamRoot},
    {"NAVIGATORPARAMTYPE",    NavigatorType::kParamType},
    {"NAVIGATORPARAMITEM",    NavigatorType::kParamItem},
    {"NAVIGATOREVENTSROOT",   NavigatorType::kEventsRoot},
    {"NAVIGATORPRODUCERROOT", NavigatorType::kProducerRoot},
};
// clang-format on

constexpr const char* kNavigatorFile = "Navigator.xml";
constexpr const char* kGsm = "GSM";
constexpr const char* kLte = "LTE";

// Calls use(child) for the children of one type.
template <class Use>
void ForEachChild(const MarkupElement& element, NavigatorType type, Use use) {
  for (MarkupElement child = element.FirstChild(); child; child = child.NextSibling()) {
    if (NavigatorTypeOf(child) == type) use(child);
  }
}

void AddItemNames(const MarkupElement& group, std::vector<CString>& names) {
  ForEachChild(group, NavigatorType::kParamItem,
               [&](const MarkupElement& item) { names.push_back(item.GetTagName()); });
}

// Items of the root and of its groups, in document order.
void AddRootNames(const MarkupElement& root, std::vector<CString>& names) {
  for (MarkupElement child = root.FirstChild(); child; child = child.NextSibling()) {
    const NavigatorType type = NavigatorTypeOf(child);
    if (type == NavigatorType::kParamItem) names.push_back(child.GetTagName());
    if (type == NavigatorType::kParamType) AddItemNames(child, names);
  }
}

void AddNamesBelow(const MarkupElement& element, std::vector<CString>& names) {
  for (MarkupElement child = element.FirstChild(); child; child = child.NextSibling()) {
    if (NavigatorTypeOf(child) == NavigatorType::kParamItem) names.push_back(child.GetTagName());
    AddNamesBelow(child, names);
  }
}

CString WithoutLastName(const CString& path) {
  const CString folder = FolderOf(path);
  return folder.Left(folder.GetLength() - 1);
}

int ImageOf(NavigatorType type) {
  if (type == NavigatorType::kProtocol) return kImageProtocol;
  return type == NavigatorType::kParamItem ? kImageIe : kImageGroup;
}

}  // namespace

NavigatorType NavigatorTypeOf(const CString& attribute) {
  for (const TypeName& known : kNavigatorTypeNames) {
    if (attribute.view() == known.name) return known.type;
  }
  return NavigatorType::kGroup;
}

CString NavigatorPathOf(const CString& executable) {
  const CString folder = FolderOf(executable);
  const CString separator = folder.IsEmpty() ? CString("/") : folder.Right(1);
  return WithoutLastName(WithoutLastName(executable)) + separator + "Config" + separator + kNavigatorFile;
}

CString NavigatorPath() {
  const CString chosen = GetChosenConfigFolder();
  return chosen.IsEmpty() ? NavigatorPathOf(GetModuleFileName()) : JoinPath(chosen, kNavigatorFile);
}

bool LoadNavigator(CMarkupMSXML& navigator) {
  if (navigator.Load(NavigatorPath())) return true;
  Log(LogLevel::kError, navigator.GetError());
  return false;
}

NavigatorNames ReadNavigatorNames(const CMarkupMSXML& navigator) {
  NavigatorNames names;
  const MarkupElement document = navigator.GetDocumentElement();
  ForEachChild(document.FirstChild("Independent"), NavigatorType::kParamType,
               [&](const MarkupElement& group) { AddItemNames(group, names.independent); });
  for (MarkupElement protocol = document.FirstChild("PROTOCOL"); protocol;
       protocol = protocol.NextSibling("PROTOCOL")) {
    const CString value = protocol.GetAttribute("value");
    if (value == kLte) AddNamesBelow(protocol, names.lte);
    if (value != kGsm) continue;
    ForEachChild(protocol, NavigatorType::kParamRoot,
                 [&](const MarkupElement& root) { AddRootNames(root, names.gsm); });
  }
  return names;
}

NavigatorItem NavigatorItemOf(const MarkupElement& element) {
  const NavigatorType type = NavigatorTypeOf(element);
  return {type, type == NavigatorType::kProtocol ? element.GetAttribute("value") : element.GetTagName(), ImageOf(type)};
}

void ExpandTopLevel(CTreeCtrl& tree) {
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextSiblingItem(item)) tree.Expand(item);
}

}  // namespace loom
