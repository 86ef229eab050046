#pragma once

#include <functional>
#include <map>
#include <set>

#include "components/markup.h"
#include "platform/ui/tree_ctrl.h"
#include "text/navigator/parameter_navigator.h"

namespace loom {

// Fills the tree of the IE selection from the navigator. Repeated information elements are shown once, by their group
// or their stem; the groups of scanner measurements are gathered in one.
class IeSelectionTree {
 public:
  // Whether the item of an information element is ticked, by its text and the default of the navigator.
  using IsTicked = std::function<bool(const CString& text, bool by_default)>;

  // Both outlive the object. `ie_names` receives the IE that stands for a text where that is another name.
  IeSelectionTree(CMutiTreeCtrl& tree, std::map<CString, CString>& ie_names, IsTicked is_ticked)
      : tree_(tree), ie_names_(ie_names), is_ticked_(std::move(is_ticked)) {}

  // Adds everything below the document element, then the groups of all messages and all events.
  void Build(const MarkupElement& document_element);

 private:
  // Where an element goes. Nowhere: the scanner group before it exists.
  struct Parent {
    HTREEITEM item;
    bool is_nowhere = false;
  };
  // How one element is shown.
  struct Shown {
    CString tag;
    NavigatorType type;
    Parent parent;
    bool is_collapsed = false;  // one item for all of its kind, with the children of the first
    bool is_grouped = false;    // likewise, without children
  };

  HTREEITEM Walk(const MarkupElement& element, const Parent& parent);
  Shown Classify(const MarkupElement& element, const Parent& parent);
  void GroupByStem(Shown& shown);
  HTREEITEM Insert(const MarkupElement& element, const Shown& shown);
  void AddWholeGroup(const char* group, const char* leaf, const char* ie_name, HTREEITEM parent);

  CMutiTreeCtrl& tree_;
  std::map<CString, CString>& ie_names_;
  IsTicked is_ticked_;
  std::set<CString> shown_groups_;
  HTREEITEM scanner_group_;
};

}  // namespace loom
