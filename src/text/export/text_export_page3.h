#pragma once

#include <cstdint>

#include "platform/ui/property_sheet.h"

namespace loom {

// Third page of the text export: the file, its separator and what is written.
class CTextExportWizPage3 final : public CPropertyPage {
 public:
  // In the order in which the page has them; 0 or 1.
  struct Flags {
    std::int32_t write_header = 0;
    std::int32_t write_units = 0;
    std::int32_t binned_data = 0;
    std::int32_t fill_gaps = 0;
  };

  CTextExportWizPage3();

  // After Finish.
  const CString& GetFileName() const { return file_name_; }
  const CString& GetSeparator() const { return separator_; }
  const Flags& GetFlags() const { return flags_; }

 protected:
  void OnInitDialog() override;
  void DoDataExchange(CDataExchange& exchange) override;
  bool OnSetActive() override;
  bool OnWizardFinish() override;

 private:
  void UseSeparator(const char* separator);
  void ReadCustomSeparator();
  void FollowHeader();
  void Browse();
  void AllowFinish();

  CString file_name_;
  CString separator_ = "\t";
  std::int32_t data_choice_ = 0;  // 0 as reported, 1 merged and averaged
  std::int32_t write_header_ = 1;
  std::int32_t write_units_ = 0;
  std::int32_t fill_gaps_ = 0;
  Flags flags_;
};

}  // namespace loom
