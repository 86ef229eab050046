#pragma once

#include <initializer_list>
#include <string_view>

#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace loom {

// Base of the wrappers around one object of a server. Calls on a wrapper without an object throw AutomationError.
class COleDispatchDriver {
 public:
  COleDispatchDriver() = default;
  explicit COleDispatchDriver(IDispatch* object) : object_(object) {}

  // A new object of the class; false when there is none, for the reason that goes to the log.
  bool CreateDispatch(std::string_view prog_id);
  void AttachDispatch(ComPtr<IDispatch> object) { object_ = std::move(object); }
  // Gives the object away; the wrapper holds none afterwards.
  ComPtr<IDispatch> DetachDispatch() { return std::exchange(object_, {}); }
  void ReleaseDispatch() { object_ = {}; }
  IDispatch* GetDispatch() const { return object_.get(); }

 protected:
  VARIANT Call(std::string_view method, std::initializer_list<VARIANT> arguments = {}) const {
    return Invoke(method, InvokeKind::kMethod, arguments);
  }
  VARIANT Get(std::string_view property, std::initializer_list<VARIANT> arguments = {}) const {
    return Invoke(property, InvokeKind::kGet, arguments);
  }
  void Put(std::string_view property, const VARIANT& value) const { Invoke(property, InvokeKind::kPut, {value}); }

 private:
  VARIANT Invoke(std::string_view member, InvokeKind kind, std::initializer_list<VARIANT> arguments) const;

  ComPtr<IDispatch> object_;
};

}  // namespace loom
