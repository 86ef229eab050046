#pragma once

#include "platform/ui/template.h"
#include "resources/dialog_9001.h"

// Text import wizard, third page: which column is which information element. The preview is the second page's.
namespace loom {

inline constexpr int kDialogTextImport3 = 9002;
inline constexpr int kListColumnMap = 9013;
inline constexpr int kButtonMapColumn = 9014;
inline constexpr int kButtonUnmapColumn = 9012;
inline constexpr int kButtonUnmapAll = 9015;
inline constexpr int kButtonSaveConfig = 9075;

// clang-format off
inline constexpr ControlTemplate kTextImport3Controls[] = {
    {kListColumnMap,     ControlClass::kListView,   "",         {  7,   7, 223, 96},
     style::kGridLines | style::kFullRowSelect | style::kHeaderDragDrop | style::kShowSelAlways},
    {kButtonMapColumn,   ControlClass::kPushButton, "映射(&M)", {236,   7,  54, 14}},
    {kButtonUnmapColumn, ControlClass::kPushButton, "清除(&R)", {236,  25,  54, 14}},
    {kButtonUnmapAll,    ControlClass::kPushButton, "清空(&C)", {236,  43,  54, 14}},
    {kButtonSaveConfig,  ControlClass::kPushButton, "保存配置", {236,  89,  54, 14}, style::kDisabled},
    {kListTextPreview,   ControlClass::kListView,   "",         {  7, 109, 283, 94}, style::kGridLines},
};
// clang-format on

inline constexpr DialogTemplate kTextImport3Template{
    kDialogTextImport3, "文本文件导入向导--第三步", {0, 0, 300, 210}, kTextImport3Controls};

}  // namespace loom
