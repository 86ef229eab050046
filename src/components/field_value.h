#pragma once

#include <cstdint>

namespace loom {

// Type of a field in a memory row.
enum MemTableFieldTypeEnum : std::int32_t {
  kFieldNone = 0,
  kFieldBool = 1,   // one byte, 0 or 1
  kFieldText = 2,   // handle of a text that the row owns, 0 = null
  kFieldShort = 3,  // 16 bits in the low half, upper half zero
  kFieldInt = 4,    // 32-bit signed
  kFieldFloat = 5,  // 32-bit IEEE 754
};

inline constexpr std::int32_t kInvalidInt = -255;
inline constexpr float kInvalidFloat = -255.0f;
inline constexpr double kInvalidDouble = -255.0;
inline constexpr std::uint16_t kInvalidShort = 0xFF01;  // -255 in 16 bits

// Value of one field, 32 bits wide whatever the type.
union uniFieldValue {
  std::int32_t int_value;
  float float_value;
  std::uint16_t short_value;
  std::uint8_t bool_value;
  std::uint32_t text;  // handle given by CMemDataRow::AddText

  constexpr uniFieldValue() : int_value(0) {}
  constexpr explicit uniFieldValue(std::int32_t value) : int_value(value) {}
  constexpr explicit uniFieldValue(float value) : float_value(value) {}

  // A 16-bit value in the low half, upper half zero.
  static constexpr uniFieldValue Short(std::uint16_t value) { return uniFieldValue(static_cast<std::int32_t>(value)); }
  static constexpr uniFieldValue Text(std::uint32_t handle) { return uniFieldValue(static_cast<std::int32_t>(handle)); }
};
static_assert(sizeof(uniFieldValue) == 4);

// Sets the invalid value of a field type: -255, -255.0f, 0xFF01 in the low half, a null text, false.
constexpr void InitMemTableFieldByType(uniFieldValue& value, MemTableFieldTypeEnum type) {
  switch (type) {
    case kFieldFloat: value = uniFieldValue(kInvalidFloat); break;
    case kFieldInt: value = uniFieldValue(kInvalidInt); break;
    case kFieldShort: value = uniFieldValue::Short(kInvalidShort); break;
    default: value = uniFieldValue(); break;
  }
}

constexpr uniFieldValue InvalidValue(MemTableFieldTypeEnum type) {
  uniFieldValue value;
  InitMemTableFieldByType(value, type);
  return value;
}

}  // namespace loom
