#include "components/intermediate/row_decoder.h"

#include <array>
#include <span>
#include <string>

#include "components/field_types.h"
#include "components/note_kinds.h"
#include "components/project.h"

namespace loom {
namespace {

using intermediate::FieldDescriptor;

constexpr const NoteKind& kFieldNotStored = "field of an intermediate file not stored"_note;
constexpr const NoteKind& kRowCutShort = "row of an intermediate file cut short"_note;
constexpr const NoteKind& kTypeDiffers = "type of a field is not the catalogue's"_note;

// Bytes that a value of a type needs at least, kNotStored for a type that no value has.
constexpr std::size_t kNotStored = ~std::size_t{0};
constexpr auto kLeastBytes = [] {
  std::array<std::size_t, FieldDescriptor::kTypes> bytes{};
  bytes.fill(kNotStored);
  for (const FieldType& row : kFieldTypes) bytes[row.type] = row.bytes;
  return bytes;
}();

// `value` is at least as long as its type needs. A 16-bit value fills its element's 32 bits when these are no 16-bit
// value.
uniFieldValue ReadValue(std::uint32_t type, bool is_short_element, std::span<const std::byte> value, CMemDataRow& row) {
  ByteReader reader(value);
  switch (type) {
    case kFieldBool:
      return uniFieldValue(std::int32_t{reader.U8() != 0});
    case kFieldText:
      return uniFieldValue::Text(row.AddText(AsText(value)));
    case kFieldShort:
      return is_short_element ? uniFieldValue::Short(reader.U16())
                              : uniFieldValue(std::int32_t{static_cast<std::int16_t>(reader.U16())});
    case kFieldFloat:
      return uniFieldValue(reader.F32());
    default:
      return uniFieldValue(reader.I32());
  }
}

[[gnu::cold, gnu::noinline]] void NoteField(const NoteKind& kind, const CString& path, std::uint64_t position,
                                            const FieldDescriptor& field, const std::string& reason) {
  CurrentNotes().Add(kind, path, position,
                     "information element " + std::to_string(field.ie_id) + ", type " + std::to_string(field.type) +
                         ", " + std::to_string(field.length_bytes) + " bytes: " + reason);
}

[[gnu::cold, gnu::noinline]] void NoteNotStored(const CString& path, std::uint64_t position,
                                                const FieldDescriptor& field) {
  NoteField(kFieldNotStored, path, position, field,
            kLeastBytes[field.type] != kNotStored ? "too few for the type" : "no value has this type");
}

// Behind the last field that is whole. `data` stands where the field's value should be.
[[gnu::cold, gnu::noinline]] void NoteCutShort(const CString& path, const ByteReader& data,
                                               const FieldDescriptor& field) {
  NoteField(kRowCutShort, path, data.Position() - intermediate::kDescriptorBytes, field,
            "the row has " + std::to_string(data.Remaining()));
}

}  // namespace

MemTableFieldTypeEnum RowFieldReader::AskForType(std::uint32_t ie_id) {
  const MemTableFieldTypeEnum type = g_memDataType->GetType(static_cast<std::int32_t>(ie_id));
  if (ie_id >= types_.size()) types_.resize(std::size_t{ie_id} + 1);
  types_[ie_id] = static_cast<std::uint8_t>(type);
  return type;
}

[[gnu::cold, gnu::noinline]] void RowFieldReader::NoteType(std::uint64_t position, const FieldDescriptor& field,
                                                           MemTableFieldTypeEnum type) {
  if (!told_.Insert(static_cast<std::int32_t>(field.ie_id))) return;
  const bool is_known = !g_project->GetIEName(static_cast<std::int32_t>(field.ie_id)).IsEmpty();
  NoteField(kTypeDiffers, path_, position, field,
            (is_known ? "the catalogue has " : "the catalogue lacks the element, which counts as ") +
                std::string(FieldTypeName(type)) + "; the first of its stream");
}

// Room for as many fields as the bytes could hold is made once; the loop then only stores.
void RowFieldReader::Read(ByteReader data, CMemDataRow& row) {
  std::size_t count = row.GetParamID().size();
  row.ResizeFields(count + data.Remaining() / intermediate::kDescriptorBytes);
  const std::span<std::int32_t> ids = row.GetParamID();
  const std::span<uniFieldValue> values = row.GetParamValue();
  while (data.Has(intermediate::kDescriptorBytes)) {
    const FieldDescriptor field = FieldDescriptor::FromBits(data.U32());
    if (!data.Has(field.length_bytes)) [[unlikely]] {
      NoteCutShort(path_, data, field);
      data.Skip(data.Remaining());
      break;
    }
    const std::span<const std::byte> value = data.Bytes(field.length_bytes);
    if (value.size() < kLeastBytes[field.type]) [[unlikely]] {
      NoteNotStored(path_, data.Position() - value.size() - intermediate::kDescriptorBytes, field);
      continue;
    }
    ids[count] = static_cast<std::int32_t>(field.ie_id);
    const MemTableFieldTypeEnum type = TypeOf(field.ie_id);
    if (static_cast<std::uint32_t>(type) != field.type) [[unlikely]] {
      NoteType(data.Position() - value.size() - intermediate::kDescriptorBytes, field, type);
    }
    values[count] = ReadValue(field.type, type == kFieldShort, value, row);
    ++count;
  }
  row.ResizeFields(count);
  if (!data.AtEnd()) {
    CurrentNotes().Add(kRowCutShort, path_, data.Position(),
                       std::to_string(data.Remaining()) + " bytes are left, too few for a field");
  }
}

}  // namespace loom
