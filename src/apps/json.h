#pragma once

#include <nlohmann/json.hpp>

namespace loom {

using Json = nlohmann::ordered_json;

}  // namespace loom
