#pragma once

#include "platform/cstring.h"
#include "platform/ui/template.h"

// The model's font: every byte of a GBK text is 6 pixels wide (a Chinese character 12) and a line 12 pixels high, which
// makes a dialog unit 1.5 pixels both ways. Front ends draw with their own font; what the program computes in pixels is
// the same everywhere.
namespace loom {

inline constexpr int kCharWidthPx = 6;
inline constexpr int kCharHeightPx = 12;
inline constexpr int kBorderPx = 2;         // of a control, on each side
inline constexpr int kListRowPx = 17;       // one row or header of a list view, one item of a tree view
inline constexpr int kColumnMarginPx = 10;  // around the widest text of an autosized column

constexpr int HorizontalPx(int dialog_units) { return dialog_units * kCharWidthPx / 4; }
constexpr int VerticalPx(int dialog_units) { return dialog_units * kCharHeightPx / 8; }
inline int TextWidthPx(const CString& text) { return text.GetLength() * kCharWidthPx; }

}  // namespace loom
