#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

#include "components/records/auto_buffer.h"
#include "components/records/lists.h"
#include "components/records/sys_time.h"

// What kinds of members the descriptions behind the structures may name.
namespace loom::records {

template <class T>
inline constexpr bool kIsNumber = std::is_arithmetic_v<T>;
template <class T>
inline constexpr bool kIsTime = std::is_same_v<T, sys_time>;
template <class T>
inline constexpr bool kIsText = std::is_same_v<T, RecordText>;
// Raw bytes.
template <class T>
inline constexpr bool kIsBytes =
    std::is_same_v<T, std::span<const std::byte>> || std::is_same_v<T, AUTOTEST::CAutoBuffer>;

template <class T>
inline constexpr bool kIsArray = false;
template <class T, std::size_t kSize>
inline constexpr bool kIsArray<std::array<T, kSize>> = true;

template <class T>
inline constexpr bool kIsInlineList = false;
template <class T, std::size_t kSize>
inline constexpr bool kIsInlineList<InlineList<T, kSize>> = true;

template <class T>
inline constexpr bool kIsList = false;
template <class T>
inline constexpr bool kIsList<std::span<const T>> = !std::is_same_v<T, std::byte>;

// A part that may be missing.
template <class T>
inline constexpr bool kIsPart = false;
template <class T>
inline constexpr bool kIsPart<std::optional<T>> = true;

inline std::span<const std::byte> BytesOf(std::span<const std::byte> bytes) { return bytes; }
inline std::span<const std::byte> BytesOf(const AUTOTEST::CAutoBuffer& buffer) { return buffer.bytes(); }

}  // namespace loom::records
