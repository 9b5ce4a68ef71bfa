// sarn-dump's demultiplexer on packets built byte by byte: framing,
// section reassembly, continuity, PID learning.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "Sections.h"
#include "TsDemux.h"

using namespace sarntool;

namespace {

using Got = std::vector<std::pair<unsigned int, Bytes>>;
using Counts =
    std::vector<unsigned long long>;  // packets, cc breaks, discarded, errored, scrambled

/**
 * A 188-byte packet: header, the adaptation field when there is one (from
 * its length byte on), the payload (pointer_field included where a section
 * starts), 0xFF up to the end.
 */
Bytes ts(unsigned int pid, bool unitStart, unsigned int cc, const Bytes& payload,
         const Bytes& adaptation = {}) {
    const unsigned int control = (adaptation.empty() ? 0 : 0x20) | (payload.empty() ? 0 : 0x10);
    Bytes b = Bytes{0x47, static_cast<unsigned char>((unitStart ? 0x40 : 0) | (pid >> 8)),
                    static_cast<unsigned char>(pid & 0xFF),
                    static_cast<unsigned char>(control | (cc & 0x0F))} +
              adaptation + payload;
    b.resize(188, 0xFF);
    return b;
}

/** An adaptation field of the given length: its flags, then stuffing. */
Bytes adaptation(unsigned char length, unsigned char flags = 0x00) {
    return length == 0 ? Bytes{0} : Bytes{length, flags} + Bytes(length - 1u, 0xFF);
}

/** One section starting a packet of its own. */
Bytes sent(unsigned int pid, const Bytes& section, unsigned int cc) {
    return ts(pid, true, cc, Bytes{0x00} + section);
}

/** A PAT of TS 1 mapping program i+1 to each PID in pmts. */
Bytes pat(std::initializer_list<unsigned int> pmts, unsigned char version = 0) {
    Bytes body;
    unsigned int number = 1;
    for (unsigned int pid : pmts)
        body = body + be16(number++) + be16(0xE000 | pid);
    return longSection(0x00, 1, version, body);
}

/** A section of table_id tid with n body bytes. */
Bytes section(unsigned char tid, size_t n, unsigned char version = 0) {
    return longSection(tid, 7, version, Bytes(n, 0x5A));
}

/** Sections back to back over packets of pid (CC from 0), a pointer_field where one starts. */
std::vector<Bytes> packetize(unsigned int pid, const std::vector<Bytes>& sections) {
    Bytes data;
    std::vector<size_t> starts;
    for (const Bytes& s : sections) {
        starts.push_back(data.size());
        data = data + s;
    }
    std::vector<Bytes> packets;
    for (size_t pos = 0; pos < data.size();) {
        const auto first = std::find_if(starts.begin(), starts.end(),
                                        [pos](size_t s) { return s >= pos && s < pos + 183; });
        const bool start = first != starts.end();
        const size_t n = std::min(data.size() - pos, size_t{start ? 183u : 184u});
        Bytes payload(data.begin() + static_cast<std::ptrdiff_t>(pos),
                      data.begin() + static_cast<std::ptrdiff_t>(pos + n));
        if (start)
            payload.insert(payload.begin(), static_cast<unsigned char>(*first - pos));
        packets.push_back(ts(pid, start, static_cast<unsigned int>(packets.size()), payload));
        pos += n;
    }
    return packets;
}

Bytes concat(const std::vector<Bytes>& packets) {
    Bytes out;
    for (const Bytes& p : packets)
        out = out + p;
    return out;
}

/** A demultiplexer run over a whole stream, fed in chunks of the given size. */
struct Run : SectionSink {
    Got got;
    TsDemux demux{*this};
    void onSection(unsigned int pid, unsigned char* section, unsigned int length) override {
        got.emplace_back(pid, Bytes(section, section + length));
    }
    Counts counts(unsigned int pid) const {
        const PidCounters& c = demux.counters(pid);
        return {c.packets, c.continuityBreaks, c.discarded, c.transportErrors, c.scrambled};
    }
};

std::unique_ptr<Run> run(const Bytes& stream, size_t chunk = 1 << 20) {
    std::unique_ptr<Run> r(new Run());
    for (size_t pos = 0; pos < stream.size(); pos += chunk)
        r->demux.feed(stream.data() + pos, std::min(chunk, stream.size() - pos));
    r->demux.finish();
    return r;
}

}  // namespace

