#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <typeinfo>
#include <variant>
#include <vector>

#include "platform/cstring.h"

namespace loom {

// A record's description of itself: named references to its fields, by which it is stored and restored.
class CClassDescribe {
 public:
  using FieldReference = std::variant<std::int32_t*, CString*>;
  struct Entry {
    std::string name;
    std::string type_name;  // as run-time type information reports it
    FieldReference field;
    int flag;
  };

  template <class Field>
  void AddDescription(std::string_view name, Field& field, int flag) {
    if constexpr (std::is_enum_v<Field>) {
      static_assert(sizeof(Field) == sizeof(std::int32_t));
      entries_.push_back({std::string(name), typeid(Field).name(), reinterpret_cast<std::int32_t*>(&field), flag});
    } else {
      entries_.push_back({std::string(name), typeid(Field).name(), &field, flag});
    }
  }
  const std::vector<Entry>& Entries() const { return entries_; }
  void Clear() { entries_.clear(); }

 private:
  std::vector<Entry> entries_;
};

}  // namespace loom
