#pragma once

#include "manager/log_outcome.h"
#include "text/import/text_import_settings.h"

namespace loom {

class CProjectTxtFile;
class IORegistry;

// The commands that bring text files into the project. None lets an exception out.
class TextCommands {
 public:
  // Both outlive the commands.
  TextCommands(IORegistry& registry, const LogListener& listener) : registry_(registry), listener_(listener) {}

  int ImportTxt();
  int ImportTextAs(const TextImportSettings& settings, const CString& protocol);
  int OpenTxt(const CString& path);

 private:
  int ImportChosen();
  int ImportNew(const TextImportSettings& chosen, const CString& protocol);
  int Reopen(const CString& path);
  int AskWhetherAgain(const CString& path);
  int Import(const CString& path, const TextStreamSettings& settings, ILogfile*& logfile);

  IORegistry& registry_;
  const LogListener& listener_;
};

}  // namespace loom
