#pragma once

#include <cstdint>

#include "platform/ui/property_sheet.h"

namespace loom {

// The sheet of the settings and of the wizards. When its first page is the IE selection, OK asks that page first.
class CImportWiz final : public CPropertySheet {
 public:
  using CPropertySheet::CPropertySheet;

 protected:
  void OnCommand(int id) override;

 private:
  bool AcceptsOk() const;
  std::int32_t accept_ = 1;  // of the running command; 0: it is swallowed
};

}  // namespace loom
