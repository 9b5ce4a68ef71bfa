#ifndef SARN_TOOLS_TSDEMUX_H
#define SARN_TOOLS_TSDEMUX_H

// Transport-stream demultiplexer of sarn-dump: packet framing (188, 192 and
// 204-byte packets, resynchronisation), PID learning as a receiver does it
// (PAT -> PMT PIDs, fixed ISDB-T PIDs, PMT -> AIT and DSM-CC PIDs) and
// section reassembly. It knows nothing about the table classes: complete
// sections go to a SectionSink.

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace sarntool {

constexpr unsigned int kPidCount = 0x2000;
/** The null-packet PID; also stands for "PID unknown" where a section came without one. */
constexpr unsigned int kNullPid = 0x1FFF;
/** Longest section: three header bytes and a 12-bit section_length. */
constexpr unsigned int kMaxSectionSize = 3 + 0x0FFF;

/**
 * Size of the section at data (3 + section_length) when all of it is
 * within length and its CRC32 is right; 0 otherwise.
 */
unsigned int checkedSectionSize(const unsigned char* data, size_t length);

/** Receives each complete section. */
class SectionSink {
  public:
    virtual ~SectionSink();
    /**
     * One section, from table_id to the last byte that section_length
     * covers. The bytes may be modified and are valid only during the call.
     */
    virtual void onSection(unsigned int pid, unsigned char* section, unsigned int length) = 0;
};

/** Told of every packet that the demultiplexer reads, in stream order. */
class PacketObserver {
  public:
    virtual ~PacketObserver();
    /** The packet's 188 bytes from its sync byte, valid only during the call. */
    virtual void onPacket(const unsigned char* packet) = 0;
};

/** What a PID carries, as far as the tables seen so far tell. */
enum class PidRole : unsigned char { None, Pat, Pmt, Network, FixedSi, Ait, Dsmcc };

/**
 * Which PIDs carry tables. Starts with the PAT and the fixed ISDB-T PIDs
 * (NIT 0x0010, SDT 0x0011, EIT 0x0012, 0x0026 and 0x0027, TOT 0x0014, SDTT
 * 0x0023 and 0x0028) and learns the PMT PIDs from the PAT and the AIT
 * (stream_type 0x05) and DSM-CC (0x0B to 0x0D) PIDs from the PMTs. Only
 * sections whose CRC32 is right teach it anything.
 */
class PsiLearner {
  public:
    PsiLearner();

    PidRole role(unsigned int pid) const { return roles[pid & (kPidCount - 1)]; }
    /**
     * Reads a PAT (table_id 0x00 on PID 0) or a PMT (table_id 0x02 on a PMT
     * PID); other sections are ignored. Returns true when the section
     * announced a PID that was not known before.
     */
    bool learn(unsigned int pid, const unsigned char* section, unsigned int length);
    /** A PAT has been read and every PMT PID that it names has delivered a PMT. */
    bool settled() const { return patSeen && pmtsPending == 0; }
    /**
     * The PID that a section taken out of its stream most probably came
     * from, by table_id and, for a PMT, by the program number that the PAT
     * maps; kNullPid when nothing tells.
     */
    unsigned int guessPid(const unsigned char* section, unsigned int length) const;

  private:
    bool announce(unsigned int pid, PidRole role);

    PidRole roles[kPidCount];
    bool pmtSeen[kPidCount];
    std::vector<std::pair<unsigned short, unsigned short>> programs;  // number, PMT PID
    unsigned int pmtsPending = 0;
    bool patSeen = false;
    unsigned int firstAitPid = kNullPid;
    unsigned int firstDsmccPid = kNullPid;
};

/** What happened on one PID. */
struct PidCounters {
    unsigned long long packets = 0;           // packets seen on the PID
    unsigned long long continuityBreaks = 0;  // continuity_counter jumps
    unsigned long long discarded = 0;         // partial sections thrown away
    unsigned long long transportErrors = 0;   // skipped: transport_error_indicator
    unsigned long long scrambled = 0;         // skipped: transport_scrambling_control
    unsigned long long cutAtEnd = 0;          // a section the end of the input cut short
};

/**
 * Demultiplexes the sections of every PID that the PsiLearner knows.
 *
 * Feed it the stream in chunks of any size, then call finish(). The packet
 * size is found from the sync bytes; bytes that do not belong to a packet
 * (garbage, a truncated packet) are skipped and the stream resynchronised.
 * Packets with transport_error_indicator set or with a scrambled payload
 * are skipped. A continuity-counter jump, a missing section start or a
 * section cut short by the next start discards the partial section; each is
 * counted, none is fatal.
 *
 * Until the PAT and its PMTs have been seen, a section that starts on an
 * unknown PID and looks like a PMT, an AIT or a DSM-CC section is held back
 * (a few per PID) and handed on once a PAT or PMT announces that PID, so
 * that tables sent just before their announcement are not lost.
 */
class TsDemux {
  public:
    explicit TsDemux(SectionSink& sink);
    ~TsDemux();
    TsDemux(const TsDemux&) = delete;
    TsDemux& operator=(const TsDemux&) = delete;

    /**
     * Looks for packets in data: returns the packet size (188, 192 or 204)
     * and stores in *offset the position of the first sync byte. Returns 0
     * when no packet run starts in data; *offset then tells how many leading
     * bytes can never begin one. Unless complete is true, a run is accepted
     * only once five sync bytes are in data.
     */
    static unsigned int findSync(const unsigned char* data, size_t length, bool complete,
                                 size_t* offset);

    void feed(const unsigned char* data, size_t length);
    /** End of the stream: the last packets are read and partial sections dropped. */
    void finish();

    unsigned int packetSize() const { return size; }
    unsigned long long packetCount() const { return packets; }
    unsigned long long skippedBytes() const { return skipped; }
    unsigned long long resyncCount() const { return resyncs; }
    /** True once a run of packets has been found. */
    bool hasSynced() const { return everSynced; }
    /** PIDs whose sections were assembled, in increasing order. */
    std::vector<unsigned int> followedPids() const;
    /** Counters of a followed PID; all zero for another. */
    const PidCounters& counters(unsigned int pid) const;
    const PsiLearner& psi() const { return learner; }
    /** observer (or null) is told of every packet from now on. */
    void observePackets(PacketObserver* observer) { packetObserver = observer; }

  private:
    struct Assembler;

    void consume(bool eof);
    size_t nextSync(size_t from, bool eof, bool* wait) const;
    void packet(const unsigned char* p);
    Assembler* candidate(unsigned int pid, const unsigned char* p);
    void payload(unsigned int pid, Assembler& a, const unsigned char* p, unsigned int n,
                 bool unitStart);
    unsigned int append(unsigned int pid, Assembler& a, const unsigned char* p, unsigned int n);
    void drop(Assembler& a);
    void deliver(unsigned int pid, Assembler& a);
    void releaseAnnounced();
    void forgetCandidates();

    SectionSink& sink;
    PacketObserver* packetObserver = nullptr;
    PsiLearner learner;
    std::vector<std::unique_ptr<Assembler>> assemblers;  // by PID, null when not followed
    std::vector<unsigned int> candidates;                // PIDs held back
    std::vector<unsigned char> rejected;                 // PIDs that proved not to carry tables
    std::vector<unsigned char> buffer;
    size_t filled = 0;
    unsigned int size = 0;  // packet size, 0 while out of sync
    bool everSynced = false;
    unsigned long long packets = 0;
    unsigned long long skipped = 0;
    unsigned long long resyncs = 0;
};

}  // namespace sarntool

#endif
