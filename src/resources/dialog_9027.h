#pragma once

#include "platform/ui/template.h"

// The limits of one parameter of a text export.
namespace loom {

inline constexpr int kDialogExportLimits = 9027;
inline constexpr int kEditLimitName = 9074;
inline constexpr int kEditValidMinimum = 9070;
inline constexpr int kEditValidMaximum = 9071;
inline constexpr int kEditSetMinimum = 9072;
inline constexpr int kEditSetMaximum = 9073;

// clang-format off
inline constexpr ControlTemplate kExportLimitsControls[] = {
    {kIdNone,           ControlClass::kStatic,        "参数名称",   {  7,  9,  50, 10}},
    {kEditLimitName,    ControlClass::kEdit,          "",           { 60,  7, 110, 14}, style::kReadOnly},
    {kIdNone,           ControlClass::kStatic,        "最小有效值", {  7, 27,  50, 10}},
    {kEditValidMinimum, ControlClass::kEdit,          "",           { 60, 25, 110, 14}, style::kReadOnly},
    {kIdNone,           ControlClass::kStatic,        "最大有效值", {  7, 45,  50, 10}},
    {kEditValidMaximum, ControlClass::kEdit,          "",           { 60, 43, 110, 14}, style::kReadOnly},
    {kIdNone,           ControlClass::kStatic,        "设定最小值", {  7, 63,  50, 10}},
    {kEditSetMinimum,   ControlClass::kEdit,          "",           { 60, 61, 110, 14}},
    {kIdNone,           ControlClass::kStatic,        "设定最大值", {  7, 81,  50, 10}},
    {kEditSetMaximum,   ControlClass::kEdit,          "",           { 60, 79, 110, 14}},
    {kIdOk,             ControlClass::kDefaultButton, "确定",       { 66, 99,  50, 14}},
    {kIdCancel,         ControlClass::kPushButton,    "取消",       {120, 99,  50, 14}},
};
// clang-format on

inline constexpr DialogTemplate kExportLimitsTemplate{
    kDialogExportLimits, "参数导出设置", {0, 0, 177, 120}, kExportLimitsControls};

}  // namespace loom
