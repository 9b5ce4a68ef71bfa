#include "DumpSession.h"

#include "Names.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace sarntool {

namespace {

// Enough of the input to tell a listing or a dump, which begin with their
// first line or section; past that only packets, after any amount of junk.
constexpr size_t kDetectBytes = 64 * 1024;
constexpr size_t kFlushBytes = 64 * 1024;

}  // namespace

DumpSession::DumpSession(const DumpOptions& options, const TextConverter& converter, std::FILE* out)
    : options(options), out(out), writer(converter, options.exactText) {}

DumpSession::DumpSession(const DumpOptions& options, const TextConverter& converter, int fd)
    : options(options), fd(fd), writer(converter, options.exactText) {}

DumpSession::~DumpSession() = default;

void DumpSession::feed(const unsigned char* data, size_t length) {
    if (kind == Format::Undecided && !ts) {
        head.insert(head.end(), data, data + length);
        decide(false);
        return;
    }
    route(data, length);
}

void DumpSession::finish() {
    if (kind == Format::Undecided && !ts && !head.empty())
        decide(true);
    if (ts)
        ts->finish();
    if (dump)
        dump->finish();
    if (listing)
        listing->finish();
    if (kind == Format::Undecided)
        kind = ts && ts->hasSynced() ? Format::TransportStream : Format::Unrecognised;
    flush();
}

void DumpSession::decide(bool eof) {
    const unsigned char* d = head.data();
    const size_t n = head.size();
    size_t offset = 0;
    if (SectionListingReader::looksLikeListing(d, n)) {
        kind = Format::SectionListing;
        listing.reset(new SectionListingReader(*this));
    } else if (SectionDumpReader::looksLikeDump(d, n)) {
        kind = Format::SectionDump;
        dump.reset(new SectionDumpReader(*this));
    } else if (TsDemux::findSync(d, n, eof, &offset) != 0) {
        kind = Format::TransportStream;
        ts.reset(new TsDemux(*this));
        ts->observePackets(packetObserver);
    } else if (eof) {
        kind = Format::Unrecognised;
    } else if (n >= kDetectBytes) {
        // Junk, then perhaps packets: the demultiplexer skips what can never
        // begin one, so memory stays bounded however long the junk goes on.
        ts.reset(new TsDemux(*this));
        ts->observePackets(packetObserver);
    }
    if (kind == Format::Undecided && !ts)
        return;
    std::vector<unsigned char> first;
    first.swap(head);
    route(first.data(), first.size());
}

void DumpSession::route(const unsigned char* data, size_t length) {
    if (ts) {
        ts->feed(data, length);
        if (kind == Format::Undecided && ts->hasSynced())
            kind = Format::TransportStream;
    } else if (dump)
        dump->feed(data, length);
    else if (listing)
        listing->feed(data, length);
}

bool DumpSession::selected(unsigned int pid, unsigned int tableId) const {
    const auto& p = options.pids;
    const auto& t = options.tables;
    return (p.empty() || std::find(p.begin(), p.end(), pid) != p.end()) &&
           (t.empty() || std::find(t.begin(), t.end(), tableId) != t.end());
}

void DumpSession::onSection(unsigned int pid, unsigned char* section, unsigned int length) {
    if (length == 0)
        return;
    const unsigned int tableId = section[0];
    sectionLog.clear();
    inSection = true;
    const SectionResult r = dispatch.handle(pid, section, length);
    inSection = false;
    TableCounts& c = counts[(pid << 8) | tableId];
    ++c.sections;
    c.logLines += sectionLog.size();
    if (!r.known) {
        ++c.noClass;
        return;
    }
    if (r.error == Sarn::ERROR_TABLE_UNCHANGED) {
        ++c.repeated;
        if (!options.all)
            return;
    } else if (r.error == Sarn::ERROR_CRC32) {
        ++c.crcErrors;
    } else if (r.error != 0 || r.json.empty()) {
        ++c.failed;
        ++c.failures[r.error];
    } else {
        ++c.parsed;
    }
    if (!selected(pid, tableId))
        return;
    if (tables != nullptr) {
        if (r.table != nullptr)
            tables->onTable(pid, *r.table, r.bytes, length);
        tables->onLine(pid, tableId, r.sectionNumber, r.error, r.json.empty() ? nullptr : &r.json,
                       sectionLog);
    }
    if (!options.lines)
        return;
    writer.append(pending, pid, tableId, r.sectionNumber, r.error,
                  r.json.empty() ? nullptr : &r.json, &sectionLog);
    ++lines;
    logPrinted += sectionLog.size();
    if (options.flushEachLine || pending.size() >= kFlushBytes)
        flush();
}

