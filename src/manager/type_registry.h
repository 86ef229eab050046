#pragma once

#include <map>
#include <memory>
#include <utility>

namespace loom {

// Objects by type, made on first use and kept until Release. Holds no null objects.
template <class Type, class Object>
class TypeRegistry {
 public:
  // The stored object, else what `create(type)` gives; a type that gets none is tried again on every call.
  template <class Create>
  Object* GetOrCreate(Type type, Create create) {
    if (const auto found = objects_.find(type); found != objects_.end()) return found->second.get();
    std::unique_ptr<Object> object = create(type);
    if (!object) return nullptr;
    return objects_.emplace(type, std::move(object)).first->second.get();
  }
  // Deletes in the order of the types.
  void Release() {
    while (!objects_.empty()) objects_.erase(objects_.begin());
  }
  std::size_t Size() const { return objects_.size(); }

 private:
  std::map<Type, std::unique_ptr<Object>> objects_;
};

}  // namespace loom
