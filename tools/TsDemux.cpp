#include "TsDemux.h"

#include <algorithm>
#include <cstring>

#include <ISDBTUtils.h>

namespace sarntool {

namespace {

constexpr unsigned char kSyncByte = 0x47;
constexpr unsigned int kTsPacket = 188;
constexpr unsigned int kPacketSizes[] = {188, 192, 204};
// Sync bytes in a row that make a packet run when the data goes on.
constexpr unsigned int kSyncRun = 5;
constexpr size_t kBufferSize = 256 * 1024;
// Bounds of what is held back on PIDs that no table has announced yet.
constexpr size_t kMaxCandidates = 64;
constexpr size_t kMaxHeldBytes = 64 * 1024;

unsigned int be16(const unsigned char* p) {
    return (p[0] << 8) | p[1];
}
unsigned int pid13(const unsigned char* p) {
    return ((p[0] & 0x1F) << 8) | p[1];
}
unsigned int len12(const unsigned char* p) {
    return ((p[0] & 0x0F) << 8) | p[1];
}

/** Sync bytes every step bytes from o, kSyncRun of them, all within data. */
bool runsFrom(const unsigned char* data, size_t length, size_t o, unsigned int step) {
    for (unsigned int k = 0; k < kSyncRun; ++k) {
        if (o + k * step >= length || data[o + k * step] != kSyncByte)
            return false;
    }
    return true;
}

bool mayBeAnnouncedLater(unsigned int tableId) {
    return tableId == 0x02 || tableId == 0x74 || (tableId >= 0x3B && tableId <= 0x3D);
}

}  // namespace

unsigned int checkedSectionSize(const unsigned char* data, size_t length) {
    if (length < 3)
        return 0;
    const unsigned int total = 3 + len12(data + 1);
    if (total < 7 || total > length)
        return 0;
    // The CRC routine takes a mutable pointer but only reads.
    if (Sarn::ISDBTUtils::getSectionCRC32(const_cast<unsigned char*>(data), total) != 0)
        return 0;
    return total;
}

SectionSink::~SectionSink() = default;
PacketObserver::~PacketObserver() = default;

// ---------------------------------------------------------------------------
// PsiLearner
// ---------------------------------------------------------------------------

PsiLearner::PsiLearner() {
    std::fill(std::begin(roles), std::end(roles), PidRole::None);
    std::fill(std::begin(pmtSeen), std::end(pmtSeen), false);
    roles[0x0000] = PidRole::Pat;
    for (unsigned int pid :
         {0x0010u, 0x0011u, 0x0012u, 0x0014u, 0x0023u, 0x0026u, 0x0027u, 0x0028u})
        roles[pid] = PidRole::FixedSi;
    roles[0x0010] = PidRole::Network;
}

bool PsiLearner::announce(unsigned int pid, PidRole role) {
    if (pid >= kNullPid || roles[pid] != PidRole::None)
        return false;
    roles[pid] = role;
    if (role == PidRole::Pmt)
        ++pmtsPending;
    else if (role == PidRole::Ait && firstAitPid == kNullPid)
        firstAitPid = pid;
    else if (role == PidRole::Dsmcc && firstDsmccPid == kNullPid)
        firstDsmccPid = pid;
    return true;
}

bool PsiLearner::learn(unsigned int pid, const unsigned char* section, unsigned int length) {
    pid &= kPidCount - 1;
    const unsigned int total = checkedSectionSize(section, length);
    if (total < 12 || (section[1] & 0x80) == 0)
        return false;
    const unsigned int end = total - 4;  // the CRC32
    bool added = false;
    if (section[0] == 0x00 && roles[pid] == PidRole::Pat) {
        patSeen = true;
        for (unsigned int pos = 8; pos + 4 <= end; pos += 4) {
            const unsigned int number = be16(section + pos);
            const unsigned int mapPid = pid13(section + pos + 2);
            if (number == 0) {
                added |= announce(mapPid, PidRole::Network);
                continue;
            }
            added |= announce(mapPid, PidRole::Pmt);
            auto known = std::find_if(programs.begin(), programs.end(),
                                      [number](const auto& p) { return p.first == number; });
            if (known == programs.end())
                programs.emplace_back(number, mapPid);
            else
                known->second = static_cast<unsigned short>(mapPid);
        }
    } else if (section[0] == 0x02 && roles[pid] == PidRole::Pmt) {
        if (!pmtSeen[pid]) {
            pmtSeen[pid] = true;
            --pmtsPending;
        }
        // PCR_PID, program_info_length and its descriptors, then the streams:
        // stream_type, elementary_PID, ES_info_length and descriptors.
        unsigned int pos = 12 + len12(section + 10);
        for (; pos + 5 <= end; pos += 5 + len12(section + pos + 3)) {
            const unsigned int streamType = section[pos];
            const unsigned int streamPid = pid13(section + pos + 1);
            if (streamType == 0x05)
                added |= announce(streamPid, PidRole::Ait);
            else if (streamType >= 0x0B && streamType <= 0x0D)
                added |= announce(streamPid, PidRole::Dsmcc);
        }
    }
    return added;
}

unsigned int PsiLearner::guessPid(const unsigned char* section, unsigned int length) const {
    if (length == 0)
        return kNullPid;
    const unsigned int tableId = section[0];
    if (tableId == 0x00 || tableId == 0x01)
        return tableId;  // PAT, CAT
    if (tableId == 0x02) {
        if (length < 5)
            return kNullPid;
        const unsigned int number = be16(section + 3);
        for (const auto& p : programs)
            if (p.first == number)
                return p.second;
        return kNullPid;
    }
    if (tableId == 0x40 || tableId == 0x41)
        return 0x0010;  // NIT
    if (tableId == 0x42 || tableId == 0x46 || tableId == 0x4A)
        return 0x0011;  // SDT, BAT
    if (tableId >= 0x4E && tableId <= 0x6F)
        return 0x0012;  // EIT (the full-segment PID; the one-seg PIDs carry the same table_ids)
    if (tableId == 0x70 || tableId == 0x73)
        return 0x0014;  // TDT, TOT
    if (tableId == 0xC3)
        return 0x0023;  // SDTT
    if (tableId == 0x74)
        return firstAitPid;
    if (tableId >= 0x3B && tableId <= 0x3D)
        return firstDsmccPid;
    return kNullPid;
}

// ---------------------------------------------------------------------------
// TsDemux
// ---------------------------------------------------------------------------

struct TsDemux::Assembler {
    PidCounters counters;
    int lastCc = -1;
    unsigned int have = 0;   // bytes of the current section in data
    unsigned int need = 0;   // its whole size, known once the three header bytes are in
    bool synced = false;     // a section start has been seen on this PID
    bool lost = false;       // skipping the rest of a section that was discarded
    bool candidate = false;  // PID not announced yet: sections are held back
    size_t heldBytes = 0;
    std::vector<std::vector<unsigned char>> held;
    unsigned char data[kMaxSectionSize];
};

TsDemux::TsDemux(SectionSink& sink)
    : sink(sink), assemblers(kPidCount), rejected(kPidCount, 0), buffer(kBufferSize) {}

TsDemux::~TsDemux() = default;

unsigned int TsDemux::findSync(const unsigned char* data, size_t length, bool complete,
                               size_t* offset) {
    for (size_t o = 0; o < length; ++o) {
        if (data[o] != kSyncByte)
            continue;
        unsigned int best = 0, bestRun = 0;
        bool undecided = false;
        for (unsigned int s : kPacketSizes) {
            unsigned int run = 1;
            bool broken = false;
            for (unsigned int k = 1; k < kSyncRun && o + k * s < length; ++k, ++run) {
                if (data[o + k * s] != kSyncByte) {
                    broken = true;
                    break;
                }
            }
            if (broken)
                continue;
            if (run == kSyncRun) {
                // The four-byte prefix of a 192-byte packet may hold 0x47 too:
                // whether the run four bytes on goes as far is known only once
                // its last sync byte is in.
                if (s == 192 && !complete && o + 4 + (kSyncRun - 1) * s >= length) {
                    *offset = o;
                    return 0;
                }
                *offset = s == 192 && runsFrom(data, length, o + 4, s) ? o + 4 : o;
                return s;
            }
            // The data ends before the run does.
            if (!complete)
                undecided = true;
            else if (o + kTsPacket <= length && run > bestRun) {
                best = s;
                bestRun = run;
            }
        }
        if (undecided || best != 0) {
            *offset = o;
            return best;
        }
    }
    *offset = length;
    return 0;
}

void TsDemux::feed(const unsigned char* data, size_t length) {
    while (length > 0) {
        const size_t take = std::min(length, buffer.size() - filled);
        std::memcpy(buffer.data() + filled, data, take);
        filled += take;
        data += take;
        length -= take;
        consume(false);
    }
}

void TsDemux::finish() {
    consume(true);
    // A section still open was cut by the end of the capture: counted apart
    // from the sections lost inside it.
    for (auto& a : assemblers) {
        if (a && a->have != 0) {
            ++a->counters.cutAtEnd;
            a->have = a->need = 0;
        }
    }
    forgetCandidates();
}

size_t TsDemux::nextSync(size_t from, bool eof, bool* wait) const {
    const unsigned char* d = buffer.data();
    *wait = false;
    for (size_t q = from; q < filled; ++q) {
        if (d[q] != kSyncByte)
            continue;
        if (q + size < filled) {
            if (d[q + size] == kSyncByte)
                return q;
        } else if (!eof) {
            *wait = true;  // the confirming byte is not in yet
            return q;
        } else if (q + kTsPacket <= filled) {
            return q;  // the last packet of the stream
        }
    }
    return filled;
}

void TsDemux::consume(bool eof) {
    const unsigned char* d = buffer.data();
    size_t pos = 0;
    while (pos < filled) {
        if (size == 0) {
            // Packet size and phase from a run of sync bytes.
            size_t off = 0;
            const unsigned int found = findSync(d + pos, filled - pos, eof, &off);
            pos += off;
            // The first prefix of a 192-byte stream belongs to its packet.
            if (!everSynced && found == 192 && off >= 4)
                off -= 4;
            skipped += off;
            if (found == 0)
                break;
            if (everSynced)
                ++resyncs;
            everSynced = true;
            size = found;
        }
        const size_t left = filled - pos;
        if (left < kTsPacket) {
            if (eof) {
                skipped += left;
                pos = filled;
            }
            break;
        }
        // A packet counts when the next one starts where it should.
        const bool inStep = d[pos] == kSyncByte && (left > size ? d[pos + size] == kSyncByte : eof);
        if (inStep) {
            packet(d + pos);
            pos = std::min(pos + size, filled);
            continue;
        }
        if (left <= size && !eof)
            break;  // wait for the next sync byte
        // Out of step: this packet was cut short, bytes that belong to no
        // packet follow it, or the packet size changed. The next sync byte
        // that the following one confirms at the current size, or else the
        // next run of sync bytes at any size, tells where packets go on; a
        // whole packet before it still gets through.
        bool waitInStep = false;
        const size_t stepSync = nextSync(pos + 1, eof, &waitInStep);
        size_t off = 0;
        unsigned int found = findSync(d + pos + 1, left - 1, eof, &off);
        size_t next = pos + 1 + off;
        if (!waitInStep && stepSync < filled && stepSync <= next) {
            next = stepSync;
            found = size;
        }
        const size_t gap = next - pos;
        const bool wait = found == 0 && next < filled;  // a run may begin at next
        if (wait && gap < kTsPacket)
            break;  // too little data to tell
        if (d[pos] == kSyncByte && gap >= kTsPacket) {
            packet(d + pos);
            const size_t length = found != 0 ? found : size;
            skipped += gap > length ? gap - length : 0;
        } else {
            skipped += gap;
        }
        pos = next;
        if (found != 0) {
            ++resyncs;
            size = found;
        } else {
            size = 0;  // the packet size is found again once a run is in
        }
    }
    std::memmove(buffer.data(), d + pos, filled - pos);
    filled -= pos;
}

TsDemux::Assembler* TsDemux::candidate(unsigned int pid, const unsigned char* p) {
    if (rejected[pid] || candidates.size() >= kMaxCandidates)
        return nullptr;
    if ((p[1] & 0x80) != 0 || (p[3] & 0xC0) != 0 || (p[3] & 0x10) == 0)
        return nullptr;
    const unsigned int start = (p[3] & 0x20) ? 5 + p[4] : 4;
    if (start >= kTsPacket)
        return nullptr;
    const unsigned int first = start + 1 + p[start];
    if (first + 3 > kTsPacket || !mayBeAnnouncedLater(p[first]) || (p[first + 1] & 0x80) == 0)
        return nullptr;
    assemblers[pid].reset(new Assembler());
    assemblers[pid]->candidate = true;
    candidates.push_back(pid);
    return assemblers[pid].get();
}

void TsDemux::packet(const unsigned char* p) {
    ++packets;
    if (packetObserver != nullptr)
        packetObserver->onPacket(p);
    const unsigned int pid = pid13(p + 1);
    Assembler* a = assemblers[pid].get();
    if (a == nullptr) {
        if (learner.role(pid) != PidRole::None) {
            assemblers[pid].reset(new Assembler());
            a = assemblers[pid].get();
        } else if (!learner.settled() && (p[1] & 0x40) != 0) {
            a = candidate(pid, p);
        }
        if (a == nullptr)
            return;
    } else if (a->candidate && rejected[pid]) {
        return;
    }
    ++a->counters.packets;
    if (p[1] & 0x80) {
        ++a->counters.transportErrors;
        return;
    }
    if (p[3] & 0xC0) {
        ++a->counters.scrambled;
        return;
    }
    const unsigned int control = (p[3] >> 4) & 0x03;
    unsigned int start = 4;
    bool discontinuity = false;
    if (control & 0x02) {
        const unsigned int adaptationLength = p[4];
        if (adaptationLength > kTsPacket - 5) {
            // A malformed packet: whatever it carried is gone.
            drop(*a);
            return;
        }
        discontinuity = adaptationLength > 0 && (p[5] & 0x80) != 0;
        start = 5 + adaptationLength;
    }
    if ((control & 0x01) == 0 || start >= kTsPacket)
        return;  // no payload, and no continuity_counter step
    const int cc = p[3] & 0x0F;
    if (a->lastCc >= 0) {
        const bool follows = cc == ((a->lastCc + 1) & 0x0F);
        if (!discontinuity && cc == a->lastCc)
            return;  // a packet sent twice
        if (!follows) {
            if (!discontinuity)
                ++a->counters.continuityBreaks;
            drop(*a);
        }
    }
    a->lastCc = cc;
    payload(pid, *a, p + start, kTsPacket - start, (p[1] & 0x40) != 0);
}

void TsDemux::drop(Assembler& a) {
    if (a.have == 0)
        return;
    ++a.counters.discarded;
    a.have = a.need = 0;
    a.lost = true;
}

void TsDemux::payload(unsigned int pid, Assembler& a, const unsigned char* p, unsigned int n,
                      bool unitStart) {
    if (!unitStart) {
        if (a.have > 0) {
            append(pid, a, p, n);  // what follows the end of a section is stuffing
        } else if (a.synced && !a.lost && p[0] != 0xFF) {
            // The continuation of a section whose start never arrived.
            ++a.counters.discarded;
            a.lost = true;
        }
        return;
    }
    const unsigned int pointer = p[0];
    ++p, --n;
    if (pointer > n) {
        drop(a);
        return;
    }
    if (a.have > 0) {
        append(pid, a, p, pointer);
        drop(a);  // a new section starts before this one has ended
    }
    p += pointer, n -= pointer;
    a.synced = true;
    a.lost = false;
    while (n > 0 && (a.have > 0 || p[0] != 0xFF)) {
        const unsigned int used = append(pid, a, p, n);
        p += used, n -= used;
    }
}

unsigned int TsDemux::append(unsigned int pid, Assembler& a, const unsigned char* p,
                             unsigned int n) {
    unsigned int used = 0;
    if (a.have < 3) {
        used = std::min(3 - a.have, n);
        std::memcpy(a.data + a.have, p, used);
        a.have += used;
        if (a.have < 3)
            return used;
        a.need = 3 + len12(a.data + 1);
    }
    const unsigned int take = std::min(a.need - a.have, n - used);
    std::memcpy(a.data + a.have, p + used, take);
    a.have += take;
    used += take;
    if (a.have == a.need)
        deliver(pid, a);
    return used;
}

void TsDemux::deliver(unsigned int pid, Assembler& a) {
    const unsigned int length = a.need;
    a.have = a.need = 0;
    if (a.candidate) {
        if (checkedSectionSize(a.data, length) == 0) {
            // Not a table after all: stop looking at this PID.
            rejected[pid] = 1;
            a.held.clear();
            a.heldBytes = 0;
        } else if (a.heldBytes + length <= kMaxHeldBytes) {
            a.held.emplace_back(a.data, a.data + length);
            a.heldBytes += length;
        }
        return;
    }
    const PidRole role = learner.role(pid);
    bool announced = false;
    if ((role == PidRole::Pat && a.data[0] == 0x00) || (role == PidRole::Pmt && a.data[0] == 0x02))
        announced = learner.learn(pid, a.data, length);
    sink.onSection(pid, a.data, length);
    if (announced)
        releaseAnnounced();
    if (!candidates.empty() && learner.settled())
        forgetCandidates();
}

void TsDemux::releaseAnnounced() {
    bool again = true;
    while (again) {
        again = false;
        for (size_t i = 0; i < candidates.size();) {
            const unsigned int pid = candidates[i];
            if (learner.role(pid) == PidRole::None) {
                ++i;
                continue;
            }
            candidates.erase(candidates.begin() + static_cast<std::ptrdiff_t>(i));
            rejected[pid] = 0;
            Assembler& c = *assemblers[pid];
            c.candidate = false;
            std::vector<std::vector<unsigned char>> held;
            held.swap(c.held);
            c.heldBytes = 0;
            for (auto& s : held) {
                const unsigned int length = static_cast<unsigned int>(s.size());
                if (learner.role(pid) == PidRole::Pmt && s[0] == 0x02)
                    again |= learner.learn(pid, s.data(), length);
                sink.onSection(pid, s.data(), length);
            }
        }
    }
}

void TsDemux::forgetCandidates() {
    for (unsigned int pid : candidates)
        assemblers[pid].reset();
    candidates.clear();
}

std::vector<unsigned int> TsDemux::followedPids() const {
    std::vector<unsigned int> pids;
    for (unsigned int pid = 0; pid < kPidCount; ++pid) {
        if (assemblers[pid] && !assemblers[pid]->candidate)
            pids.push_back(pid);
    }
    return pids;
}

const PidCounters& TsDemux::counters(unsigned int pid) const {
    static const PidCounters none;
    const Assembler* a = pid < kPidCount ? assemblers[pid].get() : nullptr;
    return a != nullptr && !a->candidate ? a->counters : none;
}

}  // namespace sarntool
