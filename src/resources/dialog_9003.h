#pragma once

#include "platform/ui/template.h"

// Several logs become one.
namespace loom {

inline constexpr int kDialogCombine = 9003;
inline constexpr int kEditCombineTarget = 9037;
inline constexpr int kButtonCombineTarget = 9038;
inline constexpr int kComboCombineKind = 9143;
inline constexpr int kListLteLogs = 9039;
inline constexpr int kListAutoTestLogs = 9145;
inline constexpr int kButtonAddLogs = 9040;
inline constexpr int kButtonMoveUp = 9136;
inline constexpr int kButtonMoveDown = 9137;
inline constexpr int kButtonRemoveLogs = 9041;
inline constexpr int kButtonClearLogs = 9015;

inline constexpr unsigned kCombineListStyles =
    style::kMultiSelect | style::kShowSelAlways | style::kFullRowSelect | style::kGridLines | style::kHeaderDragDrop;

// clang-format off
inline constexpr ControlTemplate kCombineControls[] = {
    {kIdNone,              ControlClass::kStatic,        "选择日志类型",   {  7,   9,  60,  10}},
    {kComboCombineKind,    ControlClass::kComboBox,      "",               { 72,   7, 110,  60}},
    {kListLteLogs,         ControlClass::kListView,      "",               {  7,  26, 340, 150}, kCombineListStyles},
    {kListAutoTestLogs,    ControlClass::kListView,      "",               {  7,  26, 340,  60}, kCombineListStyles | style::kHidden},
    {kButtonAddLogs,       ControlClass::kPushButton,    "选择文件(&A)",   {353,  26,  60,  14}},
    {kButtonMoveUp,        ControlClass::kPushButton,    "上移",           {353,  46,  60,  14}},
    {kButtonMoveDown,      ControlClass::kPushButton,    "下移",           {353,  66,  60,  14}},
    {kButtonRemoveLogs,    ControlClass::kPushButton,    "删除(&D)",       {353,  86,  60,  14}},
    {kButtonClearLogs,     ControlClass::kPushButton,    "清空(&C)",       {353, 106,  60,  14}},
    {kIdNone,              ControlClass::kGroupBox,      "新建文件",       {  7, 182, 406,  34}},
    {kIdNone,              ControlClass::kStatic,        "存放路径",       { 15, 197,  40,  10}},
    {kEditCombineTarget,   ControlClass::kEdit,          "",               { 60, 195, 280,  13}, style::kReadOnly},
    {kButtonCombineTarget, ControlClass::kPushButton,    "浏览...",        {346, 194,  60,  14}},
    {kIdOk,                ControlClass::kDefaultButton, "合并",           {287, 223,  60,  14}},
    {kIdCancel,            ControlClass::kPushButton,    "退出",           {353, 223,  60,  14}},
};
// clang-format on

inline constexpr DialogTemplate kCombineTemplate{kDialogCombine, "合并日志文件", {0, 0, 420, 244}, kCombineControls};

}  // namespace loom
