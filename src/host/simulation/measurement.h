#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "components/records/blocks.h"
#include "components/records/testdata.h"
#include "host/simulation/radio.h"
#include "host/simulation/random.h"

namespace loom::simulation {

// What a handset finds at one moment.
struct Findings {
  const Cell* serving = nullptr;
  double level_dbm = 0.0;             // of the serving cell
  std::span<const CellLevel> levels;  // of all cells, strongest first
  bool in_call = false;
  std::uint64_t count = 0;  // measurements of the handset so far
};

inline constexpr std::size_t kNeighbours = 6;

// Each of the following fills the blocks of one network and keeps them: the record borrows them until the next call.
class TdMeasurement {
 public:
  void Fill(CTestdataBase& record, const Findings& findings, Random& random);

 private:
  void FillServing(const Findings& findings, Random& random);
  void FillTimeslots(const Findings& findings, Random& random);
  void FillNeighbours(const Findings& findings, Random& random);
  void FillCall(CTestdataBase& record, Random& random);

  CIE_SCell_Para serving_;
  CIE_SCell_Meas timeslots_;
  std::array<TimeslotValue, 7> iscp_;
  std::array<TimeslotValue, 5> rscp_;
  CIE_NCell_Meas neighbour_block_;
  std::array<TdNeighbour, kNeighbours> neighbours_;
  CIE_Channel_Para channels_;
  std::array<TdCodeChannel, 3> code_channels_;
  std::array<TdNumberedByte, 2> numbered_bytes_;
  std::array<TdTransportChannel, 3> transport_channels_;
  CIE_Meas_Res codes_;
  std::array<TdCodeEntryD, 2> entries_d_;
  std::array<TdCodeEntryE, 1> entries_e_;
  TdCellIdentities identities_;
  TdSamples samples_;
  std::array<TdSample, 3> sample_list_;
  TdBlock252 block252_;
  TdBlock304 block304_;
};

class GsmMeasurement {
 public:
  void Fill(CTestdataBase& record, const Findings& findings, Random& random);

 private:
  void FillServing(const Findings& findings, Random& random);
  void FillNeighbours(const Findings& findings, Random& random);
  void FillCall(CTestdataBase& record, Random& random);

  CIE_SCell_Para cell_;
  CIE_GSM_SCell_Sys_Info serving_;
  CIE_GSM_SCell_Resel_Sys_Info reselection_;
  CIE_GSM_SCell_Radio_Info radio_;
  CIE_GSM_SCell_DSC dsc_;
  CIE_GSM_NCell_Info neighbour_block_;
  std::array<GsmNeighbour, kNeighbours> neighbours_;
  CIE_GSM_MS_Muti_Slot_Class multislot_;
  CIE_GSM_Ded_CH_Info channel_;
  std::array<std::uint8_t, 4> hopping_;
  CIE_GSM_Ded_Meas_Info dedicated_;
  CIE_GSM_SCell_Ch_Radio_Link_Counter counter_;
  CIE_GSM_RAT_Indicate rat_;
  CIE_GSM_LLC_GPRS_Qos_Info llc_;
  CIE_GSM_RLC_GPRS_Qos_Info rlc_;
};

class LteMeasurement {
 public:
  void Fill(CTestdataBase& record, const Findings& findings, Random& random);

 private:
  static LteServingCell ServingCell(const Findings& findings);
  void FillMeasurements(const Findings& findings, Random& random);
  void FillSignalling(const Findings& findings, Random& random);

  LteMeasBlock measurements_;
  std::array<LteNeighbour, kNeighbours> neighbours_;
  LteSignalBlock signalling_;
};

// One signed byte of a level as 3GPP TS 25.123 reports it: -116 dBm is 0, -25 dBm is 91.
std::int8_t ReportedRscp(double level_dbm);

}  // namespace loom::simulation
