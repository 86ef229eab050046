#!/usr/bin/env python3
"""Writes recordings of an invented handset: HDLC frames with log packets, and the track of the drive.

make_recording.py FOLDER            handset_drive.qmdl and handset_drive.gpx
make_recording.py --corpus FOLDER   small inputs for the fuzz targets, one folder for each

docs/recordings.md describes the layouts. The network is the test network 001-01.
"""

import math
import pathlib
import struct
import sys

START = 1715909400.0  # 2024-05-17 01:30:00 UTC
EPOCH = 315964800  # 1980-01-06
SECONDS = 180
EARFCN = 38400
TAC = 4660
CELLS = [(101, 0x0A1B201, 0.0), (102, 0x0A1B302, 700.0), (103, 0x0A1B403, 1500.0)]  # PCI, identity, place in m


class Bits:
    """Bits of an unaligned PER message, most significant first."""

    def __init__(self):
        self.text = ""

    def put(self, value, count):
        self.text += format(value, f"0{count}b") if count else ""
        return self

    def bytes(self):
        padded = self.text + "0" * (-len(self.text) % 8)
        return bytes(int(padded[i : i + 8], 2) for i in range(0, len(padded), 8))


def checksum(data):
    crc = 0xFFFF
    for byte in data:
        crc ^= byte
        for _ in range(8):
            crc = crc >> 1 ^ (0x8408 if crc & 1 else 0)
    return struct.pack("<H", crc ^ 0xFFFF)


def frame(payload):
    escaped = bytearray()
    for byte in payload + checksum(payload):
        escaped += bytes([0x7D, byte ^ 0x20]) if byte in (0x7D, 0x7E) else bytes([byte])
    return bytes(escaped) + b"\x7e"


def stamp(time):
    ticks = (time - EPOCH) * 800
    return int(ticks) << 16 | int((ticks - int(ticks)) * 49152)


def bare(code, time, body):
    return struct.pack("<HHQ", 12 + len(body), code, stamp(time)) + body


def packet(code, time, body):
    length = 12 + len(body)
    return struct.pack("<BBH", 0x10, 0, length) + bare(code, time, body)


def wrapped(radio, payload):
    return struct.pack("<BBHI", 0x98, 1, 0, radio) + payload


# ---- Contents ----


def field(words, word, first_bit, value):
    words[word] |= value << first_bit


def raw_level(dbm, offset):
    return round((dbm + offset) * 16)


def serving_measurement(pci, rsrp, rsrq, rssi, snr):
    """B193, part 25 version 7."""
    words = [0] * 17  # from the first word of the levels
    field(words, 0, 10, raw_level(rsrp - 1.5, 180))
    field(words, 1, 12, raw_level(rsrp, 180))
    field(words, 2, 12, raw_level(rsrp, 180))
    field(words, 3, 12, raw_level(rsrq - 0.5, 30))
    field(words, 4, 0, raw_level(rsrq, 30))
    field(words, 4, 20, raw_level(rsrq, 30))
    field(words, 5, 10, raw_level(rssi - 1.5, 110))
    field(words, 5, 21, raw_level(rssi, 110))
    field(words, 6, 0, raw_level(rssi, 110))
    field(words, 12, 0, round((snr + 20) * 10))
    field(words, 12, 9, round((snr + 19) * 10))
    body = struct.pack("<IIII", EARFCN, pci | 1 << 12, 17, 0) + struct.pack("<17I", *words)
    return struct.pack("<BBH", 1, 1, 0) + struct.pack("<BBH", 25, 7, 4 + len(body)) + body


def neighbours(pci, rsrp, rsrq, cells):
    """B179 version 4."""
    head = struct.pack("<B3xB3xIHH", 4, 0, EARFCN, pci, 0)
    levels = struct.pack("<HHHH", *[raw_level(rsrp, 180)] * 2, *[raw_level(rsrq, 30)] * 2)
    body = head + levels + struct.pack("<BBH", len(cells), 0, 0)
    for cell, level, quality in cells:
        body += struct.pack("<HHHHHH", cell, *[raw_level(level, 180)] * 2, *[raw_level(quality, 30)] * 2, 0)
    return body


def serving_cell(pci, identity):
    """B0C2 version 3."""
    return struct.pack("<BHIIBBIHIHBHB", 3, pci, EARFCN, EARFCN, 100, 100, identity, TAC, 40, 1, 2, 1, 0)


def mib(pci):
    """B0C1 version 2."""
    return struct.pack("<BHIHBB", 2, pci, EARFCN, 68, 2, 100)


