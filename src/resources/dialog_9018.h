#pragma once

#include "platform/ui/template.h"

// Network element import wizard, first page: the workbook, the protocol and the kind of data.
namespace loom {

inline constexpr int kDialogNetImport1 = 9018;
inline constexpr int kEditNetPath = 9019;
inline constexpr int kButtonBrowseNet = 9001;
inline constexpr int kComboNetProtocol = 9125;
inline constexpr int kComboNetDataType = 9126;

// clang-format off
inline constexpr ControlTemplate kNetImport1Controls[] = {
    {kIdNone,           ControlClass::kStatic,     "网元数据文件", {  7,  12,  60, 10}},
    {kEditNetPath,      ControlClass::kEdit,       "",             { 70,  10, 165, 13}},
    {kButtonBrowseNet,  ControlClass::kPushButton, "浏览...",      {240,  10,  50, 14}},
    {kIdNone,           ControlClass::kStatic,     "网元协议类型", {  7,  36,  60, 10}},
    {kComboNetProtocol, ControlClass::kComboBox,   "",             { 70,  34, 100, 90}},
    {kIdNone,           ControlClass::kStatic,     "网元数据类型", {  7,  58,  60, 10}},
    {kComboNetDataType, ControlClass::kComboBox,   "",             { 70,  56, 100, 90}},
};
// clang-format on

inline constexpr DialogTemplate kNetImport1Template{kDialogNetImport1, "", {0, 0, 300, 210}, kNetImport1Controls};

}  // namespace loom
