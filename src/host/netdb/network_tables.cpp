#include "host/netdb/network_tables.h"

#include "components/lte_frequency.h"

namespace loom {
namespace {

// A serving cell is known by its cell key. TD-SCDMA: the cell identity (28 bits of it are RNC id and cell id, 3GPP TS
// 25.331, 10.3.2.2), or LAC and cell id of 16 bits each. LTE: physical cell id and downlink frequency in whole MHz,
// which an EARFCN of a known band gives as well.
std::vector<std::string> TdCellKeys() { return {"CI", "(LAC << 16) | (CI & 65535)", "(RNCID << 16) | (CI & 65535)"}; }

std::vector<std::string> LteCellKeys() {
  std::string of_earfcn = "(PCI << 16) | CASE";
  for (const EarfcnRange& band : kEarfcnRanges) {
    const std::string first = std::to_string(band.first);
    of_earfcn += " WHEN EARFCN BETWEEN " + first + " AND " + std::to_string(band.last) + " THEN (EARFCN - " + first +
                 ") / 10 + " + std::to_string(band.first_mhz);
  }
  return {"(PCI << 16) | CAST(Frequency AS INTEGER)", of_earfcn + " END"};
}

// The 28 bits of a TD-SCDMA cell identity: a cell id of 16 bits stands beside its RNC id, or alone.
#define TD_CELL_IDENTITY "CASE WHEN CI BETWEEN 0 AND 65535 THEN (ifnull(RNCID, 0) << 16) | CI ELSE CI END"
// What tells LTE cells apart that have no identity of their own, be it that they have none or one of 8 bits, which is
// that of a cell of its eNodeB (3GPP TS 36.413), without the eNodeB.
#define LTE_CELL_PLACE                                                                      \
  "CASE WHEN CI >= 256 OR (CI IS NOT NULL AND eNodeBID IS NOT NULL) THEN '' ELSE "          \
  "ifnull(PCI, '') || ' ' || ifnull(EARFCN, '') || ' ' || ifnull(Frequency, '') || ' ' || " \
  "ifnull(Longitude, '') || ' ' || ifnull(Latitude, '') || ' ' || iif(CI IS NULL, ifnull(CellName, ''), '') END"

// clang-format off
constexpr NetworkTable kTables[] = {
    {"tbl_RNC",
     "MCC INTEGER, MNC INTEGER, RNCID INTEGER",
     "MCC, MNC, RNCID", nullptr},
    {"tbl_NodeB",
     "MCC INTEGER, MNC INTEGER, RNCID INTEGER, NodeBID INTEGER",
     "MCC, MNC, RNCID, NodeBID", nullptr},
    {"tbl_Cell",
     "MCC INTEGER, MNC INTEGER, RNCID INTEGER, LAC INTEGER, CI INTEGER, CellName TEXT, SiteName TEXT, "
     "Longitude REAL, Latitude REAL, UARFCN INTEGER, CellParameterID INTEGER",
     "ifnull(MCC, -1), ifnull(MNC, -1), " TD_CELL_IDENTITY, TdCellKeys},
    {"tbl_Cell_GSM",
     "MCC INTEGER, MNC INTEGER, LAC INTEGER, CI INTEGER, CellName TEXT, SiteName TEXT, "
     "Longitude REAL, Latitude REAL, BCCH INTEGER, BSIC INTEGER",
     "ifnull(MCC, -1), ifnull(MNC, -1), LAC, CI", nullptr},
    {"tbl_Cell_LTE",
     "MCC INTEGER, MNC INTEGER, eNodeBID INTEGER, CI INTEGER, CellName TEXT, SiteName TEXT, "
     "Longitude REAL, Latitude REAL, PCI INTEGER, EARFCN INTEGER, Frequency REAL",
     "ifnull(MCC, -1), ifnull(MNC, -1), CASE WHEN CI >= 256 THEN -1 ELSE ifnull(eNodeBID, -1) END, "
     "ifnull(CI, -1), " LTE_CELL_PLACE, LteCellKeys},
    {"tbl_AdjCell",
     "ServCellMCC INTEGER, ServCellMNC INTEGER, ServCellCI INTEGER, "
     "NborCellMCC INTEGER, NborCellMNC INTEGER, NborCellCI INTEGER",
     "ServCellMCC, ServCellMNC, ServCellCI, NborCellMCC, NborCellMNC, NborCellCI", nullptr},
    {"tbl_AdjCell_GSM",
     "ServCellMCC INTEGER, ServCellMNC INTEGER, ServCellLAC INTEGER, ServCellCI INTEGER, "
     "NborCellMCC INTEGER, NborCellMNC INTEGER, NborCellLAC INTEGER, NborCellCI INTEGER",
     "ServCellMCC, ServCellMNC, ifnull(ServCellLAC, -1), ServCellCI, NborCellMCC, NborCellMNC, NborCellLAC, NborCellCI",
     nullptr},
    {"tbl_CustomCPIGroup",
     "CustomCPIGroupID INTEGER, CellParameterID INTEGER",
     "CellParameterID", nullptr},
    {"tbl_NetDataConfig",
     "Name TEXT, Value",
     "Name", nullptr},
};
// clang-format on

#undef TD_CELL_IDENTITY
#undef LTE_CELL_PLACE

}  // namespace

std::span<const NetworkTable> NetworkTables() { return kTables; }

const NetworkTable* FindNetworkTable(const CString& name) {
  for (const NetworkTable& table : kTables) {
    if (name.view() == table.name) return &table;
  }
  return nullptr;
}

}  // namespace loom