BCCH_DL_SCH, PCCH, DL_CCCH, DL_DCCH, UL_CCCH, UL_DCCH = 2, 5, 6, 7, 8, 9


def rrc(pci, channel, message):
    """B0C0 version 20."""
    return struct.pack("<BBBBHIHBIH", 20, 14, 0, 1, pci, EARFCN, 0, channel, 0, len(message)) + message


def nas(message):
    return bytes([1, 9, 5, 0]) + message


def measurement_report(rsrp, rsrq, cells):
    bits = Bits().put(0b00001, 5).put(0, 4).put(0, 1).put(0, 1).put(1 if cells else 0, 1)
    bits.put(0, 5).put(int(rsrp + 141), 7).put(int((rsrq + 20) * 2), 6)
    if cells:
        bits.put(0, 3).put(len(cells) - 1, 3)
        for cell, level, quality in cells:
            bits.put(0, 1).put(cell, 9).put(0b011, 3).put(int(level + 141), 7).put(int((quality + 20) * 2), 6)
    return bits.bytes()


def system_information_1(identity):
    bits = Bits().put(0b01, 2).put(0, 3).put(0, 1).put(0, 3)  # one network
    bits.put(1, 1).put(0x001, 12).put(0, 1).put(0x01, 8).put(0, 1)
    return bits.put(TAC, 16).put(identity, 28).put(0, 40).bytes()


def handover_order(pci):
    bits = Bits().put(0b00100, 5).put(0, 2).put(0, 4).put(0b010000, 6)  # mobilityControlInfo alone
    return bits.put(0, 5).put(pci, 9).put(0, 40).bytes()


def message(index, index_bits, rest=40):
    """A message of which only the type is told."""
    return Bits().put(0, 1).put(index, index_bits).put(0, rest).bytes()


# ---- The drive ----


def level_at(metres, place):
    return -70.0 - 30.0 * math.log10(1.0 + abs(metres - place) / 150.0)


def place_at(second):
    """Longitude, latitude and metres along the way."""
    metres = second * 9.0
    return 116.3 + metres / 85000.0, 39.9 + metres / 400000.0, metres


class Recording:
    def __init__(self):
        self.data = bytearray()

    def put(self, code, time, body):
        self.data += frame(packet(code, START + time, body))

    def other(self, payload):
        self.data += frame(payload)


def connection(recording, time, pci):
    for offset, channel, body in [
        (0.00, UL_CCCH, message(1, 1)),
        (0.03, DL_CCCH, message(3, 2)),
        (0.05, UL_DCCH, message(4, 4)),
        (0.20, DL_DCCH, message(6, 4)),
        (0.22, UL_DCCH, message(5, 4)),
        (0.30, DL_DCCH, message(4, 4)),
        (0.32, UL_DCCH, message(2, 4)),
    ]:
        recording.put(0xB0C0, time + offset, rrc(pci, channel, body))


def drive():
    recording = Recording()
    recording.other(b"\x79" + b"debug text of the baseband, which is passed over: }~" * 2)
    serving = 0
    pci, identity, _ = CELLS[serving]
    recording.put(0xB0C1, 0.0, mib(pci))
    recording.put(0xB0C2, 0.01, serving_cell(pci, identity))
    recording.put(0xB0C0, 0.02, rrc(pci, BCCH_DL_SCH, system_information_1(identity)))
    connection(recording, 0.1, pci)
    recording.put(0xB0ED, 0.60, nas(bytes.fromhex("0741710bf600f110000201e1e2e3e4")))
    recording.put(0xB0EC, 0.90, nas(bytes.fromhex("074202")))
    recording.put(0x1234, 0.95, b"a code that nobody reads")
    for half_second in range(2, SECONDS * 2):
        time = half_second / 2.0
        metres = place_at(time)[2]
        levels = [(cell, level_at(metres, place) + 3.0 * math.sin(time * 0.7 + cell)) for cell, _, place in CELLS]
        pci, rsrp = levels[serving]
        rsrq = max(-19.0, -4.0 - (-70.0 - rsrp) * 0.2)
        rssi = rsrp - rsrq + 20.0
        recording.put(0xB193, time, serving_measurement(pci, rsrp, rsrq, rssi, max(-3.0, rsrp + 110.0) / 2))
        others = sorted((c for c in levels if c[0] != pci), key=lambda c: -c[1])
        cells = [(cell, level, max(-19.0, -4.0 - (-70.0 - level) * 0.25)) for cell, level in others]
        if half_second % 4 == 0:
            recording.put(0xB179, time + 0.01, neighbours(pci, rsrp, rsrq, cells))
        best, best_level, _ = cells[0]
        if best_level > rsrp + 3.0:
            recording.put(0xB0C0, time + 0.05, rrc(pci, UL_DCCH, measurement_report(rsrp, rsrq, cells)))
            recording.put(0xB0C0, time + 0.12, rrc(pci, DL_DCCH, handover_order(best)))
            serving = next(i for i, c in enumerate(CELLS) if c[0] == best)
            pci, identity, _ = CELLS[serving]
            recording.put(0xB0C0, time + 0.16, rrc(pci, UL_DCCH, message(2, 4)))
            recording.put(0xB0C1, time + 0.20, mib(pci))
            recording.put(0xB0C2, time + 0.21, serving_cell(pci, identity))
        if half_second == 100:
            recording.data += frame(packet(0xB193, START + time, b"damaged"))[:-3] + b"..\x7e"
    recording.put(0xB0C0, SECONDS, rrc(CELLS[serving][0], DL_DCCH, message(5, 4)))
    recording.put(0xB0C0, SECONDS + 1, rrc(CELLS[serving][0], PCCH, message(0, 0)))
    return bytes(recording.data)


