#include "platform/automation/spooled_rows.h"

#include <algorithm>
#include <filesystem>

#include "platform/byte_reader.h"
#include "platform/encoding.h"

namespace loom {
namespace {

// Empty cells are left out: the column stands before each of the others.
void PutCell(ByteWriter& out, std::uint32_t column, const VARIANT& cell) {
  out.U32(column);
  out.U16(cell.type());
  switch (cell.type()) {
    case VT_BSTR:
      out.U32(static_cast<std::uint32_t>(cell.Text().size()));
      out.Bytes(std::as_bytes(std::span(cell.Text())));
      break;
    case VT_I2:
    case VT_I4:
      out.U32(static_cast<std::uint32_t>(cell.Integer()));
      break;
    case VT_BOOL:
      out.U32(cell.Boolean() ? 1 : 0);
      break;
    case VT_R8:
      out.U64(std::bit_cast<std::uint64_t>(cell.Real()));
      break;
    default:
      throw AutomationError("a large table cannot hold a value of type " + std::to_string(cell.type()));
  }
}

VARIANT TakeCell(ByteReader& in) {
  const auto type = static_cast<VARTYPE>(in.U16());
  switch (type) {
    case VT_BSTR: {
      const std::uint32_t length = in.U32();
      return VARIANT(AsText(in.Bytes(length)));
    }
    case VT_I2:
      return VARIANT::I2(static_cast<std::int16_t>(in.U32()));
    case VT_I4:
      return VARIANT::I4(static_cast<std::int32_t>(in.U32()));
    case VT_BOOL:
      return VARIANT::Bool(in.U32() != 0);
    default:
      return VARIANT::R8(std::bit_cast<double>(in.U64()));
  }
}

}  // namespace

SpooledRows::SpooledRows(std::uint32_t rows, std::uint32_t columns)
    : file_(std::make_shared<ScratchFile>(
          NativePathToGbk((std::filesystem::temp_directory_path() / "large table").native()))),
      places_(rows, kNowhere),
      cells_(columns) {}

std::span<VARIANT> SpooledRows::ToChange(std::uint32_t row) {
  Load(row);
  is_changed_ = true;
  return cells_;
}

std::span<const VARIANT> SpooledRows::ToRead(std::uint32_t row) {
  Load(row);
  return cells_;
}

void SpooledRows::Load(std::uint32_t row) {
  if (row_ == row) return;
  Store();
  std::ranges::fill(cells_, VARIANT());
  row_ = row;
  if (places_[row] == kNowhere) return;
  std::byte length[4];
  file_->ReadAt(places_[row], length);
  std::vector<std::byte> bytes(ByteReader(length, 0).U32());
  file_->ReadAt(places_[row] + sizeof length, bytes);
  for (ByteReader in(bytes, 0); in.Remaining() > 0;) {
    const std::uint32_t column = in.U32();
    cells_[column] = TakeCell(in);
  }
}

void SpooledRows::Store() {
  if (!std::exchange(is_changed_, false)) return;
  std::vector<std::byte> bytes;
  ByteWriter out(bytes);
  out.U32(0);
  for (std::uint32_t column = 0; column < cells_.size(); ++column) {
    if (!cells_[column].IsEmpty()) PutCell(out, column, cells_[column]);
  }
  out.PatchU32(0, static_cast<std::uint32_t>(bytes.size() - 4));
  places_[*row_] = file_->Size();
  file_->Append(bytes);
}

}  // namespace loom
