// sarn-dump's demultiplexer on packets built byte by byte: framing,
// section reassembly, continuity, PID learning.
#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "Sections.h"
#include "TsDemux.h"

using sarntool::PidCounters;
using sarntool::TsDemux;

namespace {

struct Collected : sarntool::SectionSink {
    std::vector<std::pair<unsigned int, Bytes>> got;
    void onSection(unsigned int pid, unsigned char* section, unsigned int length) override {
        got.emplace_back(pid, Bytes(section, section + length));
    }
};

struct Packet {
    unsigned int pid = 0;
    bool unitStart = false;
    unsigned int cc = 0;
    Bytes payload;  // pointer_field included where unitStart
    bool error = false;
    unsigned int scrambling = 0;
    int adaptation = -1;  // adaptation_field_length; -1: no adaptation field
    bool discontinuity = false;
};

/** A 188-byte packet; the payload is padded with 0xFF. */
Bytes ts(const Packet& p) {
    Bytes b = {
        0x47,
        static_cast<unsigned char>((p.error ? 0x80 : 0) | (p.unitStart ? 0x40 : 0) | (p.pid >> 8)),
        static_cast<unsigned char>(p.pid & 0xFF),
        static_cast<unsigned char>((p.scrambling << 6) | (p.adaptation >= 0 ? 0x20 : 0) |
                                   (p.payload.empty() && p.adaptation >= 0 ? 0 : 0x10) |
                                   (p.cc & 0x0F))};
    if (p.adaptation >= 0) {
        b.push_back(static_cast<unsigned char>(p.adaptation));
        if (p.adaptation > 0) {
            b.push_back(p.discontinuity ? 0x80 : 0x00);
            b.insert(b.end(), static_cast<size_t>(p.adaptation - 1), 0xFF);
        }
    }
    b.insert(b.end(), p.payload.begin(), p.payload.end());
    b.resize(188, 0xFF);
    return b;
}

Bytes cat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts)
        out.insert(out.end(), p.begin(), p.end());
    return out;
}

Bytes slice(const Bytes& b, size_t from, size_t n) {
    return Bytes(b.begin() + static_cast<std::ptrdiff_t>(from),
                 b.begin() + static_cast<std::ptrdiff_t>(std::min(b.size(), from + n)));
}

/** A PAT of TS 1 mapping program i+1 to each PID in pmts; version v. */
Bytes pat(std::initializer_list<unsigned int> pmts, unsigned int v = 0) {
    Bytes b = {0x00, 0xB0, 0x00, 0x00, 0x01, static_cast<unsigned char>(0xC1 | (v << 1)),
               0x00, 0x00};
    unsigned int number = 1;
    for (unsigned int pid : pmts) {
        b.insert(b.end(), {0x00, static_cast<unsigned char>(number++),
                           static_cast<unsigned char>(0xE0 | (pid >> 8)),
                           static_cast<unsigned char>(pid & 0xFF)});
    }
    b[2] = static_cast<unsigned char>(b.size() + 4 - 3);
    return withCrc(b);
}

/** A long-form section of table_id tid on any PID with n body bytes (value 0x5A), CRC included. */
Bytes section(unsigned int tid, size_t n, unsigned int v = 0) {
    const size_t length = 5 + n + 4;
    Bytes b = {static_cast<unsigned char>(tid),
               static_cast<unsigned char>(0xB0 | (length >> 8)),
               static_cast<unsigned char>(length & 0xFF),
               0x00,
               0x07,
               static_cast<unsigned char>(0xC1 | (v << 1)),
               0x00,
               0x00};
    b.insert(b.end(), n, 0x5A);
    return withCrc(b);
}

/** Splits sections (back to back) over packets of pid, pointer_field where a section starts. */
std::vector<Bytes> packetize(unsigned int pid, const std::vector<Bytes>& sections,
                             unsigned int cc = 0) {
    Bytes data;
    std::vector<size_t> starts;
    for (const Bytes& s : sections) {
        starts.push_back(data.size());
        data.insert(data.end(), s.begin(), s.end());
    }
    std::vector<Bytes> packets;
    size_t pos = 0;
    while (pos < data.size()) {
        Packet p;
        p.pid = pid;
        p.cc = cc++;
        size_t first = SIZE_MAX;
        for (size_t s : starts) {
            if (s >= pos && s < pos + 183) {
                first = s;
                break;
            }
        }
        if (first == SIZE_MAX) {
            p.payload = slice(data, pos, 184);
        } else {
            p.unitStart = true;
            p.payload = cat({{static_cast<unsigned char>(first - pos)}, slice(data, pos, 183)});
        }
        pos += p.payload.size() - (p.unitStart ? 1 : 0);
        packets.push_back(ts(p));
    }
    return packets;
}

