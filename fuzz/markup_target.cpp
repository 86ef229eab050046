// Any bytes as an XML file: refused with a reason, or readable to its last element, as a navigator and as a template.
#include <cstdlib>

#include "components/markup.h"
#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "text/navigator/parameter_navigator.h"
#include "text/selection/ie_template.h"

namespace {

using namespace loom;

// Every tag has a name; gives the number of elements that trees show.
int ShownItems(const CMarkupMSXML& document) {
  int count = 0;
  WalkNavigator(document.GetDocumentElement(), 0, [&](const NavigatorItem& item, int depth) {
    if (item.type != NavigatorType::kProtocol && item.text.IsEmpty()) std::abort();
    if (depth >= CMarkupMSXML::kDeepestNesting) std::abort();
    ++count;
    return depth + 1;
  });
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile file(data, size);
  CMarkupMSXML document;
  const bool is_loaded = document.Load(file.Path());
  if (is_loaded != document.GetError().empty()) std::abort();
  if (is_loaded != static_cast<bool>(document.GetDocumentElement())) std::abort();
  if (document.GetDocumentElement().GetAttribute("type").IsEmpty() && is_loaded != (ShownItems(document) > 0))
    std::abort();
  const NavigatorNames names = ReadNavigatorNames(document);
  if (!is_loaded && names.independent.size() + names.gsm.size() > 0) std::abort();
  std::string error;
  if (ReadIeTemplate(file.Path(), error).has_value() != error.empty()) std::abort();
  return 0;
}
