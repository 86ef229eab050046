#!/usr/bin/env python3
"""Turns a tab-separated drive log of a phone into the JSON lines of which `qloom log make` makes a log.

    tab_drive_log_to_jsonl.py DRIVE.txt > DRIVE.jsonl

The first line names the columns. Used are Timestamp (yyyy.mm.dd_hh.mm.ss), Longitude, Latitude, Node, CellID, LAC,
NetworkTech (2G, 3G, 4G, 5G), Level, Qual, SNR, CQI, LTERSSI, ARFCN and PSC; a missing value is empty or "-".

4G rows become records of an LTE handset (model code 14, device 1) with serving cell and measurements. 2G rows become
records in GSM mode of a dual-mode handset (model code 7, device 2). 3G rows are UMTS FDD, for which logs have no blocks:
they become header-only records (kind 10, device 3) with time, position and cell identity as text. Other rows are
skipped. The log's day is that of the first row; rows of later days count on beyond 24 hours. How many rows became what is
told on standard error.
"""

import collections
import datetime
import json
import sys

TIME_LAYOUT = "%Y.%m.%d_%H.%M.%S"


def number(row, column):
    """The whole number of a cell, None where there is none."""
    try:
        return int(float(row.get(column, "")))
    except (ValueError, OverflowError):
        return None


def within(value, least, greatest):
    return value is not None and least <= value <= greatest


def short(value):
    """A signed value as the 16 bits of an unsigned field."""
    return value & 0xFFFF


def serving_cell(row):
    """Members of an LTE serving cell that the row knows. In 4G rows PSC is the physical cell id."""
    cell = {}
    lac, node, cell_id = number(row, "LAC"), number(row, "Node"), number(row, "CellID")
    if within(lac, 0, 0xFFFF) and within(node, 0, 0xFFFFF) and within(cell_id, 0, 0xFF):
        eci = node << 8 | cell_id
        plmn = row.get("Operator", "")
        digits = [int(digit) for digit in plmn] if plmn.isdigit() and len(plmn) in (5, 6) else [0] * 5
        mnc3 = digits[5] if len(digits) == 6 else 0xF
        cell["identity"] = [digits[1] << 4 | digits[0], mnc3 << 4 | digits[2], digits[4] << 4 | digits[3],
                            lac >> 8, lac & 0xFF, *eci.to_bytes(4, "big")]
        cell["ie33345"] = eci
    if within(number(row, "ARFCN"), 0, 0xFFFD):
        cell["earfcn"] = number(row, "ARFCN")
    if within(number(row, "PSC"), 0, 503):
        cell["physical_cell_id"] = number(row, "PSC")
    if within(number(row, "Level"), -141, -44):
        cell["ie33364"] = short(number(row, "Level"))
    if within(number(row, "Qual"), -20, -3):
        cell["ie33365"] = short(number(row, "Qual"))
    return cell


def lte_record(row):
    block = {"serving": serving_cell(row)}
    measurements = {}
    if within(number(row, "Level"), -141, -44):
        measurements["ie33375"] = short(number(row, "Level"))
    if within(number(row, "Qual"), -20, -3):
        measurements["ie33376"] = short(number(row, "Qual"))
    if within(number(row, "LTERSSI"), -120, -10):
        measurements["ie33377"] = short(number(row, "LTERSSI"))
    if within(number(row, "CQI"), 0, 15):
        measurements["ie33378"] = number(row, "CQI")
    if measurements:
        block["cells"] = measurements
    return {"kind": 1, "device_number": 1, "model_code": 14, "lte_measurements": block}


def gsm_record(row):
    record = {"kind": 1, "device_number": 2, "model_code": 7, "network_mode": 3}
    cell = {}
    if within(number(row, "CellID"), 0, 0xFFFD):
        cell["ie31706"] = number(row, "CellID")
    if within(number(row, "ARFCN"), 0, 1023):
        cell["ie31701"] = number(row, "ARFCN")
    if within(number(row, "PSC"), 0, 63):
        cell["ie31705"] = number(row, "PSC")
    if within(number(row, "Level"), -110, -47):
        cell["rx_lev"] = number(row, "Level") + 110
    if cell:
        record["gsm_serving_cell"] = cell
    if within(number(row, "LAC"), 0, 0x7FFF):
        record["serving_cell"] = {"lac": number(row, "LAC")}
    return record


def umts_record(row):
    known = [f"{column} {row[column]}" for column in ("LAC", "Node", "CellID", "ARFCN", "PSC", "Level")
             if number(row, column) is not None]
    return {"kind": 10, "device_number": 3, "text": "UMTS " + ", ".join(known)}


RECORDS = {"4G": lte_record, "2G": gsm_record, "3G": umts_record}


def convert(lines, out):
    """Writes the header and one record per row; returns the counts by what became of the rows."""
    counts = collections.Counter()
    columns = next(lines).rstrip("\r\n").split("\t")
    if "Timestamp" not in columns or "NetworkTech" not in columns:
        raise ValueError("line 1 does not name the columns Timestamp and NetworkTech")
    midnight = None
    for line in lines:
        row = dict(zip(columns, line.rstrip("\r\n").split("\t")))
        make = RECORDS.get(row.get("NetworkTech"))
        if make is None:
            counts[f"skipped, network '{row.get('NetworkTech', '')}'"] += 1
            continue
        try:
            time = datetime.datetime.strptime(row["Timestamp"], TIME_LAYOUT)
        except ValueError:
            counts["skipped, no time"] += 1
            continue
        if midnight is None:
            midnight = time.replace(hour=0, minute=0, second=0)
            header = {"kind": "store", "version": 160, "test_type": 1, "date": midnight.strftime("%Y-%m-%d")}
            print(json.dumps(header), file=out)
        if time < midnight:
            counts["skipped, before the first day"] += 1
            continue
        counts[row["NetworkTech"]] += 1
        record = {"record_id": sum(counts[tech] for tech in RECORDS), "time": (time - midnight).total_seconds()}
        try:
            record["longitude"], record["latitude"] = float(row["Longitude"]), float(row["Latitude"])
        except (KeyError, ValueError):
            counts["of them without position"] += 1
            record.pop("longitude", None)
        record.update(make(row))
        print(json.dumps(record), file=out)
    return counts


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        with open(sys.argv[1], encoding="utf-8", newline="") as lines:
            counts = convert(lines, sys.stdout)
    except (OSError, ValueError, StopIteration) as error:
        print(f"{sys.argv[1]}: {error or 'is empty'}", file=sys.stderr)
        return 1
    for what, count in counts.items():
        print(f"{what}: {count}", file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())
