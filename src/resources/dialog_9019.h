#pragma once

#include "platform/ui/template.h"

// Network element import wizard, second page: the worksheet and what its columns mean.
namespace loom {

inline constexpr int kDialogNetImport2 = 9019;
inline constexpr int kComboWorksheet = 9080;
inline constexpr int kListNetMapping = 9034;
inline constexpr int kButtonMapNet = 9035;
inline constexpr int kButtonClearNet = 9015;
inline constexpr int kButtonCustomNet = 9081;

// clang-format off
inline constexpr ControlTemplate kNetImport2Controls[] = {
    {kIdNone,          ControlClass::kStatic,     "映射数据页",        {  7,   9,  50,  10}},
    {kComboWorksheet,  ControlClass::kComboBox,   "",                  { 60,   7, 120,  90}, style::kSorted},
    {kListNetMapping,  ControlClass::kListView,   "",                  {  7,  25, 286, 160}, style::kShowSelAlways | style::kFullRowSelect | style::kGridLines | style::kHeaderDragDrop},
    {kButtonMapNet,    ControlClass::kPushButton, "映射网元数据(&M)",  {  7, 190,  80,  14}},
    {kButtonClearNet,  ControlClass::kPushButton, "清除映射(&C)",      { 91, 190,  60,  14}},
    {kButtonCustomNet, ControlClass::kPushButton, "自定义网元数据(&D)", {155, 190,  80,  14}},
};
// clang-format on

inline constexpr DialogTemplate kNetImport2Template{kDialogNetImport2, "", {0, 0, 300, 210}, kNetImport2Controls};

}  // namespace loom
