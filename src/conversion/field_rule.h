#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <type_traits>

#include "components/field_value.h"
#include "conversion/selection_names.h"

// The closed vocabulary of the field tables: what a raw value means, how it becomes the value of an IE, and when it is
// written.
namespace loom {

inline constexpr std::int64_t kNoMarker = std::numeric_limits<std::int64_t>::min();

// What a raw value says before it is converted.
enum class Mark : std::uint8_t {
  kValue,
  kAbsent,    // nothing is written
  kInvalid,   // -255 is written
  kMinusTwo,  // -2 is written
};

// Markers of a field beside or instead of those of its raw type.
struct Markers {
  enum class Base : std::uint8_t {
    kOfType,    // the policy's markers of the raw type hold as well
    kOfResult,  // of the converted value, -1 is absent and -2 invalid
    kNone,
  };
  Base base = Base::kOfType;
  std::int64_t absent = kNoMarker;  // asked first
  std::int64_t invalid = kNoMarker;
};

inline constexpr Markers kNoMarkers{.base = Markers::Base::kNone};
constexpr Markers OnlyAbsent(std::int64_t absent) { return {.base = Markers::Base::kNone, .absent = absent}; }

// How a value becomes that of an IE: an integer shifted, a float (raw + before) * scale + after, a function, or the
// integer part of a float.
struct Rule {
  enum class Form : std::uint8_t { kAsIs, kInt, kFloat, kFunction, kTruncated };
  Form form = Form::kAsIs;
  double before = 0.0;
  double scale = 1.0;
  double after = 0.0;
  std::int32_t (*function)(std::int32_t) = nullptr;
  Markers markers{};

  constexpr Rule Marked(Markers with) const {
    Rule rule = *this;
    rule.markers = with;
    return rule;
  }
  // List entries: -1 is invalid as well as -2.
  constexpr Rule OfEntry() const { return Marked({.invalid = -1}); }
};

inline constexpr Rule kAsIs{};
inline constexpr Rule kEntry = kAsIs.OfEntry();
inline constexpr Rule kAsFloat{.form = Rule::Form::kFloat};
// The integer part of a float that has no markers: NaN is absent, what 32 bits cannot hold is invalid.
inline constexpr Rule kTruncated{.form = Rule::Form::kTruncated, .markers = kNoMarkers};
constexpr Rule Shifted(std::int32_t by) { return {.form = Rule::Form::kInt, .after = static_cast<double>(by)}; }
// (raw + before) * scale + after as a float.
constexpr Rule Scaled(double scale, double before = 0.0, double after = 0.0) {
  return {.form = Rule::Form::kFloat, .before = before, .scale = scale, .after = after};
}
constexpr Rule By(std::int32_t (*function)(std::int32_t)) {
  return {.form = Rule::Form::kFunction, .function = function};
}

// When a field is written. Selection is by the IE itself unless another id or a name is given.
struct Condition {
  enum class Gate : std::uint8_t {
    kAlways,
    kOnlyWithSettings,   // while the import settings are not empty
    kOnlyWithSelection,  // while the selection switch is not 0
  };
  Gate gate = Gate::kAlways;
  bool selected = true;            // false: written whatever the selection
  std::int32_t selection_id = -1;  // -1: the IE's own
  SelectionName name = SelectionName::kNone;
};

inline constexpr Condition kAlways{};
inline constexpr Condition kOnlyWithSettings{.gate = Condition::Gate::kOnlyWithSettings};
inline constexpr Condition kOptional{.gate = Condition::Gate::kOnlyWithSelection};
inline constexpr Condition kUnselected{.selected = false};
constexpr Condition SelectedBy(std::int32_t id) { return {.selection_id = id}; }
constexpr Condition SelectedBy(SelectionName name) { return {.name = name}; }
constexpr Condition OptionalBy(SelectionName name) {
  return {.gate = Condition::Gate::kOnlyWithSelection, .name = name};
}

// Policies: the markers of raw types.

// Signed -1 and -2, unsigned the highest and the second highest value, floating -1.0 and -2.0: absent and invalid.
struct TdMarkers {
  template <class Raw>
  static constexpr Mark Of(Raw raw) {
    constexpr bool kTop = std::is_unsigned_v<Raw>;
    constexpr Raw kAbsent = kTop ? std::numeric_limits<Raw>::max() : static_cast<Raw>(-1);
    constexpr Raw kInvalid = kTop ? static_cast<Raw>(std::numeric_limits<Raw>::max() - 1) : static_cast<Raw>(-2);
    return raw == kAbsent ? Mark::kAbsent : raw == kInvalid ? Mark::kInvalid : Mark::kValue;
  }
};

// GSM blocks: 0xFF and 0xFFFF absent, 0xFE and 0xFFFE written as -2, signed 16-bit 0x7FFF invalid, 32-bit 0xFFFFFFFF
// absent when unsigned, -99000000 absent otherwise. Signed bytes as in TdMarkers.
struct GsmMarkers {
  static constexpr std::int32_t kAbsent = -99000000;

