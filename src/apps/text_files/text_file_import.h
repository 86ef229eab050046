#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "manager/io_manager.h"
#include "text/dialect/column_elements.h"
#include "text/dialect/text_dialect.h"

namespace loom {

class StoredProject;

// What a person says about a text file of another tool and the stream that it becomes.
struct TextFileWishes {
  dialect::Overrides overrides;
  std::map<std::size_t, std::string> elements;  // column -> information element, UTF-8; empty: the column has none
  std::string stream_name = "UnknownDevice";
  int stream_type = 0;  // position in kStreamTypeTexts
};

// A file that was looked at: how it is written and what its columns become. Nothing was changed so far.
struct InspectedTextFile {
  CString path;
  TextFileWishes wishes;
  dialect::Findings found;
  dialect::ElementMapping mapping;
};

struct ImportedTextFile {
  int result = kImportFailed;  // an ImportResult
  CString converted;           // the file that the stream was read from
  std::uint64_t rows = 0;
};

// Throws Error for a file that cannot be read and for wishes that do not go with it.
InspectedTextFile InspectTextFile(const CString& path, const TextFileWishes& wishes);

// Converts and imports it. The converted file lies beside the project, which records both; without a project it is
// temporary. What was left out or not understood goes to the current notes.
ImportedTextFile ImportTextFile(StoredProject& project, CIOManager& manager, const InspectedTextFile& file);

// A text file of the project, before it is opened: converted again when its source changed.
void RefreshConvertedText(StoredProject& project, const CString& converted);
// After it was opened: its stream's protocol as the project records it.
void RestoreProtocol(StoredProject& project, const CString& converted);

}  // namespace loom
