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

template <class T>
void EncodeValue(ByteWriter& out, const T& value);

template <std::size_t kField = 0, class T>
void EncodeFields(ByteWriter& out, const T& value) {
  static_assert(std::is_same_v<T, CTestdataBase> || DescribesAllMembers<T>());
  constexpr std::size_t kEnd = RunEnd<T, kField>();
  if constexpr (kEnd > kField) {
    std::array<std::byte, RunBytes<T, kField, kEnd>()> run;
    StoreRun<kField, kEnd>(run.data(), value);
    out.Bytes(run);
    EncodeFields<kEnd>(out, value);
  } else if constexpr (kField < kFieldCount<T>) {
    EncodeValue(out, value.*std::get<kField>(kFieldsOf<T>).member);
    EncodeFields<kField + 1>(out, value);
  }
}

template <class T>
void EncodeValue(ByteWriter& out, const T& value) {
  if constexpr (DescribedRecordPart<T>) static_assert(DescribesAllMembers<T>());
  if constexpr (FixedBytes<T>() > 0) {
    std::array<std::byte, FixedBytes<T>()> bytes;
    std::byte* at = bytes.data();
    StoreFixed(at, value);
    out.Bytes(bytes);
  } else if constexpr (kIsText<T>) {
    out.U32(static_cast<std::uint32_t>(value.size()));
    out.Text(value);
  } else if constexpr (kIsBytes<T>) {
    out.U32(static_cast<std::uint32_t>(BytesOf(value).size()));
    out.Bytes(BytesOf(value));
  } else if constexpr (kIsList<T>) {
    out.U32(static_cast<std::uint32_t>(value.size()));
    for (const auto& entry : value) EncodeValue(out, entry);
  } else if constexpr (kIsInlineList<T>) {
    out.U8(value.size);
    for (const auto& entry : value) EncodeValue(out, entry);
  } else if constexpr (kIsPart<T>) {
    out.U8(value ? 1 : 0);
    if (value) EncodeFields(out, *value);
  } else {
    EncodeFields(out, value);
  }
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
