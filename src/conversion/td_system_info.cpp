#include <array>
#include <cstddef>
#include <cstdint>

#include "conversion/field_table.h"
#include "conversion/td_record_converter.h"

namespace loom {
namespace {

constexpr std::int32_t kMaxCells = 20;

// clang-format off

constexpr auto kSystemInfoFields = FieldTable<TdSystemInfo>({
    Own<&TdSystemInfo::ie21325>(Scaled(0.5, -23)),
    Own<&TdSystemInfo::ie21326>(),
    Own<&TdSystemInfo::ie21327>(),
    Own<&TdSystemInfo::ie21328>(),
    Own<&TdSystemInfo::ie26772>(),
    Own<&TdSystemInfo::ie26885>(),
    Own<&TdSystemInfo::ie26900>(),
    Own<&TdSystemInfo::ie26965>(),
    Own<&TdSystemInfo::ie26966>(),
    Own<&TdSystemInfo::ie30079>(),
    Own<&TdSystemInfo::ie30080>(),
    Own<&TdSystemInfo::ie30081>(),
});

constexpr std::array<NumberArray<TdSystemInfo>, 6> kSystemInfoArrays{{
    {&TdSystemInfo::ie21328, &TdSystemInfo::ie21329, IE{21329}, 26},
    {&TdSystemInfo::ie26772, &TdSystemInfo::ie26773, IE{26773}, 112},
    {&TdSystemInfo::ie26885, &TdSystemInfo::ie26886, IE{26886}, 14},
    {&TdSystemInfo::ie26900, &TdSystemInfo::ie26901, IE{26901}, 64},
    {&TdSystemInfo::ie26966, &TdSystemInfo::ie26967, IE{26967}, 3112, true},
    {&TdSystemInfo::ie30081, &TdSystemInfo::ie30082, IE{30082}, 1244, true},
}};

// Cell i becomes IE id + i.
constexpr auto kCellFields = FieldTable<TdCell>({
    Own<&TdCell::ie31362>(),
    Own<&TdCell::ie31382>(),
    Own<&TdCell::ie31402>(),
    Own<&TdCell::ie31422>(),
    Own<&TdCell::ie31442>(),
    Own<&TdCell::ie31462>(),
    Own<&TdCell::ie31482>(),
    Own<&TdCell::ie31502>(),
    Own<&TdCell::ie31522>(),
    Own<&TdCell::ie31542>(),
});

// clang-format on

}  // namespace

void CTDRecordConverter::ConvertSystemInfo(const TdSystemInfo& block) {
  WriteFields<kSystemInfoFields>(writer_, block);
  WriteNumberArrays<kSystemInfoArrays>(writer_, block);
}

void CTDRecordConverter::ConvertCellList(const TdCellList& block) {
  if (block.count < 1 || block.count > kMaxCells) return;
  WriteArray<kCellFields>(writer_, block.cells, UsableEntries(block.count, block.cells.size(), kMaxCells));
}

}  // namespace loom
