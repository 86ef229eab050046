#pragma once

#include <cstddef>
#include <string_view>

#include "components/field_value.h"

namespace loom {

// The types that a field can have: by what name catalogue and listings call them, and the bytes of a value in a file.
struct FieldType {
  MemTableFieldTypeEnum type;
  std::string_view name;
  std::size_t bytes;  // 0: as many as the text has
};

inline constexpr FieldType kFieldTypes[] = {
    {kFieldBool, "bool", 1}, {kFieldText, "text", 0},   {kFieldShort, "short", 2},
    {kFieldInt, "int", 4},   {kFieldFloat, "float", 4},
};

// Null for a type that no field has.
constexpr const FieldType* FindFieldType(std::uint32_t type) {
  for (const FieldType& row : kFieldTypes) {
    if (static_cast<std::uint32_t>(row.type) == type) return &row;
  }
  return nullptr;
}

constexpr std::string_view FieldTypeName(MemTableFieldTypeEnum type) {
  const FieldType* const row = FindFieldType(static_cast<std::uint32_t>(type));
  return row == nullptr ? "none" : row->name;
}

}  // namespace loom
