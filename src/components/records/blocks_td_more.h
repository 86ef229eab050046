#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "components/records/fields.h"
#include "components/records/lists.h"

// Further blocks of TD-SCDMA handset records, known by their position in the record and by the IEs that they become.
// Members start at their absent value, as in blocks_td.h.
namespace loom {

struct TdBlock252 {
  std::int32_t ie5403 = -1;
};
template <>
struct BlockFields<TdBlock252> {
  using B = TdBlock252;
  using List = FieldList<&B::ie5403>;
};

// Record position 280. A raw -255 counts as -2, invalid.
struct TdCellIdentities {
  std::int32_t ie26766 = -1;
  std::int32_t ie26767 = -1;
  std::int32_t ie26768 = -1;
  std::int32_t ie26769 = -1;
};
template <>
struct BlockFields<TdCellIdentities> {
  using B = TdCellIdentities;
  using List = FieldList<&B::ie26766, &B::ie26767, &B::ie26768, &B::ie26769>;
};

struct TdBlock288 {
  std::int32_t ie4610 = -1;
};
template <>
struct BlockFields<TdBlock288> {
  using B = TdBlock288;
  using List = FieldList<&B::ie4610>;
};

struct TdEntry292 {  // entry k becomes IE id + k; 400 entries
  std::int32_t ie21356 = -1;
  std::int32_t ie21756 = -1;
  std::int32_t ie22156 = -1;
  std::int32_t ie22556 = -1;
  std::int32_t ie22956 = -1;
  std::int32_t ie23356 = -1;
  std::int32_t ie23756 = -1;
  std::int32_t ie24156 = -1;
  std::int32_t ie24556 = -1;
};
template <>
struct BlockFields<TdEntry292> {
  using B = TdEntry292;
  using List = FieldList<&B::ie21356, &B::ie21756, &B::ie22156, &B::ie22556, &B::ie22956, &B::ie23356, &B::ie23756,
                         &B::ie24156, &B::ie24556>;
};

struct TdBlock292 {
  std::int32_t ie21355 = -1;  // count of the list
  RecordList<TdEntry292> entries{};
};
template <>
struct BlockFields<TdBlock292> {
  using B = TdBlock292;
  using List = FieldList<&B::ie21355, &B::entries>;
};

struct TdEntry296 {  // entry k becomes IE id + k; 400 entries
  std::int32_t ie24957 = -1;
  std::int32_t ie25357 = -1;
  std::int32_t ie25757 = -1;
  std::int32_t ie26157 = -1;
};
template <>
struct BlockFields<TdEntry296> {
  using B = TdEntry296;
  using List = FieldList<&B::ie24957, &B::ie25357, &B::ie25757, &B::ie26157>;
};

struct TdBlock296 {
  std::int32_t ie24956 = -1;  // count of the list
  RecordList<TdEntry296> entries{};
};
template <>
struct BlockFields<TdBlock296> {
  using B = TdBlock296;
  using List = FieldList<&B::ie24956, &B::entries>;
};

struct TdSample {
  std::uint8_t byte0 = kAbsent8;   // 0
  std::uint8_t byte1 = kAbsent8;   // 1
  std::uint8_t ie5132 = kAbsent8;  // 2: IE 5132 of the row of its sample
  std::uint8_t ie5165 = kAbsent8;  // 3: IE 5165 of the row of its sample
};
template <>
struct BlockFields<TdSample> {
  using B = TdSample;
  using List = FieldList<&B::byte0, &B::byte1, &B::ie5132, &B::ie5165>;
};

// Record position 300: a record that holds several measurements, taken one after the other.
struct TdSamples {
  std::int32_t count = -1;  // IE 5065; at most 32
  RecordList<TdSample> samples{};
};
template <>
struct BlockFields<TdSamples> {
  using B = TdSamples;
  using List = FieldList<&B::count, &B::samples>;
};

struct TdBlock304 {  // all -116
  std::uint8_t ie5248 = kAbsent8;
  std::uint8_t ie5249 = kAbsent8;
  std::uint8_t ie26608 = kAbsent8;
  std::uint8_t ie26609 = kAbsent8;
};
template <>
struct BlockFields<TdBlock304> {
  using B = TdBlock304;
  using List = FieldList<&B::ie5248, &B::ie5249, &B::ie26608, &B::ie26609>;
};

struct TdBlock308 {
  std::int32_t ie26610 = -1;
  std::int32_t ie26611 = -1;           // count of the list
  RecordList<std::int32_t> ie26612{};  // entry k becomes IE 26612 + k; 20 entries
};
template <>
struct BlockFields<TdBlock308> {
  using B = TdBlock308;
  using List = FieldList<&B::ie26610, &B::ie26611, &B::ie26612>;
};

struct TdBlock312 {
  std::int32_t ie26632 = -1;
  std::int32_t ie26633 = -1;
  std::int32_t ie26634 = -1;
  std::int32_t ie26635 = -1;
  std::int32_t ie26636 = -1;
  std::int32_t ie26637 = -1;
  std::int32_t ie26638 = -1;
  std::int32_t ie26639 = -1;
  std::int32_t ie26640 = -1;
  std::int32_t ie26641 = -1;
};
template <>
struct BlockFields<TdBlock312> {
  using B = TdBlock312;
  using List = FieldList<&B::ie26632, &B::ie26633, &B::ie26634, &B::ie26635, &B::ie26636, &B::ie26637, &B::ie26638,
                         &B::ie26639, &B::ie26640, &B::ie26641>;
};

struct TdBlock316 {
  std::int32_t ie26642 = -1;
  std::int32_t ie26643 = -1;
};
template <>
struct BlockFields<TdBlock316> {
  using B = TdBlock316;
  using List = FieldList<&B::ie26642, &B::ie26643>;
};

struct TdBlock320 {
  std::int32_t ie5253 = -1;
  std::int32_t ie5254 = -1;
  std::int32_t ie5255 = -1;
};
template <>
struct BlockFields<TdBlock320> {
  using B = TdBlock320;
  using List = FieldList<&B::ie5253, &B::ie5254, &B::ie5255>;
};

struct TdBlock324 {
  std::int32_t ie4612 = -1;
  std::int32_t ie4699 = -1;
};
template <>
struct BlockFields<TdBlock324> {
  using B = TdBlock324;
  using List = FieldList<&B::ie4612, &B::ie4699>;
};

struct TdBlock328 {
  std::int32_t ie5250 = -1;
  std::int32_t ie5251 = -1;
  std::int32_t ie5252 = -1;
};
template <>
struct BlockFields<TdBlock328> {
  using B = TdBlock328;
  using List = FieldList<&B::ie5250, &B::ie5251, &B::ie5252>;
};

struct TdBlock332 {
  std::uint16_t ie5259 = kAbsent16;
};
template <>
struct BlockFields<TdBlock332> {
  using B = TdBlock332;
  using List = FieldList<&B::ie5259>;
};

// Record position 336. Each list belongs to the member in front of it, its count; entry k becomes IE id + k.
struct TdSystemInfo {
  std::uint8_t ie21325 = kAbsent8;  // 0: (value - 23) * 0.5
  std::int32_t ie21326 = -1;
  std::uint16_t ie21327 = kAbsent16;  // 8
  std::int32_t ie21328 = -1;
  RecordList<std::int32_t> ie21329{};  // 26 entries
  std::int32_t ie26772 = -1;
  RecordList<std::int32_t> ie26773{};  // 112 entries
  std::int32_t ie26885 = -1;
  RecordList<std::int32_t> ie26886{};  // 14 entries
  std::int32_t ie26900 = -1;
  RecordList<std::int32_t> ie26901{};  // 64 entries
  std::int32_t ie26965 = -1;
  std::int32_t ie26966 = -1;
  RecordList<std::int32_t> ie26967{};  // 3112 entries
  std::int32_t ie30079 = -1;
  std::int32_t ie30080 = -1;
  std::int32_t ie30081 = -1;
  RecordList<std::int32_t> ie30082{};  // 1244 entries
};
template <>
struct BlockFields<TdSystemInfo> {
  using B = TdSystemInfo;
  using List = FieldList<&B::ie21325, &B::ie21326, &B::ie21327, &B::ie21328, &B::ie21329, &B::ie26772, &B::ie26773,
                         &B::ie26885, &B::ie26886, &B::ie26900, &B::ie26901, &B::ie26965, &B::ie26966, &B::ie26967,
                         &B::ie30079, &B::ie30080, &B::ie30081, &B::ie30082>;
};

struct TdBlock344 {
  std::int32_t first = -1;  // the rest counts only when this is 1
  std::uint16_t ie4611 = kAbsent16;
};
template <>
struct BlockFields<TdBlock344> {
  using B = TdBlock344;
  using List = FieldList<&B::first, &B::ie4611>;
};

struct TdEntry348 {  // entry k becomes IE id + k; 32 entries
  std::int32_t ie26669 = -1;
  std::int32_t ie26701 = -1;
};
template <>
struct BlockFields<TdEntry348> {
  using B = TdEntry348;
  using List = FieldList<&B::ie26669, &B::ie26701>;
};

struct TdBlock348 {
  std::int32_t ie26668 = -1;  // count of the list
  RecordList<TdEntry348> entries{};
};
template <>
struct BlockFields<TdBlock348> {
  using B = TdBlock348;
  using List = FieldList<&B::ie26668, &B::entries>;
};

// A sub-block of the block table: a run of consecutive IEs, named after the first one. Value k becomes IE id + k.
template <std::size_t kFields>
struct TdTableRun {
  TdTableRun() { values.fill(-1); }
  std::array<std::int32_t, kFields> values;
};
template <std::size_t kCount>
struct BlockFields<TdTableRun<kCount>> {
  using List = FieldList<&TdTableRun<kCount>::values>;
};

// Record position 352. A part has one field, `values`: as many numbers as the table says; value k becomes IE id + k.
struct TdBlockTable {
  std::optional<TdTableRun<5>> ie21255{};  // IEs 21255 to 21259
  std::optional<TdTableRun<5>> ie21260{};  // IEs 21260 to 21264
  std::optional<TdTableRun<3>> ie5930{};   // IEs 5930 to 5932
  std::optional<TdTableRun<1>> ie6933{};
  std::optional<TdTableRun<1>> ie9735{};
  std::optional<TdTableRun<1>> ie10736{};
  std::optional<TdTableRun<1>> ie8734{};
  std::optional<TdTableRun<3>> ie21249{};  // IEs 21249 to 21251
  std::optional<TdTableRun<4>> ie21138{};  // IEs 21138 to 21141
  std::optional<TdTableRun<1>> ie21166{};
  std::optional<TdTableRun<3>> ie21240{};  // IEs 21240 to 21242
  std::optional<TdTableRun<3>> ie21243{};  // IEs 21243 to 21245
  std::optional<TdTableRun<3>> ie21246{};  // IEs 21246 to 21248
  std::optional<TdTableRun<4>> ie21207{};  // IEs 21207 to 21210
  std::optional<TdTableRun<4>> ie21211{};  // IEs 21211 to 21214
  std::optional<TdTableRun<5>> ie21215{};  // IEs 21215 to 21219
};
template <>
struct BlockFields<TdBlockTable> {
  using B = TdBlockTable;
  using List =
      FieldList<&B::ie21255, &B::ie21260, &B::ie5930, &B::ie6933, &B::ie9735, &B::ie10736, &B::ie8734, &B::ie21249,
                &B::ie21138, &B::ie21166, &B::ie21240, &B::ie21243, &B::ie21246, &B::ie21207, &B::ie21211, &B::ie21215>;
};

struct TdCell {  // entry i becomes IE id + i
  std::int16_t ie31362 = -1;
  std::int16_t ie31382 = -1;
  std::int16_t ie31402 = -1;
  std::int16_t ie31422 = -1;
  std::int16_t ie31442 = -1;
  std::int32_t ie31462 = -1;
  std::int32_t ie31482 = -1;
  std::int32_t ie31502 = -1;
  std::int32_t ie31522 = -1;
  std::int32_t ie31542 = -1;
};
template <>
struct BlockFields<TdCell> {
  using B = TdCell;
  using List = FieldList<&B::ie31362, &B::ie31382, &B::ie31402, &B::ie31422, &B::ie31442, &B::ie31462, &B::ie31482,
                         &B::ie31502, &B::ie31522, &B::ie31542>;
};

// Record position 416.
struct TdCellList {
  std::int16_t count = -1;  // used from 1 to 20
  RecordList<TdCell> cells{};
};
template <>
struct BlockFields<TdCellList> {
  using B = TdCellList;
  using List = FieldList<&B::count, &B::cells>;
};

}  // namespace loom
