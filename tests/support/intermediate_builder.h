#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace loom::testing {

// Intermediate files put together from the byte layout alone, with none of the code that reads or writes them.

template <class Number>
std::string BytesOf(Number value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class Number>
void Put(std::string& bytes, std::size_t at, Number value) {
  std::memcpy(bytes.data() + at, &value, sizeof value);
}

// A field: 4 bytes of descriptor, then the value.
inline std::string FieldBytes(std::uint32_t id, std::uint32_t type, const std::string& value) {
  return BytesOf(std::uint32_t(id << 14 | type << 11 | value.size() << 1)) + value;
}

struct RowSpec {
  double time_s;
  std::int32_t number;
  std::string data;  // fields, in a dual-protocol stream behind two row numbers
};

struct StreamSpec {
  std::string device;
  std::string protocol;
  std::vector<RowSpec> rows;
  std::int32_t kind = 1;
  std::uint8_t flag = 1;
  std::vector<std::uint32_t> ie_ids = {};
  std::vector<std::uint32_t> skipped_ids = {};
  std::vector<std::uint32_t> event_ids = {};
};

// Where the parts of a stream came to stand.
struct StreamPlace {
  std::size_t entry;
  std::size_t base;
  std::size_t data;
  std::size_t index;
};

struct BuiltFile {
  std::string bytes;
  std::vector<StreamPlace> places;
};

inline void PutName(std::string& bytes, std::size_t at, std::string_view ascii) {
  for (const char c : ascii) {
    bytes[at] = c;
    at += 2;
  }
}

inline std::string EntryBytes(const StreamSpec& stream) {
  std::string entry(672, '\0');
  entry[4] = static_cast<char>(stream.flag);
  Put(entry, 64, static_cast<std::uint32_t>(stream.rows.size()));
  Put(entry, 72, static_cast<std::uint32_t>(stream.ie_ids.size()));
  Put(entry, 80, stream.kind);
  Put(entry, 92, static_cast<std::uint32_t>(stream.skipped_ids.size()));
  Put(entry, 96, static_cast<std::uint32_t>(stream.event_ids.size()));
  PutName(entry, 100, stream.device);
  PutName(entry, 612, stream.protocol);
  for (const auto* ids : {&stream.ie_ids, &stream.skipped_ids, &stream.event_ids}) {
    for (const std::uint32_t id : *ids) entry += BytesOf(id);
  }
  return entry;
}

inline BuiltFile BuildIntermediateFile(const std::vector<StreamSpec>& streams) {
  constexpr unsigned char kMagic[] = {0x00, 0x08, 0x43, 0xD0, 0x27, 0x74, 0xC9, 0x46,
                                      0x92, 0x7E, 0xB3, 0xA0, 0xEE, 0x47, 0xD0, 0x63};
  BuiltFile file{std::string(680, '\0'), {}};
  std::memcpy(file.bytes.data(), kMagic, sizeof kMagic);
  Put(file.bytes, 24, std::uint32_t{750});
  Put(file.bytes, 676, static_cast<std::uint16_t>(streams.size()));
  for (const StreamSpec& stream : streams) {
    StreamPlace place{.entry = file.bytes.size(), .base = 0, .data = 0, .index = 0};
    Put(file.bytes, 588 + 4 * file.places.size(), static_cast<std::uint32_t>(place.entry));
    std::string data;
    std::string index;
    for (const RowSpec& row : stream.rows) {
      index += BytesOf(row.time_s) + BytesOf(row.number) + BytesOf(static_cast<std::uint32_t>(data.size())) +
               BytesOf(static_cast<std::uint16_t>(row.data.size())) + std::string(6, '\x5A');
      data += row.data;
    }
    file.bytes += EntryBytes(stream);
    place.base = file.bytes.size();
    place.data = place.base + 8;
    place.index = place.data + data.size();
    Put(file.bytes, place.entry, static_cast<std::uint32_t>(place.base));
    Put(file.bytes, place.entry + 56, static_cast<double>(data.size()));
    Put(file.bytes, place.entry + 68, static_cast<std::uint32_t>(data.size()));
    file.bytes += std::string(8, '\x5A') + data + index;
    file.places.push_back(place);
  }
  return file;
}

}  // namespace loom::testing
