#pragma once

#include "platform/ui/template.h"

// Merging and averaging of measurements while logs are imported.
namespace loom {

inline constexpr int kDialogBinning = 106;
inline constexpr int kCheckBinningEnabled = 9116;
inline constexpr int kStaticBinningNote = 9123;
inline constexpr int kGroupBinningType = 9121;
inline constexpr int kRadioByTime = 9089;
inline constexpr int kRadioByDistance = 9090;
inline constexpr int kRadioByGrid = 9091;
inline constexpr int kStaticTime = 9092;
inline constexpr int kEditTime = 9093;
inline constexpr int kStaticTimeUnit = 9094;
inline constexpr int kStaticDistance = 9096;
inline constexpr int kEditDistance = 9097;
inline constexpr int kStaticDistanceUnit = 9098;
inline constexpr int kStaticGridHeight = 9099;
inline constexpr int kEditGridHeight = 9100;
inline constexpr int kStaticGridWidth = 9101;
inline constexpr int kEditGridWidth = 9102;
inline constexpr int kStaticGridHeightUnit = 9103;
inline constexpr int kStaticGridWidthUnit = 9104;
inline constexpr int kGroupBinningValue = 9122;
inline constexpr int kCheckUe = 9117;
inline constexpr int kStaticUe = 9119;
inline constexpr int kComboUeParam = 9111;
inline constexpr int kCheckScanner = 9118;
inline constexpr int kStaticScanner = 9120;
inline constexpr int kComboScannerParam = 9112;
inline constexpr int kRadioMaximum = 9113;
inline constexpr int kRadioMinimum = 9114;
inline constexpr int kRadioAverage = 9115;

// clang-format off
inline constexpr ControlTemplate kBinningControls[] = {
    {kCheckBinningEnabled,  ControlClass::kCheckBox,    "启用合并平均",                   { 10,   7,  80, 10}},
    {kStaticBinningNote,    ControlClass::kStatic,      "(*合并平均后某些分析可能不准确)", { 95,   7, 158, 10}},
    {kGroupBinningType,     ControlClass::kGroupBox,    "合并平均方式",                   {  7,  22, 246, 100}},
    {kRadioByTime,          ControlClass::kRadioButton, "根据时间",                       { 15,  34,  60, 10}, style::kGroupStart},
    {kRadioByDistance,      ControlClass::kRadioButton, "根据距离",                       { 15,  55,  60, 10}},
    {kRadioByGrid,          ControlClass::kRadioButton, "根据栅格",                       { 15,  76,  60, 10}},
    {kStaticTime,           ControlClass::kStatic,      "时间长度",                       { 85,  34,  40, 10}, style::kGroupStart},
    {kEditTime,             ControlClass::kEdit,        "",                               {130,  32,  50, 13}, style::kDigitsOnly},
    {kStaticTimeUnit,       ControlClass::kStatic,      "(秒)",                           {185,  34,  25, 10}},
    {kStaticDistance,       ControlClass::kStatic,      "距离长度",                       { 85,  55,  40, 10}},
    {kEditDistance,         ControlClass::kEdit,        "",                               {130,  53,  50, 13}, style::kDigitsOnly},
    {kStaticDistanceUnit,   ControlClass::kStatic,      "(米)",                           {185,  55,  25, 10}},
    {kStaticGridHeight,     ControlClass::kStatic,      "高度",                           { 85,  76,  40, 10}},
    {kEditGridHeight,       ControlClass::kEdit,        "",                               {130,  74,  50, 13}, style::kDigitsOnly},
    {kStaticGridHeightUnit, ControlClass::kStatic,      "(米)",                           {185,  76,  25, 10}},
    {kStaticGridWidth,      ControlClass::kStatic,      "宽度",                           { 85,  97,  40, 10}},
    {kEditGridWidth,        ControlClass::kEdit,        "",                               {130,  95,  50, 13}, style::kDigitsOnly},
    {kStaticGridWidthUnit,  ControlClass::kStatic,      "(米)",                           {185,  97,  25, 10}},
    {kGroupBinningValue,    ControlClass::kGroupBox,    "数据处理方式",                   {  7, 128, 246, 72}},
    {kCheckUe,              ControlClass::kCheckBox,    "",                               { 15, 142,  12, 10}},
    {kStaticUe,             ControlClass::kStatic,      "UE",                             { 29, 142,  40, 10}},
    {kComboUeParam,         ControlClass::kComboBox,    "",                               { 75, 140, 120, 90}},
    {kCheckScanner,         ControlClass::kCheckBox,    "",                               { 15, 160,  12, 10}},
    {kStaticScanner,        ControlClass::kStatic,      "Scanner",                        { 29, 160,  40, 10}},
    {kComboScannerParam,    ControlClass::kComboBox,    "",                               { 75, 158, 120, 90}},
    {kRadioMaximum,         ControlClass::kRadioButton, "取最大值",                       { 15, 180,  60, 10}, style::kGroupStart},
    {kRadioMinimum,         ControlClass::kRadioButton, "取最小值",                       { 85, 180,  60, 10}},
    {kRadioAverage,         ControlClass::kRadioButton, "取平均值",                       {155, 180,  60, 10}},
};
// clang-format on

inline constexpr DialogTemplate kBinningTemplate{kDialogBinning, "合并平均", {0, 0, 260, 224}, kBinningControls};

}  // namespace loom
