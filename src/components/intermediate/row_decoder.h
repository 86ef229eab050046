#pragma once

#include <cstdint>
#include <vector>

#include "components/id_set.h"
#include "components/intermediate/layout.h"
#include "components/mem_row.h"
#include "platform/byte_reader.h"
#include "platform/cstring.h"

namespace loom {

// Reads the fields of the rows of one stream.
class RowFieldReader {
 public:
  explicit RowFieldReader(const CString& path) : path_(path) {}  // outlives the object

  // Appends the fields of a row's data, as they stand there. What cannot be stored is left out with a note: a field of
  // type 0, 6 or 7, a value shorter than its type; behind a field that runs past the row's data nothing more is read.
  // Of a value longer than its type the surplus is passed over. Where the catalogue has another type for the
  // information element, the first place is noted, and a 16-bit value keeps its sign.
  void Read(ByteReader data, CMemDataRow& row);

 private:
  // The catalogue's type of an IE, asked for once.
  MemTableFieldTypeEnum TypeOf(std::uint32_t ie_id) {
    if (ie_id < types_.size() && types_[ie_id] != 0) [[likely]]
      return static_cast<MemTableFieldTypeEnum>(types_[ie_id]);
    return AskForType(ie_id);
  }
  MemTableFieldTypeEnum AskForType(std::uint32_t ie_id);
  void NoteType(std::uint64_t position, const intermediate::FieldDescriptor& field, MemTableFieldTypeEnum type);

  const CString& path_;
  std::vector<std::uint8_t> types_;  // by IE id, 0 until asked for
  IdSet told_;                       // IEs whose type was noted
};

}  // namespace loom
