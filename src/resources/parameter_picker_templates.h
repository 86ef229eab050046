#pragma once

#include "platform/ui/template.h"

// The choice of one parameter.
namespace loom {

inline constexpr int kDialogParam = 9017;
inline constexpr int kTreeParams = 9044;

// clang-format off
inline constexpr ControlTemplate kParamControls[] = {
    {kTreeParams, ControlClass::kTreeView,      "",     {  7,   7, 186, 190}, style::kShowSelAlways},
    {kIdOk,       ControlClass::kDefaultButton, "确定", { 89, 203,  50,  14}},
    {kIdCancel,   ControlClass::kPushButton,    "取消", {143, 203,  50,  14}},
};
// clang-format on

inline constexpr DialogTemplate kParamTemplate{kDialogParam, "参数选择", {0, 0, 200, 224}, kParamControls};

}  // namespace loom