Bytes join(const std::vector<Bytes>& packets) {
    Bytes out;
    for (const Bytes& p : packets)
        out.insert(out.end(), p.begin(), p.end());
    return out;
}

using Sections = std::vector<std::pair<unsigned int, Bytes>>;

/** A demultiplexer run over a whole stream. */
struct Run {
    Collected sink;
    TsDemux demux{sink};
    const Sections& got() const { return sink.got; }
    const PidCounters& pid(unsigned int p) const { return demux.counters(p); }
};

std::unique_ptr<Run> run(const Bytes& stream) {
    std::unique_ptr<Run> r(new Run());
    r->demux.feed(stream.data(), stream.size());
    r->demux.finish();
    return r;
}

}  // namespace

TEST(TsDemux, PointerFieldsSeveralSectionsPerPacketAndSpanning) {
    // Two PATs back to back in one packet, then 0xFF stuffing.
    const Bytes a = pat({0x100}, 1), b = pat({0x100, 0x200}, 2);
    auto r = run(ts({0, true, 0, cat({{0x00}, a, b})}));
    EXPECT_EQ(r->got(), (Sections{{0, a}, {0, b}}));

    // A 500-byte section over three packets; the next one starts in the
    // third packet behind a pointer_field and ends in the fourth, where a
    // third one starts and ends.
    const Bytes big = section(0x40, 488), small = section(0x40, 167, 3), last = pat({7});
    ASSERT_EQ(big.size(), 500u);
    std::vector<Bytes> packets = packetize(0x10, {big, small, last});
    ASSERT_EQ(packets.size(), 4u);
    EXPECT_EQ(packets[2][4], 500 - 2 * 183 - 1);  // pointer_field
    r = run(join(packets));
    EXPECT_EQ(r->got(), (Sections{{0x10, big}, {0x10, small}, {0x10, last}}));
    EXPECT_EQ(r->pid(0x10).packets, 4u);
    EXPECT_EQ(r->pid(0x10).discarded, 0u);

    // A section whose first two bytes end a packet: the header spans packets.
    const Bytes first = section(0x40, 169), next = section(0x40, 20, 4);
    ASSERT_EQ(first.size(), 181u);
    packets = packetize(0x10, {first, next});
    ASSERT_EQ(packets.size(), 2u);
    EXPECT_EQ(packets[1][1] & 0x40, 0);  // no section starts in the second packet
    EXPECT_EQ(run(join(packets))->got(), (Sections{{0x10, first}, {0x10, next}}));

    // Stuffing right after a pointer_field: nothing starts in the packet.
    EXPECT_TRUE(run(ts({0x10, true, 0, {0x00, 0xFF, 0x40}}))->got().empty());
}

TEST(TsDemux, ContinuityBreaksMissingStartsAndCutSections) {
    const Bytes big = section(0x40, 488);
    const std::vector<Bytes> p = packetize(0x10, {big});  // CC 0, 1, 2
    ASSERT_EQ(p.size(), 3u);
    const Bytes pat1 = pat({1});
    const Bytes after = ts({0x10, true, 3, cat({{0x00}, pat1})});

    // The middle packet lost: the partial section goes, the next one comes.
    auto r = run(cat({p[0], p[2], after}));
    EXPECT_EQ(r->got(), (Sections{{0x10, pat1}}));
    EXPECT_EQ(r->pid(0x10).packets, 3u);
    EXPECT_EQ(r->pid(0x10).continuityBreaks, 1u);
    EXPECT_EQ(r->pid(0x10).discarded, 1u);

    // A packet sent twice is dropped without a break.
    r = run(cat({p[0], p[1], p[1], p[2]}));
    EXPECT_EQ(r->got(), (Sections{{0x10, big}}));
    EXPECT_EQ(r->pid(0x10).continuityBreaks, 0u);

    // Joining mid-section at the start of a capture is no loss, nor is a
    // stuffing-only packet; a continuation without its start is one loss,
    // however many packets it takes.
    r = run(cat({p[2], after, ts({0x10, false, 4, {0xFF, 0xFF}}),
                 ts({0x10, false, 5, Bytes(184, 0x33)}), ts({0x10, false, 6, Bytes(184, 0x33)})}));
    EXPECT_EQ(r->got(), (Sections{{0x10, pat1}}));
    EXPECT_EQ(r->pid(0x10).continuityBreaks, 0u);
    EXPECT_EQ(r->pid(0x10).discarded, 1u);

    // A section cut short by the next section start.
    const Bytes pat2 = pat({2});
    r = run(cat({p[0], ts({0x10, true, 1, cat({{0x00}, pat2})})}));
    EXPECT_EQ(r->got(), (Sections{{0x10, pat2}}));
    EXPECT_EQ(r->pid(0x10).discarded, 1u);
    EXPECT_EQ(r->pid(0x10).continuityBreaks, 0u);

    // The same with the tail of the first section behind the pointer_field
    // completing it: both arrive.
    const Bytes tail = slice(big, 183 + 184, 500);
    r = run(
        cat({p[0], p[1],
             ts({0x10, true, 2, cat({{static_cast<unsigned char>(tail.size())}, tail, pat2})})}));
    EXPECT_EQ(r->got(), (Sections{{0x10, big}, {0x10, pat2}}));

    // A pointer_field past the end of the packet, then a good section.
    r = run(cat({ts({0x10, true, 0, {0xB8}}), after}));
    EXPECT_EQ(r->got(), (Sections{{0x10, pat1}}));
    EXPECT_EQ(r->pid(0x10).continuityBreaks, 1u);  // 0 -> 3
}