def iso(time):
    seconds = int(time) % 86400
    return f"2024-05-17T{seconds // 3600:02d}:{seconds // 60 % 60:02d}:{seconds % 60:02d}Z"


def track():
    lines = ['<?xml version="1.0" encoding="UTF-8"?>', '<gpx version="1.1" creator="make_recording.py">', "<trk><trkseg>"]
    for second in range(0, SECONDS + 1, 5):
        longitude, latitude, _ = place_at(second)
        lines.append(f'<trkpt lat="{latitude:.6f}" lon="{longitude:.6f}"><time>{iso(START + second)}</time></trkpt>')
    return "\n".join(lines + ["</trkseg></trk>", "</gpx>", ""]).encode()


# ---- Inputs of the fuzz targets ----


def gsmtap(kind, sub_type, arfcn, content):
    return struct.pack(">BBBBHbbIBBBB", 2, 4, kind, 0, arfcn, 0, 0, 0, sub_type, 0, 0, 0) + content


def datagram(payload):
    udp = struct.pack(">HHHH", 13337, 4729, 8 + len(payload), 0) + payload
    return struct.pack(">BBHHHBBHII", 0x45, 0, 20 + len(udp), 0, 0, 64, 17, 0, 0x7F000001, 0x7F000001) + udp


def pcap(packets, link=228):
    data = struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, link)
    for i, content in enumerate(packets):
        data += struct.pack("<IIII", int(START) + i, 250000, len(content), len(content)) + content
    return data


def pcapng(packets, link=1):
    def block(kind, body):
        body += b"\0" * (-len(body) % 4)
        return struct.pack(">II", kind, 12 + len(body)) + body + struct.pack(">I", 12 + len(body))

    data = block(0x0A0D0D0A, struct.pack(">IHHq", 0x1A2B3C4D, 1, 0, -1)) + block(1, struct.pack(">HHI", link, 0, 0))
    for i, content in enumerate(packets):
        micro = int((START + i) * 1e6)
        head = struct.pack(">IIIII", 0, micro >> 32, micro & 0xFFFFFFFF, len(content), len(content))
        data += block(6, head + content)
    return data


GSM_MESSAGES = [
    (1, bytes.fromhex("49061b12340010f10000") + bytes(13)),  # SYSTEM INFORMATION TYPE 3
    (1, bytes.fromhex("59061a") + bytes.fromhex("8f3c40000002000000000000000000ff") + bytes(4)),
    (0x87, bytes.fromhex("0000010349061518200a2a" + "55" * 13)),  # Measurement Report
    (0x88, bytes.fromhex("050f01" + "0349" + "061d8e" + "11" * 15)),
    (7, bytes.fromhex("010019050841")),
]


def captured():
    packets = [gsmtap(13, 5, 0, system_information_1(CELLS[0][1])), gsmtap(13, 3, 300, measurement_report(-95, -11, [(7, -99, -14)]))]
    packets += [gsmtap(13, 1, 0, handover_order(7)), gsmtap(13, 3, 0, message(2, 4))]
    packets += [gsmtap(18, 0, 0, bytes.fromhex("0741")), gsmtap(18, 1, 0, bytes.fromhex("1700000000000742"))]
    packets += [gsmtap(1, kind, 20, content) for kind, content in GSM_MESSAGES]
    return [datagram(p) for p in packets + [gsmtap(12, 1, 0, b"\1\2"), gsmtap(2, 0, 0, b"\5\x18\1")]]


