#include "apps/qloom/window_steps.h"

#include "platform/encoding.h"

namespace loom {

UserAction TypeIfGiven(const std::string& utf8) { return If(!utf8.empty(), act::Type(Utf8ToGbk(utf8))); }

UserAction ChooseIfGiven(const std::string& utf8) { return If(!utf8.empty(), act::Choose(Utf8ToGbk(utf8))); }

std::vector<CString> FileIfGiven(const std::string& native) {
  return native.empty() ? std::vector<CString>() : std::vector{NativeNameToGbk(native)};
}

}  // namespace loom
