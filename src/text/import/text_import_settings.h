#pragma once

#include <cstdint>
#include <vector>

#include "platform/cstring.h"
#include "text/import/column_map.h"
#include "text/import/text_preview.h"
#include "text/import/time_text.h"

namespace loom {

// Entries of the stream type; their positions are the types 0 downlink, 1 uplink, 2 scan.
inline constexpr const char* kStreamTypeTexts[] = {"下行数据流", "上行数据流", "扫频数据流"};  // UTF-8
std::int32_t StreamTypeOf(const CString& text);  // downlink for any other text

// What the pages of the text import wizard collect.
struct TextImportSettings {
  CString path;
  CString stream_name;
  CString stream_type_text;
  CString data_format = kTimeLayouts[0].name;
  CString separator = "\t";
  std::int32_t first_line_flag = 1;  // 1: the first line holds names
  ColumnMap columns;
  std::vector<PreviewRow> preview;

  TextImportSettings();
};

// Saves the settings as a configuration file that the person names, and says whether that worked.
void SaveImportConfig(const TextImportSettings& settings);
// Takes over a configuration for the text file of the settings; false when it cannot be read or does not match the
// file, which a message says.
bool LoadImportConfig(const CString& path, TextImportSettings& settings);

inline constexpr const char* kImportConfigExtension = "imcf";
inline constexpr const char* kImportConfigFilter = "ImportConf(*.imcf)|*.imcf||";

// Without a time column there is a message, and false.
bool RequireTimeColumn(const ColumnMap& columns);

}  // namespace loom
