#pragma once

#include "platform/ui/template.h"

// A name of the person's own for a worksheet column.
namespace loom {

inline constexpr int kDialogCustomNet = 9007;
inline constexpr int kEditCustomHeading = 9082;
inline constexpr int kEditCustomName = 9083;

// clang-format off
inline constexpr ControlTemplate kCustomNetControls[] = {
    {kIdNone,            ControlClass::kStatic,        "EXCEL",    {  7, 11,  40, 10}},
    {kEditCustomHeading, ControlClass::kEdit,          "",         { 50,  9, 110, 13}, style::kReadOnly},
    {kIdNone,            ControlClass::kStatic,        "数据名称", {  7, 31,  40, 10}},
    {kEditCustomName,    ControlClass::kEdit,          "",         { 50, 29, 110, 13}},
    {kIdOk,              ControlClass::kDefaultButton, "确定",     { 56, 52,  50, 14}},
    {kIdCancel,          ControlClass::kPushButton,    "取消",     {110, 52,  50, 14}},
};
// clang-format on

inline constexpr DialogTemplate kCustomNetTemplate{
    kDialogCustomNet, "自定义网元数据", {0, 0, 167, 73}, kCustomNetControls};

}  // namespace loom
