#pragma once

#include "platform/ui/template.h"

// The IEs that a log import brings in.
namespace loom {

inline constexpr int kDialogSelImport = 9005;
inline constexpr int kTreeImportIes = 9064;
inline constexpr int kButtonLoadIeTemplate = 914;
inline constexpr int kButtonSaveIeTemplate = 915;

// clang-format off
inline constexpr ControlTemplate kSelImportControls[] = {
    {kTreeImportIes,        ControlClass::kTreeView,   "",         {  7,   7, 246, 190}, style::kCheckBoxes | style::kShowSelAlways},
    {kButtonLoadIeTemplate, ControlClass::kPushButton, "导入模板", {141, 203,  54,  14}},
    {kButtonSaveIeTemplate, ControlClass::kPushButton, "导出模板", {199, 203,  54,  14}},
};
// clang-format on

inline constexpr DialogTemplate kSelImportTemplate{kDialogSelImport, "参数选择", {0, 0, 260, 224}, kSelImportControls};

}  // namespace loom
