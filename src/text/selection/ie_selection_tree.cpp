#include "text/selection/ie_selection_tree.h"

#include <algorithm>
#include <array>

#include "resources/images.h"
#include "text/selection/ie_stem_table.h"

namespace loom {
namespace {

constexpr const char* kTimeslotGroup = "TimeslotInfo";
constexpr const char* kDpchGroup = "DPCHInfo";
constexpr const char* kScannerGroup = "SCANNER_DataInfo";
constexpr const char* kScanCarrier = "UARFCN_Scan";
constexpr const char* kScanCarrierIe = "UARFCN_Scan_1";
constexpr std::array<std::string_view, 3> kScanGroups{"Pilot_Measurements_Scan", "PCCPCH_Measurements_Scan",
                                                      "RSSI_Measurements_Scan"};

// The quick search first: it alone could see a part of a two-byte character, never miss a text.
bool Contains(const CString& tag, std::string_view part) {
  return tag.view().find(part) != std::string_view::npos && tag.Find(CString(part)) >= 0;
}

bool IsLeftOut(const CString& tag) {
  return tag == "Independent" || tag == "Uplink_Measurements" || Contains(tag, "_by_ARFCN");
}

const IeStem* FindStem(const CString& tag) {
  const auto matches = [&](const IeStem& entry) {
    return entry.match == StemMatch::kEquals ? tag.view() == entry.stem : Contains(tag, entry.stem);
  };
  const auto found = std::find_if(kIeStems.begin(), kIeStems.end(), matches);
  return found != kIeStems.end() ? &*found : nullptr;
}

bool IsScanGroup(const CString& tag) {
  return std::find(kScanGroups.begin(), kScanGroups.end(), tag.view()) != kScanGroups.end();
}

}  // namespace

void IeSelectionTree::GroupByStem(Shown& shown) {
  const IeStem* const stem = FindStem(shown.tag);
  if (stem == nullptr) return;
  ie_names_[CString(stem->stem)] = CString(stem->representative);
  shown.type = NavigatorType::kParamItem;
  shown.is_grouped = true;
}

IeSelectionTree::Shown IeSelectionTree::Classify(const MarkupElement& element, const Parent& parent) {
  Shown shown{element.GetTagName(), NavigatorTypeOf(element), parent};
  for (const char* group : {kTimeslotGroup, kDpchGroup}) {
    if (!Contains(shown.tag, group)) continue;
    shown.tag = group;
    shown.is_collapsed = true;
    return shown;
  }
  if (Contains(shown.tag, kScanCarrier)) {
    if (!scanner_group_) {
      scanner_group_ = tree_.InsertItem(kScannerGroup, kImageGroup, parent.item);
      shown.parent = {scanner_group_};
    }
    shown.tag = kScanCarrier;
    shown.type = NavigatorType::kParamItem;
    shown.is_grouped = true;
    ie_names_[kScanCarrier] = kScanCarrierIe;
  } else if (IsScanGroup(shown.tag)) {
    shown.parent = {scanner_group_, !scanner_group_};
    shown.type = NavigatorType::kParamType;
  } else {
    GroupByStem(shown);
  }
  return shown;
}

HTREEITEM IeSelectionTree::Insert(const MarkupElement& element, const Shown& shown) {
  const CString text = shown.type == NavigatorType::kProtocol ? element.GetAttribute("value") : shown.tag;
  const int image = shown.type == NavigatorType::kParamItem ? kImageIe : kImageGroup;
  const HTREEITEM item = tree_.InsertItem(text, image, shown.parent.item);
  // The box of a group follows what is below it.
  if (image == kImageIe) tree_.SetCheck(item, is_ticked_(text, element.GetAttribute("check") == "true"));
  if (shown.is_collapsed || shown.is_grouped) shown_groups_.insert(shown.tag);
  return item;
}

// The item of the element, or its parent's when it has none of its own.
HTREEITEM IeSelectionTree::Walk(const MarkupElement& element, const Parent& parent) {
  if (IsLeftOut(element.GetTagName())) return parent.item;
  const Shown shown = Classify(element, parent);
  if (IsNeverShown(shown.type)) return parent.item;
  Parent below = shown.parent;
  if (shown.type != NavigatorType::kStream) {
    const bool is_there = !shown.parent.is_nowhere && shown_groups_.contains(shown.tag);
    if (is_there) return parent.item;
    below = {Insert(element, shown)};
  }
  if (shown.is_grouped) return below.item;
  for (MarkupElement child = element.FirstChild(); child; child = child.NextSibling()) Walk(child, below);
  return below.item;
}

void IeSelectionTree::AddWholeGroup(const char* group, const char* leaf, const char* ie_name, HTREEITEM parent) {
  const HTREEITEM group_item = tree_.InsertItem(group, kImageGroup, parent);
  const HTREEITEM item = tree_.InsertItem(leaf, kImageIe, group_item);
  tree_.SetCheck(item, is_ticked_(leaf, true));
  ie_names_[leaf] = ie_name;
}

void IeSelectionTree::Build(const MarkupElement& document_element) {
  const HTREEITEM parent = Walk(document_element, {});
  AddWholeGroup("All L3", "L3", "MsgName", parent);
  AddWholeGroup("All Event", "Event", "EventID_0", parent);
  ExpandTopLevel(tree_);
}

}  // namespace loom
