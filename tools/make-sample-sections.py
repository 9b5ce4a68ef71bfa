#!/usr/bin/env python3
"""Writes the project's own sample multiplex as section lines.

Each line is "pid=0xPPPP tid=0xTT len=N HEX", the format sarn-dump reads.
The sections describe a small ISDB-Tb multiplex: one full-segment service
with a Ginga-NCL application and its one-seg companion. Every section carries
a correct CRC32. Run it again to regenerate data/sample-sections.txt.
"""
import sys


def crc32_mpeg2(data):
    crc = 0xFFFFFFFF
    for byte in data:
        crc ^= byte << 24
        for _ in range(8):
            crc = ((crc << 1) ^ 0x04C11DB7) if crc & 0x80000000 else crc << 1
            crc &= 0xFFFFFFFF
    return crc


def u16(v):
    return bytes([(v >> 8) & 0xFF, v & 0xFF])


def desc(tag, payload):
    return bytes([tag, len(payload)]) + payload


def loop(reserved_bits, payload):
    """A 12-bit loop length with its four upper bits set, then the loop."""
    return u16((reserved_bits << 12) | len(payload)) + payload


def long_section(table_id, extension, version, body, section_number=0, last=0, syntax=0xF0):
    length = 5 + len(body) + 4
    head = bytes([table_id, syntax | (length >> 8), length & 0xFF]) + u16(extension)
    head += bytes([0xC0 | (version << 1) | 1, section_number, last])
    data = head + body
    return data + crc32_mpeg2(data).to_bytes(4, "big")


def short_section(table_id, body):
    length = len(body) + 4
    data = bytes([table_id, 0xB0 | (length >> 8), length & 0xFF]) + body
    return data + crc32_mpeg2(data).to_bytes(4, "big")


