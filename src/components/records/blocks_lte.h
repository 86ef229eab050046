#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "components/records/fields.h"
#include "components/records/lists.h"

// Blocks of LTE handset records. Members start at their absent value: unsigned 8-bit 0xFF (0xFE invalid), unsigned
// 16-bit 0xFFFF (0xFFFE invalid; a signed value is the same 16 bits), 32-bit -1 (-2 invalid).
namespace loom {

// Serving cell of both blocks. The number behind a member is its byte position.
struct LteServingCell {
  std::array<std::uint8_t, 9> identity{0, 0, 0, 0, 0, 0, 0, 0, 0};  // IE 33353
  std::uint8_t ie33355 = kAbsent8;                                  // 11
  std::uint8_t ie33356 = kAbsent8;                                  // 12
  std::uint8_t ie33357 = kAbsent8;                                  // 13
  std::uint8_t ie33359 = kAbsent8;                                  // 15
  std::uint8_t ie33360 = kAbsent8;                                  // 16
  std::uint16_t earfcn = kAbsent16;                                 // 18: IE 33361
  std::uint16_t physical_cell_id = kAbsent16;                       // 20: IE 33362
  std::uint8_t ie33366 = kAbsent8;                                  // 24
  std::uint16_t ie33346 = kAbsent16;
  std::uint16_t ie33354 = kAbsent16;
  std::uint16_t ie33358 = kAbsent16;
  std::uint16_t ie33364 = kAbsent16;
  std::uint16_t ie33365 = kAbsent16;
  std::uint16_t ie33367 = kAbsent16;
  std::uint16_t ie33368 = kAbsent16;
  std::uint16_t ie33369 = kAbsent16;
  std::uint16_t ie33370 = kAbsent16;
  std::uint16_t ie33371 = kAbsent16;
  std::uint16_t ie33372 = kAbsent16;
  std::uint16_t ie33373 = kAbsent16;
  std::int32_t ie33345 = -1;
  std::int32_t ie33348 = -1;
  std::int32_t ie33349 = -1;
  std::int32_t ie33415 = -1;
  std::int32_t ie33416 = -1;
  std::int32_t ie33417 = -1;
  std::int32_t ie33418 = -1;
  std::int32_t ie33419 = -1;
  std::int32_t ie33420 = -1;
};
template <>
struct BlockFields<LteServingCell> {
  using B = LteServingCell;
  using List =
      FieldList<&B::identity, &B::ie33355, &B::ie33356, &B::ie33357, &B::ie33359, &B::ie33360, &B::earfcn,
                &B::physical_cell_id, &B::ie33366, &B::ie33346, &B::ie33354, &B::ie33358, &B::ie33364, &B::ie33365,
                &B::ie33367, &B::ie33368, &B::ie33369, &B::ie33370, &B::ie33371, &B::ie33372, &B::ie33373, &B::ie33345,
                &B::ie33348, &B::ie33349, &B::ie33415, &B::ie33416, &B::ie33417, &B::ie33418, &B::ie33419, &B::ie33420>;
};

// Position 24 of the measurement block.
struct LteMeas24 {
  std::uint16_t ie33650 = kAbsent16;
  std::uint16_t ie33652 = kAbsent16;
  std::uint16_t ie33653 = kAbsent16;
  std::uint16_t ie33654 = kAbsent16;
  std::uint16_t ie33655 = kAbsent16;
  std::uint16_t ie33656 = kAbsent16;
  std::uint16_t ie33657 = kAbsent16;
};
template <>
struct BlockFields<LteMeas24> {
  using B = LteMeas24;
  using List = FieldList<&B::ie33650, &B::ie33652, &B::ie33653, &B::ie33654, &B::ie33655, &B::ie33656, &B::ie33657>;
};

// Position 32 of the measurement block.
struct LteMeas32 {
  std::uint16_t ie33658 = kAbsent16;
  std::uint16_t ie33659 = kAbsent16;
  std::uint16_t ie33660 = kAbsent16;
  std::uint16_t ie33661 = kAbsent16;
  std::uint16_t ie33662 = kAbsent16;
  std::uint16_t ie33663 = kAbsent16;
  std::uint16_t ie33664 = kAbsent16;
};
template <>
struct BlockFields<LteMeas32> {
  using B = LteMeas32;
  using List = FieldList<&B::ie33658, &B::ie33659, &B::ie33660, &B::ie33661, &B::ie33662, &B::ie33663, &B::ie33664>;
};

// Position 36 of the measurement block.
struct LteMeas36 {
  std::uint16_t ie33669 = kAbsent16;
  std::uint16_t ie33670 = kAbsent16;
};
template <>
struct BlockFields<LteMeas36> {
  using B = LteMeas36;
  using List = FieldList<&B::ie33669, &B::ie33670>;
};

struct LteCellMeasurements {
  std::uint16_t ie33371 = kAbsent16;
  std::uint16_t earfcn_33374 = kAbsent16;  // IE 33374 in MHz
  std::uint16_t ie33375 = kAbsent16;
  std::uint16_t ie33376 = kAbsent16;
  std::uint16_t ie33377 = kAbsent16;
  std::uint16_t ie33378 = kAbsent16;
  std::uint16_t ie33379 = kAbsent16;
  std::uint16_t earfcn_33381 = kAbsent16;  // IE 33381 in MHz
  std::uint16_t ie33382 = kAbsent16;
  std::uint16_t ie33383 = kAbsent16;
  std::uint16_t ie33384 = kAbsent16;
  std::uint16_t ie33385 = kAbsent16;
  std::uint16_t ie33414 = kAbsent16;
};
template <>
struct BlockFields<LteCellMeasurements> {
  using B = LteCellMeasurements;
  using List = FieldList<&B::ie33371, &B::earfcn_33374, &B::ie33375, &B::ie33376, &B::ie33377, &B::ie33378, &B::ie33379,
                         &B::earfcn_33381, &B::ie33382, &B::ie33383, &B::ie33384, &B::ie33385, &B::ie33414>;
};

struct LteNeighbour {                          // entry k becomes IE id + k
  std::uint16_t earfcn = kAbsent16;            // 0: IE 33707 in MHz
  std::uint16_t physical_cell_id = kAbsent16;  // 2: IE 33771; with the frequency the cell key, IE 33835
  std::uint8_t ie33899 = 0;                    // 4: -141; 0 absent
  std::uint8_t ie33963 = 0;                    // 5: value / 2 - 20
  std::uint8_t ie34027 = 0;                    // 6: -141
  std::uint8_t ie34091 = kAbsent8;             // 7
};
template <>
struct BlockFields<LteNeighbour> {
  using B = LteNeighbour;
  using List = FieldList<&B::earfcn, &B::physical_cell_id, &B::ie33899, &B::ie33963, &B::ie34027, &B::ie34091>;
};

// Position 60 of the measurement block.
struct LteNeighbourList {
  std::uint8_t count_plus_one = 0;  // 0: number of entries + 1; 0 for no list
  RecordList<LteNeighbour> neighbours{};
};
template <>
struct BlockFields<LteNeighbourList> {
  using B = LteNeighbourList;
  using List = FieldList<&B::count_plus_one, &B::neighbours>;
};

struct LtePhysicalConfig {
  std::uint16_t ie33439 = kAbsent16;
  std::uint16_t ie33440 = kAbsent16;
  std::uint16_t ie33441 = kAbsent16;
  std::uint16_t ie33671 = kAbsent16;
  std::uint16_t ie33672 = kAbsent16;
  std::uint16_t ie33681 = kAbsent16;
  std::uint16_t ie33682 = kAbsent16;
  std::uint16_t ie33683 = kAbsent16;
  std::uint16_t ie33684 = kAbsent16;
  std::uint16_t ie33685 = kAbsent16;
  std::uint16_t ie33686 = kAbsent16;
  std::uint16_t ie33687 = kAbsent16;
  std::uint16_t ie33690 = kAbsent16;
  std::uint16_t ie33691 = kAbsent16;
  std::uint16_t ie33692 = kAbsent16;
  std::uint16_t ie33693 = kAbsent16;
  std::uint16_t ie33694 = kAbsent16;
  std::uint16_t ie33695 = kAbsent16;
  std::uint16_t ie33696 = kAbsent16;
  std::uint16_t ie33697 = kAbsent16;
};
template <>
struct BlockFields<LtePhysicalConfig> {
  using B = LtePhysicalConfig;
  using List = FieldList<&B::ie33439, &B::ie33440, &B::ie33441, &B::ie33671, &B::ie33672, &B::ie33681, &B::ie33682,
                         &B::ie33683, &B::ie33684, &B::ie33685, &B::ie33686, &B::ie33687, &B::ie33690, &B::ie33691,
                         &B::ie33692, &B::ie33693, &B::ie33694, &B::ie33695, &B::ie33696, &B::ie33697>;
};

struct LteChannelStatistics {
  std::int32_t ie33423 = -1;
  std::int32_t ie33436 = -1;
  std::int32_t ie33437 = -1;
  std::int32_t ie33675 = -1;
  std::int32_t ie33676 = -1;
  std::int32_t ie33677 = -1;
  std::int32_t ie33678 = -1;
  std::int32_t ie33679 = -1;
  std::int32_t ie33680 = -1;
  std::int32_t ie34570 = -1;
  std::int32_t ie34571 = -1;
  std::int32_t ie34572 = -1;
  std::int32_t ie34573 = -1;
  std::int32_t ie34574 = -1;
  std::int32_t ie34575 = -1;
  std::int32_t ie34576 = -1;
  std::int32_t ie34577 = -1;
  std::int32_t ie34578 = -1;
  std::int32_t ie34579 = -1;
  std::int32_t ie34580 = -1;
  std::int32_t ie34581 = -1;
  std::int32_t ie34582 = -1;
  std::int32_t ie34583 = -1;
  std::int32_t ie34584 = -1;
  std::int32_t ie34585 = -1;
  std::int32_t ie34586 = -1;
  std::int32_t ie34587 = -1;
  std::int32_t ie34588 = -1;
  std::int32_t ie34685 = -1;
  std::int32_t ie34686 = -1;
  std::int32_t ie34687 = -1;
  std::int32_t ie34688 = -1;
  std::int32_t ie34689 = -1;
  std::int32_t ie34690 = -1;
};
template <>
struct BlockFields<LteChannelStatistics> {
  using B = LteChannelStatistics;
  using List = FieldList<&B::ie33423, &B::ie33436, &B::ie33437, &B::ie33675, &B::ie33676, &B::ie33677, &B::ie33678,
                         &B::ie33679, &B::ie33680, &B::ie34570, &B::ie34571, &B::ie34572, &B::ie34573, &B::ie34574,
                         &B::ie34575, &B::ie34576, &B::ie34577, &B::ie34578, &B::ie34579, &B::ie34580, &B::ie34581,
                         &B::ie34582, &B::ie34583, &B::ie34584, &B::ie34585, &B::ie34586, &B::ie34587, &B::ie34588,
                         &B::ie34685, &B::ie34686, &B::ie34687, &B::ie34688, &B::ie34689, &B::ie34690>;
};

// The first bytes of the block, in two parts.
struct LteHeaderFirst {
  std::uint8_t ie34160 = kAbsent8;
  std::uint8_t ie34161 = kAbsent8;
  std::uint8_t ie34162 = kAbsent8;
  std::uint8_t ie34163 = kAbsent8;
  std::uint8_t ie34164 = kAbsent8;
  std::uint8_t ie34166 = kAbsent8;
  std::uint8_t ie34169 = kAbsent8;
};
template <>
struct BlockFields<LteHeaderFirst> {
  using B = LteHeaderFirst;
  using List = FieldList<&B::ie34160, &B::ie34161, &B::ie34162, &B::ie34163, &B::ie34164, &B::ie34166, &B::ie34169>;
};

struct LteHeaderSecond {
  std::uint8_t ie34165 = kAbsent8;
  std::uint8_t ie34167 = kAbsent8;
  std::uint8_t ie34168 = kAbsent8;
};
template <>
struct BlockFields<LteHeaderSecond> {
  using B = LteHeaderSecond;
  using List = FieldList<&B::ie34165, &B::ie34167, &B::ie34168>;
};

struct LteEntry {  // entry i becomes IE id + i; 50 entries
  std::int32_t ie34170 = -1;
  std::int32_t ie34220 = -1;
  std::int32_t ie34320 = -1;
  std::int32_t ie34370 = -1;
  std::int32_t ie34420 = -1;
  std::int32_t ie34470 = -1;
};
template <>
struct BlockFields<LteEntry> {
  using B = LteEntry;
  using List = FieldList<&B::ie34170, &B::ie34220, &B::ie34320, &B::ie34370, &B::ie34420, &B::ie34470>;
};

// Record position 512: LTE measurements (model code 14). A part that the device did not report is empty.
struct LteMeasBlock {
  std::optional<LteServingCell> serving{};
  std::optional<LteMeas24> meas24{};
  std::optional<LteMeas32> meas32{};
  std::optional<LteMeas36> meas36{};
  std::optional<LteCellMeasurements> cells{};
  std::optional<LteNeighbourList> neighbours{};
  std::optional<LtePhysicalConfig> physical{};
  std::optional<LteChannelStatistics> statistics{};
  std::optional<LteHeaderFirst> header_first{};
  std::optional<LteHeaderSecond> header_second{};
  std::int32_t entry_count = -1;
  RecordList<LteEntry> entries{};
};
template <>
struct BlockFields<LteMeasBlock> {
  using B = LteMeasBlock;
  using List = FieldList<&B::serving, &B::meas24, &B::meas32, &B::meas36, &B::cells, &B::neighbours, &B::physical,
                         &B::statistics, &B::header_first, &B::header_second, &B::entry_count, &B::entries>;
};

struct LteSignalFields {
  std::uint16_t ie33365 = kAbsent16;
  std::uint16_t ie33366 = kAbsent16;
  std::uint16_t ie33367 = kAbsent16;
  std::int32_t ie33421 = -1;
  std::int32_t ie33422 = -1;
  std::int32_t ie33423 = -1;
  std::int32_t ie33424 = -1;
  std::int32_t ie33425 = -1;
  std::int32_t ie33426 = -1;
  std::int32_t ie33428 = -1;
  std::int32_t ie33436 = -1;
  std::int32_t ie33437 = -1;
  std::uint16_t ie33438 = kAbsent16;
  std::uint16_t ie33439 = kAbsent16;
  std::uint16_t ie33440 = kAbsent16;
  std::uint16_t ie33441 = kAbsent16;
  std::int32_t ie33458 = -1;
  std::int32_t ie33474 = -1;
  std::int32_t ie33506 = -1;
  std::int32_t ie33522 = -1;
  std::uint16_t ie33650 = kAbsent16;
  std::uint16_t ie33652 = kAbsent16;
  std::uint16_t ie33657 = kAbsent16;
  std::uint16_t ie33658 = kAbsent16;
  std::uint16_t ie33659 = kAbsent16;
  std::uint16_t ie33663 = kAbsent16;
  std::uint16_t ie33667 = kAbsent16;
  std::uint16_t ie33668 = kAbsent16;
  std::uint16_t ie33693 = kAbsent16;
  std::uint16_t ie33694 = kAbsent16;
  std::uint16_t ie33695 = kAbsent16;
  std::uint16_t ie33696 = kAbsent16;
  std::uint16_t ie33697 = kAbsent16;
  std::int32_t ie34574 = -1;
  std::int32_t ie34575 = -1;
  std::int32_t ie34581 = -1;
};
template <>
struct BlockFields<LteSignalFields> {
  using B = LteSignalFields;
  using List =
      FieldList<&B::ie33365, &B::ie33366, &B::ie33367, &B::ie33421, &B::ie33422, &B::ie33423, &B::ie33424, &B::ie33425,
                &B::ie33426, &B::ie33428, &B::ie33436, &B::ie33437, &B::ie33438, &B::ie33439, &B::ie33440, &B::ie33441,
                &B::ie33458, &B::ie33474, &B::ie33506, &B::ie33522, &B::ie33650, &B::ie33652, &B::ie33657, &B::ie33658,
                &B::ie33659, &B::ie33663, &B::ie33667, &B::ie33668, &B::ie33693, &B::ie33694, &B::ie33695, &B::ie33696,
                &B::ie33697, &B::ie34574, &B::ie34575, &B::ie34581>;
};

// Record position 516: LTE signalling (model code 15).
struct LteSignalBlock {
  std::optional<LteServingCell> serving{};
  std::optional<LteSignalFields> fields{};
};
template <>
struct BlockFields<LteSignalBlock> {
  using B = LteSignalBlock;
  using List = FieldList<&B::serving, &B::fields>;
};

}  // namespace loom
