#pragma once

#include "platform/ui/template.h"

// Text import wizard, second page: the stream, the time's layout and the separator.
namespace loom {

inline constexpr int kDialogTextImport2 = 9001;
inline constexpr int kEditStreamName = 9004;
inline constexpr int kComboStreamType = 9005;
inline constexpr int kCheckFirstLineIsNames = 9003;
inline constexpr int kComboTimeFormat = 9006;
inline constexpr int kRadioTab = 9007;
inline constexpr int kRadioComma = 9008;
inline constexpr int kRadioSemicolon = 9009;
inline constexpr int kRadioCustom = 9010;
inline constexpr int kEditCustomSeparator = 9011;
inline constexpr int kListTextPreview = 9016;

// clang-format off
inline constexpr ControlTemplate kTextImport2Controls[] = {
    {kIdNone,                ControlClass::kStatic,      "数据流名称",         {  7,   9,  45, 10}},
    {kEditStreamName,        ControlClass::kEdit,        "",                   { 55,   7,  85, 13}},
    {kIdNone,                ControlClass::kStatic,      "数据流类型",         {150,   9,  45, 10}},
    {kComboStreamType,       ControlClass::kComboBox,    "",                   {198,   7,  92, 60}},
    {kIdNone,                ControlClass::kStatic,      "时间格式",           {  7,  27,  45, 10}},
    {kComboTimeFormat,       ControlClass::kComboBox,    "",                   { 55,  25, 135, 90}},
    {kCheckFirstLineIsNames, ControlClass::kCheckBox,    "文件首行为参数名称", {198,  27,  92, 10}},
    {kIdNone,                ControlClass::kGroupBox,    "分隔符",             {  7,  42, 283, 28}},
    {kRadioTab,              ControlClass::kRadioButton, "Tab",                { 15,  54,  40, 10}, style::kGroupStart},
    {kRadioComma,            ControlClass::kRadioButton, "逗号",               { 65,  54,  40, 10}},
    {kRadioSemicolon,        ControlClass::kRadioButton, "分号",               {115,  54,  40, 10}},
    {kRadioCustom,           ControlClass::kRadioButton, "自定义",             {165,  54,  45, 10}},
    {kEditCustomSeparator,   ControlClass::kEdit,        "",                   {212,  52,  25, 13}, style::kGroupStart | style::kDisabled},
    {kIdNone,                ControlClass::kStatic,      "预览",               {  7,  75,  45, 10}},
    {kListTextPreview,       ControlClass::kListView,    "",                   {  7,  86, 283, 117}, style::kGridLines},
};
// clang-format on

inline constexpr DialogTemplate kTextImport2Template{
    kDialogTextImport2, "文本文件导入向导--第二步", {0, 0, 300, 210}, kTextImport2Controls};

}  // namespace loom
