#pragma once

#include "platform/ui/template.h"

// Logs combined into one, and a time window cut out of one.
namespace loom {

// Several logs become one.
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

// A time window of a log becomes a log.
inline constexpr int kDialogPartition = 9009;
inline constexpr int kEditPartitionSource = 9065;
inline constexpr int kEditPartitionTarget = 9066;
inline constexpr int kButtonPartitionSource = 9128;
inline constexpr int kButtonPartitionTarget = 9129;
inline constexpr int kStaticSourceStart = 9130;
inline constexpr int kStaticSourceEnd = 9131;
inline constexpr int kPickerStartDate = 9132;
inline constexpr int kPickerStartTime = 9133;
inline constexpr int kPickerEndDate = 9134;
inline constexpr int kPickerEndTime = 9135;

// clang-format off
inline constexpr ControlTemplate kPartitionControls[] = {
    {kIdNone,                ControlClass::kGroupBox,      "源文件选择",     {  7,   7, 326,  58}},
    {kIdNone,                ControlClass::kStatic,        "源  文  件：",   { 15,  22,  52,  10}},
    {kEditPartitionSource,   ControlClass::kEdit,          "",               { 70,  20, 190,  13}, style::kReadOnly},
    {kButtonPartitionSource, ControlClass::kPushButton,    "浏览...(&S)",    {266,  19,  60,  14}},
    {kIdNone,                ControlClass::kStatic,        "起始时间：",     { 15,  44,  44,  10}},
    {kStaticSourceStart,     ControlClass::kStatic,        "",               { 62,  44,  96,  10}},
    {kIdNone,                ControlClass::kStatic,        "结束时间：",     {170,  44,  44,  10}},
    {kStaticSourceEnd,       ControlClass::kStatic,        "",               {217,  44,  96,  10}},
    {kIdNone,                ControlClass::kGroupBox,      "截取设置",       {  7,  71, 326,  80}},
    {kIdNone,                ControlClass::kStatic,        "目标文件：",     { 15,  86,  52,  10}},
    {kEditPartitionTarget,   ControlClass::kEdit,          "",               { 70,  84, 190,  13}, style::kReadOnly},
    {kButtonPartitionTarget, ControlClass::kPushButton,    "浏览...(&D)",    {266,  83,  60,  14}},
    {kIdNone,                ControlClass::kStatic,        "起始时间：",     { 15, 109,  52,  10}},
    {kPickerStartDate,       ControlClass::kDateTime,      "",               { 70, 107,  90,  14}},
    {kPickerStartTime,       ControlClass::kDateTime,      "",               {170, 107,  90,  14}, style::kTimeFormat},
    {kIdNone,                ControlClass::kStatic,        "结束时间：",     { 15, 130,  52,  10}},
    {kPickerEndDate,         ControlClass::kDateTime,      "",               { 70, 128,  90,  14}},
    {kPickerEndTime,         ControlClass::kDateTime,      "",               {170, 128,  90,  14}, style::kTimeFormat},
    {kIdOk,                  ControlClass::kDefaultButton, "确定",           {207, 157,  60,  14}},
    {kIdCancel,              ControlClass::kPushButton,    "取消",           {273, 157,  60,  14}},
};
// clang-format on

inline constexpr DialogTemplate kPartitionTemplate{
    kDialogPartition, "截取日志文件", {0, 0, 340, 178}, kPartitionControls};

}  // namespace loom