  template <class Raw>
  static constexpr Mark Of(Raw raw) {
    if constexpr (std::same_as<Raw, std::uint8_t> || std::same_as<Raw, std::uint16_t>) {
      const Mark mark = TdMarkers::Of(raw);
      return mark == Mark::kInvalid ? Mark::kMinusTwo : mark;
    } else if constexpr (std::same_as<Raw, std::uint32_t>) {
      return raw == 0xFFFFFFFF ? Mark::kAbsent : Mark::kValue;
    } else if constexpr (std::same_as<Raw, std::int16_t>) {
      return raw == 0x7FFF ? Mark::kInvalid : Mark::kValue;
    } else if constexpr (std::same_as<Raw, std::int8_t>) {
      return TdMarkers::Of(raw);
    } else {
      return static_cast<double>(raw) == kAbsent ? Mark::kAbsent : Mark::kValue;
    }
  }
};

// Field type of the values that a rule makes of a raw type.
template <class Raw>
constexpr MemTableFieldTypeEnum TypeOf(const Rule& rule) {
  if constexpr (std::same_as<Raw, std::string_view>) return kFieldText;
  const bool is_float =
      rule.form == Rule::Form::kFloat || (rule.form == Rule::Form::kAsIs && std::is_floating_point_v<Raw>);
  return is_float ? kFieldFloat : kFieldInt;
}

// Whether a 32-bit integer can hold the integer part of a number; NaN has none.
constexpr bool HasIntegerPart(double value) { return value > -2147483649.0 && value < 2147483648.0; }

// A value without its fraction; what no 32-bit integer can hold becomes the lowest one.
template <class Raw>
constexpr std::int64_t Truncated(Raw raw) {
  if constexpr (std::is_floating_point_v<Raw>) {
    return HasIntegerPart(raw) ? static_cast<std::int64_t>(raw) : std::numeric_limits<std::int32_t>::min();
  } else {
    return static_cast<std::int64_t>(raw);
  }
}

// What a table says about one value, whatever the member that holds it. Always inlined: the rule is known at compile
// time wherever a table is walked, and hardly anything is left of this then.
template <class Policy, class Raw>
[[gnu::always_inline]] constexpr std::optional<uniFieldValue> ConvertValue(const Rule& rule, Raw raw) {
  const MemTableFieldTypeEnum type = TypeOf<Raw>(rule);
  const auto is_marker = [raw](std::int64_t marker) {
    if constexpr (std::is_floating_point_v<Raw>) {
      return marker != kNoMarker && raw == static_cast<Raw>(marker);
    } else {
      return static_cast<std::int64_t>(raw) == marker;
    }
  };
  if (is_marker(rule.markers.absent)) return std::nullopt;
  if (is_marker(rule.markers.invalid)) return InvalidValue(type);
  if (rule.markers.base == Markers::Base::kOfType) {
    const Mark mark = Policy::Of(raw);
    if (mark == Mark::kAbsent) return std::nullopt;
    if (mark == Mark::kInvalid) return InvalidValue(type);
    if (mark == Mark::kMinusTwo) return type == kFieldFloat ? uniFieldValue(-2.0f) : uniFieldValue(-2);
  }
  if constexpr (std::is_floating_point_v<Raw>) {
    if (rule.form == Rule::Form::kTruncated && !HasIntegerPart(raw)) {
      return raw != raw ? std::nullopt : std::optional(InvalidValue(type));
    }
  }
  if (type == kFieldFloat) {
    return uniFieldValue(static_cast<float>((static_cast<double>(raw) + rule.before) * rule.scale + rule.after));
  }
  // Wraps like the 32-bit words that it is made of.
  std::int64_t value = Truncated(raw);
  if (rule.form == Rule::Form::kInt) value += static_cast<std::int64_t>(rule.after);
  if (rule.form == Rule::Form::kFunction) value = rule.function(static_cast<std::int32_t>(value));
  if (rule.markers.base == Markers::Base::kOfResult) {
    if (value == -1) return std::nullopt;
    if (value == -2) value = kInvalidInt;
  }
  return uniFieldValue(static_cast<std::int32_t>(value));
}

}  // namespace loom
