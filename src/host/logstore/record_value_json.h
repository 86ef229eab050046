#pragma once

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory_resource>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "components/records/fields.h"
#include "host/logstore/record_json_place.h"
#include "host/logstore/record_value_traits.h"

// JSON form of everything that a description may name: numbers, texts in UTF-8, raw bytes as hexadecimal text, lists as
// arrays, and objects for the rest, which hold only the members that differ from their absent value.
namespace loom::records {

using Json = nlohmann::ordered_json;

// Leaves of the form; their texts and bytes are copied into the arena.
std::int64_t SignedFromJson(const Json& value, const JsonPlace& place, std::int64_t least, std::int64_t greatest);
std::uint64_t UnsignedFromJson(const Json& value, const JsonPlace& place, std::uint64_t greatest);
double DoubleFromJson(const Json& value, const JsonPlace& place);
float FloatFromJson(const Json& value, const JsonPlace& place);
RecordText TextFromJson(const Json& value, const JsonPlace& place, std::pmr::memory_resource& arena);
std::span<const std::byte> BytesFromJson(const Json& value, const JsonPlace& place, std::pmr::memory_resource& arena);
Json DoubleToJson(double value);
Json FloatToJson(float value);
Json TextToJson(RecordText gbk);
Json BytesToJson(std::span<const std::byte> bytes);

template <class T>
T NumberFromJson(const Json& value, const JsonPlace& place) {
  using Limits = std::numeric_limits<T>;
  if constexpr (std::is_same_v<T, float>) {
    return FloatFromJson(value, place);
  } else if constexpr (std::is_same_v<T, double>) {
    return DoubleFromJson(value, place);
  } else if constexpr (std::is_signed_v<T>) {
    return static_cast<T>(SignedFromJson(value, place, Limits::min(), Limits::max()));
  } else {
    return static_cast<T>(UnsignedFromJson(value, place, Limits::max()));
  }
}

template <class T>
Json NumberToJson(T value) {
  if constexpr (std::is_same_v<T, float>) {
    return FloatToJson(value);
  } else if constexpr (std::is_same_v<T, double>) {
    return DoubleToJson(value);
  } else if constexpr (std::is_signed_v<T>) {
    return static_cast<std::int64_t>(value);
  } else {
    return static_cast<std::uint64_t>(value);
  }
}

// Whether two values of a member are written the same; NaN equals itself.
template <class T>
bool SameValue(const T& a, const T& b) {
  if constexpr (kIsNumber<T>) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;
  } else if constexpr (kIsTime<T>) {
    return SameValue(a.seconds, b.seconds);
  } else if constexpr (kIsText<T>) {
    return a == b;
  } else if constexpr (kIsBytes<T>) {
    return BytesOf(a).empty() && BytesOf(b).empty();
  } else if constexpr (kIsArray<T>) {
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (!SameValue(a[i], b[i])) return false;
    }
    return true;
  } else if constexpr (kIsInlineList<T>) {
    return a.size == 0 && b.size == 0;
  } else if constexpr (kIsList<T>) {
    return a.empty() && b.empty();
  } else {
    static_assert(kIsPart<T>);
    return !a && !b;
  }
}

template <class T>
Json ValueToJson(const T& value);

// The members that differ from those of `absent`.
template <class T>
Json FieldsToJson(const T& value, const T& absent) {
  Json object = Json::object();
  ForEachField<T>([&](const auto& field) {
    const auto& member = value.*field.member;
    if (!SameValue(member, absent.*field.member)) object[std::string(field.name)] = ValueToJson(member);
  });
  return object;
}

template <class T>
Json ValueToJson(const T& value) {
  if constexpr (kIsNumber<T>) {
    return NumberToJson(value);
  } else if constexpr (kIsTime<T>) {
    return DoubleToJson(value.seconds);
  } else if constexpr (kIsText<T>) {
    return TextToJson(value);
  } else if constexpr (kIsBytes<T>) {
    return BytesToJson(BytesOf(value));
  } else if constexpr (kIsArray<T> || kIsInlineList<T> || kIsList<T>) {
    Json array = Json::array();
    for (const auto& entry : value) array.push_back(ValueToJson(entry));
    return array;
  } else if constexpr (kIsPart<T>) {
    return ValueToJson(*value);
  } else {
    return FieldsToJson(value, T{});
  }
}

template <class T>
void ValueFromJson(const Json& json, const JsonPlace& place, T& value, std::pmr::memory_resource& arena);

// Sets the member called `name`; false when there is none.
template <class T>
bool FieldFromJson(std::string_view name, const Json& json, const JsonPlace& place, T& value,
                   std::pmr::memory_resource& arena) {
  bool found = false;
  ForEachField<T>([&](const auto& field) {
    if (field.name != name) return;
    found = true;
    ValueFromJson(json, place, value.*field.member, arena);
  });
  return found;
}

template <class T>
void FieldsFromJson(const Json& json, const JsonPlace& place, T& value, std::pmr::memory_resource& arena) {
  if (!json.is_object()) place.Fail("an object is expected");
  for (const auto& [name, member] : json.items()) {
    const JsonPlace inside(place, name);
    if (!FieldFromJson(name, member, inside, value, arena)) inside.Fail("there is no such field");
  }
}

template <class T>
void ListFromJson(const Json& json, const JsonPlace& place, std::span<const T>& list,
                  std::pmr::memory_resource& arena) {
  if (!json.is_array()) place.Fail("an array is expected");
  if (json.empty()) return;
  T* entries = static_cast<T*>(arena.allocate(json.size() * sizeof(T), alignof(T)));
  for (std::size_t i = 0; i < json.size(); ++i) {
    ValueFromJson(json[i], JsonPlace(place, i), *new (entries + i) T{}, arena);
  }
  list = {entries, json.size()};
}

template <class T>
void ValueFromJson(const Json& json, const JsonPlace& place, T& value, std::pmr::memory_resource& arena) {
  if constexpr (kIsNumber<T>) {
    value = NumberFromJson<T>(json, place);
  } else if constexpr (kIsTime<T>) {
    value.seconds = DoubleFromJson(json, place);
  } else if constexpr (kIsText<T>) {
    value = TextFromJson(json, place, arena);
  } else if constexpr (kIsBytes<T>) {
    value = T(BytesFromJson(json, place, arena));
  } else if constexpr (kIsArray<T>) {
    if (!json.is_array() || json.size() != value.size()) {
      place.Fail("an array of " + std::to_string(value.size()) + " numbers is expected");
    }
    for (std::size_t i = 0; i < value.size(); ++i) ValueFromJson(json[i], JsonPlace(place, i), value[i], arena);
  } else if constexpr (kIsInlineList<T>) {
    if (!json.is_array() || json.size() > T::kMax) {
      place.Fail("an array of at most " + std::to_string(T::kMax) + " entries is expected");
    }
    value.size = static_cast<std::uint8_t>(json.size());
    for (std::size_t i = 0; i < json.size(); ++i) {
      ValueFromJson(json[i], JsonPlace(place, i), value.entries[i], arena);
    }
  } else if constexpr (kIsList<T>) {
    ListFromJson(json, place, value, arena);
  } else if constexpr (kIsPart<T>) {
    FieldsFromJson(json, place, value.emplace(), arena);
  } else {
    FieldsFromJson(json, place, value, arena);
  }
}

}  // namespace loom::records
