#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

#include "components/records/fields.h"
#include "host/logstore/record_value_traits.h"
#include "platform/byte_reader.h"

// Little-endian form of values whose length is known beforehand, and the runs of such fields in a description. A run is
// checked against the bytes that are left once, not field by field.
namespace loom::records {

template <class T, std::size_t kField>
using FieldType = std::remove_cvref_t<decltype(std::declval<T&>().*std::get<kField>(kFieldsOf<T>).member)>;
template <class T>
inline constexpr std::size_t kFieldCount = std::tuple_size_v<std::remove_cvref_t<decltype(kFieldsOf<T>)>>;

// Whether the description names every member, in the order of their declaration: laid out one behind the other its
// fields take exactly the structure's size. (A small member that hides in padding goes unseen.)
template <class T>
requires DescribedRecordPart<T>
constexpr bool DescribesAllMembers() {
  std::size_t size = 0;
  const auto add = [&size](std::size_t bytes, std::size_t alignment) {
    size = (size + alignment - 1) / alignment * alignment + bytes;
  };
  ForEachField<T>([&](const auto& field) {
    using Member = std::remove_cvref_t<decltype(std::declval<T&>().*field.member)>;
    add(sizeof(Member), alignof(Member));
  });
  add(0, alignof(T));
  return std::is_empty_v<T> || size == sizeof(T);
}

// Bytes of a value, 0 when they depend on the value.
template <class T>
constexpr std::size_t FixedBytes() {
  if constexpr (kIsNumber<T>) {
    return sizeof(T);
  } else if constexpr (kIsTime<T>) {
    return sizeof(double);
  } else if constexpr (kIsArray<T>) {
    return std::tuple_size_v<T> * FixedBytes<typename T::value_type>();
  } else if constexpr (DescribedRecordPart<T>) {
    return []<std::size_t... kField>(std::index_sequence<kField...>) {
      constexpr bool kAllFixed = (... && (FixedBytes<FieldType<T, kField>>() > 0));
      return kAllFixed ? (std::size_t{0} + ... + FixedBytes<FieldType<T, kField>>()) : 0;
    }
    (std::make_index_sequence<kFieldCount<T>>());
  } else {
    return 0;
  }
}

// The field behind the run of fixed fields that starts at kField.
template <class T, std::size_t kField>
constexpr std::size_t RunEnd() {
  if constexpr (kField < kFieldCount<T>) {
    if constexpr (FixedBytes<FieldType<T, kField>>() > 0) return RunEnd<T, kField + 1>();
  }
  return kField;
}

template <class T, std::size_t kBegin, std::size_t kEnd>
constexpr std::size_t RunBytes() {
  if constexpr (kBegin == kEnd) {
    return 0;
  } else {
    return FixedBytes<FieldType<T, kBegin>>() + RunBytes<T, kBegin + 1, kEnd>();
  }
}

// `at` moves behind the value.
template <class T>
void LoadFixed(const std::byte*& at, T& value) {
  if constexpr (kIsNumber<T>) {
    std::memcpy(&value, at, sizeof(T));
    if constexpr (std::endian::native == std::endian::big) value = detail::SwapBytes(value);
    at += sizeof(T);
  } else if constexpr (kIsTime<T>) {
    LoadFixed(at, value.seconds);
  } else if constexpr (kIsArray<T>) {
    for (auto& entry : value) LoadFixed(at, entry);
  } else {
    ForEachField<T>([&](const auto& field) { LoadFixed(at, value.*field.member); });
  }
}

// Returns where the value ends.
template <class T>
std::byte* StoreFixed(std::byte* at, const T& value) {
  if constexpr (kIsNumber<T>) {
    T stored = value;
    if constexpr (std::endian::native == std::endian::big) stored = detail::SwapBytes(stored);
    std::memcpy(at, &stored, sizeof(T));
    return at + sizeof(T);
  } else if constexpr (kIsTime<T>) {
    return StoreFixed(at, value.seconds);
  } else if constexpr (kIsArray<T>) {
    for (const auto& entry : value) at = StoreFixed(at, entry);
    return at;
  } else {
    ForEachField<T>([&](const auto& field) { at = StoreFixed(at, value.*field.member); });
    return at;
  }
}

template <std::size_t kBegin, std::size_t kEnd, class T>
void LoadRun(const std::byte* at, T& value) {
  if constexpr (kBegin < kEnd) {
    LoadFixed(at, value.*std::get<kBegin>(kFieldsOf<T>).member);
    LoadRun<kBegin + 1, kEnd>(at, value);
  }
}

}  // namespace loom::records
