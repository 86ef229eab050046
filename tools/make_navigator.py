#!/usr/bin/env python3
"""Writes config/Navigator.xml from config/ie_catalogue.tsv and the layout below.

    tools/make_navigator.py            writes the file
    tools/make_navigator.py --check    fails when the file is not what would be written

A run of ids with running numbers becomes a group that holds the run's elements; its tag is the run's stem, by which the
selection of a log import and the converters know it. Unnamed runs of 20 ids or more fold into a group of their own
where the readers look deep enough. Of a run of more than 256 ids only the first one is listed: it stands for the run
when elements are selected.

What rows of every protocol hold is listed under each of them and among the independent elements as well: the text
import, which asks those first, takes none of it for a sign of a protocol.
"""
import pathlib
import re
import sys

CONFIG = pathlib.Path(__file__).resolve().parent.parent / "config"
LONGEST_RUN = 256
SHORTEST_FOLDED_RUN = 20

# Runs whose group is not tagged with the part of the name in front of the numbers.
GROUP_TAGS = {"URAIdentity": "URAIdentities", "Nbor_ISCP": "NborISCP"}

# Runs whose elements of one number stand together: TimeslotInfo_3 holds TimeslotDirection_3 and so on.
TRANSPOSED = {
    "TimeslotInfo": ["TimeslotDirection", "MidambleConfiguration", "MidambleShift"],
    "DPCHInfo": ["TimeslotNumber", "ChannelizationCode"],
}

# Elements and groups ticked at first.
TICKED = set(
    """
    NetworkMode RATIndicate ServCellDistance
    CellParameterID UARFCN CellKey LAC Best_CellParameterID Best_UARFCN Best_PCCPCH_RSCP URAIdentities
    URAIdentity_Num TimeslotISCP_Num Timeslot_DPCH_RSCP_Num
    PCCPCH_RSCP PCCPCH_CIR TimeslotISCP DPCH_RSCP Timeslot_DPCH_RSCP Timeslot_CIR
    TimeslotDirection TimeslotNumber ChannelizationCode DPCH_Num
    NborCell_Num NborUARFCN NborCellParameterID NborPCCPCHRSCP NborCarrierRSSI NborISCP
    TrCH_Num TrCHBLER TrCHErrorBlockNum_1 TrCHBlockNum_1 TrCHBLER_Total TrCHBLER_Max
    RLC_Num RLC_ULThroughput RLC_ULThroughput_Sum RLC_DLThroughput RLC_DLThroughput_Sum
    PDCP_Num PDCP_ULThroughput PDCP_ULThroughput_Sum PDCP_DLThroughput PDCP_DLThroughput_Sum
    UARFCN_Scan SYNC_DL_Scan DwPCH_RSCP_Scan DwPCH_CIR_Scan CellParameterID_Scan PCCPCH_RSCP_Scan PCCPCH_CIR_Scan
    PCCPCH_ISCP_Scan PCCPCH_EcIo_Scan UARFCN_RSSI_Scan RSSI_TS0_Scan RSSI_DwPTS_Scan RSSI_Frame_Scan
    GSM_LAC RxLev C2 GSM_NC_LAC GSM_NC_CI NborBCCH NborBSIC NborRxLev NborC1 NborC2
    LTE_ServCellDistance LTE_ServCellIdentity LTE_DLFrequency LTE_PCI LTE_CellKey PBCH_RSRP PBCH_RSRQ
    LTE_NborFrequency LTE_NborPCI LTE_NborRSRP LTE_NborRSRQ Cell_BCH_RP Cell_BCH_RQ
    """.split()
)

ROOT, TYPE, ITEM = "NAVIGATORPARAMROOT", "NAVIGATORPARAMTYPE", "NAVIGATORPARAMITEM"

