#pragma once

#include "platform/ui/template.h"

// The wizard that exports a stream as text, and its dialog of limits.
namespace loom {

// Text export, first page: the data stream.
inline constexpr int kDialogTextExport1 = 9020;
inline constexpr int kTreeExport = 9044;  // on the first page streams, on the second parameters

// clang-format off
inline constexpr ControlTemplate kTextExport1Controls[] = {
    {kIdNone,     ControlClass::kStatic,   "请选择要导出的数据流：", {7,  7, 246,  10}},
    {kTreeExport, ControlClass::kTreeView, "",                       {7, 20, 276, 170}, style::kShowSelAlways},
};
// clang-format on

inline constexpr DialogTemplate kTextExport1Template{
    kDialogTextExport1, "文本文件导出向导--第一步", {0, 0, 290, 198}, kTextExport1Controls};

// Text export, second page: the parameters and their limits.
inline constexpr int kDialogTextExport2 = 9025;
inline constexpr int kListExport = 9045;
inline constexpr int kButtonExportSelect = 9040;
inline constexpr int kButtonExportRemove = 9041;
inline constexpr int kButtonExportClear = 9015;
inline constexpr int kButtonExportUp = 9050;
inline constexpr int kButtonExportDown = 9051;

// clang-format off
inline constexpr ControlTemplate kTextExport2Controls[] = {
    {kIdNone,             ControlClass::kStatic,     "可选参数：", {  7,   7, 100,  10}},
    {kTreeExport,         ControlClass::kTreeView,   "",           {  7,  20, 110, 170}, style::kMultiSelect | style::kShowSelAlways},
    {kButtonExportSelect, ControlClass::kPushButton, "选择 >",     {122,  60,  44,  14}},
    {kButtonExportRemove, ControlClass::kPushButton, "< 清除",     {122,  80,  44,  14}},
    {kButtonExportClear,  ControlClass::kPushButton, "清空",       {122, 100,  44,  14}},
    {kIdNone,             ControlClass::kStatic,     "导出参数：", {171,   7, 100,  10}},
    {kListExport,         ControlClass::kListView,   "",           {171,  20, 142, 152}, style::kMultiSelect | style::kGridLines | style::kFullRowSelect | style::kShowSelAlways},
    {kButtonExportUp,     ControlClass::kPushButton, "上移",       {171, 176,  44,  14}},
    {kButtonExportDown,   ControlClass::kPushButton, "下移",       {220, 176,  44,  14}},
};
// clang-format on

inline constexpr DialogTemplate kTextExport2Template{
    kDialogTextExport2, "文本文件导出向导--第二步", {0, 0, 320, 198}, kTextExport2Controls};

// Text export, third page: the file and its form.
inline constexpr int kDialogTextExport3 = 9026;
inline constexpr int kEditExportFile = 9019;
inline constexpr int kButtonExportBrowse = 9038;
inline constexpr int kRadioExportTab = 9054;
inline constexpr int kRadioExportComma = 9055;
inline constexpr int kRadioExportSemicolon = 9056;
inline constexpr int kRadioExportCustom = 9024;
inline constexpr int kEditExportCustom = 9057;
inline constexpr int kRadioExportRaw = 9058;
inline constexpr int kRadioExportBinned = 9059;
inline constexpr int kCheckExportHeader = 9061;
inline constexpr int kCheckExportUnits = 9062;
inline constexpr int kCheckExportFill = 9060;

// clang-format off
inline constexpr ControlTemplate kTextExport3Controls[] = {
    {kIdNone,               ControlClass::kStatic,      "文本文件：",               {  7,   9,  44, 10}},
    {kEditExportFile,       ControlClass::kEdit,        "",                         { 53,   7, 176, 14}},
    {kButtonExportBrowse,   ControlClass::kPushButton,  "浏览...",                  {233,   7,  50, 14}},
    {kIdNone,               ControlClass::kGroupBox,    "分隔符",                   {  7,  28, 276, 34}, style::kGroupStart},
    {kRadioExportTab,       ControlClass::kRadioButton, "Tab 键",                   { 14,  42,  46, 10}, style::kGroupStart},
    {kRadioExportComma,     ControlClass::kRadioButton, "逗号",                     { 68,  42,  40, 10}},
    {kRadioExportSemicolon, ControlClass::kRadioButton, "分号",                     {116,  42,  40, 10}},
    {kRadioExportCustom,    ControlClass::kRadioButton, "自定义",                   {164,  42,  44, 10}},
    {kEditExportCustom,     ControlClass::kEdit,        "",                         {212,  40,  24, 14}, style::kGroupStart},
    {kIdNone,               ControlClass::kGroupBox,    "输出数据",                 {  7,  68, 276, 48}, style::kGroupStart},
    {kRadioExportRaw,       ControlClass::kRadioButton, "输出原始上报数据",         { 14,  82, 200, 10}, style::kGroupStart},
    {kRadioExportBinned,    ControlClass::kRadioButton, "输出合并平均后的数据",     { 14,  98, 200, 10}},
    {kIdNone,               ControlClass::kGroupBox,    "输出选项",                 {  7, 122, 276, 64}, style::kGroupStart},
    {kCheckExportHeader,    ControlClass::kCheckBox,    "输出参数名到文本文件首行", { 14, 136, 200, 10}},
    {kCheckExportUnits,     ControlClass::kCheckBox,    "输出参数单位",             { 26, 152, 188, 10}},
    {kCheckExportFill,      ControlClass::kCheckBox,    "补全输出数据",             { 14, 168, 200, 10}},
};
// clang-format on

inline constexpr DialogTemplate kTextExport3Template{
    kDialogTextExport3, "文本文件导出向导--第三步", {0, 0, 290, 198}, kTextExport3Controls};

// The limits of one parameter of a text export.
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
