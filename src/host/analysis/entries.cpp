#include "host/analysis/entries.h"

#include <algorithm>

#include "host/analysis/element_ids.h"

namespace loom::analysis {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kFailureWords[] = {"Fail", "Drop", "Blocked", "Reject", "OutOfService", "Abnormal"};

std::string_view TextOf(const CMemDataRow& row, std::int32_t element) {
  const uniFieldValue* const value = row.FindIE(element);
  return value != nullptr ? row.GetText(value->text) : std::string_view();
}

std::int32_t NumberOf(const CMemDataRow& row, std::int32_t element) {
  const uniFieldValue* const value = row.FindIE(element);
  return value != nullptr && value->int_value >= 0 ? value->int_value : -1;
}

// -1 for no digit.
int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

bool IsHex(std::string_view text) {
  return text.size() % 2 == 0 && std::ranges::all_of(text, [](char c) { return DigitOf(c) >= 0; });
}

// One walk over the ids of a row instead of a search for each element.
struct Holds {
  bool event = false;
  bool mark = false;
  bool message = false;
};
Holds WhatRowHolds(const CMemDataRow& row) {
  Holds holds;
  for (const std::int32_t id : row.GetParamID()) {
    holds.event |= id == kEventId;
    holds.mark |= id == kFileMark;
    holds.message |= id == kMessageName;
  }
  return holds;
}

}  // namespace

std::string_view Entry::Name() const {
  switch (kind) {
    case EntryKind::kEvent:
      return TextOf(*row, kEventName);
    case EntryKind::kMark:
      return TextOf(*row, kFileMark);
    default:
      return TextOf(*row, kMessageName);
  }
}

std::int32_t Entry::EventId() const { return kind == EntryKind::kEvent ? NumberOf(*row, kEventId) : -1; }
std::int32_t Entry::MessageDirection() const { return NumberOf(*row, kMessageDirection); }
std::int32_t Entry::MessageChannel() const { return NumberOf(*row, kMessageChannel); }

// Some streams hold their digits, others the bytes themselves.
std::string Entry::MessageBytes() const {
  const std::string_view text = TextOf(*row, kMessageBytes);
  if (!IsHex(text)) return std::string(text);
  std::string bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t at = 0; at < text.size(); at += 2)
    bytes += static_cast<char>(DigitOf(text[at]) << 4 | DigitOf(text[at + 1]));
  return bytes;
}

std::string HexOf(std::string_view bytes) {
  std::string hex;
  hex.reserve(2 * bytes.size());
  for (const char byte : bytes) {
    hex += kHexDigits[static_cast<unsigned char>(byte) >> 4];
    hex += kHexDigits[static_cast<unsigned char>(byte) & 15];
  }
  return hex;
}

std::vector<Entry> ListEntries(const RowMap& rows) {
  std::vector<Entry> entries;
  std::uint32_t at = 0;
  for (const auto& [number, row] : rows) {
    const Holds holds = WhatRowHolds(*row);
    if (holds.event) entries.push_back({at, EntryKind::kEvent, row});
    if (holds.mark) entries.push_back({at, EntryKind::kMark, row});
    if (holds.message) entries.push_back({at, EntryKind::kMessage, row});
    ++at;
  }
  return entries;
}

bool IsFailure(std::string_view event_name) {
  return std::ranges::any_of(kFailureWords,
                             [&](std::string_view word) { return event_name.find(word) != std::string_view::npos; });
}

}  // namespace loom::analysis
