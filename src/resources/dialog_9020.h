#pragma once

#include "platform/ui/template.h"

// Text export, first page: the data stream.
namespace loom {

inline constexpr int kDialogTextExport1 = 9020;
inline constexpr int kTreeExport = 9044;  // on the first page streams, on the second parameters

// clang-format off
inline constexpr ControlTemplate kTextExport1Controls[] = {
    {kIdNone,     ControlClass::kStatic,   "请选择要导出的数据流：", {7,  7, 246,  10}},
    {kTreeExport, ControlClass::kTreeView, "",                       {7, 20, 276, 170}, style::kShowSelAlways},
};
// clang-format on

inline constexpr DialogTemplate kTextExport1Template{
    kDialogTextExport1, "文本文件导出向导--第一步", {0, 0, 290, 198}, kTextExport1Controls};

}  // namespace loom