TEST(TsDemux, SectionReassemblyContinuityAndSkippedPackets) {
    const Bytes a = pat({0x100}, 1), b = pat({0x100, 0x200}, 2), pat1 = pat({1}), pat2 = pat({2});
    const Bytes big = section(0x40, 488), small = section(0x40, 167, 3), first = section(0x40, 169);
    const Bytes next = section(0x40, 20, 4), tail(big.begin() + 183 + 184, big.end());
    const std::vector<Bytes> p = packetize(0x10, {big});  // CC 0, 1, 2
    const Bytes after = sent(0x10, pat1, 3), continuation = ts(0x10, false, 5, Bytes(184, 0x33));
    Bytes errored = sent(0, a, 0), scrambled = sent(0, a, 1);
    errored[1] |= 0x80;
    scrambled[3] |= 0x80;
    auto check = [](const char* what, const Bytes& stream, const Got& expected, unsigned int pid,
                    const Counts& counts) {
        SCOPED_TRACE(what);
        const auto r = run(stream);
        EXPECT_EQ(r->got, expected);
        EXPECT_EQ(r->counts(pid), counts);
        EXPECT_EQ(run(stream, 1)->got, expected);  // fed a byte at a time
    };
    check("two sections in a packet, then stuffing", sent(0, a + b, 0), {{0, a}, {0, b}}, 0,
          {1, 0, 0, 0, 0});
    check("a section over three packets, the next two behind pointer_fields",
          concat(packetize(0x10, {big, small, pat1})), {{0x10, big}, {0x10, small}, {0x10, pat1}},
          0x10, {4, 0, 0, 0, 0});
    check("a section header split over two packets", concat(packetize(0x10, {first, next})),
          {{0x10, first}, {0x10, next}}, 0x10, {2, 0, 0, 0, 0});
    check("stuffing right after the pointer_field", ts(0x10, true, 0, {0x00, 0xFF, 0x40}), {}, 0x10,
          {1, 0, 0, 0, 0});
    check("the middle packet lost", join({p[0], p[2], after}), {{0x10, pat1}}, 0x10,
          {3, 1, 1, 0, 0});
    check("a packet sent twice", join({p[0], p[1], p[1], p[2]}), {{0x10, big}}, 0x10,
          {4, 0, 0, 0, 0});
    // Joining mid-section is no loss, nor is a stuffing-only packet; a
    // continuation without its start is one loss however long it is.
    check("continuations without a start",
          join({p[2], after, ts(0x10, false, 4, {0xFF, 0xFF}), continuation,
                ts(0x10, false, 6, Bytes(184, 0x33))}),
          {{0x10, pat1}}, 0x10, {5, 0, 1, 0, 0});
    check("a section cut short by the next start", join({p[0], sent(0x10, pat2, 1)}),
          {{0x10, pat2}}, 0x10, {2, 0, 1, 0, 0});
    check("the tail of a section before the next one",
          join({p[0], p[1],
                ts(0x10, true, 2, Bytes{static_cast<unsigned char>(tail.size())} + tail + pat2)}),
          {{0x10, big}, {0x10, pat2}}, 0x10, {3, 0, 0, 0, 0});
    check("a pointer_field past the packet's end", join({ts(0x10, true, 0, {0xB8}), after}),
          {{0x10, pat1}}, 0x10, {2, 1, 0, 0, 0});
    // No payload (its CC does not count), payload after an adaptation field,
    // an adaptation field longer than the packet.
    check("errored, scrambled and adaptation-field packets",
          join({errored, scrambled, ts(0, false, 7, {}, adaptation(183)),
                ts(0, true, 0, Bytes{0x00} + a, adaptation(10)),
                ts(0, true, 1, {0x00}, adaptation(184))}),
          {{0, a}}, 0, {5, 0, 0, 1, 1});
    check("a CC jump with the discontinuity_indicator",
          join({sent(0, a, 0), ts(0, true, 9, Bytes{0x00} + a, adaptation(1, 0x80))}),
          {{0, a}, {0, a}}, 0, {2, 0, 0, 0, 0});
}

