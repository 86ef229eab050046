#pragma once

#include <functional>

#include "apps/json.h"
#include "components/stream_manager.h"

namespace loom {

// UTF-8 JSON string of a GBK text; bytes that a name carries, and such that are no GBK, as `\xHH`.
Json JsonText(std::string_view gbk);
// The same of a name as it stands on the command line.
Json JsonName(const std::string& native);
// A number, or "nan", "inf", "-inf".
Json JsonNumber(double number);
// Takes each line of a file that is not blank; throws Error that names file and line.
void ReadJsonLines(const std::string& path, const std::function<void(const Json&)>& take);
// The stream as `import --json` prints it.
Json StreamJson(IDataStream& stream);

}  // namespace loom
