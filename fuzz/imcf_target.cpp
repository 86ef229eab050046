// Any bytes as an import configuration: refused, or one that is the same again when it was written.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "host/netdb/text_config.h"
#include "platform/encoding.h"
#include "platform/error.h"

namespace {

using namespace loom;

bool AreEqual(const CProjectTxtFile& a, const CProjectTxtFile& b) {
  return a.GetTxtName() == b.GetTxtName() && a.GetSeparate() == b.GetSeparate() &&
         a.GetDataFormat() == b.GetDataFormat() && a.GetHeadLineIsIgnore() == b.GetHeadLineIsIgnore() &&
         a.GetColumnMapIE() == b.GetColumnMapIE();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path copy =
      std::filesystem::temp_directory_path() / ("qloom-fuzz-" + std::to_string(getpid()) + ".imcf");
  const MemoryFile file(data, size);
  CProjectTxtFile record;
  try {
    ReadTextConfig(file.Path(), record);
  } catch (const Error&) {
    if (!record.GetColumnMapIE().empty()) std::abort();
    return 0;
  }
  const CString path = NativePathToGbk(copy.native());
  WriteTextConfig(path, record);
  CProjectTxtFile again;
  ReadTextConfig(path, again);
  std::filesystem::remove(copy);
  if (!AreEqual(record, again)) std::abort();
  return 0;
}
