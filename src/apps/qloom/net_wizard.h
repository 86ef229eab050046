#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "platform/ui/property_sheet.h"

namespace loom {

// What the wizard of the network element import is filled with; the workbook is the answer to its file dialog.
struct NetWizardAnswers {
  CString protocol;  // entries of the first page
  CString data_type;
  std::optional<CString> worksheet;                 // none: the one shown
  std::vector<std::pair<CString, CString>> map;     // heading, parameter
  std::vector<std::pair<CString, CString>> custom;  // heading, name of the person's own
};

// Plays the person in the wizard: fills both pages and presses Finish. A window that does not take an answer is
// cancelled, and everything above it with it.
class NetWizardUser {
 public:
  explicit NetWizardUser(NetWizardAnswers answers) : answers_(std::move(answers)) {}

  // The wizard, and the two dialogs that its second page shows.
  void FillWizard(CPropertySheet& sheet);
  void ChooseParameter(CDialog& dialog);
  void TypeName(CDialog& dialog);

 private:
  void FillPages(CPropertySheet& sheet);
  void Answer(CDialog& dialog, void (*give)(CDialog&, const CString&));
  void PressFinish(CPropertySheet& sheet) const;
  void FillMapping(CDialog& page);
  void PressForRow(CDialog& page, int button, const std::pair<CString, CString>& answer);
  void FreeParameter(CDialog& page, const CString& heading, const CString& parameter) const;

  NetWizardAnswers answers_;
  CString answer_;         // for the next dialog
  bool answered_ = false;  // it took it
};

}  // namespace loom