# Group -> ids, in the order of the tree. A group without a tag leaves its elements on the level above.
RECORD = {"Record": [(1, 1), (3, 9), (26771, 26771)]}
SIGNALLING = {"Layer3_And_Events": [(10, 10), (20, 20), (33, 39), (32284, 32284)]}
DATA_SERVICES = {
    "Data_Service": [(2408, 2435)],
    "Data_Test": [(21265, 21324)],
}
OF_EVERY_PROTOCOL = RECORD | SIGNALLING | DATA_SERVICES
TD_SCDMA = {
    "Record": RECORD["Record"] + [(26770, 26770), (2387, 2387)],
    "Serving_Cell": [(140, 175), (26765, 26769), (5260, 5261), (5403, 5403)],
    "Timeslots": [(176, 197)],
    "Serving_Cell_Measurements": [(498, 519), (5406, 5439)],
    "Neighbour_Cells": [(1108, 1588)],
    "Code_Channels": [(198, 198), (297, 488)],
    "CCTrCHs": [(199, 199), (265, 296)],
    "Transport_Channels": [(200, 200), (936, 1067)],
    "RLC_Bearers": [(489, 491), (1589, 1882)],
    "PDCP_Bearers": [(492, 492), (1947, 1994)],
    "Code_Block": [(493, 493), (1995, 2378)],
    "Physical_Channels": [(495, 497), (3688, 4609), (31562, 31562)],
    "Samples": [(5065, 5197), (5633, 5929)],
    "HS_SCCH": [(21355, 24955)],
    "HS_PDSCHDATA": [(24956, 26556)],
    "System_Information": [(21325, 21354), (26772, 31325)],
    "Cell_List": [(31362, 31561)],
    **DATA_SERVICES,
    "Other_Values": [(4610, 4699), (5247, 5259), (5930, 21264), (26608, 26732)],
    **SIGNALLING,
}
SCANNER = {
    None: [(2436, 2467)],
    "Pilot_Measurements_Scan": [(2468, 2499), (2532, 2709)],
    "PCCPCH_Measurements_Scan": [(2500, 2531), (2710, 2925)],
    "RSSI_Measurements_Scan": [(3610, 3685), (2926, 3609)],
    "Spectrum_Scan": [(3686, 3687)],
}
GSM = {
    "GSM_Serving_Cell": [(31697, 31722), (31735, 31736), (32074, 32075), (32078, 32078), (32244, 32245), (32265, 32265)],
    "GSM_Dedicated_Channel": [(31723, 31732), (31930, 32038), (32076, 32077), (32201, 32201), (32264, 32264)],
    None: [(32079, 32162), (32258, 32263)],
    "TDSCDMA_Neighbour_Cells": [(32246, 32257)],
    "GPRS": [(32189, 32199), (32202, 32202)],
    "GSM_Text_Files": [(36020, 36023)],
    "GSM_Other_Values": [(32168, 32170), (32203, 32220), (32267, 32273)],
    **OF_EVERY_PROTOCOL,
}
LTE = {
    "LTE_Serving_Cell": [(33345, 33373), (2382, 2382)],
    "LTE_Measurements": [(33374, 33426), (33650, 33664), (33667, 33670)],
    "LTE_Neighbour_Cells": [(33706, 34153)],
    "LTE_Configuration": [(33428, 33522), (33671, 33697)],
    "LTE_Channel_Statistics": [(34570, 34690)],
    "LTE_Channels": [(34160, 34519)],
    "LTE_Text_Files": [(36040, 36047)],
    "LTE_Scanner": [(34691, 35138)],
    **OF_EVERY_PROTOCOL,
}
# Time and place first: the writer of text files adds them by itself.
INDEPENDENT = {"Independent_Parameters": [(2, 2), (2379, 2381), (2386, 2386)], "Text_Files": [(36000, 36009)]} | OF_EVERY_PROTOCOL


class Run:
    """One line of the catalogue."""

    def __init__(self, line):
        first, count, self.pattern = line.split("\t")[:3]
        self.first, self.count = int(first), int(count)
        self.named = "{id}" not in self.pattern
        self.stem = self.pattern.split("_{")[0]

    def name(self, offset):
        wrap = re.search(r"\{(\d+):(\d+)\}", self.pattern)
        if not wrap:
            number = lambda m: str(self.first + offset if m[1] == "id" else int(m[1]) + offset)
            return re.sub(r"\{(\w+)\}", number, self.pattern)
        outer, inner = divmod(offset, int(wrap[2]))
        text = self.pattern.replace(wrap[0], str(int(wrap[1]) + inner))
        return re.sub(r"\{(\d+)\}", lambda m: str(int(m[1]) + outer), text)

    def names(self):
        return [self.name(i) for i in range(self.count if self.count <= LONGEST_RUN else 1)]


