#ifndef SARN_TOOLS_DUMPSESSION_H
#define SARN_TOOLS_DUMPSESSION_H

// One run of sarn-dump over one input: recognises the input (transport
// stream, section dump or section listing), hands every section to the
// library, writes the JSON lines and keeps the counts for the summary.

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "JsonLines.h"
#include "SectionDispatch.h"
#include "SectionInput.h"
#include "TsDemux.h"

namespace sarntool {

/** Told of every table the library parses, for a view built over the whole input. */
class TableObserver {
  public:
    virtual ~TableObserver() = default;
    /** table and the section bytes it came from, both valid during the call only. */
    virtual void onTable(unsigned int pid, const Sarn::TISDBTTable& table,
                         const unsigned char* section, unsigned int length) = 0;
    /**
     * A section that makes a line of output (a new table or a failure):
     * what the line holds, the library's own text of the table (null when
     * there is none) and what it logged. Valid during the call only.
     */
    virtual void onLine(unsigned int pid, unsigned int tableId, unsigned int sectionNumber,
                        unsigned int error, const std::string* table,
                        const std::vector<LogEntry>& log) {
        (void)pid, (void)tableId, (void)sectionNumber, (void)error, (void)table, (void)log;
    }
};

struct DumpOptions {
    bool lines = true;                 // write the JSON lines (off while a view is built)
    bool all = false;                  // also print sections that repeat a table (code 2561)
    bool exactText = false;            // print the library's text unchanged
    bool flushEachLine = false;        // write every line out as soon as it is complete
    std::vector<unsigned int> pids;    // print only these PIDs (empty: every PID)
    std::vector<unsigned int> tables;  // print only these table_ids (empty: every table_id)
};

/** What became of the sections of one table_id on one PID. */
struct TableCounts {
    unsigned long long sections = 0;   // complete sections received
    unsigned long long parsed = 0;     // new tables
    unsigned long long repeated = 0;   // code 2561
    unsigned long long crcErrors = 0;  // code 2566
    unsigned long long failed = 0;     // any other failure
    unsigned long long noClass = 0;    // no table class of the library takes them
    unsigned long long logLines = 0;   // lines the library logged while reading them
    std::map<unsigned int, unsigned long long> failures;  // "failed" by code
};

class DumpSession : private SectionSink {
  public:
    enum class Format { Undecided, TransportStream, SectionDump, SectionListing, Unrecognised };

    /** Lines go to out; with a null out they are counted and dropped. */
    DumpSession(const DumpOptions& options, const TextConverter& converter, std::FILE* out);
    /**
     * Lines go to the file descriptor fd, each written whole: a write that
     * a signal interrupts is carried on. After a failed write nothing more
     * is written (writeError()).
     */
    DumpSession(const DumpOptions& options, const TextConverter& converter, int fd);
    ~DumpSession() override;
    DumpSession(const DumpSession&) = delete;
    DumpSession& operator=(const DumpSession&) = delete;

    void feed(const unsigned char* data, size_t length);
    /**
     * End of input: the last sections go out and the output is flushed. An
     * input in which nothing was recognised, an empty one included, is then
     * Unrecognised.
     */
    void finish();

    /**
     * A line that the library logged. While a section is read it goes into
     * that section's JSON line under "log"; every line is counted.
     */
    void libraryLog(int priority, const char* text);

    /**
     * Undecided until the input is recognised. An input that is neither a
     * listing nor a dump is searched for packets to its end, with bounded
     * memory, however much comes before them.
     */
    Format format() const { return kind; }
    /** Counts by (PID << 8 | table_id). */
    const std::map<unsigned int, TableCounts>& tableCounts() const { return counts; }
    /** The demultiplexer, for a transport stream; null otherwise. */
    const TsDemux* transportStream() const { return ts.get(); }
    unsigned long long linesWritten() const { return lines; }
    unsigned long long textFallbacks() const { return writer.textFallbacks(); }
    /** Lines the library logged, and how many of them went out attached to a printed line. */
    unsigned long long logLines() const { return logTotal; }
    unsigned long long logLinesPrinted() const { return logPrinted; }
    /** errno of the write that failed, 0 while the output is fine. */
    int writeError() const { return writeErrno; }

    /** observer (or null) is told of every table parsed from now on. */
    void observe(TableObserver* observer) { tables = observer; }
    /** observer (or null) is told of every packet of a transport stream. */
    void observePackets(PacketObserver* observer) { packetObserver = observer; }

    /** The summary: sections per PID and table, then packets per PID. */
    void printSummary(std::FILE* err) const;

  private:
    void onSection(unsigned int pid, unsigned char* section, unsigned int length) override;
    void decide(bool eof);
    void route(const unsigned char* data, size_t length);
    void flush();
    bool selected(unsigned int pid, unsigned int tableId) const;

    DumpOptions options;
    std::FILE* out = nullptr;
    int fd = -1;
    int writeErrno = 0;
    Format kind = Format::Undecided;
    std::vector<unsigned char> head;  // first bytes, until the format is known
    std::unique_ptr<TsDemux> ts;
    std::unique_ptr<SectionDumpReader> dump;
    std::unique_ptr<SectionListingReader> listing;
    SectionDispatch dispatch;
    JsonLineWriter writer;
    std::string pending;
    std::map<unsigned int, TableCounts> counts;
    unsigned long long lines = 0;
    bool inSection = false;
    std::vector<LogEntry> sectionLog;  // logged while the current section is read
    TableObserver* tables = nullptr;
    PacketObserver* packetObserver = nullptr;
    unsigned long long logTotal = 0;
    unsigned long long logPrinted = 0;
};

}  // namespace sarntool

#endif
