#pragma once

#include "apps/json.h"
#include "components/stream_manager.h"

namespace loom {

// UTF-8 JSON string of a GBK text; bytes that a name carries, and such that are no GBK, as `\xHH`.
Json JsonText(std::string_view gbk);
// The same of a name as it stands on the command line.
Json JsonName(const std::string& native);
// A number, or "nan", "inf", "-inf".
Json JsonNumber(double number);
// The stream as `import --json` prints it.
Json StreamJson(IDataStream& stream);

}  // namespace loom
