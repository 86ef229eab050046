#pragma once

#include <optional>
#include <vector>

#include "platform/cstring.h"

namespace loom {

class CDialog;
class CWnd;

// What a person sees of one control.
struct ControlState {
  int id = 0;
  const char* class_name = "";
  CString text;
  bool enabled = false;
  bool visible = false;
  std::optional<int> checked = {};                             // check box, radio button: 0, 1 or 2
  std::optional<std::vector<CString>> items = {};              // combo box: entries; tree: paths in tree order
  std::optional<std::vector<CString>> columns = {};            // list: headings
  std::optional<std::vector<std::vector<CString>>> rows = {};  // list: cells
  std::optional<std::vector<int>> selected = {};               // positions of rows, entries or items
  std::optional<std::vector<int>> ticks = {};                  // tree with boxes: 0, 1 or 2 (partly) for each item
};

struct ButtonState {
  const char* name;  // "ok", "cancel", "back", "next", "finish"
  bool enabled;
};

struct WindowState {
  int template_id = 0;
  CString title;
  std::vector<ControlState> controls = {};  // with an id of their own, in tab order
  std::vector<ButtonState> buttons = {};    // those that end the window or turn its pages
};

ControlState StateOf(const CWnd& control);
// Of a dialog, or of a sheet by its active page.
WindowState StateOf(const CDialog& dialog);

}  // namespace loom
