#pragma once

#include <functional>
#include <string>
#include <vector>

#include "apps/text_files/text_file_import.h"
#include "platform/ui/dialog.h"

namespace loom {

// Shows how a text file of another tool is written, in words, with its columns and first rows. What a person changes is
// no longer guessed; the rest follows from it. OK leaves the file as it is to be imported.
class TextFinderDialog final : public CDialog {
 public:
  explicit TextFinderDialog(const CString& path);

  // After OK.
  const InspectedTextFile& file() const { return file_; }

 protected:
  void OnInitDialog() override;
  void OnOK() override;

 private:
  bool FindAgain();
  bool Inspect(const TextFileWishes& wishes);
  void FindFresh();
  void TakeStream(TextFileWishes& wishes) const;
  bool HasChanges() const;
  void Show();
  void ShowFindings();
  void ShowColumns();
  void ShowRows();
  CString ElementOf(std::size_t column) const;
  void MapColumn();
  void UnmapColumn();
  void SetElement(std::size_t column, const std::string& element);

  InspectedTextFile file_;
  std::vector<CString> shown_;  // of each field, as it was found
};

// Shows the files one after the other and imports those that the person agrees to; `told` hears of each import. An
// ImportResult: done when any was.
using TextImportListener = std::function<void(const CString& path, const ImportedTextFile& done)>;
int ImportWithFinder(StoredProject& project, CIOManager& manager, const std::vector<CString>& paths,
                     const TextImportListener& told = {});
// The same for the files that a file dialog asks for.
int AskAndImportWithFinder(StoredProject& project, CIOManager& manager, const TextImportListener& told = {});

}  // namespace loom
