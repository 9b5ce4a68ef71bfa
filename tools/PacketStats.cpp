#include "PacketStats.h"

#include <algorithm>

namespace sarntool {

namespace {

// The PCR counts 27 MHz ticks: a 33-bit base of 90 kHz times 300, plus a
// 9-bit extension.
constexpr double kTicksPerSecond = 27e6;
constexpr unsigned long long kPcrWrap = (1ull << 33) * 300;
// A step between two PCRs beyond this is a discontinuity, not elapsed time.
constexpr double kLongestStep = 10.0;
constexpr double kMarkEvery = 0.5;

}  // namespace

PacketStats::PacketStats() : tallies(kPidCount), lastCc(kPidCount, -1) {}

void PacketStats::onPacket(const unsigned char* p) {
    ++total;
    const unsigned int pid = ((p[1] & 0x1Fu) << 8) | p[2];
    PidTally& t = tallies[pid];
    ++t.packets;
    if (p[1] & 0x80) {
        ++t.transportErrors;
        return;
    }
    if (p[3] & 0xC0)
        ++t.scrambled;
    const unsigned int control = (p[3] >> 4) & 0x03;
    bool discontinuity = false;
    if ((control & 0x02) && p[4] > 0 && p[4] <= 183) {
        const unsigned char flags = p[5];
        discontinuity = (flags & 0x80) != 0;
        if ((flags & 0x10) && p[4] >= 7) {
            const unsigned char* f = p + 6;
            const unsigned long long base = (static_cast<unsigned long long>(f[0]) << 25) |
                                            (static_cast<unsigned long long>(f[1]) << 17) |
                                            (static_cast<unsigned long long>(f[2]) << 9) |
                                            (static_cast<unsigned long long>(f[3]) << 1) |
                                            (f[4] >> 7);
            const unsigned long long extension = ((f[4] & 0x01u) << 8) | f[5];
            ++t.pcrs;
            if (clock < 0)
                clock = static_cast<int>(pid);
            if (clock == static_cast<int>(pid))
                onClock(base * 300 + extension);
        }
    }
    // Continuity counts payload packets; a packet sent twice in a row is
    // allowed, and the null PID has no counter to follow.
    if ((control & 0x01) == 0 || pid == kNullPid)
        return;
    const int cc = p[3] & 0x0F;
    if (lastCc[pid] >= 0 && !discontinuity && cc != lastCc[pid] && cc != ((lastCc[pid] + 1) & 0x0F))
        ++t.continuityBreaks;
    lastCc[pid] = static_cast<signed char>(cc);
}

void PacketStats::onClock(unsigned long long pcr) {
    if (haveLast) {
        const unsigned long long ticks = (pcr + kPcrWrap - lastPcr) % kPcrWrap;
        const double step = static_cast<double>(ticks) / kTicksPerSecond;
        if (step < kLongestStep)
            elapsed += step;
    }
    haveLast = true;
    lastPcr = pcr;
    if (lastMark >= 0 && elapsed - lastMark < kMarkEvery)
        return;
    lastMark = elapsed;
    Mark m;
    m.seconds = elapsed;
    for (unsigned int pid = 0; pid < kPidCount; ++pid)
        if (tallies[pid].packets != 0)
            m.packets.emplace_back(pid, tallies[pid].packets);
    timeline.push_back(std::move(m));
}

std::vector<unsigned int> PacketStats::pids() const {
    std::vector<unsigned int> seen;
    for (unsigned int pid = 0; pid < kPidCount; ++pid)
        if (tallies[pid].packets != 0)
            seen.push_back(pid);
    return seen;
}

}  // namespace sarntool
