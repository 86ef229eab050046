#include <array>
#include <cstddef>
#include <cstdint>

#include "conversion/ie_ids.h"
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
        Own<&TdCodeChannel::ie393>(kEntry),
        Own<&TdCodeChannel::ie297>(kEntry),
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
        Own<&TdNumberedByte::ie264>(kEntry),
    }),
    SelectedBy(265)};

constexpr ListGroup<CIE_Channel_Para, TdTransportChannel, std::int8_t, 3> kGroupB{
    &CIE_Channel_Para::transport_channel_count, &CIE_Channel_Para::transport_channels, IE{ie::kTransportChannelCount},
    &TdTransportChannel::number, 1, 32,
    FieldTable<TdTransportChannel>({
        Own<&TdTransportChannel::ie935>(kEntry),
        Own<&TdTransportChannel::ie1000>(kEntry),
        Own<&TdTransportChannel::ie1033>(kEntry),
    }),
    SelectedBy(ie::kTransportChannelBler)};

constexpr auto kChannelFields = FieldTable<CIE_Channel_Para>({
    Own<&CIE_Channel_Para::ie170>(kOnlyWithSettings),
    Own<&CIE_Channel_Para::ie171>(kOnlyWithSettings),
    Own<&CIE_Channel_Para::ie172>(kOnlyWithSettings),
    Own<&CIE_Channel_Para::ie173>(kOnlyWithSettings),
    Own<&CIE_Channel_Para::ie174>(),
});

// ---- Code block

consteval ListGroup<CIE_Meas_Res, TdCodeEntryD, std::int8_t, 5> MakeGroupD(double scale) {
  return {
      &CIE_Meas_Res::count_d, &CIE_Meas_Res::entries_d, IE{ie::kRlcCount},
      &TdCodeEntryD::number, 1, 32,
      FieldTable<TdCodeEntryD>({
          Own<&TdCodeEntryD::ie1656>(kAsFloat.OfEntry(), kOnlyWithSettings),
          Own<&TdCodeEntryD::ie1588>(Scaled(scale).OfEntry()),
          Own<&TdCodeEntryD::ie1622>(Scaled(scale).OfEntry()),
          Own<&TdCodeEntryD::ie1818>(kEntry),
          Own<&TdCodeEntryD::ie1850>(kEntry, kOnlyWithSettings),
      })};
}
constexpr auto kGroupD = MakeGroupD(1.0);
constexpr auto kGroupDTenths = MakeGroupD(0.1);

constexpr ListGroup<CIE_Meas_Res, TdCodeEntryE, std::int8_t, 4> kGroupE{
    &CIE_Meas_Res::count_e, &CIE_Meas_Res::entries_e, IE{ie::kPdcpCount},
    &TdCodeEntryE::number, 5, 15,
    FieldTable<TdCodeEntryE>({
        Own<&TdCodeEntryE::ie1953>(Scaled(0.1).OfEntry()),
        Own<&TdCodeEntryE::ie1966>(Scaled(0.1).OfEntry()),
        Own<&TdCodeEntryE::ie1942>(kEntry),
        Own<&TdCodeEntryE::ie1979>(kEntry, kOnlyWithSettings),
    })};

// Entry n has IEs 1994 + 32 k + n for k from 0 to 11.
constexpr ListGroup<CIE_Meas_Res, TdCodeEntryF, std::int8_t, 0> kGroupF{
    &CIE_Meas_Res::count_f, &CIE_Meas_Res::entries_f, IE{493}, &TdCodeEntryF::number, 1, 32, {}};
constexpr std::int32_t kGroupFBase = 1994;
constexpr std::int32_t kGroupFStride = 32;
constexpr std::int32_t kGroupFValues = 12;

constexpr auto kCodeFields = FieldTable<CIE_Meas_Res>({
    Own<&CIE_Meas_Res::ie489>(Shifted(-120), kOnlyWithSettings),
    Own<&CIE_Meas_Res::ie490>(Shifted(-1), kOnlyWithSettings),
});

// ---- Physical-channel block

constexpr ListGroup<CIE_Layer12_Config_Para, TdPhysicalEntryG, std::int8_t, 3> kGroupG{
    &CIE_Layer12_Config_Para::count_g, &CIE_Layer12_Config_Para::entries_g, IE{495},
    &TdPhysicalEntryG::number, 1, 32,
    FieldTable<TdPhysicalEntryG>({
        Own<&TdPhysicalEntryG::ie3723>(kEntry, kOnlyWithSettings),
        Own<&TdPhysicalEntryG::ie3755>(kEntry, kOnlyWithSettings),
        Own<&TdPhysicalEntryG::ie3787>(kEntry, kOnlyWithSettings),
    }),
    kOnlyWithSettings};

constexpr ListGroup<CIE_Layer12_Config_Para, TdPhysicalEntryH, std::int8_t, 2> kGroupH{
    &CIE_Layer12_Config_Para::count_h, &CIE_Layer12_Config_Para::entries_h, IE{496},
    &TdPhysicalEntryH::number, 5, 15,
    FieldTable<TdPhysicalEntryH>({
        {&TdPhysicalEntryH::number, IE{3815}, kEntry, kOnlyWithSettings},
        Own<&TdPhysicalEntryH::ie3826>(kEntry, kOnlyWithSettings),
    }),
    kOnlyWithSettings};

constexpr ListGroup<CIE_Layer12_Config_Para, TdPhysicalEntryJ, std::int16_t, 3> kGroupJ{
    &CIE_Layer12_Config_Para::count_j, &CIE_Layer12_Config_Para::entries_j, IE{497},
    nullptr, 0, 255,
    FieldTable<TdPhysicalEntryJ>({
        Own<&TdPhysicalEntryJ::ie3842>(kEntry, kOnlyWithSettings),
        Own<&TdPhysicalEntryJ::ie4098>(kEntry, kOnlyWithSettings),
        Own<&TdPhysicalEntryJ::ie4354>(Scaled(0.03125, -13825).OfEntry(), kOnlyWithSettings),
    }),
    kOnlyWithSettings};

constexpr auto kPhysicalFirstFields = FieldTable<TdPhysicalFirst>({
    Own<&TdPhysicalFirst::ie3688>(kOnlyWithSettings),
    Own<&TdPhysicalFirst::ie3690>(kOnlyWithSettings),
    Own<&TdPhysicalFirst::ie3691>(kOnlyWithSettings),
    Own<&TdPhysicalFirst::ie3692>(kOnlyWithSettings),
    Own<&TdPhysicalFirst::ie3693>(kOnlyWithSettings),
    Own<&TdPhysicalFirst::ie3694>(kOnlyWithSettings),
});

constexpr auto kPhysicalSecondFields = FieldTable<TdPhysicalSecond>({
    Own<&TdPhysicalSecond::ie3698>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3699>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3700>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3701>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3702>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3703>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3704>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3705>(Scaled(0.125), kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3706>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3707>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3708>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3709>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3710>(),
    Own<&TdPhysicalSecond::ie3711>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3712>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3713>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3714>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3715>(Scaled(0.125), kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3716>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3717>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3718>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3719>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3720>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3721>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3722>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie3723>(kOnlyWithSettings),
    Own<&TdPhysicalSecond::ie31562>(kOnlyWithSettings),
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
