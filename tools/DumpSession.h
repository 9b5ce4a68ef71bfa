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

struct DumpOptions {
    bool all = false;                  // also print sections that repeat a table (code 2561)
    bool exactText = false;            // print the library's text unchanged
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
    std::map<unsigned int, unsigned long long> failures;  // "failed" by code
};

class DumpSession : private SectionSink {
  public:
    enum class Format { Undecided, TransportStream, SectionDump, SectionListing, Unrecognised };

    /** Lines go to out; with a null out they are counted and dropped. */
    DumpSession(const DumpOptions& options, const TextConverter& converter, std::FILE* out);
    ~DumpSession() override;
    DumpSession(const DumpSession&) = delete;
    DumpSession& operator=(const DumpSession&) = delete;

    void feed(const unsigned char* data, size_t length);
    /** End of input: the last sections go out and the output is flushed. */
    void finish();

    Format format() const { return kind; }
    /** Counts by (PID << 8 | table_id). */
    const std::map<unsigned int, TableCounts>& tableCounts() const { return counts; }
    /** The demultiplexer, for a transport stream; null otherwise. */
    const TsDemux* transportStream() const { return ts.get(); }
    unsigned long long linesWritten() const { return lines; }
    unsigned long long textFallbacks() const { return writer.textFallbacks(); }

    /** The summary: sections per PID and table, then packets per PID. */
    void printSummary(std::FILE* err) const;

  private:
    void onSection(unsigned int pid, unsigned char* section, unsigned int length) override;
    void decide(bool eof);
    void route(const unsigned char* data, size_t length);
    void flush();
    bool selected(unsigned int pid, unsigned int tableId) const;

    DumpOptions options;
    std::FILE* out;
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
};

}  // namespace sarntool

#endif
