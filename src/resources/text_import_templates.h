#pragma once

#include "platform/ui/template.h"

// The wizard that imports a text file.
namespace loom {

// Text import wizard, first page: the file and, if wanted, a saved configuration.
inline constexpr int kDialogTextImport1 = 9000;
inline constexpr int kEditTextPath = 9000;
inline constexpr int kButtonBrowseText = 9001;
inline constexpr int kComboImportConfig = 9079;
inline constexpr int kButtonImportConfig = 9075;

// clang-format off
inline constexpr ControlTemplate kTextImport1Controls[] = {
    {kIdNone,             ControlClass::kStatic,     "文本文件",      {  7,  12,  45, 10}},
    {kEditTextPath,       ControlClass::kEdit,       "",              { 55,  10, 180, 13}},
    {kButtonBrowseText,   ControlClass::kPushButton, "浏览...",       {240,  10,  50, 14}},
    {kIdNone,             ControlClass::kStatic,     "导入配置",      {  7,  34,  45, 10}},
    {kComboImportConfig,  ControlClass::kComboBox,   "",              { 55,  32, 180, 90}},
    {kButtonImportConfig, ControlClass::kPushButton, "浏览...",       {240,  32,  50, 14}, style::kDisabled},
};
// clang-format on

inline constexpr DialogTemplate kTextImport1Template{
    kDialogTextImport1, "文本文件导入向导--第一步", {0, 0, 300, 210}, kTextImport1Controls};

// Text import wizard, second page: the stream, the time's layout and the separator.
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

// Text import wizard, third page: which column is which information element. The preview is the second page's.
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
