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
    {&TdSystemInfo::ie21325, IE{21325}, Scaled(0.5, -23)},
    {&TdSystemInfo::ie21326, IE{21326}},
    {&TdSystemInfo::ie21327, IE{21327}},
    {&TdSystemInfo::ie21328, IE{21328}},
    {&TdSystemInfo::ie26772, IE{26772}},
    {&TdSystemInfo::ie26885, IE{26885}},
    {&TdSystemInfo::ie26900, IE{26900}},
    {&TdSystemInfo::ie26965, IE{26965}},
    {&TdSystemInfo::ie26966, IE{26966}},
    {&TdSystemInfo::ie30079, IE{30079}},
    {&TdSystemInfo::ie30080, IE{30080}},
    {&TdSystemInfo::ie30081, IE{30081}},
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
    {&TdCell::ie31362, IE{31362}},
    {&TdCell::ie31382, IE{31382}},
    {&TdCell::ie31402, IE{31402}},
    {&TdCell::ie31422, IE{31422}},
    {&TdCell::ie31442, IE{31442}},
    {&TdCell::ie31462, IE{31462}},
    {&TdCell::ie31482, IE{31482}},
    {&TdCell::ie31502, IE{31502}},
    {&TdCell::ie31522, IE{31522}},
    {&TdCell::ie31542, IE{31542}},
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
