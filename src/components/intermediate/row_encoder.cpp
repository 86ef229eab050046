#include "components/intermediate/row_encoder.h"

#include "components/field_types.h"
#include "components/intermediate/layout.h"
#include "components/note_kinds.h"
#include "components/project.h"
#include "platform/byte_reader.h"

namespace loom {
namespace {

namespace layout = intermediate;

constexpr const NoteKind& kLeftOut = "left out of the intermediate file"_note;

// Type and length that a field is written with; a type that the catalogue does not tell is a 32-bit integer.
layout::FieldDescriptor DescriptorOf(const CMemDataRow& row, std::size_t field) {
  const std::int32_t id = row.GetParamID()[field];
  const MemTableFieldTypeEnum told = g_memDataType->GetType(id);
  const FieldType* const known = FindFieldType(static_cast<std::uint32_t>(told));
  const FieldType& type = known != nullptr ? *known : *FindFieldType(kFieldInt);
  const std::size_t bytes = type.type == kFieldText ? row.GetText(row.GetParamValue()[field].text).size() : type.bytes;
  return {.length_bytes = static_cast<std::uint32_t>(bytes),
          .type = static_cast<std::uint32_t>(type.type),
          .ie_id = static_cast<std::uint32_t>(id)};
}

void WriteField(const CMemDataRow& row, std::size_t field, const layout::FieldDescriptor& descriptor, ByteWriter& out) {
  const uniFieldValue value = row.GetParamValue()[field];
  out.U32(descriptor.Bits());
  switch (descriptor.type) {
    case kFieldBool:
      return out.U8(value.bool_value);
    case kFieldText:
      return out.Text(row.GetText(value.text));
    case kFieldShort:
      return out.U16(value.short_value);
    default:  // the bits of an integer or a float
      return out.I32(value.int_value);
  }
}

}  // namespace

bool IntermediateRowEncoder::Carries(const CMemDataRow& row, std::size_t field, const Teller& tell) const {
  const std::int32_t id = row.GetParamID()[field];
  const bool fits = id >= 0 && id <= layout::kHighestIeId;
  if (!fits && tell) tell(kLeftOut, "information element " + std::to_string(id) + " is beyond the ids of the format");
  return fits;
}

std::span<const std::byte> IntermediateRowEncoder::Encode(const CMemDataRow& row, const CMergeDataRow_2M* merged,
                                                          const Teller& tell) {
  const std::size_t field_count = row.GetParamID().size();
  const std::size_t prefix_bytes = merged != nullptr ? 8 : 0;
  // Numbers come before texts when a row has not room for all.
  std::size_t numbers_bytes = 0;
  for (std::size_t field = 0; field < field_count; ++field) {
    const auto descriptor = DescriptorOf(row, field);
    if (descriptor.type != kFieldText) numbers_bytes += layout::kDescriptorBytes + descriptor.length_bytes;
  }
  const std::size_t room = layout::kMostRowBytes - prefix_bytes;
  std::size_t text_room = numbers_bytes < room ? room - numbers_bytes : 0;

  bytes_.clear();
  ByteWriter out(bytes_);
  if (merged != nullptr) {
    out.U32(merged->td_row_number);
    out.U32(merged->gsm_row_number);
  }
  for (std::size_t field = 0; field < field_count; ++field) {
    if (!Carries(row, field, tell)) continue;
    const auto descriptor = DescriptorOf(row, field);
    const std::size_t size = layout::kDescriptorBytes + descriptor.length_bytes;
    const bool is_text = descriptor.type == kFieldText;
    const bool is_too_long = is_text && descriptor.length_bytes > layout::kMostFieldBytes;
    const bool has_room = is_text ? size <= text_room : out.Size() + size <= layout::kMostRowBytes;
    if (is_too_long || !has_room) {
      if (tell) {
        tell(kLeftOut, "information element " + std::to_string(descriptor.ie_id) + " of " +
                           std::to_string(descriptor.length_bytes) + " bytes: " +
                           (is_too_long ? "a text has at most 1023 bytes" : "a row has at most 65535 bytes"));
      }
      continue;
    }
    if (is_text) text_room -= size;
    WriteField(row, field, descriptor, out);
  }
  if (tell && row.GetFFTReportPoints() > 0) {
    tell(kLeftOut, "a spectrum of " + std::to_string(row.GetFFTReportPoints()) + " points");
  }
  return bytes_;
}

}  // namespace loom
