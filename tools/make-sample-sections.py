#!/usr/bin/env python3
"""Writes the project's own sample multiplex.

The sections describe a small ISDB-Tb multiplex: one full-segment service
with a Ginga-NCL application and its one-seg companion. Every section carries
a correct CRC32, and every descriptor is well formed and allowed where it
stands, except in ONE DELIBERATELY DAMAGED SECTION, the last one: an extended
schedule EIT (table_id 0x58) whose extended event descriptor has an item
broken by a control byte, so that a reader of the output can see what a
dropped descriptor looks like. It is labelled where it is built below.

    make-sample-sections.py [LISTING] [--ts SAMPLE.ts]

LISTING (standard output when absent) gets every distinct section as a line
"pid=0xPPPP tid=0xTT len=N HEX". SAMPLE.ts gets four seconds of the
multiplex as 188-byte packets: the tables repeated at broadcast rates
(PAT and PMTs every 100 ms, EIT present/following every 500 ms, NIT, SDT and
AIT every second, EIT schedules every two seconds), the present/following
EIT changing version after two seconds, two TOTs, sections packed several to
a packet and spanning packets, and filler packets for video and audio (the video
packets that start a PES carry the PCR). Regenerate the bundled files with

    tools/make-sample-sections.py data/sample-sections.txt --ts data/sample.ts
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
# Digital copy control: copy free, maximum_bitrate_flag set, so the
# maximum bit rate byte follows (80 units of 250 kbit/s: 20 Mbit/s).
pmt = u16(0xE111) + loop(0xF, desc(0xC1, b"\x20\x50")) + es
add(PMT_PID, long_section(0x02, SERVICE, 2, pmt, syntax=0xB0))

# One-seg PMT.
es = bytes([0x1B]) + u16(0xE181) + loop(0xF, desc(0x52, b"\x81"))
es += bytes([0x11]) + u16(0xE183) + loop(0xF, desc(0x52, b"\x83"))
add(ONESEG_PMT_PID, long_section(0x02, ONESEG, 2, u16(0xE181) + loop(0xF, b"") + es, syntax=0xB0))

# NIT actual: network name, TS information, terrestrial delivery, partial
# reception, service list. The library renders the first two; it allows the
# others in the NIT but has no class for them there and steps over them.
net_desc = desc(0x40, b"SARN TV")
ts_info = bytes([21, (len(b"SARN") << 2) | 1]) + b"SARN" + bytes([0x0F, 2]) + u16(SERVICE) + u16(ONESEG)
ts_desc = desc(0xCD, ts_info)
# Terrestrial delivery: area code 0x0A2, guard interval 1/8 (10), mode 3 (10)
# and UHF channel 29 (563.142857 MHz) in units of 1/7 MHz.
ts_desc += desc(0xFA, u16(0x0A2A) + u16(3942))
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

# EIT present/following, actual: section 0 is the event on air, section 1
# the next one. The table changes version when the next event starts.
def event_item(event_id, start, duration, descriptors):
    return u16(event_id) + start + bytes(duration) + u16(0x8000 | len(descriptors)) + descriptors


def event(event_id, start, duration, name, text, genre, rating, component=True):
    """An event with its name, genre, age rating and (not in one-seg EITs) video component."""
    d = desc(0x4D, b"por" + bytes([len(name)]) + name + bytes([len(text)]) + text)
    d += desc(0x54, bytes([genre, 0xEE]))
    d += desc(0x55, b"BRA" + bytes([rating]))
    if component:
        d += desc(0x50, bytes([0xF1, 0xB3, 0x00]) + b"por")
    return event_item(event_id, start, duration, d)


def eit_section(table_id, service, version, number, last, events, segment_last=None):
    body = u16(TSID) + u16(NETWORK)
    body += bytes([last if segment_last is None else segment_last, table_id]) + events
    return long_section(table_id, service, version, body, section_number=number, last=last)


JORNAL = event(0x0101, mjd_utc(2026, 11, 22, 18, 0, 0), [0x01, 0x00, 0x00],
               b"Jornal SARN", b"Not\xedcias do dia", 0x00, 0x01)
NOVELA = event(0x0102, mjd_utc(2026, 11, 22, 19, 0, 0), [0x00, 0x45, 0x00],
               b"Novela das Sete", b"Cap\xedtulo 12", 0x30, 0x03)
FILME = event(0x0103, mjd_utc(2026, 11, 22, 19, 45, 0), [0x02, 0x00, 0x00],
              b"Filme: \xc0 beira-mar", b"Com\xe9dia \xa4 2026", 0x60, 0x04)
EIT_PF_1 = [eit_section(0x4E, SERVICE, 5, 0, 1, JORNAL), eit_section(0x4E, SERVICE, 5, 1, 1, NOVELA)]
EIT_PF_2 = [eit_section(0x4E, SERVICE, 6, 0, 1, NOVELA), eit_section(0x4E, SERVICE, 6, 1, 1, FILME)]
for s in EIT_PF_1 + EIT_PF_2:
    add(0x0012, s)

# One-seg present event on the one-seg EIT PID; a one-seg event carries no
# component descriptor.
EIT_ONESEG = eit_section(0x4E, ONESEG, 1, 0, 0, event(0x0201, mjd_utc(2026, 11, 22, 18, 0, 0),
                         [0x01, 0x00, 0x00], b"Jornal SARN", b"", 0x00, 0x01, component=False))
add(0x0027, EIT_ONESEG)

# EIT schedule, one section of eight events: long enough to span packets.
schedule = b""
for i in range(8):
    schedule += event(0x0110 + i, mjd_utc(2026, 11, 23, 6 + 2 * i, 0, 0), [0x02, 0x00, 0x00],
                      b"Programa %d" % (i + 1), b"Grade de amanh\xe3", 0x10 * (i % 8), 0x01)
EIT_SCHEDULE = eit_section(0x50, SERVICE, 1, 0, 0, schedule, segment_last=0)
add(0x0012, EIT_SCHEDULE)

# TOT with the Brazilian local time offset (UTC-3, no change scheduled: the
# next offset is the same).
lto = b"BRA" + bytes([(1 << 2) | 0x02 | 0x01]) + u16(0x0300) + mjd_utc(2027, 2, 21, 0, 0, 0)
lto += u16(0x0300)
TOTS = [short_section(0x73, mjd_utc(2026, 11, 22, 21, 30, t) + loop(0xF, desc(0x58, lto)))
        for t in (5, 8)]
for s in TOTS:
    add(0x0014, s)

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

# ---------------------------------------------------------------------------
# THE ONE DELIBERATELY DAMAGED SECTION of the sample, kept apart from the
# services' own tables: the extended schedule EIT (table_id 0x58) of the HD
# service, with the long description of its first scheduled event. The cast
# item's text was typed with a Windows line break (CR LF). Every length is
# right on the wire, but the library drops control bytes such as CR from the
# stored text and then counts the item by what it stored, one byte short of
# the wire, so the next item is read from the wrong place and the whole
# extended event descriptor is dropped with a warning: the event comes out
# with no descriptors. Everything else in the sample is well formed.
# ---------------------------------------------------------------------------
cast = b"Ana Lima\r\nBeto Souza"
extended = bytes([0x00]) + b"por"
extended += bytes([2 + len(b"Elenco") + len(cast)]) + bytes([len(b"Elenco")]) + b"Elenco"
extended += bytes([len(cast)]) + cast
extended += bytes([len(b"Gravado em Porto Alegre.")]) + b"Gravado em Porto Alegre."
EIT_DAMAGED = eit_section(0x58, SERVICE, 1, 0, 0,
                          event_item(0x0110, mjd_utc(2026, 11, 23, 6, 0, 0), [0x02, 0x00, 0x00],
                                     desc(0x4E, extended)), segment_last=0)
add(0x0012, EIT_DAMAGED)

# ---------------------------------------------------------------------------
# The multiplex: which sections go out when, then packets.
# ---------------------------------------------------------------------------
PAT, PMT_HD, PMT_ONESEG, NIT, SDT = (sections[i][1] for i in range(5))
AIT = next(s for pid, s in sections if pid == AIT_PID)
VIDEO_PID, AUDIO_PID = 0x0111, 0x0112
SLOT_MS = 10
DURATION_MS = 4000


def due(t, period, phase=0):
    return t >= phase and (t - phase) % period == 0


def schedule_at(t):
    """(pid, [sections]) sent in the slot that starts t milliseconds in."""
    out = []
    if due(t, 100):
        out += [(0x0000, [PAT]), (PMT_PID, [PMT_HD]), (ONESEG_PMT_PID, [PMT_ONESEG])]
    if due(t, 500, 20):
        out.append((0x0012, EIT_PF_1 if t < 2000 else EIT_PF_2))
    if due(t, 1000, 30):
        out += [(0x0010, [NIT]), (0x0011, [SDT]), (0x0027, [EIT_ONESEG]), (AIT_PID, [AIT])]
    if due(t, 2000, 60):
        out.append((0x0012, [EIT_SCHEDULE]))
    if due(t, 2000, 70):
        out.append((0x0012, [EIT_DAMAGED]))
    if due(t, 3000, 500):
        out.append((0x0014, [TOTS[t // 3000]]))
    return out


continuity = {}


def packet(pid, payload, unit_start, adaptation=b""):
    cc = continuity.get(pid, 0)
    continuity[pid] = (cc + 1) & 0x0F
    control = 0x30 if adaptation else 0x10
    head = bytes([0x47, (0x40 if unit_start else 0) | (pid >> 8), pid & 0xFF, control | cc])
    return head + adaptation + payload + b"\xff" * (184 - len(adaptation) - len(payload))


def pcr_field(t):
    """An adaptation field holding the PCR of t milliseconds (90 kHz base, no extension)."""
    base = t * 90
    return bytes([7, 0x10, (base >> 25) & 0xFF, (base >> 17) & 0xFF, (base >> 9) & 0xFF,
                  (base >> 1) & 0xFF, ((base & 1) << 7) | 0x7E, 0x00])


def packetize(pid, group):
    """Sections back to back; each packet in which a section starts has a pointer_field."""
    data = b"".join(group)
    starts, pos = [], 0
    for s in group:
        starts.append(pos)
        pos += len(s)
    out, pos = [], 0
    while pos < len(data):
        first = next((s for s in starts if pos <= s < pos + 183), None)
        if first is None:
            chunk = data[pos:pos + 184]
            out.append(packet(pid, chunk, False))
        else:
            chunk = data[pos:pos + 183]
            out.append(packet(pid, bytes([first - pos]) + chunk, True))
        pos += len(chunk)
    return out


def filler(pid, t, stream_id):
    """Stand-in elementary-stream packets: a PES header every 40 ms, then bytes. The video
    PID is the PCR PID: its packets that start a PES carry the clock."""
    start = t % 40 == 0
    adaptation = pcr_field(t) if start and pid == VIDEO_PID else b""
    body = (b"\x00\x00\x01" + bytes([stream_id]) + b"\x00\x00\x80\x00\x00") if start else b""
    body += bytes((t + i) & 0x7F for i in range(184 - len(adaptation) - len(body)))
    return packet(pid, body, start, adaptation)


def multiplex():
    ts = []
    for t in range(0, DURATION_MS, SLOT_MS):
        for pid, group in schedule_at(t):
            ts += packetize(pid, group)
        ts.append(filler(VIDEO_PID, t, 0xE0))
        if t % 20 == 0:
            ts.append(filler(AUDIO_PID, t, 0xC0))
    return b"".join(ts)


args = sys.argv[1:]
ts_path = None
if "--ts" in args:
    i = args.index("--ts")
    ts_path = args[i + 1]
    del args[i:i + 2]
out = sys.stdout if not args else open(args[0], "w")
for pid, section in sections:
    out.write("pid=0x%04x tid=0x%02x len=%d %s\n" % (pid, section[0], len(section), section.hex()))
if ts_path:
    with open(ts_path, "wb") as f:
        f.write(multiplex())
