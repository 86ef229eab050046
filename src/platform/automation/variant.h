#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/automation/com.h"
#include "platform/cstring.h"

namespace loom {

enum VARTYPE : std::uint16_t {
  VT_EMPTY = 0,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R8 = 5,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,  // a missing argument
  VT_BOOL = 11,
  VT_VARIANT = 12,    // element type of arrays only
  VT_ARRAY = 0x200C,  // VT_VARIANT elements
};

class COleSafeArray;

// One value of the automation layer, 16 bytes. Texts are GBK; short ones live in the value itself, copies of longer
// ones share their bytes. An array is referred to, not owned, and outlives the value.
class VARIANT {
 public:
  VARIANT() = default;
  explicit VARIANT(const CString& text) : VARIANT(text.view()) {}
  explicit VARIANT(const char* ascii) : VARIANT(std::string_view(ascii)) {}
  explicit VARIANT(std::string_view gbk);
  explicit VARIANT(IDispatch* object);
  explicit VARIANT(const COleSafeArray& array) : type_(VT_ARRAY) { SetPayload(&array); }
  static VARIANT I2(std::int16_t value) { return Number(VT_I2, value); }
  static VARIANT I4(std::int32_t value) { return Number(VT_I4, value); }
  static VARIANT R8(double value) { return Number(VT_R8, value); }
  static VARIANT Bool(bool value) { return Number(VT_BOOL, static_cast<std::int16_t>(value ? -1 : 0)); }
  static VARIANT Missing() { return Number(VT_ERROR, std::int32_t{0}); }

  VARIANT(const VARIANT& other) : VARIANT(other, Bits{}) {
    if (HoldsReference()) AddReference();
  }
  VARIANT(VARIANT&& other) noexcept : VARIANT(other, Bits{}) { other.type_ = VT_EMPTY; }
  VARIANT& operator=(VARIANT other) noexcept {
    VARIANT kept(*this, Bits{});
    CopyBits(other);
    other.CopyBits(kept);
    kept.type_ = VT_EMPTY;
    return *this;
  }
  ~VARIANT() {
    if (HoldsReference()) ReleaseReference();
  }

  VARTYPE type() const { return type_; }
  bool IsEmpty() const { return type_ == VT_EMPTY; }
  bool IsMissing() const { return type_ == VT_ERROR; }

  // Each throws AutomationError when the value is of another kind.
  std::string_view Text() const;  // valid as long as the value
  std::int32_t Integer() const;   // VT_I2, VT_I4
  double Real() const;            // any number
  bool Boolean() const;           // VT_BOOL, and integers
  IDispatch* Object() const;
  const COleSafeArray& Array() const;

 private:
  struct Bits {};
  static constexpr std::uint8_t kSharedText = 0xFF;
  static constexpr std::size_t kPayloadAt = 5;  // behind type and length: byte 8 of the value

  VARIANT(const VARIANT& other, Bits) { CopyBits(other); }
  template <class Value>
  static VARIANT Number(VARTYPE type, Value value) {
    VARIANT made;
    made.type_ = type;
    made.SetPayload(value);
    return made;
  }
  void CopyBits(const VARIANT& other) {
    type_ = other.type_;
    length_ = other.length_;
    std::memcpy(bytes_, other.bytes_, sizeof bytes_);
  }
  template <class Value>
  void SetPayload(Value value) {
    static_assert(sizeof value <= 8);
    std::memcpy(bytes_ + kPayloadAt, &value, sizeof value);
  }
  template <class Value>
  Value Payload() const {
    Value value;
    std::memcpy(&value, bytes_ + kPayloadAt, sizeof value);
    return value;
  }
  bool HoldsReference() const { return type_ == VT_DISPATCH || (type_ == VT_BSTR && length_ == kSharedText); }
  void AddReference();
  void ReleaseReference();

  alignas(8) VARTYPE type_ = VT_EMPTY;
  std::uint8_t length_ = 0;  // of a short text
  char bytes_[13] = {};
};
static_assert(sizeof(VARIANT) == 16);

}  // namespace loom
