#include "text/import/text_stream_settings.h"

#include "components/project.h"
#include "components/stream_manager.h"

namespace loom {

void TextStreamSettings::PutInto(CProjectTxtFile& record) const {
  record.SetColumnMapIE(columns);
  record.SetSeparate(separator);
  record.SetDataFormat(data_format);
  record.SetHeadLineIsIgnore(first_line_flag != 0);
}

void TextStreamSettings::TakeFrom(const CProjectTxtFile& record) {
  columns = record.GetColumnMapIE();
  separator = record.GetSeparate();
  data_format = record.GetDataFormat();
  first_line_flag = record.GetHeadLineIsIgnore() ? 1 : 0;
}

std::int32_t StreamKindOf(std::int32_t text_stream_type) {
  if (text_stream_type == 1) return kStreamUplink;
  return text_stream_type == 2 ? kStreamScanner : kStreamOutdoorHandset;
}

}  // namespace loom
