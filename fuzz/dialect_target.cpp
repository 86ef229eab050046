// Any bytes as a text file of another tool: it is found out, and its CSV has as many rows as were found.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "text/dialect/byte_source.h"
#include "text/dialect/converter.h"
#include "text/dialect/finder.h"

namespace {

using namespace loom;

CString OutPath() {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("qloom-fuzz-" + std::to_string(getpid()))).native();
  return NativePathToGbk(path);
}

// Records of plain CSV, by counting line ends outside of quotes.
std::uint64_t CountRecords(const std::string& csv) {
  std::uint64_t records = 0;
  bool is_quoted = false;
  for (const char c : csv) {
    if (c == '"') is_quoted = !is_quoted;
    if (c == '\n' && !is_quoted) ++records;
  }
  if (is_quoted) std::abort();
  return records;
}

}  // namespace

// The first byte chooses what is overridden.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const MemoryFile file(data + 1, size - 1);
  dialect::Overrides overrides;
  constexpr const char* kSeparators[] = {",", ";", "\t", dialect::kBlanks, ""};
  if ((data[0] & 1) != 0) overrides.separator = kSeparators[data[0] / 2 % std::size(kSeparators)];
  if ((data[0] & 2) != 0) overrides.header_rows = data[0] / 4 % 4;
  if ((data[0] & 4) != 0) overrides.quote = "'";
  if ((data[0] & 8) != 0) overrides.decimal = ',';
  const dialect::Findings found = dialect::Inspect(file.Path(), overrides);
  if (found.confidence < 0 || found.confidence > 1) std::abort();
  if (found.time && found.time->valid > found.rows) std::abort();
  if (ConvertToCsv(file.Path(), found, OutPath()).rows != found.rows) std::abort();
  const std::uint64_t header = found.form.header_rows > 0 ? 1 : 0;
  if (CountRecords(ReadWholeText(OutPath())) != found.rows + header) std::abort();
  RemoveFile(OutPath());
  return 0;
}