TEST(TsDemux, SkippedPacketsAndAdaptationFields) {
    const Bytes a = pat({0x100});
    Packet errored{0, true, 0, cat({{0x00}, a})};
    errored.error = true;
    Packet scrambled{0, true, 1, cat({{0x00}, a})};
    scrambled.scrambling = 2;
    Packet onlyAdaptation{0, false, 7, {}};  // no payload: its CC does not count
    onlyAdaptation.adaptation = 183;
    Packet withAdaptation{0, true, 0, cat({{0x00}, a})};
    withAdaptation.adaptation = 10;
    Packet badAdaptation{0, true, 1, {0x00}};
    badAdaptation.adaptation = 184;
    auto r = run(cat(
        {ts(errored), ts(scrambled), ts(onlyAdaptation), ts(withAdaptation), ts(badAdaptation)}));
    EXPECT_EQ(r->got(), (Sections{{0, a}}));
    EXPECT_EQ(r->pid(0).packets, 5u);
    EXPECT_EQ(r->pid(0).transportErrors, 1u);
    EXPECT_EQ(r->pid(0).scrambled, 1u);
    EXPECT_EQ(r->pid(0).continuityBreaks, 0u);

    // A discontinuity_indicator allows a CC jump without a break.
    Packet jump{0, true, 9, cat({{0x00}, a})};
    jump.adaptation = 1;
    jump.discontinuity = true;
    r = run(cat({ts({0, true, 0, cat({{0x00}, a})}), ts(jump)}));
    EXPECT_EQ(r->got().size(), 2u);
    EXPECT_EQ(r->pid(0).continuityBreaks, 0u);
}

