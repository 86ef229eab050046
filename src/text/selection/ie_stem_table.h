#pragma once

#include <array>
#include <string_view>

namespace loom {

enum class StemMatch {
  kContained,  // anywhere in the tag
  kEquals,
};

// Repeated information elements of the navigator that the selection shows as one item. The element named last stands
// for all of them when its value range is looked up and when the import is told what was chosen.
struct IeStem {
  std::string_view stem;
  std::string_view representative;
  StemMatch match;
};

// The first entry that matches a tag decides.
// clang-format off
inline constexpr auto kIeStems = std::to_array<IeStem>({
    {"URAIdentities",          "URAIdentity_0",            StemMatch::kContained},
    {"TimeslotDirection",      "TimeslotDirection_0",      StemMatch::kContained},
    {"MidambleConfiguration",  "MidambleConfiguration_0",  StemMatch::kContained},
    {"MidambleShift",          "MidambleShift_0",          StemMatch::kContained},
    {"TimeslotNumber",         "TimeslotNumber_0",         StemMatch::kContained},
    {"ChannelizationCode",     "ChannelizationCode_0",     StemMatch::kContained},
    {"TimeslotISCP",           "TimeslotISCP_0",           StemMatch::kContained},
    {"TrCHBLER",               "TrCHBLER_1",               StemMatch::kContained},
    {"Timeslot_DPCH_RSCP",     "Timeslot_DPCH_RSCP_2",     StemMatch::kContained},
    {"Timeslot_CIR",           "Timeslot_CIR_2",           StemMatch::kContained},
    {"NborUARFCN",             "NborUARFCN_0",             StemMatch::kContained},
    {"NborCellParameterID",    "NborCellParameterID_0",    StemMatch::kContained},
    {"NborPCCPCHRSCP",         "NborPCCPCHRSCP_0",         StemMatch::kContained},
    {"NborISCP",               "Nbor_ISCP_0_0",            StemMatch::kContained},
    {"NborCarrierRSSI",        "NborCarrierRSSI_0",        StemMatch::kContained},
    {"NborPathLoss",           "NborPathLoss_0",           StemMatch::kContained},
    {"NborRn",                 "NborRn_0",                 StemMatch::kContained},
    {"GSM_NborQoffset",        "GSM_NborQoffset_0",        StemMatch::kContained},
    {"NborQoffset",            "NborQoffset_0",            StemMatch::kContained},
    {"UL_RetransmitRatio",     "UL_RetransmitRatio_1",     StemMatch::kContained},
    {"UL_RLCMode",             "UL_RLCMode_1",             StemMatch::kContained},
    {"RLC_ULThroughput",       "RLC_ULThroughput_1",       StemMatch::kContained},
    {"RLC_DLThroughput",       "RLC_DLThroughput_1",       StemMatch::kContained},
    {"PDCP_ULThroughput",      "PDCP_ULThroughput_5",      StemMatch::kContained},
    {"PDCP_DLThroughput",      "PDCP_DLThroughput_5",      StemMatch::kContained},
    {"SYNC_DL_Scan",           "SYNC_DL_Scan_1",           StemMatch::kContained},
    {"DwPCH_RSCP_Scan",        "DwPCH_RSCP_Scan_1",        StemMatch::kContained},
    {"DwPCH_CIR_Scan",         "DwPCH_CIR_Scan_1",         StemMatch::kContained},
    {"DwPCH_ISCP_Scan",        "DwPCH_ISCP_Scan_1",        StemMatch::kContained},
    {"DwPCH_EcIo_Scan",        "DwPCH_EcIo_Scan_1",        StemMatch::kContained},
    {"CellParameterID_Scan",   "CellParameterID_Scan_1",   StemMatch::kContained},
    {"PCCPCH_RSCP_Scan",       "PCCPCH_RSCP_Scan_1",       StemMatch::kContained},
    {"PCCPCH_ISCP_Scan",       "PCCPCH_ISCP_Scan_1",       StemMatch::kContained},
    {"PCCPCH_CIR_Scan",        "PCCPCH_CIR_Scan_1",        StemMatch::kContained},
    {"PCCPCH_SIR_Scan",        "PCCPCH_SIR_Scan_1",        StemMatch::kContained},
    {"PCCPCH_EcIo_Scan",       "PCCPCH_EcIo_Scan_1",       StemMatch::kContained},
    {"UARFCN_RSSI_Scan",       "UARFCN_RSSI_Scan_1",       StemMatch::kContained},
    {"RSSI_TS0_Scan",          "RSSI_TS0_Scan_1",          StemMatch::kContained},
    {"RSSI_DwPTS_Scan",        "RSSI_DwPTS_Scan_1",        StemMatch::kContained},
    {"RSSI_TS1_Scan",          "RSSI_TS1_Scan_1",          StemMatch::kContained},
    {"RSSI_TS2_Scan",          "RSSI_TS2_Scan_1",          StemMatch::kContained},
    {"RSSI_TS3_Scan",          "RSSI_TS3_Scan_1",          StemMatch::kContained},
    {"RSSI_TS4_Scan",          "RSSI_TS4_Scan_1",          StemMatch::kContained},
    {"RSSI_TS5_Scan",          "RSSI_TS5_Scan_1",          StemMatch::kContained},
    {"RSSI_TS6_Scan",          "RSSI_TS6_Scan_1",          StemMatch::kContained},
    {"RSSI_Frame_Scan",        "RSSI_Frame_Scan_1",        StemMatch::kContained},
    {"DwPCH_Timing_Scan",      "DwPCH_Timing_Scan_1",      StemMatch::kContained},
    {"PCCPCH_Timing_Scan",     "PCCPCH_Timing_Scan_1",     StemMatch::kContained},
    {"NborBCCH",               "NborBCCH_0",               StemMatch::kContained},
    {"NborBSIC",               "NborBSIC_0",               StemMatch::kContained},
    {"NborRxLev",              "NborRxLev_0",              StemMatch::kContained},
    {"NborC1",                 "NborC1_0",                 StemMatch::kContained},
    {"NborC2",                 "NborC2_0",                 StemMatch::kContained},
    {"NborC31",                "NborC31_0",                StemMatch::kContained},
    {"NborC32",                "NborC32_0",                StemMatch::kContained},
    {"NborMsTxPowerMaxCCH",    "NborMsTxPowerMaxCCH_0",    StemMatch::kContained},
    {"NborCR_Hyst",            "NborCR_Hyst_0",            StemMatch::kContained},
    {"NborCR_Offset",          "NborCR_Offset_0",          StemMatch::kContained},
    {"NborPenalty_time",       "NborPenalty_time_0",       StemMatch::kContained},
    {"NborTemp_offset",        "NborTemp_offset_0",        StemMatch::kContained},
    {"GSM_NC_CI",              "GSM_NC_CI_0",              StemMatch::kContained},
    {"GSM_NC_LAC",             "GSM_NC_LAC_0",             StemMatch::kContained},
    {"CCTrchDirection",        "CCTrchDirection_1",        StemMatch::kContained},
    {"NborRxLevAccessMin",     "NborRxLevAccessMin_0",     StemMatch::kContained},
    {"DDI",                    "DDI_0_0",                  StemMatch::kEquals},
    {"MAC_D_PDU_Num",          "MAC_D_PDU_Num_0_0",        StemMatch::kContained},
    {"MAC_ES_PDU_TSN",         "MAC_ES_PDU_TSN_0_0",       StemMatch::kContained},
    {"SNPL",                   "SNPL_0",                   StemMatch::kEquals},
    {"TEBS",                   "TEBS_0",                   StemMatch::kEquals},
    {"UPH",                    "UPH_0",                    StemMatch::kEquals},
    {"HLBS",                   "HLBS_0",                   StemMatch::kEquals},
    {"HLID",                   "HLID_0",                   StemMatch::kEquals},
    {"E_AGCH_Sub_sfn",         "E_AGCH_Sub_sfn_0",         StemMatch::kEquals},
    {"PRRI",                   "PRRI_0",                   StemMatch::kEquals},
    {"CRRI",                   "CRRI_0",                   StemMatch::kEquals},
    {"TRRI",                   "TRRI_0",                   StemMatch::kEquals},
    {"RDI",                    "RDI_0",                    StemMatch::kEquals},
    {"ENI",                    "ENI_0",                    StemMatch::kEquals},
    {"ECSN",                   "ECSN_0",                   StemMatch::kEquals},
    {"SF",                     "SF_0",                     StemMatch::kEquals},
    {"E_HICH_Recv_Subsfn",     "E_HICH_Recv_Subsfn_0",     StemMatch::kEquals},
    {"E_PUCH_Send_Subsfn",     "E_PUCH_Send_Subsfn_0",     StemMatch::kEquals},
    {"E_HICH_Result",          "E_HICH_Result_0",          StemMatch::kEquals},
    {"E_HICH_Sequence_Index",  "E_HICH_Sequence_Index_0",  StemMatch::kEquals},
    {"TPC_SS_Sequence_Index",  "TPC_SS_Sequence_Index_0",  StemMatch::kEquals},
    {"EUUCH_Sub_Sfn",          "EUUCH_Sub_Sfn_0",          StemMatch::kEquals},
    {"EDCH_TB_Size",           "EDCH_TB_Size_0",           StemMatch::kEquals},
    {"EUCCH_Modulation_Type",  "EUCCH_Modulation_Type_0",  StemMatch::kEquals},
    {"RSN",                    "RSN_0",                    StemMatch::kEquals},
    {"HARQ_ID",                "HARQ_ID_0",                StemMatch::kEquals},
    {"MAC_E_PDU_Send_Subsfn",  "MAC_E_PDU_Send_Subsfn_0",  StemMatch::kEquals},
    {"MAC_ES_Num",             "MAC_ES_Num_0",             StemMatch::kEquals},
    {"DDIO",                   "DDIO_0",                   StemMatch::kEquals},
    {"SI_Indicator",           "SI_Indicator_0",           StemMatch::kEquals},
    {"HS_SCCH_Subsfn",         "HS_SCCH_Subsfn_0",         StemMatch::kEquals},
    {"HS_SCCH_Codeused",       "HS_SCCH_Codeused_0",       StemMatch::kEquals},
    {"HS_PDSCH_Codeset",       "HS_PDSCH_Codeset_0",       StemMatch::kEquals},
    {"HS_SCCH_Modulation",     "HS_SCCH_Modulation_0",     StemMatch::kEquals},
    {"HS_SCCH_TSBitmap",       "HS_SCCH_TSBitmap_0",       StemMatch::kEquals},
    {"HS_SCCH_TBSize",         "HS_SCCH_TBSize_0",         StemMatch::kEquals},
    {"HS_SCCH_HARQ_ProcessID", "HS_SCCH_HARQ_ProcessID_0", StemMatch::kEquals},
    {"HS_SCCH_HARQ_IRVersion", "HS_SCCH_HARQ_IRVersion_0", StemMatch::kEquals},
    {"HS_SCCH_HARQ_NewdataID", "HS_SCCH_HARQ_NewdataID_0", StemMatch::kEquals},
    {"HS_PDSCHDATA_Subsfn",    "HS_PDSCHDATA_Subsfn_0",    StemMatch::kEquals},
    {"HS_PDSCHDATA_PDUSize",   "HS_PDSCHDATA_PDUSize_0",   StemMatch::kEquals},
    {"HS_PDSCHDATA_QueueID",   "HS_PDSCHDATA_QueueID_0",   StemMatch::kEquals},
    {"HS_PDSCHDATA_TSN",       "HS_PDSCHDATA_TSN_0",       StemMatch::kEquals},
});
// clang-format on

constexpr bool EveryStemStandsOnce() {
  for (std::size_t at = 0; at < kIeStems.size(); ++at) {
    for (std::size_t other = 0; other < at; ++other) {
      if (kIeStems[at].stem == kIeStems[other].stem) return false;
    }
  }
  return true;
}
static_assert(EveryStemStandsOnce());

}  // namespace loom
