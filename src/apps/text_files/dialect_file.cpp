#include "apps/text_files/dialect_file.h"

#include "apps/text_files/dialect_json.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"

namespace loom {

dialect::Overrides ReadDialectFile(const CString& path) {
  try {
    return OverridesFromJson(Json::parse(ReadWholeText(path)));
  } catch (const Json::exception& error) {
    throw Error(GbkToUtf8(path) + ": no dialect: " + error.what());
  } catch (const std::out_of_range&) {
    throw Error(GbkToUtf8(path) + ": no dialect: an empty decimal mark");
  }
}

void WriteDialectFile(const CString& path, const dialect::Findings& found) {
  WriteWholeFile(path, DialectJson(found).dump(2) + "\n");
}

}  // namespace loom
