#include "platform/automation/com.h"

#include <algorithm>
#include <vector>

namespace loom {
namespace {

using Classes = std::vector<std::shared_ptr<const AutomationClass>>;

Classes& KnownClasses() {
  static Classes classes;
  return classes;
}

template <class Matches>
std::shared_ptr<const AutomationClass> FindClass(Matches matches) {
  const Classes& classes = KnownClasses();
  const auto found = std::find_if(classes.rbegin(), classes.rend(), [&](const auto& known) { return matches(*known); });
  return found != classes.rend() ? *found : nullptr;
}

std::shared_ptr<const AutomationClass> FindClass(const CLSID& class_id) {
  return FindClass([&](const AutomationClass& known) { return known.class_id == class_id; });
}

}  // namespace

bool CLSIDFromProgID(std::string_view prog_id, CLSID& class_id) {
  const auto found = FindClass([&](const AutomationClass& known) { return known.prog_id == prog_id; });
  if (found) class_id = found->class_id;
  return found != nullptr;
}

ComPtr<IUnknown> GetActiveObject(const CLSID& class_id) {
  const auto found = FindClass(class_id);
  return found && found->running ? found->running() : nullptr;
}

ComPtr<IUnknown> CreateInstance(const CLSID& class_id) {
  const auto found = FindClass(class_id);
  if (!found) throw AutomationError("no server is registered for the class");
  return found->create();
}

RegisteredClass::RegisteredClass(AutomationClass registered)
    : class_(std::make_shared<const AutomationClass>(std::move(registered))) {
  KnownClasses().push_back(class_);
}

RegisteredClass::~RegisteredClass() { std::erase(KnownClasses(), class_); }

}  // namespace loom
