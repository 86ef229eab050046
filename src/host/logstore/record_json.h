#pragma once

#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>

#include "components/records/testdata.h"
#include "platform/error.h"

namespace loom {

// A JSON line that is no record.
class RecordJsonError : public Error {
 public:
  // `field` is the path to the field that is wrong, empty for the line as such.
  RecordJsonError(std::size_t line, const std::string& field, const std::string& reason);
  std::size_t line() const { return line_; }
  const std::string& field() const { return field_; }

 private:
  std::size_t line_;
  std::string field_;
};

// Reads one record from its JSON line; docs/records.md has the names. `line` counts from 1 and is for messages. Blocks,
// lists and texts are made in the arena. The record is a fresh one. Throws RecordJsonError.
void RecordFromJson(std::string_view json, std::size_t line, CTestdataBase& record, std::pmr::memory_resource& arena);

// The record as one JSON line without its line end. All blocks must have been decoded.
std::string RecordToJson(const CTestdataBase& record);

}  // namespace loom
