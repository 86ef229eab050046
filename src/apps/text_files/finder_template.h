#pragma once

#include "platform/ui/template.h"

// The window that shows what was found of a text file of another tool.
namespace loom {

inline constexpr int kDialogTextFinder = 9200;
inline constexpr int kStaticFinderFile = 9201;
inline constexpr int kListFindings = 9202;
inline constexpr int kComboFinderEncoding = 9203;
inline constexpr int kComboFinderSeparator = 9204;
inline constexpr int kComboFinderQuote = 9205;
inline constexpr int kComboFinderDecimal = 9206;
inline constexpr int kEditFinderPreamble = 9207;
inline constexpr int kEditFinderHeader = 9208;
inline constexpr int kEditFinderFooter = 9209;
inline constexpr int kEditFinderComment = 9210;
inline constexpr int kEditFinderTime = 9211;
inline constexpr int kEditFinderLayout = 9212;
inline constexpr int kEditFinderZone = 9213;
inline constexpr int kEditFinderNulls = 9214;
inline constexpr int kEditFinderLatitude = 9215;
inline constexpr int kEditFinderLongitude = 9216;
inline constexpr int kButtonFindAgain = 9217;
inline constexpr int kButtonFindFresh = 9218;
inline constexpr int kListFinderColumns = 9219;
inline constexpr int kButtonFinderMap = 9220;
inline constexpr int kButtonFinderUnmap = 9221;
inline constexpr int kListFinderRows = 9222;
inline constexpr int kEditFinderStream = 9223;
inline constexpr int kComboFinderStreamType = 9224;

// clang-format off
inline constexpr ControlTemplate kTextFinderControls[] = {
    {kStaticFinderFile,      ControlClass::kStatic,        "",               {  7,   7, 446,  10}},
    {kListFindings,          ControlClass::kListView,      "",               {  7,  19, 446,  62}, style::kFullRowSelect},
    {kIdNone,                ControlClass::kStatic,        "编码",           {  7,  88,  30,  10}},
    {kComboFinderEncoding,   ControlClass::kComboBox,      "",               { 40,  86,  72, 120}, style::kEditable},
    {kIdNone,                ControlClass::kStatic,        "分隔符",         {120,  88,  30,  10}},
    {kComboFinderSeparator,  ControlClass::kComboBox,      "",               {153,  86,  72, 120}, style::kEditable},
    {kIdNone,                ControlClass::kStatic,        "引号",           {233,  88,  30,  10}},
    {kComboFinderQuote,      ControlClass::kComboBox,      "",               {266,  86,  72, 120}, style::kEditable},
    {kIdNone,                ControlClass::kStatic,        "小数点",         {346,  88,  30,  10}},
    {kComboFinderDecimal,    ControlClass::kComboBox,      "",               {379,  86,  74, 120}},
    {kIdNone,                ControlClass::kStatic,        "表前行",         {  7, 106,  30,  10}},
    {kEditFinderPreamble,    ControlClass::kEdit,          "",               { 40, 104,  72,  13}, style::kDigitsOnly},
    {kIdNone,                ControlClass::kStatic,        "表头行",         {120, 106,  30,  10}},
    {kEditFinderHeader,      ControlClass::kEdit,          "",               {153, 104,  72,  13}, style::kDigitsOnly},
    {kIdNone,                ControlClass::kStatic,        "表后行",         {233, 106,  30,  10}},
    {kEditFinderFooter,      ControlClass::kEdit,          "",               {266, 104,  72,  13}, style::kDigitsOnly},
    {kIdNone,                ControlClass::kStatic,        "注释",           {346, 106,  30,  10}},
    {kEditFinderComment,     ControlClass::kEdit,          "",               {379, 104,  74,  13}},
    {kIdNone,                ControlClass::kStatic,        "时间列",         {  7, 124,  30,  10}},
    {kEditFinderTime,        ControlClass::kEdit,          "",               { 40, 122,  72,  13}},
    {kIdNone,                ControlClass::kStatic,        "格式",           {120, 124,  30,  10}},
    {kEditFinderLayout,      ControlClass::kEdit,          "",               {153, 122, 185,  13}},
    {kIdNone,                ControlClass::kStatic,        "时区",           {346, 124,  30,  10}},
    {kEditFinderZone,        ControlClass::kEdit,          "",               {379, 122,  74,  13}},
    {kIdNone,                ControlClass::kStatic,        "纬度列",         {  7, 142,  30,  10}},
    {kEditFinderLatitude,    ControlClass::kEdit,          "",               { 40, 140,  72,  13}},
    {kIdNone,                ControlClass::kStatic,        "经度列",         {120, 142,  30,  10}},
    {kEditFinderLongitude,   ControlClass::kEdit,          "",               {153, 140,  72,  13}},
    {kIdNone,                ControlClass::kStatic,        "空值",           {233, 142,  30,  10}},
    {kEditFinderNulls,       ControlClass::kEdit,          "",               {266, 140,  72,  13}},
    {kButtonFindAgain,       ControlClass::kPushButton,    "重新识别(&F)",   {346, 139,  52,  14}},
    {kButtonFindFresh,       ControlClass::kPushButton,    "全部自动(&U)",   {401, 139,  52,  14}},
    {kListFinderColumns,     ControlClass::kListView,      "",               {  7, 159, 388,  52}, style::kGridLines | style::kFullRowSelect | style::kShowSelAlways},
    {kButtonFinderMap,       ControlClass::kPushButton,    "映射(&M)",       {401, 159,  52,  14}},
    {kButtonFinderUnmap,     ControlClass::kPushButton,    "清除(&R)",       {401, 177,  52,  14}},
    {kListFinderRows,        ControlClass::kListView,      "",               {  7, 216, 446,  72}, style::kGridLines},
    {kIdNone,                ControlClass::kStatic,        "数据流名称",     {  7, 296,  46,  10}},
    {kEditFinderStream,      ControlClass::kEdit,          "",               { 56, 294,  80,  13}},
    {kIdNone,                ControlClass::kStatic,        "数据流类型",     {146, 296,  46,  10}},
    {kComboFinderStreamType, ControlClass::kComboBox,      "",               {195, 294,  80,  60}},
    {kIdOk,                  ControlClass::kDefaultButton, "导入",           {346, 293,  52,  14}},
    {kIdCancel,              ControlClass::kPushButton,    "取消",           {401, 293,  52,  14}},
};
// clang-format on

inline constexpr DialogTemplate kTextFinderTemplate{
    kDialogTextFinder, "识别文本文件", {0, 0, 460, 314}, kTextFinderControls};

}  // namespace loom
