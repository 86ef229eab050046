#pragma once

#include <array>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <tuple>
#include <type_traits>

#include "components/records/fields.h"
#include "components/records/testdata.h"
#include "host/logstore/record_fixed_values.h"
#include "host/logstore/record_value_traits.h"
#include "platform/byte_reader.h"

// Binary form of everything that a description may name; docs/records.md has the grammar.
namespace loom::records {

// Fewest bytes that a value takes.
template <class T>
constexpr std::size_t MinEncodedBytes() {
  if constexpr (FixedBytes<T>() > 0) {
    return FixedBytes<T>();
  } else if constexpr (kIsText<T> || kIsBytes<T> || kIsList<T>) {
    return sizeof(std::uint32_t);
  } else if constexpr (kIsInlineList<T> || kIsPart<T>) {
    return sizeof(std::uint8_t);
  } else {
    static_assert(DescribedRecordPart<T>);
    return []<std::size_t... kField>(std::index_sequence<kField...>) {
      return (std::size_t{0} + ... + MinEncodedBytes<FieldType<T, kField>>());
    }
    (std::make_index_sequence<kFieldCount<T>>());
  }
}

// Bytes that a value takes.
template <class T>
std::size_t EncodedBytes(const T& value) {
  if constexpr (FixedBytes<T>() > 0) {
    return FixedBytes<T>();
  } else if constexpr (kIsText<T>) {
    return sizeof(std::uint32_t) + value.size();
  } else if constexpr (kIsBytes<T>) {
    return sizeof(std::uint32_t) + BytesOf(value).size();
  } else if constexpr (kIsPart<T>) {
    return sizeof(std::uint8_t) + (value ? EncodedBytes(*value) : 0);
  } else if constexpr (kIsList<T> || kIsInlineList<T>) {
    std::size_t bytes = kIsList<T> ? sizeof(std::uint32_t) : sizeof(std::uint8_t);
    for (const auto& entry : value) bytes += EncodedBytes(entry);
    return bytes;
  } else {
    static_assert(DescribesAllMembers<T>());
    std::size_t bytes = 0;
    ForEachField<T>([&](const auto& field) { bytes += EncodedBytes(value.*field.member); });
    return bytes;
  }
}

// Whether a value is what a reader takes for one that is not there.
template <class T>
bool IsAbsent(const T& value, const T& absent) {
  if constexpr (kIsNumber<T>) {
    return std::memcmp(&value, &absent, sizeof(T)) == 0;
  } else if constexpr (kIsTime<T>) {
    return IsAbsent(value.seconds, absent.seconds);
  } else if constexpr (kIsPart<T>) {
    return !value && !absent;
  } else if constexpr (FixedBytes<T>() == 0 && !DescribedRecordPart<T>) {
    return EncodedBytes(value) == MinEncodedBytes<T>() && EncodedBytes(absent) == MinEncodedBytes<T>();
  } else if constexpr (kIsArray<T>) {
    for (std::size_t i = 0; i < value.size(); ++i)
      if (!IsAbsent(value[i], absent[i])) return false;
    return true;
  } else {
    bool is_absent = true;
    ForEachField<T>(
        [&](const auto& field) { is_absent = is_absent && IsAbsent(value.*field.member, absent.*field.member); });
    return is_absent;
  }
}

// The number of fields up to the last one that is not as in `absent`.
template <std::size_t kEnd, class T>
std::size_t LeadingFieldsOf(const T& value, const T& absent) {
  if constexpr (kEnd > 0) {
    constexpr auto kMember = std::get<kEnd - 1>(kFieldsOf<T>).member;
    if (IsAbsent(value.*kMember, absent.*kMember)) return LeadingFieldsOf<kEnd - 1>(value, absent);
  }
  return kEnd;
}

// What a reader has to be told of a header or block: the fields behind the last one that is told are absent.
template <class T>
std::size_t LeadingFields(const T& value) {
  static const T kAbsent = [] {
    if constexpr (std::is_same_v<T, CTestdataBase>)
      return CTestdataBase(false, 0);
    else
      return T{};
  }();
  return LeadingFieldsOf<kFieldCount<T>>(value, kAbsent);
}

// Where a run of fields of known length ends that starts at kField, at least behind kField.
template <class T, std::size_t kField>
inline constexpr std::size_t kStepEnd = RunEnd<T, kField>() > kField ? RunEnd<T, kField>() : kField + 1;

// Bytes of the first `count` fields.
template <std::size_t kField = 0, class T>
std::size_t LeadingBytes(const T& value, std::size_t count) {
  static_assert(std::is_same_v<T, CTestdataBase> || DescribesAllMembers<T>());
  if constexpr (kField < kFieldCount<T>) {
    if (count <= kField) return 0;
    constexpr std::size_t kEnd = kStepEnd<T, kField>;
    if constexpr (kEnd > kField + 1) {
      if (count >= kEnd) return RunBytes<T, kField, kEnd>() + LeadingBytes<kEnd>(value, count);
    }
    return EncodedBytes(value.*std::get<kField>(kFieldsOf<T>).member) + LeadingBytes<kField + 1>(value, count);
  }
  return 0;
}

inline std::byte* StoreBytes(std::byte* at, std::span<const std::byte> bytes) {
  at = StoreFixed(at, static_cast<std::uint32_t>(bytes.size()));
  if (!bytes.empty()) std::memcpy(at, bytes.data(), bytes.size());
  return at + bytes.size();
}

// Writes the EncodedBytes of a value and returns where they end.
template <class T>
std::byte* StoreValue(std::byte* at, const T& value) {
  if constexpr (FixedBytes<T>() > 0) {
    if constexpr (DescribedRecordPart<T>) static_assert(DescribesAllMembers<T>());
    return StoreFixed(at, value);
  } else if constexpr (kIsText<T>) {
    return StoreBytes(at, AsBytes(value));
  } else if constexpr (kIsBytes<T>) {
    return StoreBytes(at, BytesOf(value));
  } else if constexpr (kIsPart<T>) {
    at = StoreFixed(at, static_cast<std::uint8_t>(value ? 1 : 0));
    return value ? StoreValue(at, *value) : at;
  } else if constexpr (kIsList<T> || kIsInlineList<T>) {
    if constexpr (kIsList<T>)
      at = StoreFixed(at, static_cast<std::uint32_t>(value.size()));
    else
      at = StoreFixed(at, value.size);
    for (const auto& entry : value) at = StoreValue(at, entry);
    return at;
  } else {
    ForEachField<T>([&](const auto& field) { at = StoreValue(at, value.*field.member); });
    return at;
  }
}

template <std::size_t kField, std::size_t kEnd, class T>
std::byte* StoreFields(std::byte* at, const T& value) {
  if constexpr (kField < kEnd)
    return StoreFields<kField + 1, kEnd>(StoreValue(at, value.*std::get<kField>(kFieldsOf<T>).member), value);
  else
    return at;
}

// Writes the first `count` fields: whole runs at once.
template <std::size_t kField = 0, class T>
std::byte* StoreLeading(std::byte* at, const T& value, std::size_t count) {
  if constexpr (kField < kFieldCount<T>) {
    if (count <= kField) return at;
    constexpr std::size_t kEnd = kStepEnd<T, kField>;
    if (count >= kEnd) return StoreLeading<kEnd>(StoreFields<kField, kEnd>(at, value), value, count);
    return StoreLeading<kField + 1>(StoreFields<kField, kField + 1>(at, value), value, count);
  }
  return at;
}

template <class T>
void DecodeValue(ByteReader& in, T& value, std::pmr::memory_resource& arena);

template <std::size_t kField = 0, class T>
void DecodeFields(ByteReader& in, T& value, std::pmr::memory_resource& arena) {
  constexpr std::size_t kEnd = RunEnd<T, kField>();
  if constexpr (kEnd > kField) {
    LoadRun<kField, kEnd>(in.Bytes(RunBytes<T, kField, kEnd>(), "fields").data(), value);
    DecodeFields<kEnd>(in, value, arena);
  } else if constexpr (kField < kFieldCount<T>) {
    DecodeValue(in, value.*std::get<kField>(kFieldsOf<T>).member, arena);
    DecodeFields<kField + 1>(in, value, arena);
  }
}

// As DecodeFields for bytes that may end early, between two fields: the fields behind keep what they are.
template <std::size_t kField = 0, class T>
void DecodeLeadingFields(ByteReader& in, T& value, std::pmr::memory_resource& arena) {
  constexpr std::size_t kEnd = RunEnd<T, kField>();
  if constexpr (kEnd > kField) {
    constexpr std::size_t kRunBytes = RunBytes<T, kField, kEnd>();
    if (in.Has(kRunBytes)) [[likely]] {
      LoadRun<kField, kEnd>(in.Bytes(kRunBytes).data(), value);
      return DecodeLeadingFields<kEnd>(in, value, arena);
    }
  }
  if constexpr (kField < kFieldCount<T>) {
    if (in.AtEnd()) return;
    DecodeValue(in, value.*std::get<kField>(kFieldsOf<T>).member, arena);
    DecodeLeadingFields<kField + 1>(in, value, arena);
  }
}

template <class Entry>
std::span<const Entry> DecodeList(ByteReader& in, std::pmr::memory_resource& arena) {
  const std::uint64_t position = in.Position();
  const std::uint32_t count = in.U32("entry count");
  if (count > in.Remaining() / MinEncodedBytes<Entry>()) {
    throw FormatError(position, "a list of " + std::to_string(count) + " entries does not fit into the " +
                                    std::to_string(in.Remaining()) + " bytes that are left");
  }
  if (count == 0) return {};
  auto* entries = static_cast<Entry*>(arena.allocate(count * sizeof(Entry), alignof(Entry)));
  if constexpr (FixedBytes<Entry>() > 0) {
    const std::byte* at = in.Bytes(count * FixedBytes<Entry>()).data();
    for (std::uint32_t i = 0; i < count; ++i) LoadFixed(at, *new (entries + i) Entry{});
  } else {
    for (std::uint32_t i = 0; i < count; ++i) DecodeValue(in, *new (entries + i) Entry{}, arena);
  }
  return {entries, count};
}

template <class Entry, std::size_t kMax>
void DecodeInlineList(ByteReader& in, InlineList<Entry, kMax>& list) {
  const std::uint64_t position = in.Position();
  const std::uint8_t count = in.U8("entry count");
  if (count > kMax) {
    throw FormatError(position, "a list of " + std::to_string(count) + " entries where at most " +
                                    std::to_string(kMax) + " have room");
  }
  const std::byte* at = in.Bytes(count * FixedBytes<Entry>(), "entries").data();
  for (std::uint8_t i = 0; i < count; ++i) LoadFixed(at, list.entries[i]);
  list.size = count;
}

// True for 1, false for 0; nothing else may stand there.
inline bool DecodePresence(ByteReader& in) {
  const std::uint64_t position = in.Position();
  const std::uint8_t presence = in.U8("presence byte");
  if (presence > 1) throw FormatError(position, "a presence byte of " + std::to_string(presence));
  return presence == 1;
}

// Texts and raw bytes go on living in the bytes that `in` reads.
template <class T>
void DecodeValue(ByteReader& in, T& value, std::pmr::memory_resource& arena) {
  if constexpr (FixedBytes<T>() > 0) {
    const std::byte* at = in.Bytes(FixedBytes<T>(), "field").data();
    LoadFixed(at, value);
  } else if constexpr (kIsText<T>) {
    const std::uint32_t length = in.U32("text length");
    value = length == 0 ? RecordText() : in.Text(length);
  } else if constexpr (kIsBytes<T>) {
    const std::uint32_t length = in.U32("byte count");
    value = T(in.Bytes(length));
  } else if constexpr (kIsList<T>) {
    value = DecodeList<std::remove_cv_t<typename T::element_type>>(in, arena);
  } else if constexpr (kIsInlineList<T>) {
    DecodeInlineList(in, value);
  } else if constexpr (kIsPart<T>) {
    if (DecodePresence(in)) DecodeFields(in, value.emplace(), arena);
  } else {
    DecodeFields(in, value, arena);
  }
}

}  // namespace loom::records
