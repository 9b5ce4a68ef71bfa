#ifndef SARN_TOOLS_VIEWS_H
#define SARN_TOOLS_VIEWS_H

// The views of sarn-dump over a whole input: the channel list (--services)
// and the programme guide (--epg, --xmltv), written from a Catalogue.
// Broadcast text goes through the chosen character set; the names of
// Names.h are UTF-8 already.

#include <string>

#include "Catalogue.h"
#include "JsonLines.h"

namespace sarntool {

/** The offset of the broadcast's local time from UTC, and where it came from. */
struct UtcOffset {
    int seconds = -3 * 3600;
    std::string source = "default (no TOT)";
};

/**
 * Parses "-03:00", "-3", "+09", "+0530", "5:45" into seconds east of UTC
 * (at most fourteen hours); false for anything else.
 */
bool parseUtcOffset(const std::string& text, int* seconds);

/** The offset a guide uses: the option when given, else the TOT's, else UTC-3. */
UtcOffset chooseOffset(const Catalogue& catalogue, const int* option);

/** utf8 with & < > " and ' written as XML and HTML entities. */
void appendMarkupEscaped(std::string& out, const std::string& utf8);

/** "-03:00" (withColon) or "-0300". */
std::string offsetText(int seconds, bool withColon);

void writeServicesJson(std::string& out, const Catalogue& catalogue, const TextConverter& text);
void writeServicesText(std::string& out, const Catalogue& catalogue, const TextConverter& text);
void writeGuideJson(std::string& out, const Catalogue& catalogue, const TextConverter& text,
                    const UtcOffset& offset);
void writeGuideText(std::string& out, const Catalogue& catalogue, const TextConverter& text,
                    const UtcOffset& offset);
/** XMLTV; text must produce UTF-8. */
void writeXmltv(std::string& out, const Catalogue& catalogue, const TextConverter& text,
                const UtcOffset& offset);

}  // namespace sarntool

#endif
