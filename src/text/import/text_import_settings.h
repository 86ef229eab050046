#pragma once

#include <vector>

#include "platform/cstring.h"
#include "text/import/text_preview.h"
#include "text/import/text_stream_settings.h"

namespace loom {

// Entries of the stream type; their positions are the types 0 downlink, 1 uplink, 2 scan.
inline constexpr const char* kStreamTypeTexts[] = {"下行数据流", "上行数据流", "扫频数据流"};  // UTF-8

// What the pages of the text import wizard collect. The stream's full name is not theirs.
struct TextImportSettings : TextStreamSettings {
  TextImportSettings();

  CString path;
  std::vector<PreviewRow> preview;
};

// Saves the settings as a configuration file that the person names, and says whether that worked. False when it was not saved.
bool SaveImportConfig(const TextImportSettings& settings);
// Takes over a configuration for the text file of the settings; false when it cannot be read or does not match the
// file, which a message says.
bool LoadImportConfig(const CString& path, TextImportSettings& settings);

inline constexpr const char* kImportConfigExtension = "imcf";
inline constexpr const char* kImportConfigFilter = "ImportConf(*.imcf)|*.imcf||";

// Without a time column there is a message, and false.
bool RequireTimeColumn(const ColumnMap& columns);

}  // namespace loom
