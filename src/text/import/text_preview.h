#pragma once

#include <vector>

#include "platform/cstring.h"
#include "platform/ui/list_ctrl.h"

// The first lines of a text file as a list shows them, cut as the importer cuts them.
namespace loom {

inline constexpr std::size_t kPreviewLines = 10;
inline constexpr int kPreviewColumnPx = 80;

using PreviewRow = std::vector<CString>;  // cells, not trimmed

std::vector<PreviewRow> PreviewRows(const std::vector<CString>& lines, const CString& separator);
// The largest number of cells in a row.
int PreviewColumnCount(const std::vector<PreviewRow>& rows);

// Width of each column before it is fitted to its texts: many columns share what a list can be wide.
int PreviewColumnWidth(int column_count);

// Refills the list; the columns are fitted to their texts.
void ShowPreview(CListCtrl& list, const std::vector<PreviewRow>& rows, int column_width);

}  // namespace loom