TEST(TsDemux, PacketSizesResyncAndChunking) {
    const std::vector<Bytes> packets =
        packetize(0x10, {section(0x40, 488), section(0x40, 30, 1), section(0x40, 300, 2)});
    ASSERT_EQ(packets.size(), 5u);
    const Sections expected = run(join(packets))->got();
    ASSERT_EQ(expected.size(), 3u);

    // 192-byte packets (four-byte time-stamp prefix) and 204-byte ones (16 parity bytes).
    Bytes m2ts, rs;
    for (const Bytes& p : packets) {
        m2ts.insert(m2ts.end(), {0x47, 0x47, 0x00, 0x01});  // prefixes that look like sync bytes
        m2ts.insert(m2ts.end(), p.begin(), p.end());
        rs.insert(rs.end(), p.begin(), p.end());
        rs.insert(rs.end(), 16, 0x47);
    }
    size_t offset = 99;
    EXPECT_EQ(TsDemux::findSync(m2ts.data(), m2ts.size(), false, &offset), 192u);
    EXPECT_EQ(offset, 4u);
    EXPECT_EQ(TsDemux::findSync(rs.data(), rs.size(), false, &offset), 204u);
    EXPECT_EQ(offset, 0u);
    auto r = run(m2ts);
    EXPECT_EQ(r->got(), expected);
    EXPECT_EQ(r->demux.packetSize(), 192u);
    EXPECT_EQ(r->demux.skippedBytes(), 0u);
    r = run(rs);
    EXPECT_EQ(r->got(), expected);
    EXPECT_EQ(r->demux.packetSize(), 204u);
    EXPECT_EQ(r->demux.resyncCount(), 0u);

    // Too little data to tell, unless it is all there is; one packet is 188.
    EXPECT_EQ(TsDemux::findSync(packets[0].data(), 188, false, &offset), 0u);
    EXPECT_EQ(offset, 0u);
    EXPECT_EQ(TsDemux::findSync(packets[0].data(), 188, true, &offset), 188u);
    const Bytes text(400, 'x');
    EXPECT_EQ(TsDemux::findSync(text.data(), text.size(), true, &offset), 0u);
    EXPECT_EQ(offset, 400u);

    // Garbage before the stream and between packets, a packet cut short:
    // every whole packet still gets through, in step.
    const std::vector<Bytes> more =
        packetize(0x10, {section(0x40, 488), section(0x40, 30, 1), section(0x40, 300, 2),
                         section(0x40, 488, 3), section(0x40, 200, 4)});
    ASSERT_EQ(more.size(), 9u);
    const Sections all = run(join(more))->got();
    ASSERT_EQ(all.size(), 5u);
    const Bytes garbage = {0x47, 0x00, 0x47, 0x11, 0x22, 0x47};
    const Bytes messy = cat({garbage, more[0], more[1], more[2], more[3], more[4], garbage, more[5],
                             slice(more[6], 0, 100), more[6], more[7], more[8]});
    r = run(messy);
    EXPECT_EQ(r->got(), all);
    EXPECT_EQ(r->demux.resyncCount(), 2u);
    EXPECT_EQ(r->demux.skippedBytes(), 2 * garbage.size() + 100);
    EXPECT_EQ(r->pid(0x10).continuityBreaks, 0u);

    // Fed one byte at a time, the same sections come out.
    Collected bytewise;
    TsDemux slow(bytewise);
    for (unsigned char byte : messy)
        slow.feed(&byte, 1);
    slow.finish();
    EXPECT_EQ(bytewise.got, all);
}

