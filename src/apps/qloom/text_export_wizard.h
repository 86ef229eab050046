#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/command_line.h"
#include "platform/ui/property_sheet.h"

namespace loom {

// What the text export wizard is filled with.
struct TextExportAnswers {
  struct Limit {
    CString name;
    CString minimum;  // empty: that of the valid range
    CString maximum;
  };

  CString stream;
  std::vector<CString> parameters;  // in the order of the file
  std::vector<Limit> limits;
  CString file;
  int separator_radio = 0;  // 0: as shown
  CString symbol;           // of the separator of one's own
  bool write_header = true;
  bool write_units = false;
  bool fill_gaps = false;
  bool binned_data = false;
};

// The options of the wizard as they stand on the command line.
struct TextExportOptions {
  std::string stream;
  std::vector<std::string> parameters;
  std::vector<std::string> limits;
  std::string file;
  std::string separator;
  bool no_header = false;
  bool units = false;
  bool fill = false;
  bool binned = false;
};
void AddTextExportOptions(Command& command, TextExportOptions& options);
TextExportAnswers TextExportAnswersFrom(const TextExportOptions& options);

// Plays the person in front of the wizard.
class TextExportWizardUser {
 public:
  explicit TextExportWizardUser(TextExportAnswers answers) : answers_(std::move(answers)) {}

  static bool IsTextExportWizard(const CPropertySheet& sheet);

  // Goes through the pages up to Finish. `pick_file` is told the file for the file dialog that comes next. What the
  // wizard does not accept a message has said, and the wizard is closed. Throws Error for an answer that it has no
  // place for.
  void Fill(CPropertySheet& sheet, const std::function<void(const CString&)>& pick_file);

  // The limits dialog that a limit in Fill has opened.
  void FillLimits(CDialog& dialog);

  const CString& WrittenFile() const { return written_file_; }  // as the wizard has it; empty unless it was finished

 private:
  void ChooseStream(CDialog& page) const;
  void ChooseParameters(CDialog& page) const;
  void SetLimit(CDialog& page, const TextExportAnswers::Limit& limit);
  void FillFilePage(CDialog& page, const std::function<void(const CString&)>& pick_file) const;

  TextExportAnswers answers_;
  const TextExportAnswers::Limit* limit_ = nullptr;  // for the limits dialog that comes next
  bool limit_was_refused_ = false;
  CString written_file_;
};

}  // namespace loom
