#ifndef SARN_TOOLS_SECTIONINPUT_H
#define SARN_TOOLS_SECTIONINPUT_H

// The two inputs of sarn-dump that hold sections rather than packets: a
// dump of concatenated sections, and the text listing of the capture tools
// ("pid=0x0011 tid=0x42 len=N <hex>" per line).

#include <cstddef>
#include <string>
#include <vector>

#include "TsDemux.h"

namespace sarntool {

/**
 * Sections one after another, as table dumps store them. Each goes to the
 * sink under the PID that the tables read so far point to (PsiLearner::guessPid).
 * 0xFF bytes between sections are stuffing; an incomplete last section is
 * dropped and counted.
 */
class SectionDumpReader {
  public:
    explicit SectionDumpReader(SectionSink& sink) : sink(sink) {}

    /** True when data begins (after any 0xFF stuffing) with a whole section whose CRC32 is right.
     */
    static bool looksLikeDump(const unsigned char* data, size_t length);

    void feed(const unsigned char* data, size_t length);
    void finish();

    unsigned long long sectionCount() const { return sections; }
    unsigned long long truncatedBytes() const { return truncated; }

  private:
    SectionSink& sink;
    PsiLearner learner;
    std::vector<unsigned char> pending;
    unsigned long long sections = 0;
    unsigned long long truncated = 0;
};

/**
 * Text lines "pid=0xPPPP tid=0xTT len=N HEX". Blank lines and lines
 * starting with '#' are skipped; other lines that do not parse are counted.
 */
class SectionListingReader {
  public:
    explicit SectionListingReader(SectionSink& sink) : sink(sink) {}

    /** True when the text begins, after any blanks, with "pid=0x". */
    static bool looksLikeListing(const unsigned char* data, size_t length);

    void feed(const unsigned char* data, size_t length);
    void finish();

    unsigned long long sectionCount() const { return sections; }
    unsigned long long badLines() const { return bad; }

  private:
    void line();

    SectionSink& sink;
    std::string text;
    std::vector<unsigned char> bytes;
    unsigned long long sections = 0;
    unsigned long long bad = 0;
};

}  // namespace sarntool

#endif
