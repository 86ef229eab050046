#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "platform/ui/property_sheet.h"

namespace loom {

// What the text import wizard is filled with; what is not given stays as the wizard shows it.
struct TextImportAnswers {
  CString file;
  std::optional<CString> config;  // a saved configuration: nothing else is asked then
  std::optional<CString> stream_name;
  std::optional<int> stream_type;  // position in the list
  std::optional<CString> time_format;
  std::string separator;  // "tab", "comma", "semicolon", one character, or empty
  bool no_header = false;
  std::map<int, CString> columns;  // column from 0 -> information element; empty: the automatic mapping
  std::optional<CString> save_config;
};

// The options of a text import as they stand on the command line.
struct TextImportOptions {
  std::string config;
  std::string stream_name;
  std::string stream_type;
  std::string time_format;
  std::string separator;
  bool no_header = false;
  std::vector<std::string> columns;
  std::string save_config;

  bool IsAnyGiven() const;
};
// `prefix` distinguishes those that the command has for something else as well: "--source-separator".
void AddTextImportOptions(Command& command, TextImportOptions& options, const std::string& prefix = "");
TextImportAnswers TextImportAnswersFrom(const TextImportOptions& options, const CString& file);

// The person's part in the wizard. Throws Error for an answer that the wizard has no place for.
class TextImportWizardUser {
 public:
  // `pick_file` is told the file for the file dialog that comes next; `newest_message` gives the text of the message
  // that came last.
  TextImportWizardUser(const TextImportAnswers& answers, std::function<void(const CString&)> pick_file,
                       std::function<CString()> newest_message)
      : answers_(answers), pick_file_(std::move(pick_file)), newest_message_(std::move(newest_message)) {}

  static bool IsWizard(const CPropertySheet& sheet);
  // Goes through the pages to Finish. A wizard that refused something, which a message has said, is cancelled.
  void Fill(CPropertySheet& sheet);
  // The dialog in which a column's information element is chosen.
  void ChooseParameter(CDialog& dialog) const;

 private:
  void FillPages(CPropertySheet& sheet);
  void FillFile(CPropertySheet& sheet);
  void FillStream(CDialog& page) const;
  void FillSeparator(CDialog& page) const;
  void FillColumns(CDialog& page);
  static std::string WhatTheTitlesAre(const CDialog& page);
  std::string WhatIsSeen(const CDialog& page) const;
  void SaveConfig(CDialog& page) const;

  const TextImportAnswers& answers_;
  std::function<void(const CString&)> pick_file_;
  std::function<CString()> newest_message_;
  CString wanted_;  // information element of the column being mapped
};

}  // namespace loom
