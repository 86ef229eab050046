#pragma once

#include <cstdint>

#include "platform/ui/dialog.h"
#include "text/import/column_map.h"

namespace loom {

// The choice of the information element that a column of a text file carries, in the tree of the parameter navigator.
class CParamDialog final : public CDialog {
 public:
  // OK puts the choice into the map, which outlives the dialog, unless another column carries it already.
  CParamDialog(std::int32_t column, ColumnMap& columns);

 protected:
  void OnInitDialog() override;
  void OnOK() override;

 private:
  void OnTreeDoubleClicked();

  std::int32_t column_;
  ColumnMap& columns_;
};

}  // namespace loom