def bcd(v):
    return ((v // 10) << 4) | (v % 10)


def mjd_utc(y, m, d, hh, mm, ss):
    # ETSI EN 300 468 Annex C
    lm = 1 if m in (1, 2) else 0
    mjd = 14956 + d + int((y - 1900 - lm) * 365.25) + int((m + 1 + lm * 12) * 30.6001)
    return u16(mjd) + bytes([bcd(hh), bcd(mm), bcd(ss)])


TSID = 0x0641
NETWORK = 0x0641
SERVICE = 0xC840
ONESEG = 0xC858
PMT_PID = 0x0100
ONESEG_PMT_PID = 0x1FC8
AIT_PID = 0x0901

sections = []


def add(pid, section):
    sections.append((pid, section))


# PAT: NIT on 0x0010, the HD service and the one-seg service.
pat = u16(0) + u16(0xE010) + u16(SERVICE) + u16(0xE000 | PMT_PID)
pat += u16(ONESEG) + u16(0xE000 | ONESEG_PMT_PID)
add(0x0000, long_section(0x00, TSID, 1, pat, syntax=0xB0))

# PMT of the HD service: video, two audios, AIT and an object carousel.
es = b""
es += bytes([0x1B]) + u16(0xE111) + loop(0xF, desc(0x52, b"\x00"))
es += bytes([0x11]) + u16(0xE112) + loop(0xF, desc(0x0A, b"por\x00") + desc(0x52, b"\x10"))
es += bytes([0x11]) + u16(0xE113) + loop(0xF, desc(0x0A, b"eng\x03") + desc(0x52, b"\x11"))
es += bytes([0x05]) + u16(0xE000 | AIT_PID) + loop(
    0xF, desc(0x52, b"\x40") + desc(0xFD, u16(0x00A3) + b"\x00"))
es += bytes([0x0B]) + u16(0xE902) + loop(
    0xF, desc(0x13, b"\x00\x00\x00\x01\x00") + desc(0x52, b"\x41"))
pmt = u16(0xE111) + loop(0xF, desc(0xC1, b"\x20")) + es
add(PMT_PID, long_section(0x02, SERVICE, 2, pmt, syntax=0xB0))

# One-seg PMT.
es = bytes([0x1B]) + u16(0xE181) + loop(0xF, desc(0x52, b"\x81"))
es += bytes([0x11]) + u16(0xE183) + loop(0xF, desc(0x52, b"\x83"))
add(ONESEG_PMT_PID, long_section(0x02, ONESEG, 2, u16(0xE181) + loop(0xF, b"") + es, syntax=0xB0))

# NIT actual: network name, TS information, terrestrial delivery, partial reception.
net_desc = desc(0x40, b"SARN TV")
ts_info = bytes([21, (len(b"SARN") << 2) | 1]) + b"SARN" + bytes([0x0F, 2]) + u16(SERVICE) + u16(ONESEG)
ts_desc = desc(0xCD, ts_info)
ts_desc += desc(0xFA, u16(0x0A2C) + u16(0x1A3E))
ts_desc += desc(0xFB, u16(ONESEG))
ts_desc += desc(0x41, u16(SERVICE) + b"\x01" + u16(ONESEG) + b"\xC0")
nit = loop(0xF, net_desc) + loop(0xF, u16(TSID) + u16(NETWORK) + loop(0xF, ts_desc))
add(0x0010, long_section(0x40, NETWORK, 3, nit))

# SDT actual.
sdt = u16(NETWORK) + b"\xFF"
for sid, kind, name in ((SERVICE, 0x01, b"SARN HD"), (ONESEG, 0xC0, b"SARN 1SEG")):
    d = desc(0x48, bytes([kind, 4]) + b"SARN" + bytes([len(name)]) + name)
    sdt += u16(sid) + b"\xFD" + loop(0x8, d)  # running, not scrambled
add(0x0011, long_section(0x42, TSID, 4, sdt))

# EIT present/following, actual, for the HD service.
def event(event_id, start, duration, name, text, genre, rating):
    d = desc(0x4D, b"por" + bytes([len(name)]) + name + bytes([len(text)]) + text)
    d += desc(0x54, bytes([genre, 0xEE]))
    d += desc(0x55, b"BRA" + bytes([rating]))
    d += desc(0x50, bytes([0xF1, 0xB3, 0x00]) + b"por")
    return u16(event_id) + start + bytes(duration) + u16(0x8000 | len(d)) + d


eit = u16(TSID) + u16(NETWORK) + b"\x01\x4E"
eit += event(0x0101, mjd_utc(2026, 11, 22, 18, 0, 0), [0x01, 0x00, 0x00],
             b"Jornal SARN", b"Not\xedcias do dia", 0x00, 0x01)
eit += event(0x0102, mjd_utc(2026, 11, 22, 19, 0, 0), [0x00, 0x45, 0x00],
             b"Novela das Sete", b"Cap\xedtulo 12", 0x30, 0x03)
add(0x0012, long_section(0x4E, SERVICE, 5, eit, section_number=0, last=1))

# TOT with the Brazilian local time offset (UTC-3, no change scheduled).
lto = b"BRA" + bytes([(1 << 2) | 0x02 | 0x01]) + u16(0x0300) + mjd_utc(2027, 2, 21, 0, 0, 0)
lto += u16(0x0200)
tot = mjd_utc(2026, 11, 22, 21, 30, 5) + loop(0xF, desc(0x58, lto))
add(0x0014, short_section(0x73, tot))

# AIT: one autostart Ginga-NCL application carried in the object carousel.
# application descriptor: one profile (0x0001, version 1.0.0), service bound,
# visible, priority 1, transport protocol label 1.
app_descs = desc(0x00, bytes([5]) + u16(0x0001) + bytes([1, 0, 0]) + bytes([0xFF, 0x01, 0x01]))
app_descs += desc(0x01, b"por" + bytes([9]) + b"SARN Info")
# transport protocol: object carousel (protocol_id 1), label 1, not remote, component tag 0x41
app_descs += desc(0x02, u16(0x0001) + b"\x01" + b"\x7F" + b"\x41")
# Ginga-NCL application location: base directory "/", no extension, "main.ncl"
app_descs += desc(0x07, bytes([1]) + b"/" + bytes([0]) + b"main.ncl")
app = bytes([0x00, 0x00, 0x00, 0x0A]) + u16(0x0001) + b"\x01" + loop(0xF, app_descs)
ait = loop(0xF, b"") + loop(0xF, app)
add(AIT_PID, long_section(0x74, 0x0009, 1, ait))

out = sys.stdout if len(sys.argv) < 2 else open(sys.argv[1], "w")
for pid, section in sections:
    out.write("pid=0x%04x tid=0x%02x len=%d %s\n" % (pid, section[0], len(section), section.hex()))
