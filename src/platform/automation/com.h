#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/cstring.h"
#include "platform/error.h"

// Automation: objects that are reached through named members, by class ids, in the manner of COM. One thread.
namespace loom {

class VARIANT;

// What a server refuses or cannot do, and a value that is not what was asked for.
class AutomationError : public Error {
 public:
  using Error::Error;
};

enum class InvokeKind { kMethod, kGet, kPut };

class IDispatch;

class IUnknown {
 public:
  IUnknown() = default;
  IUnknown(const IUnknown&) = delete;
  IUnknown& operator=(const IUnknown&) = delete;
  void AddRef() { ++references_; }
  void Release() {
    if (--references_ == 0) delete this;
  }
  // The object's members by name; null when it offers none.
  virtual IDispatch* QueryDispatch() { return nullptr; }

 protected:
  virtual ~IUnknown() = default;

 private:
  std::uint32_t references_ = 0;
};

class IDispatch : public IUnknown {
 public:
  IDispatch* QueryDispatch() override { return this; }
  // Throws AutomationError for a member that the object lacks and whatever the member throws.
  virtual VARIANT Invoke(std::string_view member, InvokeKind kind, std::span<const VARIANT> arguments) = 0;
};

// Holds one reference.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(Interface* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_) object_->Release();
  }
  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Interface* object_ = nullptr;
};

using CLSID = std::array<std::uint8_t, 16>;

// False when no class has the programmatic id.
bool CLSIDFromProgID(std::string_view prog_id, CLSID& class_id);
// The running object of the class; null when there is none.
ComPtr<IUnknown> GetActiveObject(const CLSID& class_id);
// A new object of the class; throws AutomationError for an unknown class and what its server throws when it cannot
// start.
ComPtr<IUnknown> CreateInstance(const CLSID& class_id);

struct AutomationClass {
  std::string prog_id;
  CLSID class_id;
  std::function<ComPtr<IUnknown>()> create;
  std::function<ComPtr<IUnknown>()> running;  // null result: none runs
};

// Makes a class known for its lifetime. The latest of several with the same programmatic id counts.
class RegisteredClass {
 public:
  explicit RegisteredClass(AutomationClass registered);
  RegisteredClass(const RegisteredClass&) = delete;
  RegisteredClass& operator=(const RegisteredClass&) = delete;
  ~RegisteredClass();

 private:
  std::shared_ptr<const AutomationClass> class_;
};

}  // namespace loom