void DumpSession::libraryLog(int priority, const char* text) {
    ++logTotal;
    if (inSection)
        sectionLog.push_back({priority, text});
}

void DumpSession::flush() {
    if (pending.empty())
        return;
    if (writeErrno != 0) {
        // The output is gone: the lines are only counted.
    } else if (fd >= 0) {
        const char* p = pending.data();
        size_t left = pending.size();
        while (left > 0) {
            const ssize_t n = write(fd, p, left);
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0) {
                writeErrno = errno;
                break;
            }
            p += n;
            left -= static_cast<size_t>(n);
        }
    } else if (out != nullptr) {
        std::fwrite(pending.data(), 1, pending.size(), out);
        if (options.flushEachLine)
            std::fflush(out);
    }
    pending.clear();
}

void DumpSession::printSummary(std::FILE* err) const {
    switch (kind) {
        case Format::TransportStream:
            std::fprintf(err,
                         "sarn-dump: transport stream of %u-byte packets: %llu packets, "
                         "%llu bytes skipped, %llu resyncs\n",
                         ts->packetSize(), ts->packetCount(), ts->skippedBytes(),
                         ts->resyncCount());
            break;
        case Format::SectionDump:
            std::fprintf(err,
                         "sarn-dump: section dump: %llu sections, %llu bytes of a cut last "
                         "section dropped\n",
                         dump->sectionCount(), dump->truncatedBytes());
            break;
        case Format::SectionListing:
            std::fprintf(err, "sarn-dump: section listing: %llu sections, %llu lines not read\n",
                         listing->sectionCount(), listing->badLines());
            break;
        case Format::Undecided:
        case Format::Unrecognised:
            return;
    }
    std::fprintf(err, "%-6s %-5s %-19s %9s %9s %9s %9s %9s %9s %9s  %s\n", "pid", "table", "kind",
                 "sections", "parsed", "repeated", "crc_err", "failed", "no_class", "log",
                 "failures by code");
    for (const auto& entry : counts) {
        const TableCounts& c = entry.second;
        std::string codes;
        for (const auto& f : c.failures) {
            char item[32];
            std::snprintf(item, sizeof item, "%s%u:%llu", codes.empty() ? "" : " ", f.first,
                          f.second);
            codes += item;
        }
        const char* kind = names::table(entry.first & 0xFF);
        std::fprintf(err, "0x%04X 0x%02X  %-19s %9llu %9llu %9llu %9llu %9llu %9llu %9llu  %s\n",
                     entry.first >> 8, entry.first & 0xFF, *kind != '\0' ? kind : "-", c.sections,
                     c.parsed, c.repeated, c.crcErrors, c.failed, c.noClass, c.logLines,
                     codes.empty() ? "-" : codes.c_str());
    }
    if (ts) {
        std::fprintf(err, "%-6s %9s %9s %9s %9s %9s %9s  %s\n", "pid", "packets", "cc_breaks",
                     "discarded", "tei", "scrambled", "cut_short", "carries");
        for (unsigned int pid : ts->followedPids()) {
            const PidCounters& p = ts->counters(pid);
            // The tables whose sections came on the PID.
            std::string carries;
            for (auto it = counts.lower_bound(pid << 8);
                 it != counts.end() && it->first >> 8 == pid; ++it) {
                const char* kind = names::table(it->first & 0xFF);
                const std::string name = *kind != '\0' ? kind : names::hex(it->first & 0xFF, 2);
                if (carries.find(name) == std::string::npos)
                    carries += (carries.empty() ? "" : ", ") + name;
            }
            std::fprintf(err, "0x%04X %9llu %9llu %9llu %9llu %9llu %9llu  %s\n", pid, p.packets,
                         p.continuityBreaks, p.discarded, p.transportErrors, p.scrambled,
                         p.cutAtEnd, carries.empty() ? "-" : carries.c_str());
        }
    }
    if (logTotal > 0)
        std::fprintf(err,
                     "sarn-dump: lines logged by the library: %llu, %llu of them under "
                     "\"log\" in the output\n",
                     logTotal, logPrinted);
    if (writer.textFallbacks() > 0)
        std::fprintf(err, "sarn-dump: %llu tables printed as \"table_text\" (not valid JSON)\n",
                     writer.textFallbacks());
}

}  // namespace sarntool