TEST(TsDemux, PacketSizesAndResync) {
    std::vector<Bytes> sections;
    Got all;
    for (unsigned char v = 0; v < 10; ++v) {
        sections.push_back(section(0x40, 150 + 40 * v, v));
        all.emplace_back(0x10, sections.back());
    }
    const std::vector<Bytes> packets = packetize(0x10, sections);
    ASSERT_EQ(packets.size(), 19u);
    // 192-byte packets (a four-byte prefix that looks like sync bytes),
    // 204-byte ones (16 parity bytes), and a change of size mid-stream,
    // either way. Then garbage before the stream and between packets, and a
    // packet cut short: every whole packet still gets through, in step.
    const Bytes garbage = {0x47, 0x00, 0x47, 0x11, 0x22, 0x47};
    Bytes m2ts, rs, to204, to188, messy = garbage;
    for (size_t i = 0; i < packets.size(); ++i) {
        const Bytes parity(16, 0xA5);
        m2ts = m2ts + Bytes{0x47, 0x47, 0x00, 0x01} + packets[i];
        rs = rs + packets[i] + Bytes(16, 0x47);
        to204 = to204 + packets[i] + (i < 7 ? Bytes() : parity);
        to188 = to188 + packets[i] + (i < 7 ? parity : Bytes());
        messy = messy + (i == 5 ? garbage : Bytes()) +
                (i == 6 ? Bytes(packets[6].begin(), packets[6].begin() + 100) : Bytes()) +
                packets[i];
    }
    auto check = [&](const Bytes& stream, unsigned int size, unsigned int resyncs, size_t skipped) {
        SCOPED_TRACE(size);
        for (size_t chunk : {size_t{1} << 20, size_t{1}}) {
            const auto r = run(stream, chunk);
            EXPECT_EQ(r->got, all);
            EXPECT_EQ(r->demux.packetSize(), size);
            EXPECT_EQ(r->demux.packetCount(), 19u);
            EXPECT_EQ(r->demux.resyncCount(), resyncs);
            EXPECT_EQ(r->counts(0x10), (Counts{19, 0, 0, 0, 0}));
            if (chunk > 1) {
                EXPECT_EQ(r->demux.skippedBytes(), skipped);
            }
        }
    };
    check(m2ts, 192, 0, 0);
    check(rs, 204, 0, 0);
    check(to204, 204, 1, 0);
    check(to188, 188, 1, 0);
    check(messy, 188, 2, 2 * garbage.size() + 100);

    size_t offset = 99;
    EXPECT_EQ(TsDemux::findSync(m2ts.data(), m2ts.size(), false, &offset), 192u);
    EXPECT_EQ(offset, 4u);
    EXPECT_EQ(TsDemux::findSync(rs.data(), rs.size(), false, &offset), 204u);
    EXPECT_EQ(offset, 0u);
    // Too little data to tell, unless it is all there is; one packet is 188.
    EXPECT_EQ(TsDemux::findSync(packets[0].data(), 188, false, &offset), 0u);
    EXPECT_EQ(offset, 0u);
    EXPECT_EQ(TsDemux::findSync(packets[0].data(), 188, true, &offset), 188u);
    // Four sync bytes in step are not yet a run.
    const Bytes four = concat({packets[0], packets[1], packets[2], packets[3], Bytes(188, 0)});
    EXPECT_EQ(TsDemux::findSync(four.data(), four.size(), false, &offset), 0u);
    EXPECT_EQ(offset, four.size());
    const Bytes text(400, 'x');
    EXPECT_EQ(TsDemux::findSync(text.data(), text.size(), true, &offset), 0u);
    EXPECT_EQ(offset, 400u);
}

