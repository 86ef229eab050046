#pragma once

#include "components/project.h"
#include "platform/cstring.h"

namespace loom {

// A text import configuration (*.imcf): a small XML document with stream name, separator, time format, first-line flag
// and column map.
//
//   <TextImport version="1">
//     <Setting stream="UE1" separator="&#9;" format="hh:nn:ss.ms" head_line_ignored="1"/>
//     <Column number="0" ie="RecordTime"/>
//   </TextImport>
//
// Writing replaces the file or leaves it as it was; both throw Error. A record is read whole or left untouched; what a
// configuration does not hold stays as it is, but for the column titles: those of the record's text file, when its
// first line holds any, else none.
void WriteTextConfig(const CString& path, const CProjectTxtFile& record);
void ReadTextConfig(const CString& path, CProjectTxtFile& record);

}  // namespace loom
