#pragma once

#include "platform/ui/template.h"

// Correction of the handset type of a log.
namespace loom {

inline constexpr int kDialogHandsetType = 9010;
inline constexpr int kComboHandsetType = 9139;
inline constexpr int kCheckKeepForThisLog = 9140;
inline constexpr int kCheckKeepForAllLogs = 9141;

// clang-format off
inline constexpr ControlTemplate kHandsetTypeControls[] = {
    {kIdNone,               ControlClass::kStatic,        "当前日志此时上报的手机类型有误，可能导致数据流偏差。", { 7,  7, 226, 10}},
    {kIdNone,               ControlClass::kStatic,        "请选择期望替代的手机类型：",                       { 7, 25, 110, 10}},
    {kComboHandsetType,     ControlClass::kComboBox,      "",                                                 {120, 23, 113, 90}},
    {kCheckKeepForThisLog,  ControlClass::kCheckBox,      "此次导入时，对当前日志保持该选择",                 { 7, 44, 226, 10}},
    {kCheckKeepForAllLogs,  ControlClass::kCheckBox,      "此次导入时，对所有日志保持该选择",                 { 7, 58, 226, 10}},
    {kIdOk,                 ControlClass::kDefaultButton, "确定",                                             {183, 75,  50, 14}},
};
// clang-format on

inline constexpr DialogTemplate kHandsetTypeTemplate{
    kDialogHandsetType, "修正手机类型", {0, 0, 240, 96}, kHandsetTypeControls};

}  // namespace loom
