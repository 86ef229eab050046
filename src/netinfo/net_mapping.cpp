#include "netinfo/net_mapping.h"

#include <algorithm>

namespace loom {

void NetMapping::Add(const CString& heading, const CString& parameter, const CString& attribute) {
  source_columns.push_back(heading);
  parameters.push_back(parameter);
  attributes.push_back(attribute);
}

void NetMapping::Remove(int place) {
  if (place < 0) return;
  for (auto* const texts : {&source_columns, &parameters, &attributes}) texts->erase(texts->begin() + place);
}

int NetMapping::PlaceIn(const std::vector<CString>& texts, const CString& text) {
  const auto found = std::find(texts.begin(), texts.end(), text);
  return found == texts.end() ? -1 : static_cast<int>(found - texts.begin());
}

}  // namespace loom
