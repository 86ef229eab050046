#include <array>
#include <cstddef>
#include <cstdint>

#include "conversion/list_group.h"
#include "conversion/td_record_converter.h"

// The list groups of the channel, code and physical-channel blocks.
namespace loom {
namespace {

constexpr std::int32_t kLastTimeslot = 6;
constexpr std::int32_t kScaleLimit = 139;  // scale words above it, and -1, make the codes' values tenths
constexpr std::size_t kMaxText3689 = 43;

// clang-format off

// ---- Channel block

constexpr ListGroup<CIE_Channel_Para, TdCodeChannel, std::int8_t, 2> kGroupC{
    &CIE_Channel_Para::code_channel_count, &CIE_Channel_Para::code_channels, IE{198},
    &TdCodeChannel::number, 0, 95,
    FieldTable<TdCodeChannel>({
        {&TdCodeChannel::ie393, IE{393}, kEntry},
        {&TdCodeChannel::ie297, IE{297}, kEntry},
    })};

// Entry of timeslot t becomes IE id + t.
constexpr Condition TimeslotField(SelectionName name) {
  return {.gate = Condition::Gate::kOnlyWithSettings, .name = name};
}
constexpr auto kTimeslotConfigFields = FieldTable<TdCodeChannel>({
    {&TdCodeChannel::direction,              IE{191}, kEntry, TimeslotField(SelectionName::kTimeslotDirection)},
    {&TdCodeChannel::midamble_configuration, IE{176}, kEntry, TimeslotField(SelectionName::kMidambleConfiguration)},
    {&TdCodeChannel::midamble_shift,         IE{183}, kEntry, TimeslotField(SelectionName::kMidambleShift)},
});

constexpr ListGroup<CIE_Channel_Para, TdNumberedByte, std::int8_t, 1> kGroup199{
    &CIE_Channel_Para::numbered_byte_count, &CIE_Channel_Para::numbered_bytes, IE{199},
    &TdNumberedByte::number, 1, 32,
    FieldTable<TdNumberedByte>({
        {&TdNumberedByte::ie264, IE{264}, kEntry},
    }),
    SelectedBy(265)};

constexpr ListGroup<CIE_Channel_Para, TdTransportChannel, std::int8_t, 3> kGroupB{
    &CIE_Channel_Para::transport_channel_count, &CIE_Channel_Para::transport_channels, IE{200},
    &TdTransportChannel::number, 1, 32,
    FieldTable<TdTransportChannel>({
        {&TdTransportChannel::ie935,  IE{935},  kEntry},
        {&TdTransportChannel::ie1000, IE{1000}, kEntry},
        {&TdTransportChannel::ie1033, IE{1033}, kEntry},
    }),
    SelectedBy(1034)};

constexpr auto kChannelFields = FieldTable<CIE_Channel_Para>({
    {&CIE_Channel_Para::ie170, IE{170}, kOnlyWithSettings},
    {&CIE_Channel_Para::ie171, IE{171}, kOnlyWithSettings},
    {&CIE_Channel_Para::ie172, IE{172}, kOnlyWithSettings},
    {&CIE_Channel_Para::ie173, IE{173}, kOnlyWithSettings},
    {&CIE_Channel_Para::ie174, IE{174}},
});

// ---- Code block

consteval ListGroup<CIE_Meas_Res, TdCodeEntryD, std::int8_t, 5> MakeGroupD(double scale) {
  return {
      &CIE_Meas_Res::count_d, &CIE_Meas_Res::entries_d, IE{491},
      &TdCodeEntryD::number, 1, 32,
      FieldTable<TdCodeEntryD>({
          {&TdCodeEntryD::ie1656, IE{1656}, kAsFloat.OfEntry(), kOnlyWithSettings},
          {&TdCodeEntryD::ie1588, IE{1588}, Scaled(scale).OfEntry()},
          {&TdCodeEntryD::ie1622, IE{1622}, Scaled(scale).OfEntry()},
          {&TdCodeEntryD::ie1818, IE{1818}, kEntry},
          {&TdCodeEntryD::ie1850, IE{1850}, kEntry, kOnlyWithSettings},
      })};
}
constexpr auto kGroupD = MakeGroupD(1.0);
constexpr auto kGroupDTenths = MakeGroupD(0.1);

constexpr ListGroup<CIE_Meas_Res, TdCodeEntryE, std::int8_t, 4> kGroupE{
    &CIE_Meas_Res::count_e, &CIE_Meas_Res::entries_e, IE{492},
    &TdCodeEntryE::number, 5, 15,
    FieldTable<TdCodeEntryE>({
        {&TdCodeEntryE::ie1953, IE{1953}, Scaled(0.1).OfEntry()},
        {&TdCodeEntryE::ie1966, IE{1966}, Scaled(0.1).OfEntry()},
        {&TdCodeEntryE::ie1942, IE{1942}, kEntry},
        {&TdCodeEntryE::ie1979, IE{1979}, kEntry, kOnlyWithSettings},
    })};

// Entry n has IEs 1994 + 32 k + n for k from 0 to 11.
constexpr ListGroup<CIE_Meas_Res, TdCodeEntryF, std::int8_t, 0> kGroupF{
    &CIE_Meas_Res::count_f, &CIE_Meas_Res::entries_f, IE{493}, &TdCodeEntryF::number, 1, 32, {}};
constexpr std::int32_t kGroupFBase = 1994;
constexpr std::int32_t kGroupFStride = 32;
constexpr std::int32_t kGroupFValues = 12;

constexpr auto kCodeFields = FieldTable<CIE_Meas_Res>({
    {&CIE_Meas_Res::ie489, IE{489}, Shifted(-120), kOnlyWithSettings},
    {&CIE_Meas_Res::ie490, IE{490}, Shifted(-1),   kOnlyWithSettings},
});

// ---- Physical-channel block

constexpr ListGroup<CIE_Layer12_Config_Para, TdPhysicalEntryG, std::int8_t, 3> kGroupG{
    &CIE_Layer12_Config_Para::count_g, &CIE_Layer12_Config_Para::entries_g, IE{495},
    &TdPhysicalEntryG::number, 1, 32,
    FieldTable<TdPhysicalEntryG>({
        {&TdPhysicalEntryG::ie3723, IE{3723}, kEntry, kOnlyWithSettings},
        {&TdPhysicalEntryG::ie3755, IE{3755}, kEntry, kOnlyWithSettings},
        {&TdPhysicalEntryG::ie3787, IE{3787}, kEntry, kOnlyWithSettings},
    }),
    kOnlyWithSettings};

constexpr ListGroup<CIE_Layer12_Config_Para, TdPhysicalEntryH, std::int8_t, 2> kGroupH{
    &CIE_Layer12_Config_Para::count_h, &CIE_Layer12_Config_Para::entries_h, IE{496},
    &TdPhysicalEntryH::number, 5, 15,
    FieldTable<TdPhysicalEntryH>({
        {&TdPhysicalEntryH::number, IE{3815}, kEntry, kOnlyWithSettings},
        {&TdPhysicalEntryH::ie3826, IE{3826}, kEntry, kOnlyWithSettings},
    }),
    kOnlyWithSettings};

constexpr ListGroup<CIE_Layer12_Config_Para, TdPhysicalEntryJ, std::int16_t, 3> kGroupJ{
    &CIE_Layer12_Config_Para::count_j, &CIE_Layer12_Config_Para::entries_j, IE{497},
    nullptr, 0, 255,
    FieldTable<TdPhysicalEntryJ>({
        {&TdPhysicalEntryJ::ie3842, IE{3842}, kEntry,                            kOnlyWithSettings},
        {&TdPhysicalEntryJ::ie4098, IE{4098}, kEntry,                            kOnlyWithSettings},
        {&TdPhysicalEntryJ::ie4354, IE{4354}, Scaled(0.03125, -13825).OfEntry(), kOnlyWithSettings},
    }),
    kOnlyWithSettings};

constexpr auto kPhysicalFirstFields = FieldTable<TdPhysicalFirst>({
    {&TdPhysicalFirst::ie3688, IE{3688}, kOnlyWithSettings},
    {&TdPhysicalFirst::ie3690, IE{3690}, kOnlyWithSettings},
    {&TdPhysicalFirst::ie3691, IE{3691}, kOnlyWithSettings},
    {&TdPhysicalFirst::ie3692, IE{3692}, kOnlyWithSettings},
    {&TdPhysicalFirst::ie3693, IE{3693}, kOnlyWithSettings},
    {&TdPhysicalFirst::ie3694, IE{3694}, kOnlyWithSettings},
});

constexpr auto kPhysicalSecondFields = FieldTable<TdPhysicalSecond>({
    {&TdPhysicalSecond::ie3698,  IE{3698},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3699,  IE{3699},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3700,  IE{3700},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3701,  IE{3701},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3702,  IE{3702},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3703,  IE{3703},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3704,  IE{3704},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3705,  IE{3705},  Scaled(0.125), kOnlyWithSettings},
    {&TdPhysicalSecond::ie3706,  IE{3706},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3707,  IE{3707},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3708,  IE{3708},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3709,  IE{3709},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3710,  IE{3710}},
    {&TdPhysicalSecond::ie3711,  IE{3711},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3712,  IE{3712},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3713,  IE{3713},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3714,  IE{3714},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3715,  IE{3715},  Scaled(0.125), kOnlyWithSettings},
    {&TdPhysicalSecond::ie3716,  IE{3716},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3717,  IE{3717},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3718,  IE{3718},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3719,  IE{3719},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3720,  IE{3720},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3721,  IE{3721},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3722,  IE{3722},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie3723,  IE{3723},  kOnlyWithSettings},
    {&TdPhysicalSecond::ie31562, IE{31562}, kOnlyWithSettings},
});

// clang-format on

void WriteEntryF(CRowIEWriter& writer, const TdCodeEntryF& entry, std::int32_t number) {
  if (writer.settings_empty()) return;
  for (std::int32_t at = 0; at < kGroupFValues; ++at) {
    const std::int32_t base = kGroupFBase + kGroupFStride * at;
    if (!writer.IsSelected(base + kGroupF.first)) continue;
    const auto value = ConvertValue<TdMarkers>(kEntry, entry.ie1994[static_cast<std::size_t>(at)]);
    if (value) writer.Put(base + number, *value);
  }
}

NumbersOf<kGroupF> KnownNumbersF(const CRowIEWriter& writer) {
  NumbersOf<kGroupF> known;
  for (std::int32_t at = 0; at < kGroupFValues; ++at) known.AddKnown(writer, kGroupFBase + kGroupFStride * at);
  return known;
}

using TimeslotNumbers = NumberSet<kLastTimeslot>;

// Makes invalid what the stream has of the timeslots' configurations but for those of the given timeslots.
void ResetTimeslotsBut(CRowIEWriter& writer, const TimeslotNumbers& timeslots) {
  TimeslotNumbers stale = KnownNumbers<kTimeslotConfigFields, kLastTimeslot>(writer);
  stale.Remove(timeslots);
  stale.ForEachFrom(0, [&writer](std::int32_t timeslot) {
    for (const auto& field : kTimeslotConfigFields) writer.Invalidate(field.ie.id + timeslot, field.type);
  });
}

}  // namespace

void CTDRecordConverter::WriteChannels(const CIE_Channel_Para& block) {
  if (block.code_channel_count >= 0) {
    writer_.PutIntIfSelected(block.code_channel_count, block.code_channel_count, kGroupC.count_ie.id);
    block.code_channel_count == 0 ? ResetTimeslotConfig() : WriteTimeslotConfig(block);
  }
  WriteGroup<kGroup199>(writer_, block, [this](std::int32_t number) { ResetEntry<kGroup199>(writer_, number); });
  WriteGroup<kGroupB>(writer_, block, [this](std::int32_t number) { ResetGroupB(number); });
  WriteFields<kChannelFields>(writer_, block);
}

void CTDRecordConverter::WriteTimeslotConfig(const CIE_Channel_Para& block) {
  NumbersOf<kGroupC> stale = KnownNumbers<kGroupC>(writer_);
  stale.Remove(WriteGroupEntries<kGroupC>(writer_, block, [](const auto&, std::int32_t) {}));
  stale.ForEachFrom(kGroupC.first, [this](std::int32_t number) { ResetGroupC(number); });

  TimeslotNumbers timeslots;
  const auto passing = PassingFields<kTimeslotConfigFields>(writer_, 0);
  for (const TdCodeChannel& entry : block.code_channels) {
    if (entry.timeslot < 0 || entry.timeslot > kLastTimeslot) continue;
    if (timeslots.Has(entry.timeslot)) continue;  // the first entry of a timeslot counts
    timeslots.Add(entry.timeslot);
    WriteEntry<kTimeslotConfigFields>(writer_, entry, entry.timeslot, passing);
  }
  ResetTimeslotsBut(writer_, timeslots);
}

void CTDRecordConverter::ResetTimeslotConfig() {
  KnownNumbers<kGroupC>(writer_).ForEachFrom(kGroupC.first, [this](std::int32_t number) { ResetGroupC(number); });
  ResetTimeslotsBut(writer_, {});
}

void CTDRecordConverter::WriteCodes(const CIE_Meas_Res& block) {
  const auto reset_d = [this](std::int32_t number) { ResetGroupD(number); };
  if (block.scale_word == -1 || block.scale_word > kScaleLimit) {
    WriteGroup<kGroupDTenths>(writer_, block, reset_d);
  } else {
    WriteGroup<kGroupD>(writer_, block, reset_d);
  }
  WriteGroup<kGroupE>(writer_, block, [this](std::int32_t number) { ResetGroupE(number); });
  WriteGroup<kGroupF>(
      writer_, block, [this] { return KnownNumbersF(writer_); }, [this](std::int32_t number) { ResetGroupF(number); },
      [this](const TdCodeEntryF& entry, std::int32_t number) { WriteEntryF(writer_, entry, number); });
  WriteFields<kCodeFields>(writer_, block);
}

void CTDRecordConverter::WritePhysicalChannels(const CIE_Layer12_Config_Para& block) {
  WriteGroup<kGroupG>(writer_, block, [this](std::int32_t number) { ResetGroupG(number); });
  WriteGroup<kGroupH>(writer_, block, [this](std::int32_t number) { ResetGroupH(number); });
  WriteGroup<kGroupJ>(writer_, block, [this](std::int32_t number) { ResetGroupJ(number); });
  if (block.first) {
    WriteFields<kPhysicalFirstFields>(writer_, *block.first);
    if (!settings_empty()) writer_.PutText(block.first->ie3689.substr(0, kMaxText3689), 3689);
  }
  if (block.second) WriteFields<kPhysicalSecondFields>(writer_, *block.second);
}

void CTDRecordConverter::ResetGroupB(std::int32_t number) { ResetEntry<kGroupB>(writer_, number); }
void CTDRecordConverter::ResetGroupC(std::int32_t number) { ResetEntry<kGroupC>(writer_, number); }
void CTDRecordConverter::ResetGroupD(std::int32_t number) { ResetEntry<kGroupD>(writer_, number); }
void CTDRecordConverter::ResetGroupE(std::int32_t number) { ResetEntry<kGroupE>(writer_, number); }
void CTDRecordConverter::ResetGroupG(std::int32_t number) { ResetEntry<kGroupG>(writer_, number); }
void CTDRecordConverter::ResetGroupH(std::int32_t number) { ResetEntry<kGroupH>(writer_, number); }
void CTDRecordConverter::ResetGroupJ(std::int32_t number) { ResetEntry<kGroupJ>(writer_, number); }

void CTDRecordConverter::ResetGroupF(std::int32_t number) {
  for (std::int32_t at = 0; at < kGroupFValues; ++at) {
    writer_.Invalidate(kGroupFBase + kGroupFStride * at + number, kFieldInt);
  }
}

}  // namespace loom
