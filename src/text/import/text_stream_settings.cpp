#include "text/import/text_stream_settings.h"

#include "components/project.h"
#include "components/stream_manager.h"

namespace loom {

void TextStreamSettings::PutInto(CProjectTxtFile& record) const {
  record.SetColumnMapIE(columns);
  record.SetSeparate(separator);
  record.SetDataFormat(time_layout);
  record.SetHeadLineIsIgnore(has_header_line != 0);
}

void TextStreamSettings::TakeFrom(const CProjectTxtFile& record) {
  columns = record.GetColumnMapIE();
  separator = record.GetSeparate();
  time_layout = record.GetDataFormat();
  has_header_line = record.GetHeadLineIsIgnore() ? 1 : 0;
}

std::int32_t StreamKindOf(std::int32_t text_stream_type) {
  if (text_stream_type == 1) return kStreamUplink;
  return text_stream_type == 2 ? kStreamScanner : kStreamOutdoorHandset;
}

}  // namespace loom