def small_frames():
    recording = Recording()
    recording.data += b"cut frame\x7e\x7e"
    recording.data += frame(wrapped(2, packet(0xB0C2, 0.0 + EPOCH, serving_cell(101, 7))))
    recording.data += frame(wrapped(1, packet(0xB193, START, serving_measurement(101, -95.0, -11.0, -65.0, 12.0))))
    recording.put(0xB0C0, 0.1, rrc(101, UL_DCCH, measurement_report(-95, -11, [(7, -99, -14)])))
    recording.put(0xB179, 0.2, neighbours(101, -95.0, -11.0, [(7, -99.0, -14.0)]))
    recording.put(0xB0EC, 0.3, nas(bytes.fromhex("074202")))
    cell = bytes(52)
    part = struct.pack("<IHH", EARFCN, 1, 0) + struct.pack("<I", 9) + cell[4:]
    recording.put(0xB195, 0.4, struct.pack("<BBH", 1, 1, 0) + struct.pack("<BBH", 31, 4, 4 + len(part)) + part)
    for code, body in [
        (0x512F, bytes.fromhex("811b17") + GSM_MESSAGES[0][1]),
        (0x512F, bytes.fromhex("041512") + GSM_MESSAGES[2][1][5:23]),
        (0x713A, bytes.fromhex("0103000000050841")),
        (0xB17F, bytes([5, 0, 0, 0]) + struct.pack("<IHH", EARFCN, 101, 0) + bytes(20)),
        (0xB19E, bytes([2, 0, 0, 0]) + struct.pack("<IHHII", EARFCN, 101, 0, 0, 0) + struct.pack("<IBBH", 300, 0, 0, 0)),
        (0xB197, bytes([2, 100, 0, 0]) + struct.pack("<II", EARFCN, 101)),
        (0x412F, b"\1\0\2\0xy"),
        (0xB821, bytes([8, 0, 0, 0])),
    ]:
        recording.put(code, 0.5, body)
    v36 = struct.pack("<IHH", EARFCN, 1, 6) + struct.pack("<III", 101 | 1 << 12, 0, 0) + bytes([0x55]) * 116
    recording.put(0xB193, 0.6, struct.pack("<BBH", 1, 1, 0) + struct.pack("<BBH", 25, 36, 4 + len(v36)) + v36)
    recording.put(0xB0C0, -4000.0, rrc(102, DL_DCCH, handover_order(7)))
    return bytes(recording.data)


NMEA = (
    b"$GPRMC,013000.00,A,3954.000,N,11618.000,E,0.0,0.0,170524,,,A*5D\r\n"
    b"$GPGGA,013001.00,3954.001,N,11618.002,E,1,08,1.0,50.0,M,0.0,M,,\r\n"
    b"$GNRMC,013002.00,V,,,,,,,170524,,,N\r\n"
)


def per_input(channel, content):
    return bytes([channel]) + content


def corpus(folder):
    inputs = {
        "recording": {
            "frames": small_frames(),
            "bare": b"".join(bare(0xB0C0, START + i, rrc(101, UL_DCCH, measurement_report(-95, -11, []))) for i in range(4)),
            "pcap": pcap(captured()),
            "ethernet": pcapng([bytes(12) + b"\x08\x00" + p for p in captured()[:4]]),
            "cooked": pcap([bytes(14) + b"\x08\x00" + p for p in captured()[:2]], 113),
        },
        "track": {"gpx": track()[:700] + b"</trkseg></trk></gpx>", "nmea": NMEA},
        "layer3": {
            "report": per_input(7, measurement_report(-95, -11, [(7, -99, -14), (8, -100, -15)])),
            "system_information": per_input(1, system_information_1(1)),
            "handover": per_input(5, handover_order(7)),
            "nas": per_input(8, bytes.fromhex("1700000000000742")),
            "gsm": per_input(9, GSM_MESSAGES[1][1][1:]),
            "gsm_report": per_input(9, GSM_MESSAGES[2][1][5:]),
        },
    }
    for target, files in inputs.items():
        (folder / target).mkdir(parents=True, exist_ok=True)
        for name, data in files.items():
            (folder / target / name).write_bytes(data)


def main():
    if len(sys.argv) == 3 and sys.argv[1] == "--corpus":
        corpus(pathlib.Path(sys.argv[2]))
    elif len(sys.argv) == 2:
        folder = pathlib.Path(sys.argv[1])
        (folder / "handset_drive.qmdl").write_bytes(drive())
        (folder / "handset_drive.gpx").write_bytes(track())
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main())
