#pragma once

#include <vector>

#include "components/markup.h"
#include "platform/cstring.h"
#include "platform/ui/tree_ctrl.h"

// The parameter navigator "Navigator.xml": the catalogue of information elements by protocol that dialogs show as a
// tree. It is read anew every time it is needed.
namespace loom {

// Role of an element, by its attribute "type".
enum class NavigatorType {
  kGroup,       // none of the others
  kProtocol,    // shown by its attribute "value"
  kStream,      // not shown; what is below it belongs to the level above
  kParamRoot,   // root of a protocol's parameters
  kParamType,   // a group of parameters
  kParamItem,   // one information element, its tag the name
  kEventsRoot,  // events and producers are never shown
  kProducerRoot,
};
NavigatorType NavigatorTypeOf(const CString& attribute);
inline NavigatorType NavigatorTypeOf(const MarkupElement& element) {
  return NavigatorTypeOf(element.GetAttribute("type"));
}
constexpr bool IsNeverShown(NavigatorType type) {
  return type == NavigatorType::kEventsRoot || type == NavigatorType::kProducerRoot;
}

// Where the navigator lies for a host: in the folder "Config" beside the folder of its program.
CString NavigatorPathOf(const CString& executable);
// The same for the running host, or in the configuration folder that it has chosen.
CString NavigatorPath();

// False when it cannot be used, which the log tells; the reader shows a message of its own.
bool LoadNavigator(CMarkupMSXML& navigator);

// Names of information elements, in document order.
struct NavigatorNames {
  std::vector<CString> independent;  // of no protocol
  std::vector<CString> gsm;          // at most one group deep
  std::vector<CString> lte;          // at any depth
};
NavigatorNames ReadNavigatorNames(const CMarkupMSXML& navigator);

// One element as a tree shows it.
struct NavigatorItem {
  NavigatorType type;
  CString text;
  int image;  // of kTreeImages
};

// Whether a tree shows the element, and how.
NavigatorItem NavigatorItemOf(const MarkupElement& element);

// The common walk of the trees: `insert(item, parent)` is called for every element that is shown, parents first, and
// gives the parent of what is below it.
template <class Parent, class Insert>
void WalkNavigator(const MarkupElement& element, Parent parent, const Insert& insert) {
  const NavigatorItem item = NavigatorItemOf(element);
  if (!element || IsNeverShown(item.type)) return;
  if (item.type != NavigatorType::kStream) parent = insert(item, parent);
  for (MarkupElement child = element.FirstChild(); child; child = child.NextSibling()) {
    WalkNavigator(child, parent, insert);
  }
}

void ExpandTopLevel(CTreeCtrl& tree);

}  // namespace loom
