#pragma once

#include <nlohmann/json.hpp>

#include "components/stream_manager.h"

namespace loom {

using Json = nlohmann::ordered_json;

// UTF-8 JSON string of a GBK text.
Json JsonText(std::string_view gbk);
// A number, or "nan", "inf", "-inf".
Json JsonNumber(double number);
// The stream as `import --json` prints it.
Json StreamJson(IDataStream& stream);

}  // namespace loom
