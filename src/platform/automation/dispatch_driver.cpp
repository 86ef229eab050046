#include "platform/automation/dispatch_driver.h"

#include "platform/log.h"

namespace loom {

bool COleDispatchDriver::CreateDispatch(std::string_view prog_id) {
  try {
    CLSID class_id{};
    if (!CLSIDFromProgID(prog_id, class_id)) throw AutomationError("no server is registered");
    const ComPtr<IUnknown> object = CreateInstance(class_id);
    if (!object || object->QueryDispatch() == nullptr) throw AutomationError("its object offers no members");
    object_ = object->QueryDispatch();
    return true;
  } catch (const Error& error) {
    Log(LogLevel::kError, std::string(prog_id) + " cannot be started: " + error.what());
    return false;
  }
}

VARIANT COleDispatchDriver::Invoke(std::string_view member, InvokeKind kind,
                                   std::initializer_list<VARIANT> arguments) const {
  if (!object_) throw AutomationError("\"" + std::string(member) + "\" is called without an object");
  return object_->Invoke(member, kind, {arguments.begin(), arguments.size()});
}

}  // namespace loom
