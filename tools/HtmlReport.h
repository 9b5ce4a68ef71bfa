#ifndef SARN_TOOLS_HTMLREPORT_H
#define SARN_TOOLS_HTMLREPORT_H

// sarn-dump --html: one self-contained HTML page about a capture (overview,
// services, PIDs with their bitrate over time, every table as a collapsible
// tree, the programme guide as a grid). No network access, no external
// script, style or font; the overview, services and PIDs need no script,
// the tables' filter is a few lines of inline script.

#include <string>
#include <vector>

#include "Catalogue.h"
#include "DumpSession.h"
#include "JsonLines.h"
#include "PacketStats.h"
#include "Views.h"

namespace sarntool {

/** Collects what the report shows while sarn-dump reads its input. */
class ReportCollector : public TableObserver {
  public:
    void onTable(unsigned int pid, const Sarn::TISDBTTable& table, const unsigned char* section,
                 unsigned int length) override {
        catalogue.onTable(pid, table, section, length);
    }
    void onLine(unsigned int pid, unsigned int tableId, unsigned int sectionNumber,
                unsigned int error, const std::string* table,
                const std::vector<LogEntry>& log) override;

    struct Line {
        unsigned int pid, tableId, sectionNumber, error;
        bool haveTable;
        std::string table;  // the library's text
        std::vector<LogEntry> log;
    };

    Catalogue catalogue;
    PacketStats packets;
    std::vector<Line> lines;
};

/**
 * The page for the input named title, read by session; times of the guide
 * with offset. text converts broadcast text (to UTF-8).
 */
void writeHtmlReport(std::string& out, const std::string& title, const DumpSession& session,
                     const ReportCollector& report, const TextConverter& text,
                     const UtcOffset& offset);

}  // namespace sarntool

#endif