TEST(TsDemux, LearnsPidsFromPatAndPmt) {
    // PMT of program 1 on 0x100: video 0x111 (0x1B), AIT 0x901 (0x05),
    // object carousel 0x902 (0x0B), stream descriptors 0x903 (0x0D).
    Bytes pmt = {0x02, 0xB0, 0x00, 0x00, 0x01, 0xC1, 0x00, 0x00, 0xE1,
                 0x11, 0xF0, 0x00, 0x1B, 0xE1, 0x11, 0xF0, 0x00,  //
                 0x05, 0xE9, 0x01, 0xF0, 0x03, 0x52, 0x01, 0x40,  //
                 0x0B, 0xE9, 0x02, 0xF0, 0x00,                    //
                 0x0D, 0xE9, 0x03, 0xF0, 0x00};
    pmt[2] = static_cast<unsigned char>(pmt.size() + 4 - 3);
    pmt = withCrc(pmt);
    const Bytes ait = section(0x74, 10), dii = section(0x3B, 10), video = section(0x02, 10);
    const Bytes pat100 = pat({0x100});
    auto sent = [](unsigned int pid, const Bytes& s, unsigned int cc) {
        return ts({pid, true, cc, cat({{0x00}, s})});
    };

    // An AIT ahead of the PMT that announces it is held until then.
    auto r = run(
        cat({sent(0x901, ait, 0), sent(0, pat100, 0), sent(0x100, pmt, 0), sent(0x111, video, 0),
             sent(0x901, ait, 1), sent(0x902, dii, 0), sent(0x903, dii, 0), sent(0x904, dii, 0)}));
    EXPECT_EQ(
        r->got(),
        (Sections{
            {0, pat100}, {0x100, pmt}, {0x901, ait}, {0x901, ait}, {0x902, dii}, {0x903, dii}}));
    const sarntool::PsiLearner& psi = r->demux.psi();
    EXPECT_TRUE(psi.settled());
    EXPECT_EQ(psi.role(0x100), sarntool::PidRole::Pmt);
    EXPECT_EQ(psi.role(0x901), sarntool::PidRole::Ait);
    EXPECT_EQ(psi.role(0x903), sarntool::PidRole::Dsmcc);
    EXPECT_EQ(psi.role(0x111), sarntool::PidRole::None);
    EXPECT_EQ(r->demux.followedPids(), (std::vector<unsigned int>{0, 0x100, 0x901, 0x902, 0x903}));

    // A PMT before the PAT is held and handed on right after it. A section
    // with a bad CRC on an unknown PID is not held; a PAT with a bad CRC
    // teaches nothing but still goes to the sink (the library reports it).
    Bytes badPat = pat({0x300});
    badPat.back() ^= 1;
    Bytes badPmt = pmt;
    badPmt[4] = 0x02;
    const Bytes pat12 = pat({0x100, 0x200});
    r = run(
        cat({sent(0x100, pmt, 0), sent(0x200, badPmt, 0), sent(0, badPat, 0), sent(0, pat12, 1)}));
    EXPECT_EQ(r->got(), (Sections{{0, badPat}, {0, pat12}, {0x100, pmt}}));
    EXPECT_FALSE(r->demux.psi().settled());  // no good PMT on 0x200 yet
    EXPECT_EQ(r->demux.psi().role(0x300), sarntool::PidRole::None);

    // Dumps: the PID that a section most probably came from.
    sarntool::PsiLearner learner;
    const Bytes p = pat({0x1F0});
    const unsigned int size = static_cast<unsigned int>(p.size());
    EXPECT_EQ(learner.guessPid(p.data(), size), 0u);
    EXPECT_EQ(learner.guessPid(pmt.data(), 12), sarntool::kNullPid);  // no PAT yet
    EXPECT_TRUE(learner.learn(0, p.data(), size));
    EXPECT_FALSE(learner.learn(0, p.data(), size));
    EXPECT_EQ(learner.guessPid(pmt.data(), 12), 0x1F0u);
    EXPECT_EQ(learner.guessPid(badPmt.data(), 12), sarntool::kNullPid);  // program 2
    EXPECT_TRUE(learner.learn(0x1F0, pmt.data(), static_cast<unsigned int>(pmt.size())));
    EXPECT_TRUE(learner.settled());
    EXPECT_EQ(learner.guessPid(ait.data(), 12), 0x901u);
    EXPECT_EQ(learner.guessPid(dii.data(), 12), 0x902u);
    const unsigned char tot = 0x73, eitOther = 0x6F, bat = 0x4A, dct = 0x99;
    EXPECT_EQ(learner.guessPid(&tot, 1), 0x14u);
    EXPECT_EQ(learner.guessPid(&eitOther, 1), 0x12u);
    EXPECT_EQ(learner.guessPid(&bat, 1), 0x11u);
    EXPECT_EQ(learner.guessPid(&dct, 1), sarntool::kNullPid);
}

TEST(TsDemux, PacketSizeChangesMidStream) {
    // Ten sections over 188-byte packets; from packet `from` on the stream
    // carries 204-byte packets (16 bytes of parity, never a sync byte), or
    // the other way round.
    std::vector<Bytes> sections;
    for (unsigned int v = 0; v < 10; ++v)
        sections.push_back(section(0x40, 150 + 40 * v, v & 0x1F));
    const std::vector<Bytes> packets = packetize(0x10, sections);
    ASSERT_EQ(packets.size(), 19u);
    const Sections all = run(join(packets))->got();
    ASSERT_EQ(all.size(), 10u);
    auto mixed = [&](unsigned int firstSize, size_t from) {
        Bytes out;
        for (size_t i = 0; i < packets.size(); ++i) {
            out.insert(out.end(), packets[i].begin(), packets[i].end());
            if ((i < from) == (firstSize == 204))
                out.insert(out.end(), 16, 0xA5);
        }
        return out;
    };
    for (unsigned int first : {188u, 204u}) {
        SCOPED_TRACE(first);
        const Bytes stream = mixed(first, 7);
        auto r = run(stream);
        EXPECT_EQ(r->got(), all);
        EXPECT_EQ(r->demux.packetSize(), first == 188 ? 204u : 188u);
        EXPECT_EQ(r->demux.packetCount(), 19u);
        EXPECT_EQ(r->demux.resyncCount(), 1u);
        EXPECT_EQ(r->demux.skippedBytes(), 0u);
        EXPECT_EQ(r->pid(0x10).continuityBreaks, 0u);
        // Fed one byte at a time, the same sections come out.
        Collected bytewise;
        TsDemux slow(bytewise);
        for (unsigned char byte : stream)
            slow.feed(&byte, 1);
        slow.finish();
        EXPECT_EQ(bytewise.got, all);
    }
}
