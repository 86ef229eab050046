#pragma once

#include "platform/ui/template.h"

// The extension of the dialog for picking log files.
namespace loom {

inline constexpr int kDialogLogFiles = 9004;
inline constexpr int kButtonImportSettings = 9063;

// clang-format off
inline constexpr ControlTemplate kLogFilesControls[] = {
    {kButtonImportSettings, ControlClass::kPushButton, "导入设置(&I)", {7, 7, 60, 14}},
};
// clang-format on

inline constexpr DialogTemplate kLogFilesTemplate{kDialogLogFiles, "", {0, 0, 300, 28}, kLogFilesControls};

}  // namespace loom
