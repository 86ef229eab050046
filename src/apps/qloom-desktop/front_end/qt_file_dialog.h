#pragma once

#include <QFileDialog>
#include <exception>
#include <optional>
#include <vector>

#include "platform/ui/front_end.h"

namespace loom {

// The dialog for picking files, with the module's extra button. It closes only with a selection that nobody objects to.
class QtFileDialog final : public QFileDialog {
 public:
  QtFileDialog(const FileDialogRequest& request, QWidget* parent);

  // The paths picked; nothing when cancelled. Throws what the extra button's handler threw.
  std::optional<std::vector<CString>> Pick();

  void accept() override;

 private:
  void SetTexts();
  void AddExtraButton();
  void PressExtraButton();
  std::vector<CString> Picked() const;
  bool MayClose(const std::vector<CString>& paths);

  const FileDialogRequest& request_;
  std::exception_ptr failure_;
};

}  // namespace loom
