#include "tests/support/workbook_reading.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/encoding.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {
namespace {

std::string Quoted(const std::string& word) { return "'" + word + "'"; }

// Standard output of a program that must succeed.
std::string OutputOf(const std::string& command) {
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  std::string out;
  char block[65536];
  for (std::size_t got; (got = fread(block, 1, sizeof block, pipe)) > 0;) out.append(block, got);
  if (pclose(pipe) != 0) throw std::runtime_error("failed: " + command);
  return out;
}

nlohmann::json RunReader(const CString& path, const std::string& option) {
  const std::string script = SourceFolder() / "tests/support/read_workbook.py";
  const std::string command = "/usr/bin/python3 " + Quoted(script) + " " + option + Quoted(GbkPathToNative(path));
  return nlohmann::json::parse(OutputOf(command));
}

bool Succeeds(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

}  // namespace

nlohmann::json ReadWorkbook(const CString& path) { return RunReader(path, ""); }

nlohmann::json ReadWorkbookByOpenpyxl(const CString& path) { return RunReader(path, "--openpyxl "); }

std::string FirstSheetByLibreOffice(const CString& path) {
  const TempFolder folder;
  OutputOf("soffice -env:UserInstallation=file://" + folder.native().string() +
           "/profile --headless --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76' --outdir " +
           Quoted(folder.native().string()) + " " + Quoted(GbkPathToNative(path)) + " 2>/dev/null");
  std::string name = std::filesystem::path(GbkPathToNative(path)).stem().string() + ".csv";
  std::ostringstream text;
  text << std::ifstream(folder.native() / name, std::ios::binary).rdbuf();
  return text.str();
}

bool HasOpenpyxl() { return Succeeds("/usr/bin/python3 -c 'import openpyxl'"); }

bool HasLibreOffice() { return Succeeds("command -v soffice"); }

}  // namespace loom::testing
