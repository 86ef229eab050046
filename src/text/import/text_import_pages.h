#pragma once

#include <vector>

#include "platform/ui/property_sheet.h"
#include "text/import/text_import_settings.h"

// The pages of the text import wizard. They share the settings that they collect, which outlive them.
namespace loom {

// The file, and a configuration that makes the other pages unnecessary.
class CTextImportWizPage1 final : public CPropertyPage {
 public:
  explicit CTextImportWizPage1(TextImportSettings& settings);

 protected:
  void OnInitDialog() override;
  bool OnSetActive() override;
  int OnWizardNext() override;
  bool OnWizardFinish() override;
  void DoDataExchange(CDataExchange& exchange) override;

 private:
  void BrowseText();
  void BrowseConfig();
  void ShowButtons();

  TextImportSettings& settings_;
};

// Stream, time layout and separator, with the first lines of the file.
class CTextImportWizPage2 final : public CPropertyPage {
 public:
  explicit CTextImportWizPage2(TextImportSettings& settings);

 protected:
  void OnInitDialog() override;
  bool OnSetActive() override;
  bool OnKillActive() override;
  int OnWizardNext() override;
  void DoDataExchange(CDataExchange& exchange) override;

 private:
  bool ReadFirstLines();
  void ShowButtons();
  void UseSeparator(const CString& separator);
  void OnCustomSeparator();
  void OnCustomEdited();
  void TakeFormat();
  void RebuildPreview();

  TextImportSettings& settings_;
  std::vector<CString> lines_;
  CString custom_separator_;  // as accepted last
};

// The column map.
class CTextImportWizPage3 final : public CPropertyPage {
 public:
  explicit CTextImportWizPage3(TextImportSettings& settings);

 protected:
  bool OnSetActive() override;
  bool OnWizardFinish() override;

 private:
  void MapAutomatically();
  void FillMapping();
  void ShowButtons();
  void OnRowSelected();
  void OnHeaderClicked();
  void ShowCurrentColumn();
  void MapCurrent();
  void UnmapSelected();
  void UnmapAll();
  void SaveConfig();

  TextImportSettings& settings_;
  int current_column_ = -1;
};

}  // namespace loom
