#pragma once

#include "platform/ui/template.h"

// The wizard that imports network elements, and its dialog of columns that users name.
namespace loom {

// Network element import wizard, first page: the workbook, the protocol and the kind of data.
inline constexpr int kDialogNetImport1 = 9018;
inline constexpr int kEditNetPath = 9019;
inline constexpr int kButtonBrowseNet = 9001;
inline constexpr int kComboNetProtocol = 9125;
inline constexpr int kComboNetDataType = 9126;

// clang-format off
inline constexpr ControlTemplate kNetImport1Controls[] = {
    {kIdNone,           ControlClass::kStatic,     "网元数据文件", {  7,  12,  60, 10}},
    {kEditNetPath,      ControlClass::kEdit,       "",             { 70,  10, 165, 13}},
    {kButtonBrowseNet,  ControlClass::kPushButton, "浏览...",      {240,  10,  50, 14}},
    {kIdNone,           ControlClass::kStatic,     "网元协议类型", {  7,  36,  60, 10}},
    {kComboNetProtocol, ControlClass::kComboBox,   "",             { 70,  34, 100, 90}},
    {kIdNone,           ControlClass::kStatic,     "网元数据类型", {  7,  58,  60, 10}},
    {kComboNetDataType, ControlClass::kComboBox,   "",             { 70,  56, 100, 90}},
};
// clang-format on

inline constexpr DialogTemplate kNetImport1Template{kDialogNetImport1, "", {0, 0, 300, 210}, kNetImport1Controls};

// Network element import wizard, second page: the worksheet and what its columns mean.
inline constexpr int kDialogNetImport2 = 9019;
inline constexpr int kComboWorksheet = 9080;
inline constexpr int kListNetMapping = 9034;
inline constexpr int kButtonMapNet = 9035;
inline constexpr int kButtonClearNet = 9015;
inline constexpr int kButtonCustomNet = 9081;

// clang-format off
inline constexpr ControlTemplate kNetImport2Controls[] = {
    {kIdNone,          ControlClass::kStatic,     "映射数据页",        {  7,   9,  50,  10}},
    {kComboWorksheet,  ControlClass::kComboBox,   "",                  { 60,   7, 120,  90}, style::kSorted},
    {kListNetMapping,  ControlClass::kListView,   "",                  {  7,  25, 286, 160}, style::kShowSelAlways | style::kFullRowSelect | style::kGridLines | style::kHeaderDragDrop},
    {kButtonMapNet,    ControlClass::kPushButton, "映射网元数据(&M)",  {  7, 190,  80,  14}},
    {kButtonClearNet,  ControlClass::kPushButton, "清除映射(&C)",      { 91, 190,  60,  14}},
    {kButtonCustomNet, ControlClass::kPushButton, "自定义网元数据(&D)", {155, 190,  80,  14}},
};
// clang-format on

inline constexpr DialogTemplate kNetImport2Template{kDialogNetImport2, "", {0, 0, 300, 210}, kNetImport2Controls};

// A name of the person's own for a worksheet column.
inline constexpr int kDialogCustomNet = 9007;
inline constexpr int kEditCustomHeading = 9082;
inline constexpr int kEditCustomName = 9083;

// clang-format off
inline constexpr ControlTemplate kCustomNetControls[] = {
    {kIdNone,            ControlClass::kStatic,        "EXCEL",    {  7, 11,  40, 10}},
    {kEditCustomHeading, ControlClass::kEdit,          "",         { 50,  9, 110, 13}, style::kReadOnly},
    {kIdNone,            ControlClass::kStatic,        "数据名称", {  7, 31,  40, 10}},
    {kEditCustomName,    ControlClass::kEdit,          "",         { 50, 29, 110, 13}},
    {kIdOk,              ControlClass::kDefaultButton, "确定",     { 56, 52,  50, 14}},
    {kIdCancel,          ControlClass::kPushButton,    "取消",     {110, 52,  50, 14}},
};
// clang-format on

inline constexpr DialogTemplate kCustomNetTemplate{
    kDialogCustomNet, "自定义网元数据", {0, 0, 167, 73}, kCustomNetControls};

}  // namespace loom
