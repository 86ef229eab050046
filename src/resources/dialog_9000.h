#pragma once

#include "platform/ui/template.h"

// Text import wizard, first page: the file and, if wanted, a saved configuration.
namespace loom {

inline constexpr int kDialogTextImport1 = 9000;
inline constexpr int kEditTextPath = 9000;
inline constexpr int kButtonBrowseText = 9001;
inline constexpr int kComboImportConfig = 9079;
inline constexpr int kButtonImportConfig = 9075;

// clang-format off
inline constexpr ControlTemplate kTextImport1Controls[] = {
    {kIdNone,             ControlClass::kStatic,     "文本文件",      {  7,  12,  45, 10}},
    {kEditTextPath,       ControlClass::kEdit,       "",              { 55,  10, 180, 13}},
    {kButtonBrowseText,   ControlClass::kPushButton, "浏览...",       {240,  10,  50, 14}},
    {kIdNone,             ControlClass::kStatic,     "导入配置",      {  7,  34,  45, 10}},
    {kComboImportConfig,  ControlClass::kComboBox,   "",              { 55,  32, 180, 90}},
    {kButtonImportConfig, ControlClass::kPushButton, "浏览...",       {240,  32,  50, 14}, style::kDisabled},
};
// clang-format on

inline constexpr DialogTemplate kTextImport1Template{
    kDialogTextImport1, "文本文件导入向导--第一步", {0, 0, 300, 210}, kTextImport1Controls};

}  // namespace loom
