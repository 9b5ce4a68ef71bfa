#ifndef SARN_TOOLS_PACKETSTATS_H
#define SARN_TOOLS_PACKETSTATS_H

// Counts over every packet of a transport stream, whatever its PID carries:
// packets, continuity breaks, errored and scrambled packets, and the
// program clock references, from which the stream's duration and each
// PID's bitrate over time follow. For the capture report of sarn-dump.

#include <utility>
#include <vector>

#include "TsDemux.h"

namespace sarntool {

struct PidTally {
    unsigned long long packets = 0;
    unsigned long long continuityBreaks = 0;
    unsigned long long transportErrors = 0;  // transport_error_indicator set
    unsigned long long scrambled = 0;        // transport_scrambling_control not 0
    unsigned long long pcrs = 0;             // packets with a PCR
};

class PacketStats : public PacketObserver {
  public:
    PacketStats();
    void onPacket(const unsigned char* packet) override;

    unsigned long long packets() const { return total; }
    /** The PIDs seen, ascending. */
    std::vector<unsigned int> pids() const;
    const PidTally& tally(unsigned int pid) const { return tallies[pid & (kPidCount - 1)]; }

    /** The PID whose PCRs time the stream (the first to carry one), or -1. */
    int clockPid() const { return clock; }
    /** Seconds between the first and the last PCR of the clock PID, jumps left out. */
    double duration() const { return elapsed; }

    /** The packets of every PID up to a moment of the stream. */
    struct Mark {
        double seconds;
        std::vector<std::pair<unsigned int, unsigned long long>> packets;  // PID, count
    };
    /** About two marks a second, from the first PCR of the clock PID on. */
    const std::vector<Mark>& marks() const { return timeline; }

  private:
    void onClock(unsigned long long pcr);

    std::vector<PidTally> tallies;
    std::vector<signed char> lastCc;
    unsigned long long total = 0;
    int clock = -1;
    bool haveLast = false;
    unsigned long long lastPcr = 0;
    double elapsed = 0;
    double lastMark = -1;
    std::vector<Mark> timeline;
};

}  // namespace sarntool

#endif
