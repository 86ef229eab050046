#pragma once

#include "components/lte_frequency.h"
#include "components/records/blocks_lte.h"
#include "conversion/field_table.h"

// Tables of the LTE blocks. Most fields are written whatever the selection.
// clang-format off
namespace loom {

constexpr std::int32_t AsSigned16(std::int32_t word) { return static_cast<std::int16_t>(word); }
constexpr std::int32_t AsFrequency(std::int32_t earfcn) { return EarfcnToMHz(static_cast<std::uint16_t>(earfcn)); }
constexpr std::int32_t AsRsrq(std::int32_t reported) { return reported / 2 - 20; }

inline constexpr Rule kSigned16 = By(AsSigned16);
inline constexpr Rule kSigned16OrInvalid = kSigned16.Marked({.invalid = 0xFFFF});  // absent is written as invalid
inline constexpr Rule kFrequency = By(AsFrequency);
inline constexpr Rule kCellFrequency = kFrequency.Marked(kNoMarkers);  // 0 without a channel number, as in cell keys
inline constexpr Rule kReportedLevel = Shifted(-141).Marked(kNoMarkers);

// Serving cell of both blocks.
inline constexpr auto kLteServingFields = FieldTable<LteServingCell>({
    Own<&LteServingCell::ie33355>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33356>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33357>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33359>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33360>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33366>(kAsIs, kUnselected),
    {&LteServingCell::physical_cell_id, IE{33362}, kAsIs,    kUnselected},
    {&LteServingCell::earfcn,  IE{33361}, kCellFrequency,    kUnselected},
});

// Serving cell, only while its cell key is above 0.
inline constexpr auto kLteKnownCellFields = FieldTable<LteServingCell>({
    Own<&LteServingCell::ie33346>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33354>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33358>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33364>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33365>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33367>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33368>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33369>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33370>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33371>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33372>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33373>(kSigned16, kUnselected),
    Own<&LteServingCell::ie33345>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33348>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33349>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33415>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33416>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33417>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33418>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33419>(kAsIs, kUnselected),
    Own<&LteServingCell::ie33420>(kAsIs, kUnselected),
});

// Positions 24, 32 and 36 of the measurement block.
inline constexpr auto kLteMeas24Fields = FieldTable<LteMeas24>({
    Own<&LteMeas24::ie33650>(kSigned16, kUnselected),
    Own<&LteMeas24::ie33652>(kSigned16, kUnselected),
    Own<&LteMeas24::ie33653>(kSigned16, kUnselected),
    Own<&LteMeas24::ie33654>(kSigned16, kUnselected),
    Own<&LteMeas24::ie33655>(kSigned16, kUnselected),
    Own<&LteMeas24::ie33656>(kSigned16, kUnselected),
    Own<&LteMeas24::ie33657>(kSigned16, kUnselected),
});

inline constexpr auto kLteMeas32Fields = FieldTable<LteMeas32>({
    Own<&LteMeas32::ie33658>(kSigned16, kUnselected),
    Own<&LteMeas32::ie33659>(kSigned16, kUnselected),
    Own<&LteMeas32::ie33660>(kSigned16, kUnselected),
    Own<&LteMeas32::ie33661>(kSigned16, kUnselected),
    Own<&LteMeas32::ie33662>(kSigned16, kUnselected),
    Own<&LteMeas32::ie33663>(kSigned16, kUnselected),
    Own<&LteMeas32::ie33664>(kSigned16, kUnselected),
});

inline constexpr auto kLteMeas36Fields = FieldTable<LteMeas36>({
    Own<&LteMeas36::ie33669>(kSigned16, kUnselected),
    Own<&LteMeas36::ie33670>(kSigned16, kUnselected),
});

// Cell measurements.
inline constexpr auto kLteCellMeasurementFields = FieldTable<LteCellMeasurements>({
    Own<&LteCellMeasurements::ie33371>(kSigned16, kUnselected),
    {&LteCellMeasurements::earfcn_33374, IE{33374}, kFrequency,        kUnselected},
    Own<&LteCellMeasurements::ie33375>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33376>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33377>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33378>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33379>(kSigned16, kUnselected),
    {&LteCellMeasurements::earfcn_33381, IE{33381}, kFrequency,        kUnselected},
    Own<&LteCellMeasurements::ie33382>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33383>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33384>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33385>(kSigned16, kUnselected),
    Own<&LteCellMeasurements::ie33414>(kSigned16OrInvalid, kUnselected),
});

// Neighbours. Entry k becomes IE id + k. The cell key, IE 33835 + k, is made of two fields.
inline constexpr std::int32_t kLteNeighbourKey = 33835;
inline constexpr std::int32_t kLteNeighbourKeySelection = 33834;
inline constexpr std::size_t kLteNeighbours = 63;  // the number 0 of an array stands for its selection
inline constexpr auto kLteNeighbourFields = FieldTable<LteNeighbour>({
    {&LteNeighbour::earfcn,           IE{33707}, kCellFrequency,                       SelectedBy(33706)},
    {&LteNeighbour::physical_cell_id, IE{33771}, kSigned16,                            SelectedBy(33770)},
    Own<&LteNeighbour::ie33899>(kReportedLevel.Marked(OnlyAbsent(0)), SelectedBy(33898)),
    Own<&LteNeighbour::ie33963>(By(AsRsrq).Marked(kNoMarkers), SelectedBy(33962)),
    Own<&LteNeighbour::ie34027>(kReportedLevel, SelectedBy(34026)),
    Own<&LteNeighbour::ie34091>(kAsIs.Marked(OnlyAbsent(0xFF)), SelectedBy(34090)),
});

// Physical configuration. From IE 33671 on, a value that the block lacks is written as invalid.
inline constexpr auto kLtePhysicalFields = FieldTable<LtePhysicalConfig>({
    Own<&LtePhysicalConfig::ie33439>(kSigned16, kUnselected),
    Own<&LtePhysicalConfig::ie33440>(kSigned16, kUnselected),
    Own<&LtePhysicalConfig::ie33441>(kSigned16, kUnselected),
    Own<&LtePhysicalConfig::ie33671>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33672>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33681>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33682>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33683>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33684>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33685>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33686>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33687>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33690>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33691>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33692>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33693>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33694>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33695>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33696>(kSigned16OrInvalid, kUnselected),
    Own<&LtePhysicalConfig::ie33697>(kSigned16OrInvalid, kUnselected),
});

// Channel statistics.
inline constexpr auto kLteStatisticsFields = FieldTable<LteChannelStatistics>({
    Own<&LteChannelStatistics::ie33423>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33436>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33437>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33675>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33676>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33677>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33678>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33679>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie33680>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34570>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34571>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34572>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34573>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34574>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34575>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34576>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34577>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34578>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34579>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34580>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34581>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34582>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34583>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34584>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34585>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34586>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34587>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34588>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34685>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34686>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34687>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34688>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34689>(kAsIs, kUnselected),
    Own<&LteChannelStatistics::ie34690>(kAsIs, kUnselected),
});

// First bytes of the measurement block.
inline constexpr auto kLteHeaderFirstFields = FieldTable<LteHeaderFirst>({
    Own<&LteHeaderFirst::ie34160>(kAsIs, kAlways),
    Own<&LteHeaderFirst::ie34161>(kAsIs, kAlways),
    Own<&LteHeaderFirst::ie34162>(kAsIs, kAlways),
    Own<&LteHeaderFirst::ie34163>(kAsIs, kAlways),
    Own<&LteHeaderFirst::ie34164>(kAsIs, kAlways),
    Own<&LteHeaderFirst::ie34166>(kAsIs, kAlways),
    Own<&LteHeaderFirst::ie34169>(kAsIs, kAlways),
});

inline constexpr auto kLteHeaderSecondFields = FieldTable<LteHeaderSecond>({
    Own<&LteHeaderSecond::ie34165>(kAsIs, kAlways),
    Own<&LteHeaderSecond::ie34167>(kAsIs, kAlways),
    Own<&LteHeaderSecond::ie34168>(kAsIs, kAlways),
});

// Entries of the measurement block. Entry i becomes IE id + i.
inline constexpr std::size_t kLteEntries = 50;
inline constexpr auto kLteEntryFields = FieldTable<LteEntry>({
    Own<&LteEntry::ie34170>(kAsIs, kUnselected),
    Own<&LteEntry::ie34220>(kAsIs, kUnselected),
    Own<&LteEntry::ie34320>(kAsIs, kUnselected),
    Own<&LteEntry::ie34370>(kAsIs, kUnselected),
    Own<&LteEntry::ie34420>(kAsIs, kUnselected),
    Own<&LteEntry::ie34470>(kAsIs, kUnselected),
});

// Signalling block.
inline constexpr auto kLteSignalFields = FieldTable<LteSignalFields>({
    Own<&LteSignalFields::ie33365>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33366>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33367>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33421>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33422>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33423>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33424>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33425>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33426>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33428>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33436>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33437>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33438>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33439>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33440>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33441>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33458>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33474>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33506>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33522>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie33650>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33652>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33657>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33658>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33659>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33663>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33667>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33668>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33693>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33694>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33695>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33696>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie33697>(kSigned16, kUnselected),
    Own<&LteSignalFields::ie34574>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie34575>(kAsIs, kUnselected),
    Own<&LteSignalFields::ie34581>(kAsIs, kUnselected),
});

}  // namespace loom
