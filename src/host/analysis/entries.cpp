#include "host/analysis/entries.h"

#include <algorithm>

#include "host/analysis/element_ids.h"
#include "platform/hexadecimal.h"

namespace loom::analysis {
namespace {

constexpr std::string_view kFailureWords[] = {"Fail", "Drop", "Blocked", "Reject", "OutOfService", "Abnormal"};

std::string_view TextOf(const CMemDataRow& row, std::int32_t element) {
  const uniFieldValue* const value = row.FindIE(element);
  return value != nullptr ? row.GetText(value->text) : std::string_view();
}

std::int32_t NumberOf(const CMemDataRow& row, std::int32_t element) {
  const uniFieldValue* const value = row.FindIE(element);
  return value != nullptr && value->int_value >= 0 ? value->int_value : -1;
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
  std::string bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t at = 0; at < text.size(); at += 2) {
    const auto byte = HexByteAt(text, at);
    if (!byte) return std::string(text);
    bytes += static_cast<char>(*byte);
  }
  return bytes;
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
