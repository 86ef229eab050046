#pragma once

#include <span>
#include <string_view>

namespace loom {

// Ids with a meaning of their own in every dialog; also the results of modal dialogs.
inline constexpr int kIdOk = 1;
inline constexpr int kIdCancel = 2;
// Buttons of a property sheet in wizard mode; Finish is also the sheet's result.
inline constexpr int kIdWizardBack = 12323;
inline constexpr int kIdWizardNext = 12324;
inline constexpr int kIdWizardFinish = 12325;
// Controls that nobody refers to.
inline constexpr int kIdNone = -1;

enum class ControlClass {
  kPushButton,
  kDefaultButton,  // pressed by Enter
  kCheckBox,
  kRadioButton,
  kGroupBox,
  kStatic,
  kEdit,
  kComboBox,
  kListView,
  kTreeView,
  kDateTime,
};
// The name that scripts and traces show, such as "ComboBox".
const char* ControlClassName(ControlClass control_class);

// Bits of ControlTemplate::styles.
namespace style {
inline constexpr unsigned kHidden = 1u << 0;
inline constexpr unsigned kDisabled = 1u << 1;
inline constexpr unsigned kGroupStart = 1u << 2;       // the first control of a radio group
inline constexpr unsigned kThreeState = 1u << 3;       // check box
inline constexpr unsigned kReadOnly = 1u << 4;         // edit
inline constexpr unsigned kDigitsOnly = 1u << 5;       // edit
inline constexpr unsigned kMultiLine = 1u << 6;        // edit
inline constexpr unsigned kEditable = 1u << 7;         // combo box with an edit; without it a drop-down list
inline constexpr unsigned kSorted = 1u << 8;           // combo box
inline constexpr unsigned kMultiSelect = 1u << 9;      // list view, tree view
inline constexpr unsigned kCheckBoxes = 1u << 10;      // tree view
inline constexpr unsigned kGridLines = 1u << 11;       // list view
inline constexpr unsigned kFullRowSelect = 1u << 12;   // list view
inline constexpr unsigned kHeaderDragDrop = 1u << 13;  // list view: columns can be moved
inline constexpr unsigned kShowSelAlways = 1u << 14;   // list view, tree view: also without the focus
inline constexpr unsigned kTimeFormat = 1u << 15;      // date-time picker: time of day with up-down buttons, not a date
inline constexpr unsigned kShowNone = 1u << 16;        // date-time picker: can hold no date
}  // namespace style

// Dialog units: a quarter of the mean character width across, an eighth of the character height down.
struct DialogRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// Texts of templates are UTF-8; a letter behind '&' is the accelerator key and the '&' is not shown.
struct ControlTemplate {
  int id;
  ControlClass control_class;
  std::string_view text;
  DialogRect rect;
  unsigned styles = 0;
};

// Controls stand in tab order.
struct DialogTemplate {
  int id;
  std::string_view title;
  DialogRect rect;
  std::span<const ControlTemplate> controls;
};

}  // namespace loom
