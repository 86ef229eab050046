#pragma once

#include <map>

#include "apps/qloom-desktop/front_end/modal_window.h"
#include "platform/ui/property_sheet.h"

class QPushButton;
class QStackedWidget;
class QTabWidget;

namespace loom {

// A property sheet: pages behind tabs, or in wizard mode one at a time, above the sheet's own buttons. A page gets its
// controls when it is shown first.
class SheetWindow final : public ModalWindow {
 public:
  SheetWindow(CPropertySheet& sheet, QWidget* parent);
  bool Shows(const CDialog& dialog) const override { return dialog.GetSheet() == &sheet_; }

 private:
  bool IsRunning() const override { return sheet_.IsRunning(); }
  void UserClose() override { sheet_.UserClose(); }
  void ShowModel() override;
  void MakeTabs();
  QSize LargestPage() const;
  DialogPane& PaneOf(int page);
  void PutButtonsBehind(const DialogPane& pane);
  void ShowPage();
  void ShowButtons();
  QPushButton* ButtonFor(const SheetButton& button);

  CPropertySheet& sheet_;
  QTabWidget* tabs_ = nullptr;       // of a sheet
  QStackedWidget* pages_ = nullptr;  // of a wizard
  std::map<int, DialogPane*> panes_;
  std::map<int, QPushButton*> buttons_;  // by id
  QWidget* button_row_;
};

}  // namespace loom
