#pragma once

#include "components/records/blocks_td_more.h"
#include "host/logstore/record_fields.h"

// Further TD-SCDMA blocks.
// clang-format off
namespace loom {

template <>
struct BlockFields<TdBlock252> {
  using B = TdBlock252;
  static constexpr std::uint16_t kTag = 252;
  static constexpr std::string_view kName = "block252";
  static constexpr std::tuple kFields{
      Field{"ie5403", &B::ie5403},
  };
};

template <>
struct BlockFields<TdCellIdentities> {
  using B = TdCellIdentities;
  static constexpr std::uint16_t kTag = 280;
  static constexpr std::string_view kName = "cell_identities";
  static constexpr std::tuple kFields{
      Field{"ie26766", &B::ie26766}, Field{"ie26767", &B::ie26767}, Field{"ie26768", &B::ie26768},
      Field{"ie26769", &B::ie26769},
  };
};

template <>
struct BlockFields<TdBlock288> {
  using B = TdBlock288;
  static constexpr std::uint16_t kTag = 288;
  static constexpr std::string_view kName = "block288";
  static constexpr std::tuple kFields{
      Field{"ie4610", &B::ie4610},
  };
};

template <>
struct BlockFields<TdEntry292> {
  using B = TdEntry292;
  static constexpr std::tuple kFields{
      Field{"ie21356", &B::ie21356}, Field{"ie21756", &B::ie21756}, Field{"ie22156", &B::ie22156},
      Field{"ie22556", &B::ie22556}, Field{"ie22956", &B::ie22956}, Field{"ie23356", &B::ie23356},
      Field{"ie23756", &B::ie23756}, Field{"ie24156", &B::ie24156}, Field{"ie24556", &B::ie24556},
  };
};

template <>
struct BlockFields<TdBlock292> {
  using B = TdBlock292;
  static constexpr std::uint16_t kTag = 292;
  static constexpr std::string_view kName = "block292";
  static constexpr std::tuple kFields{
      Field{"ie21355", &B::ie21355},
      Field{"entries", &B::entries},
  };
};

template <>
struct BlockFields<TdEntry296> {
  using B = TdEntry296;
  static constexpr std::tuple kFields{
      Field{"ie24957", &B::ie24957}, Field{"ie25357", &B::ie25357}, Field{"ie25757", &B::ie25757},
      Field{"ie26157", &B::ie26157},
  };
};

template <>
struct BlockFields<TdBlock296> {
  using B = TdBlock296;
  static constexpr std::uint16_t kTag = 296;
  static constexpr std::string_view kName = "block296";
  static constexpr std::tuple kFields{
      Field{"ie24956", &B::ie24956},
      Field{"entries", &B::entries},
  };
};

template <>
struct BlockFields<TdSample> {
  using B = TdSample;
  static constexpr std::tuple kFields{
      Field{"byte0", &B::byte0},
      Field{"byte1", &B::byte1},
      Field{"ie5132", &B::ie5132}, Field{"ie5165", &B::ie5165},
  };
};

template <>
struct BlockFields<TdSamples> {
  using B = TdSamples;
  static constexpr std::uint16_t kTag = 300;
  static constexpr std::string_view kName = "samples";
  static constexpr std::tuple kFields{
      Field{"count", &B::count},
      Field{"samples", &B::samples},
  };
};

template <>
struct BlockFields<TdBlock304> {
  using B = TdBlock304;
  static constexpr std::uint16_t kTag = 304;
  static constexpr std::string_view kName = "block304";
  static constexpr std::tuple kFields{
      Field{"ie5248", &B::ie5248}, Field{"ie5249", &B::ie5249}, Field{"ie26608", &B::ie26608},
      Field{"ie26609", &B::ie26609},
  };
};

template <>
struct BlockFields<TdBlock308> {
  using B = TdBlock308;
  static constexpr std::uint16_t kTag = 308;
  static constexpr std::string_view kName = "block308";
  static constexpr std::tuple kFields{
      Field{"ie26610", &B::ie26610}, Field{"ie26611", &B::ie26611},
      Field{"ie26612", &B::ie26612},
  };
};

template <>
struct BlockFields<TdBlock312> {
  using B = TdBlock312;
  static constexpr std::uint16_t kTag = 312;
  static constexpr std::string_view kName = "block312";
  static constexpr std::tuple kFields{
      Field{"ie26632", &B::ie26632}, Field{"ie26633", &B::ie26633}, Field{"ie26634", &B::ie26634},
      Field{"ie26635", &B::ie26635}, Field{"ie26636", &B::ie26636}, Field{"ie26637", &B::ie26637},
      Field{"ie26638", &B::ie26638}, Field{"ie26639", &B::ie26639}, Field{"ie26640", &B::ie26640},
      Field{"ie26641", &B::ie26641},
  };
};

template <>
struct BlockFields<TdBlock316> {
  using B = TdBlock316;
  static constexpr std::uint16_t kTag = 316;
  static constexpr std::string_view kName = "block316";
  static constexpr std::tuple kFields{
      Field{"ie26642", &B::ie26642}, Field{"ie26643", &B::ie26643},
  };
};

template <>
struct BlockFields<TdBlock320> {
  using B = TdBlock320;
  static constexpr std::uint16_t kTag = 320;
  static constexpr std::string_view kName = "block320";
  static constexpr std::tuple kFields{
      Field{"ie5253", &B::ie5253}, Field{"ie5254", &B::ie5254}, Field{"ie5255", &B::ie5255},
  };
};

template <>
struct BlockFields<TdBlock324> {
  using B = TdBlock324;
  static constexpr std::uint16_t kTag = 324;
  static constexpr std::string_view kName = "block324";
  static constexpr std::tuple kFields{
      Field{"ie4612", &B::ie4612}, Field{"ie4699", &B::ie4699},
  };
};

template <>
struct BlockFields<TdBlock328> {
  using B = TdBlock328;
  static constexpr std::uint16_t kTag = 328;
  static constexpr std::string_view kName = "block328";
  static constexpr std::tuple kFields{
      Field{"ie5250", &B::ie5250}, Field{"ie5251", &B::ie5251}, Field{"ie5252", &B::ie5252},
  };
};

template <>
struct BlockFields<TdBlock332> {
  using B = TdBlock332;
  static constexpr std::uint16_t kTag = 332;
  static constexpr std::string_view kName = "block332";
  static constexpr std::tuple kFields{
      Field{"ie5259", &B::ie5259},
  };
};

template <>
struct BlockFields<TdSystemInfo> {
  using B = TdSystemInfo;
  static constexpr std::uint16_t kTag = 336;
  static constexpr std::string_view kName = "system_info";
  static constexpr std::tuple kFields{
      Field{"ie21325", &B::ie21325}, Field{"ie21326", &B::ie21326}, Field{"ie21327", &B::ie21327},
      Field{"ie21328", &B::ie21328},
      Field{"ie21329", &B::ie21329},
      Field{"ie26772", &B::ie26772},
      Field{"ie26773", &B::ie26773},
      Field{"ie26885", &B::ie26885},
      Field{"ie26886", &B::ie26886},
      Field{"ie26900", &B::ie26900},
      Field{"ie26901", &B::ie26901},
      Field{"ie26965", &B::ie26965}, Field{"ie26966", &B::ie26966},
      Field{"ie26967", &B::ie26967},
      Field{"ie30079", &B::ie30079}, Field{"ie30080", &B::ie30080}, Field{"ie30081", &B::ie30081},
      Field{"ie30082", &B::ie30082},
  };
};

template <>
struct BlockFields<TdBlock344> {
  using B = TdBlock344;
  static constexpr std::uint16_t kTag = 344;
  static constexpr std::string_view kName = "block344";
  static constexpr std::tuple kFields{
      Field{"first", &B::first},
      Field{"ie4611", &B::ie4611},
  };
};

template <>
struct BlockFields<TdEntry348> {
  using B = TdEntry348;
  static constexpr std::tuple kFields{
      Field{"ie26669", &B::ie26669}, Field{"ie26701", &B::ie26701},
  };
};

template <>
struct BlockFields<TdBlock348> {
  using B = TdBlock348;
  static constexpr std::uint16_t kTag = 348;
  static constexpr std::string_view kName = "block348";
  static constexpr std::tuple kFields{
      Field{"ie26668", &B::ie26668},
      Field{"entries", &B::entries},
  };
};

template <std::size_t kCount>
struct BlockFields<TdTableRun<kCount>> {
  using B = TdTableRun<kCount>;
  static constexpr std::tuple kFields{
      Field{"values", &B::values},
  };
};

template <>
struct BlockFields<TdBlockTable> {
  using B = TdBlockTable;
  static constexpr std::uint16_t kTag = 352;
  static constexpr std::string_view kName = "block_table";
  static constexpr std::tuple kFields{
      Field{"ie21255", &B::ie21255}, Field{"ie21260", &B::ie21260}, Field{"ie5930", &B::ie5930},
      Field{"ie6933", &B::ie6933}, Field{"ie9735", &B::ie9735}, Field{"ie10736", &B::ie10736},
      Field{"ie8734", &B::ie8734}, Field{"ie21249", &B::ie21249}, Field{"ie21138", &B::ie21138},
      Field{"ie21166", &B::ie21166}, Field{"ie21240", &B::ie21240}, Field{"ie21243", &B::ie21243},
      Field{"ie21246", &B::ie21246}, Field{"ie21207", &B::ie21207}, Field{"ie21211", &B::ie21211},
      Field{"ie21215", &B::ie21215},
  };
};

template <>
struct BlockFields<TdCell> {
  using B = TdCell;
  static constexpr std::tuple kFields{
      Field{"ie31362", &B::ie31362}, Field{"ie31382", &B::ie31382}, Field{"ie31402", &B::ie31402},
      Field{"ie31422", &B::ie31422}, Field{"ie31442", &B::ie31442}, Field{"ie31462", &B::ie31462},
      Field{"ie31482", &B::ie31482}, Field{"ie31502", &B::ie31502}, Field{"ie31522", &B::ie31522},
      Field{"ie31542", &B::ie31542},
  };
};

template <>
struct BlockFields<TdCellList> {
  using B = TdCellList;
  static constexpr std::uint16_t kTag = 416;
  static constexpr std::string_view kName = "td_cell_list";
  static constexpr std::tuple kFields{
      Field{"count", &B::count},
      Field{"cells", &B::cells},
  };
};

}  // namespace loom
// clang-format on
