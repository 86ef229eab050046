#pragma once

#include "apps/qloom-desktop/front_end/ui_language.h"

// The texts of the main window and its views.
namespace loom {
namespace shell {

// clang-format off
inline constexpr ShellText kMenuProject        {"项目(&P)", "&Project"};
inline constexpr ShellText kMenuLog            {"日志(&L)", "&Log"};
inline constexpr ShellText kMenuData           {"数据(&D)", "&Data"};
inline constexpr ShellText kMenuView           {"视图(&V)", "&View"};
inline constexpr ShellText kMenuHelp           {"帮助(&H)", "&Help"};
inline constexpr ShellText kNewProject         {"新建项目(&N)", "&New project"};
inline constexpr ShellText kOpenProject        {"打开项目(&O)...", "&Open project..."};
inline constexpr ShellText kSaveProject        {"保存项目(&S)", "&Save project"};
inline constexpr ShellText kSaveProjectAs      {"项目另存为(&A)...", "Save project &as..."};
inline constexpr ShellText kRecentProjects     {"最近的项目(&R)", "&Recent projects"};
inline constexpr ShellText kQuit               {"退出(&X)", "E&xit"};
inline constexpr ShellText kImportOutdoor      {"导入室外日志(&O)...", "Import &outdoor logs..."};
inline constexpr ShellText kImportIndoor       {"导入室内日志(&I)...", "Import &indoor logs..."};
inline constexpr ShellText kImportChinaMobile  {"导入中国移动日志(&M)...", "Import China &Mobile logs..."};
inline constexpr ShellText kImportByName       {"按文件名导入室内日志(&N)...", "Import one indoor log by &name..."};
inline constexpr ShellText kOpenLog            {"重新打开项目日志(&P)", "Open log of the &project again"};
inline constexpr ShellText kRecentLogs         {"最近的日志(&H)", "Recent &logs"};
inline constexpr ShellText kImportIntermediate {"导入中间文件(&F)...", "Import intermediate &files..."};
inline constexpr ShellText kImportRecordings   {"导入手机记录(&R)...", "Import handset &recordings..."};
inline constexpr ShellText kMadeOfRecording    {"%1 已转换为日志 %2", "%1 became the log %2"};
inline constexpr ShellText kNothingOfRecording {"没有可用的记录", "no record came of it"};
inline constexpr ShellText kCombineLogs        {"合并日志(&C)...", "&Combine logs..."};
inline constexpr ShellText kCutLog             {"切割日志(&T)...", "Cu&t log..."};
inline constexpr ShellText kImportText         {"导入文本文件(&I)...", "&Import text file..."};
inline constexpr ShellText kOpenText           {"重新打开文本文件(&O)", "&Open text file again"};
inline constexpr ShellText kExportText         {"导出文本文件(&E)...", "&Export text file..."};
inline constexpr ShellText kExportExcel        {"导出到 Excel(&X)...", "Export to E&xcel..."};
inline constexpr ShellText kReport             {"报告(&R)...", "&Report..."};
inline constexpr ShellText kExportLayer        {"导出图层(&L)...", "Export &layer..."};
inline constexpr ShellText kImportNetwork      {"导入网元信息(&N)...", "Import &network elements..."};
inline constexpr ShellText kAbout              {"关于(&A)", "&About"};
inline constexpr ShellText kRemoveEntries      {"从项目中移除(&R)", "&Remove from project"};
inline constexpr ShellText kPutBack            {"撤销移除(&U)", "&Undo removal"};
inline constexpr ShellText kOpenAgain          {"重新打开", "Open again"};
inline constexpr ShellText kCloseTab           {"关闭当前页(&C)", "&Close tab"};
inline constexpr ShellText kNextTab            {"下一页(&N)", "&Next tab"};
inline constexpr ShellText kPreviousTab        {"上一页(&P)", "&Previous tab"};
inline constexpr ShellText kShowNetwork        {"网元(&E)", "Network &elements"};
inline constexpr ShellText kExportIntermediate {"导出中间文件(&F)...", "Export inter&mediate file..."};
inline constexpr ShellText kRecogniseText      {"识别并导入文本文件(&R)...", "&Recognise and import text files..."};
inline constexpr ShellText kCopyBlock          {"复制选中区域(&C)", "&Copy selection"};
inline constexpr ShellText kCopyColumns        {"复制整列(&O)", "Copy whole c&olumns"};
inline constexpr ShellText kCopyAll            {"复制全部(&A)", "Copy &all"};
inline constexpr ShellText kAskCopy            {"将复制 %1 个单元格，可能需要较多时间和内存。是否继续？", "%1 cells will be copied, which may take time and memory. Continue?"};
inline constexpr ShellText kMissingFile        {"%1：文件不存在", "%1: there is no such file"};
inline constexpr ShellText kUnknownFile        {"%1：无法识别的文件", "%1: a file of no kind that is known"};
inline constexpr ShellText kStoredNetwork      {"%1：读取 %2 行，新增 %3 行，替换 %4 行", "%1: %2 rows read, %3 new, %4 replaced"};
inline constexpr ShellText kWrittenIntermediate{"%1：%2 个数据流，%3 行，%4 字节", "%1: %2 streams, %3 rows, %4 bytes"};
inline constexpr ShellText kTextImported       {"%1：已转换并导入 %2 行", "%1: %2 rows converted and imported"};
inline constexpr ShellText kRestoreProject     {"项目 %1 上次没有正常关闭，有未保存的更改。是否恢复？", "%1 was not closed in order and has changes that were not saved. Restore them?"};
inline constexpr ShellText kRestoreUntitled    {"上次的未命名项目没有正常关闭，有未保存的更改。是否恢复？", "An untitled project was not closed in order and has changes that were not saved. Restore them?"};
inline constexpr ShellText kRestore            {"恢复(&R)", "&Restore"};
inline constexpr ShellText kForget             {"丢弃(&D)", "&Discard"};
inline constexpr ShellText kIntermediateFiles  {"中间文件 (*.dat)", "Intermediate files (*.dat)"};
inline constexpr ShellText kNetworkTitle       {"网元", "Network elements"};
inline constexpr ShellText kNetworkTable       {"数据表(&T)：", "&Table:"};
inline constexpr ShellText kNetworkFind        {"查找(&F)：", "&Find:"};
inline constexpr ShellText kNetworkRemove      {"删除选中行(&D)", "&Delete selected rows"};
inline constexpr ShellText kNetworkAskRemove   {"是否删除选中的 %1 行？", "Delete the %1 selected rows?"};
inline constexpr ShellText kNetworkRows        {"%1 行", "%1 rows"};
inline constexpr ShellText kHeadingUnit        {"单位：%1", "Unit: %1"};
inline constexpr ShellText kHeadingRange       {"取值范围：%1 到 %2", "Range: %1 to %2"};
inline constexpr ShellText kHeadingNumber      {"参数编号：%1", "Element number: %1"};
inline constexpr ShellText kShowRows           {"显示数据", "Show rows"};
inline constexpr ShellText kNone               {"（无）", "(none)"};
inline constexpr ShellText kNodeOutdoor        {"室外日志", "Outdoor logs"};
inline constexpr ShellText kNodeIndoor         {"室内日志", "Indoor logs"};
inline constexpr ShellText kNodeChinaMobile    {"中国移动日志", "China Mobile logs"};
inline constexpr ShellText kNodeText           {"文本文件", "Text files"};
inline constexpr ShellText kDockProject        {"项目", "Project"};
inline constexpr ShellText kDockMessages       {"信息", "Messages"};
inline constexpr ShellText kUntitled           {"未命名项目", "Untitled project"};
inline constexpr ShellText kReadOnly           {"（只读：%1）", " (read-only: %1)"};
inline constexpr ShellText kNotLoaded          {"（未载入）", "(not loaded)"};
inline constexpr ShellText kProjectFiles       {"项目文件 (*.qlp)", "Project files (*.qlp)"};
inline constexpr ShellText kLogFiles           {"日志文件 (*.log)", "Log files (*.log)"};
inline constexpr ShellText kReports            {"网页 (*.html)", "Web pages (*.html)"};
inline constexpr ShellText kWorkbooks          {"工作簿 (*.xlsx)", "Workbooks (*.xlsx)"};
inline constexpr ShellText kLayers             {"图层 (*.gpkg;*.fgb;*.geojson;*.kml;*.kmz;*.gpx;*.tab;*.mif;*.shp)", "Layers (*.gpkg;*.fgb;*.geojson;*.kml;*.kmz;*.gpx;*.tab;*.mif;*.shp)"};
inline constexpr ShellText kReplaceFile        {"文件 %1 已存在，是否替换？", "The file %1 is there already. Replace it?"};
inline constexpr ShellText kRecordings         {"手机记录 (*.qmdl;*.mi2log;*.dlf;*.pcap;*.pcapng)", "Handset recordings (*.qmdl;*.mi2log;*.dlf;*.pcap;*.pcapng)"};
inline constexpr ShellText kAllFiles           {"所有文件 (*)", "All files (*)"};
inline constexpr ShellText kSelectStreams      {"请在项目中选择要导出的日志或数据流。", "Select logs or streams in the project to export."};
inline constexpr ShellText kAskSave            {"项目已修改，是否保存？", "The project has changed. Save it?"};
inline constexpr ShellText kSave               {"保存(&S)", "&Save"};
inline constexpr ShellText kDiscard            {"不保存(&D)", "&Discard"};
inline constexpr ShellText kCancel             {"取消", "Cancel"};
inline constexpr ShellText kOpening            {"正在打开项目...", "Opening the project..."};
inline constexpr ShellText kImported           {"已导入", "imported"};
inline constexpr ShellText kFailed             {"导入失败", "not imported"};
inline constexpr ShellText kCancelled          {"已取消", "cancelled"};
inline constexpr ShellText kAlreadyPresent     {"同名日志已存在", "a log of that name is there already"};
inline constexpr ShellText kStreamsAndRows     {"%1 个数据流，%2 行", "%1 streams, %2 rows"};
inline constexpr ShellText kMergedStreamsAndRows {"%1 个合并数据流，%2 行", "%1 merged streams, %2 rows"};
inline constexpr ShellText kRowsAndColumns     {"%1 行，%2 列", "%1 rows, %2 columns"};
inline constexpr ShellText kColumnRow          {"行号", "Row"};
inline constexpr ShellText kColumnTime         {"时间", "Time"};
inline constexpr ShellText kColumnTdRow        {"TD-SCDMA 行号", "TD-SCDMA row"};
inline constexpr ShellText kColumnGsmRow       {"GSM 行号", "GSM row"};
inline constexpr ShellText kGoToRow            {"转到行：", "Go to row:"};
inline constexpr ShellText kAboutText          {"路测日志的导入与导出。版本 %1", "Import and export of drive tests. Version %1"};
inline constexpr ShellText kHint               {"导入日志，或将日志文件拖放到此窗口。\n双击数据流以显示其数据。", "Import logs, or drop log files on this window.\nDouble-click a stream to see its rows."};
// clang-format on

}  // namespace shell
}  // namespace loom
