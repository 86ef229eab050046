#pragma once

#include "platform/ui/template.h"

// Text export, third page: the file and its form.
namespace loom {

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

}  // namespace loom
