#include "platform/automation/variant.h"

#include <limits>
#include <new>

namespace loom {
namespace {

// Head of a text that does not fit into a value; its bytes follow.
struct SharedText {
  std::uint32_t references;
  std::uint32_t length;
  const char* bytes() const { return reinterpret_cast<const char*>(this + 1); }
};

SharedText* MakeSharedText(std::string_view text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) throw AutomationError("a text of more than 4 GB");
  void* place = ::operator new(sizeof(SharedText) + text.size());
  auto* shared = new (place) SharedText{1, static_cast<std::uint32_t>(text.size())};
  std::memcpy(shared + 1, text.data(), text.size());
  return shared;
}

[[noreturn]] void ThrowKind(const char* wanted, VARTYPE type) {
  throw AutomationError(std::string("a value of type ") + std::to_string(type) + " where " + wanted + " is expected");
}

}  // namespace

VARIANT::VARIANT(std::string_view gbk) : type_(VT_BSTR) {
  if (gbk.size() <= sizeof bytes_) {
    length_ = static_cast<std::uint8_t>(gbk.size());
    if (!gbk.empty()) std::memcpy(bytes_, gbk.data(), gbk.size());
    return;
  }
  length_ = kSharedText;
  SetPayload(MakeSharedText(gbk));
}

VARIANT::VARIANT(IDispatch* object) : type_(VT_DISPATCH) {
  SetPayload(object);
  if (object) object->AddRef();
}

void VARIANT::AddReference() {
  if (type_ == VT_BSTR) {
    ++Payload<SharedText*>()->references;
  } else if (auto* object = Payload<IDispatch*>()) {
    object->AddRef();
  }
}

void VARIANT::ReleaseReference() {
  if (type_ == VT_BSTR) {
    auto* shared = Payload<SharedText*>();
    if (--shared->references == 0) ::operator delete(shared);
  } else if (auto* object = Payload<IDispatch*>()) {
    object->Release();
  }
}

std::string_view VARIANT::Text() const {
  if (type_ != VT_BSTR) ThrowKind("a text", type_);
  if (length_ != kSharedText) return {bytes_, length_};
  const auto* shared = Payload<const SharedText*>();
  return {shared->bytes(), shared->length};
}

std::int32_t VARIANT::Integer() const {
  if (type_ == VT_I2) return Payload<std::int16_t>();
  if (type_ != VT_I4) ThrowKind("an integer", type_);
  return Payload<std::int32_t>();
}

double VARIANT::Real() const { return type_ == VT_R8 ? Payload<double>() : Integer(); }

bool VARIANT::Boolean() const { return type_ == VT_BOOL ? Payload<std::int16_t>() != 0 : Integer() != 0; }

IDispatch* VARIANT::Object() const {
  if (type_ != VT_DISPATCH) ThrowKind("an object", type_);
  return Payload<IDispatch*>();
}

const COleSafeArray& VARIANT::Array() const {
  if (type_ != VT_ARRAY) ThrowKind("an array", type_);
  return *Payload<const COleSafeArray*>();
}

}  // namespace loom
