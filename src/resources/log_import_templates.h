#pragma once

#include "platform/ui/template.h"

// What opens with a log: the file dialog's extension and the choice of elements.
namespace loom {

// The extension of the dialog for picking log files.
inline constexpr int kDialogLogFiles = 9004;
inline constexpr int kButtonImportSettings = 9063;

// clang-format off
inline constexpr ControlTemplate kLogFilesControls[] = {
    {kButtonImportSettings, ControlClass::kPushButton, "导入设置(&I)", {7, 7, 60, 14}},
};
// clang-format on

inline constexpr DialogTemplate kLogFilesTemplate{kDialogLogFiles, "", {0, 0, 300, 28}, kLogFilesControls};

// The IEs that a log import brings in.
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
