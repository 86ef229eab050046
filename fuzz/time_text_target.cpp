// Any text as a time: invalid, or the number that its own text reads as. The first byte chooses the layout.
#include <cmath>
#include <cstdlib>

#include "components/field_value.h"
#include "fuzz/target.h"
#include "platform/number.h"
#include "text/import/time_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace loom;
  if (size == 0) return 0;
  const std::size_t layout = data[0] % (kTimeLayouts.size() + 1);
  TimeTextConverter converter(layout < kTimeLayouts.size() ? kTimeLayouts[layout].name : "seconds");
  CString text(std::string_view(reinterpret_cast<const char*>(data) + 1, size - 1));
  const double seconds = converter.Seconds(text);
  if (!std::isfinite(seconds)) std::abort();
  if (converter.Seconds(text) != seconds) std::abort();  // also where it follows a time that starts alike
  converter.ConvertTimeText(text);
  if (PrefixDouble(text) != seconds) std::abort();
  if (layout == kTimeLayouts.size() && seconds != kInvalidDouble && seconds < 86400.0) std::abort();
  return 0;
}
