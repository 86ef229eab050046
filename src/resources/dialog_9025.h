#pragma once

#include "platform/ui/template.h"
#include "resources/dialog_9020.h"

// Text export, second page: the parameters and their limits.
namespace loom {

inline constexpr int kDialogTextExport2 = 9025;
inline constexpr int kListExport = 9045;
inline constexpr int kButtonExportSelect = 9040;
inline constexpr int kButtonExportRemove = 9041;
inline constexpr int kButtonExportClear = 9015;
inline constexpr int kButtonExportUp = 9050;
inline constexpr int kButtonExportDown = 9051;

// clang-format off
inline constexpr ControlTemplate kTextExport2Controls[] = {
    {kIdNone,             ControlClass::kStatic,     "可选参数：", {  7,   7, 100,  10}},
    {kTreeExport,         ControlClass::kTreeView,   "",           {  7,  20, 110, 170}, style::kMultiSelect | style::kShowSelAlways},
    {kButtonExportSelect, ControlClass::kPushButton, "选择 >",     {122,  60,  44,  14}},
    {kButtonExportRemove, ControlClass::kPushButton, "< 清除",     {122,  80,  44,  14}},
    {kButtonExportClear,  ControlClass::kPushButton, "清空",       {122, 100,  44,  14}},
    {kIdNone,             ControlClass::kStatic,     "导出参数：", {171,   7, 100,  10}},
    {kListExport,         ControlClass::kListView,   "",           {171,  20, 142, 152}, style::kMultiSelect | style::kGridLines | style::kFullRowSelect | style::kShowSelAlways},
    {kButtonExportUp,     ControlClass::kPushButton, "上移",       {171, 176,  44,  14}},
    {kButtonExportDown,   ControlClass::kPushButton, "下移",       {220, 176,  44,  14}},
};
// clang-format on

inline constexpr DialogTemplate kTextExport2Template{
    kDialogTextExport2, "文本文件导出向导--第二步", {0, 0, 320, 198}, kTextExport2Controls};

}  // namespace loom
