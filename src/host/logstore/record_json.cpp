#include "host/logstore/record_json.h"

#include <nlohmann/json.hpp>

#include "components/records/testdata.h"
#include "host/logstore/record_blocks.h"
#include "host/logstore/record_json_place.h"
#include "host/logstore/record_value_json.h"

namespace loom {
namespace records {
namespace {

constexpr std::string_view kFails = "fails";

const BlockCodec* FindBlock(std::string_view name) {
  for (const BlockCodec& codec : AllBlocks()) {
    if (codec.name == name) return &codec;
  }
  return nullptr;
}

void MarksFromJson(const Json& json, const JsonPlace& place, CTestdataBase& record) {
  const std::string* mark = json.get_ptr<const std::string*>();
  const bool both = mark && *mark == "read+decode";
  record.fails_to_read = both || (mark && *mark == "read");
  record.fails_to_decode = both || (mark && *mark == "decode");
  if (!record.fails_to_read && !record.fails_to_decode) {
    place.Fail("\"read\", \"decode\" or \"read+decode\" is expected");
  }
}

void MemberFromJson(const std::string& name, const Json& value, const JsonPlace& place, CTestdataBase& record,
                    std::pmr::memory_resource& arena) {
  if (name == kFails) return MarksFromJson(value, place, record);
  if (const BlockCodec* codec = FindBlock(name)) return codec->from_json(value, place, record, arena);
  if (!FieldFromJson(name, value, place, record, arena)) place.Fail("there is no such field");
}

}  // namespace
}  // namespace records

RecordJsonError::RecordJsonError(std::size_t line, const std::string& field, const std::string& reason)
    : Error("line " + std::to_string(line) + ": " + (field.empty() ? "" : field + ": ") + reason),
      line_(line),
      field_(field) {}

void RecordFromJson(std::string_view json, std::size_t line, CTestdataBase& record, std::pmr::memory_resource& arena) {
  using namespace records;
  const JsonPlace place(line);
  Json object;
  try {
    object = Json::parse(json);
  } catch (const Json::exception& error) {
    place.Fail(error.what());
  }
  if (!object.is_object()) place.Fail("an object is expected");
  record.arena = &arena;
  for (const auto& [name, value] : object.items()) {
    MemberFromJson(name, value, JsonPlace(place, name), record, arena);
  }
}

std::string RecordToJson(const CTestdataBase& record) {
  using namespace records;
  Json object = FieldsToJson(record, CTestdataBase(false, 0));
  if (record.fails_to_read || record.fails_to_decode) {
    object[std::string(kFails)] = !record.fails_to_decode ? "read" : record.fails_to_read ? "read+decode" : "decode";
  }
  for (const BlockCodec& codec : AllBlocks()) {
    if (codec.present(record)) object[std::string(codec.name)] = codec.to_json(record);
  }
  return object.dump();
}

}  // namespace loom