TEST(TsDemux, LearnsPidsFromPatAndPmt) {
    // PMT of program 1 on 0x100: video 0x111 (0x1B), AIT 0x901 (0x05),
    // object carousel 0x902 (0x0B), stream descriptors 0x903 (0x0D).
    const Bytes pmt =
        longSection(0x02, 1, 0, {0xE1, 0x11, 0xF0, 0x00, 0x1B, 0xE1, 0x11, 0xF0, 0x00,
                                 0x05, 0xE9, 0x01, 0xF0, 0x03, 0x52, 0x01, 0x40, 0x0B,
                                 0xE9, 0x02, 0xF0, 0x00, 0x0D, 0xE9, 0x03, 0xF0, 0x00});
    const Bytes ait = section(0x74, 10), dii = section(0x3B, 10), pat100 = pat({0x100});

    // An AIT ahead of the PMT that announces it is held until then; a
    // section without section_syntax_indicator is not.
    Bytes shortForm = section(0x3B, 300);
    shortForm[1] &= 0x7F;
    shortForm = withCrc(Bytes(shortForm.begin(), shortForm.end() - 4));
    auto r =
        run(join({concat(packetize(0x902, {shortForm})), sent(0x901, ait, 0), sent(0, pat100, 0),
                  sent(0x100, pmt, 0), sent(0x111, section(0x02, 10), 0), sent(0x901, ait, 1),
                  sent(0x902, dii, 0), sent(0x903, dii, 0), sent(0x904, dii, 0)}));
    EXPECT_EQ(
        r->got,
        (Got{{0, pat100}, {0x100, pmt}, {0x901, ait}, {0x901, ait}, {0x902, dii}, {0x903, dii}}));
    const PsiLearner& psi = r->demux.psi();
    EXPECT_TRUE(psi.settled());
    EXPECT_EQ(psi.role(0x100), PidRole::Pmt);
    EXPECT_EQ(psi.role(0x901), PidRole::Ait);
    EXPECT_EQ(psi.role(0x903), PidRole::Dsmcc);
    EXPECT_EQ(psi.role(0x111), PidRole::None);
    EXPECT_EQ(r->demux.followedPids(), (std::vector<unsigned int>{0, 0x100, 0x901, 0x902, 0x903}));
    // At most 64 KiB of sections are held per PID: fifteen of the largest.
    r = run(join({concat(packetize(0x901, std::vector<Bytes>(16, section(0x74, 4086)))),
                  sent(0, pat100, 0), sent(0x100, pmt, 0)}));
    EXPECT_EQ(r->got.size(), 2u + 15u);

    // A PMT before the PAT is held and handed on right after it. A section
    // with a bad CRC on an unknown PID is not held; a PAT with a bad CRC
    // teaches nothing but still goes to the sink (the library reports it).
    Bytes badPat = pat({0x300}), badPmt = pmt;
    badPat.back() ^= 1;
    badPmt[4] = 0x02;
    const Bytes pat12 = pat({0x100, 0x200});
    r = run(
        join({sent(0x100, pmt, 0), sent(0x200, badPmt, 0), sent(0, badPat, 0), sent(0, pat12, 1)}));
    EXPECT_EQ(r->got, (Got{{0, badPat}, {0, pat12}, {0x100, pmt}}));
    EXPECT_FALSE(r->demux.psi().settled());  // no good PMT on 0x200 yet
    EXPECT_EQ(r->demux.psi().role(0x300), PidRole::None);

    // Program 0 names the network PID; a section shorter than its header has no size.
    PsiLearner learner;
    const Bytes network = longSection(0x00, 1, 0, {0x00, 0x00, 0xE0, 0x1F});
    EXPECT_TRUE(learner.learn(0, network.data(), length(network)));
    EXPECT_EQ(learner.role(0x1F), PidRole::Network);
    EXPECT_EQ(checkedSectionSize(network.data(), 2), 0u);
    // Dumps: the PID that a section most probably came from.
    const Bytes p = pat({0x1F0});
    EXPECT_EQ(learner.guessPid(p.data(), length(p)), 0u);
    EXPECT_EQ(learner.guessPid(pmt.data(), 12), kNullPid);  // no PAT yet
    EXPECT_TRUE(learner.learn(0, p.data(), length(p)));
    EXPECT_FALSE(learner.learn(0, p.data(), length(p)));
    EXPECT_EQ(learner.guessPid(pmt.data(), 12), 0x1F0u);
    EXPECT_EQ(learner.guessPid(badPmt.data(), 12), kNullPid);  // program 2
    EXPECT_TRUE(learner.learn(0x1F0, pmt.data(), length(pmt)));
    EXPECT_TRUE(learner.settled());
    EXPECT_EQ(learner.guessPid(ait.data(), 12), 0x901u);
    EXPECT_EQ(learner.guessPid(dii.data(), 12), 0x902u);
    const unsigned char tids[] = {0x01, 0x41, 0x46, 0x4A, 0x4E, 0x6F, 0x70, 0x73, 0xC3, 0x3D, 0x99};
    const unsigned int pids[] = {0x01, 0x10, 0x11, 0x11,  0x12,    0x12,
                                 0x14, 0x14, 0x23, 0x902, kNullPid};
    for (size_t i = 0; i < sizeof tids; ++i)
        EXPECT_EQ(learner.guessPid(&tids[i], 1), pids[i]) << int{tids[i]};
    // A new PAT version moves program 1 to another PMT PID.
    const Bytes moved = pat({0x1F1}, 1);
    EXPECT_TRUE(learner.learn(0, moved.data(), length(moved)));
    EXPECT_EQ(learner.guessPid(pmt.data(), 12), 0x1F1u);
    EXPECT_EQ(learner.guessPid(pmt.data(), 4), kNullPid);
}