class Writer:
    def __init__(self, runs):
        self.runs = runs
        self.by_stem = {run.stem: run for run in runs}
        self.listed = set()
        self.lines = []
        self.depth = 0
        self.folds = True

    def open(self, tag, kind, check=False, value=None):
        value = f' value="{value}"' if value else ""
        self.lines.append("  " * self.depth + f'<{tag} type="{kind}"{value}{check_attribute(check)}>')
        self.depth += 1

    def close(self, tag):
        self.depth -= 1
        self.lines.append("  " * self.depth + f"</{tag}>")

    def item(self, name, check):
        self.lines.append("  " * self.depth + f'<{name} type="{ITEM}"{check_attribute(check)}/>')

    def groups(self, layout):
        for tag, spans in layout.items():
            if tag:
                self.open(tag, TYPE)
            for first, last in spans:
                self.span(first, last)
            if tag:
                self.close(tag)

    def span(self, first, last):
        inside = [run for run in self.runs if run.first <= last and run.first + run.count > first]
        if not inside:
            raise SystemExit(f"no element from {first} to {last}")
        for run in inside:
            if run.first < first or run.first + run.count - 1 > last:
                raise SystemExit(f"{first} to {last} cuts the run of {run.first}")
            self.listed.add(run.first)
            self.run(run)

    def run(self, run):
        for tag, stems in TRANSPOSED.items():
            if run.stem in stems:
                if run.stem == stems[0]:
                    self.transposed(tag, [self.by_stem[stem] for stem in stems])
                return
        if run.count == 1 or (
            not run.named and not (self.folds and run.count >= SHORTEST_FOLDED_RUN)
        ):
            for name in run.names():
                self.item(name, name in TICKED)
            return
        last = run.first + run.count - 1
        tag = GROUP_TAGS.get(run.stem, run.stem) if run.named else f"IE_{run.first}_to_IE_{last}"
        ticked = tag in TICKED
        self.open(tag, TYPE, ticked)
        for name in run.names():
            self.item(name, ticked or name in TICKED)
        self.close(tag)

    def transposed(self, tag, runs):
        for i in range(runs[0].count):
            self.open(f"{tag}_{i}", TYPE)
            for run in runs:
                self.item(run.name(i), run.stem in TICKED)
            self.close(f"{tag}_{i}")


def check_attribute(check):
    return ' check="true"' if check else ""


def make_document():
    text = (CONFIG / "ie_catalogue.tsv").read_text(encoding="utf-8")
    writer = Writer([Run(line) for line in text.splitlines() if line and not line.startswith("#")])
    writer.open("Navigator", "NAVIGATORSTREAM")
    for protocol, layout in (("TD-SCDMA", TD_SCDMA), ("GSM", GSM), ("LTE", LTE)):
        writer.folds = protocol != "GSM"  # whose items are at most one group deep
        writer.open("PROTOCOL", "NAVIGATORPROTOCOL", value=protocol)
        writer.open("Downlink_Measurements", ROOT)
        writer.groups(layout)
        writer.close("Downlink_Measurements")
        if protocol == "TD-SCDMA":
            writer.groups(SCANNER)
        writer.close("PROTOCOL")
    writer.folds = False
    for tag, kind, layout in (("Independent", ROOT, INDEPENDENT), ("Events", "NAVIGATOREVENTSROOT", SIGNALLING)):
        writer.open(tag, kind)
        writer.groups(layout)
        writer.close(tag)
    writer.close("Navigator")
    missing = [run.first for run in writer.runs if run.first not in writer.listed]
    if missing:
        raise SystemExit(f"without a place in the layout: {missing}")
    return '<?xml version="1.0" encoding="UTF-8"?>\n' + "\n".join(writer.lines) + "\n"


def main():
    target = CONFIG / "Navigator.xml"
    document = make_document()
    if "--check" in sys.argv[1:]:
        if target.read_text(encoding="utf-8") != document:
            raise SystemExit(f"{target.name} is not what the catalogue and the layout give")
        return
    target.write_text(document, encoding="utf-8")


if __name__ == "__main__":
    main()
