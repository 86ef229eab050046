#pragma once

#include "components/import_settings.h"
#include "manager/log_outcome.h"

namespace loom {

class IORegistry;

// The node of the project that logs go under. What it takes is checked, but that a China Mobile log is at home where
// nobody asks.
struct LogNode {
  ImporterTypeEnum type = kImporterNone;
  bool is_checked = true;
};

// With what a log is imported.
struct LogSettings {
  ImpIESettings ies;  // empty: every information element
  struct_BinningSetting binning;
};

// Imports one log and registers it in the project.
class LogOpener {
 public:
  // Both outlive the opener.
  LogOpener(IORegistry& registry, const LogListener& listener) : registry_(registry), listener_(listener) {}

  // An ImportResult, of which messages have told what is prescribed; the listener hears of it. Throws what the import
  // throws.
  int OpenLogFile(const CString& path, const LogSettings& settings, LogNode node);

 private:
  void Import(LogOutcome& outcome, const LogSettings& settings, LogNode node);
  void RunImporter(LogOutcome& outcome, const LogSettings& settings);
  IImporter* Prepare(ImporterTypeEnum type, const ImpIESettings& settings);
  IImporter* PrepareOwn(ImporterTypeEnum type, const ImpIESettings& settings);

  IORegistry& registry_;
  const LogListener& listener_;
};

}  // namespace loom
