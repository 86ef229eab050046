#pragma once

#include "components/mem_row.h"
#include "platform/byte_reader.h"
#include "platform/cstring.h"

namespace loom {

// Appends the fields of a row's data, as they stand there. What cannot be stored is left out with a note: a field of
// type 0, 6 or 7, a value shorter than its type; behind a field that runs past the row's data nothing more is read. Of
// a value longer than its type the surplus is passed over.
void ReadFields(ByteReader data, const CString& path, CMemDataRow& row);

}  // namespace loom
