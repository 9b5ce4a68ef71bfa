#ifndef SARN_TOOLS_NAMES_H
#define SARN_TOOLS_NAMES_H

// The names that sarn-dump prints beside the numbers of the broadcast:
// table ids, stream types, service types, running status, the Brazilian
// genre table and age ratings, the terrestrial transmission parameters and
// the Ginga application types and control codes (ISO/IEC 13818-1, ARIB
// STD-B10, ABNT NBR 15603-2 and 15606). One place for all of them, shared
// by the summary, the services view and the programme guide.

#include <string>

namespace sarntool {
namespace names {

/** "PAT", "NIT actual", "EIT schedule actual", ...; "" for a table_id without a name. */
const char* table(unsigned int tableId);
/** "H.264/AVC video", "HE-AAC audio (LATM)", ...; "" when unknown. */
const char* streamType(unsigned int type);
/** "digital TV", "data service", ...; "" when unknown. */
const char* serviceType(unsigned int type);
/** "undefined", "not running", ..., "running", "off air". */
const char* runningStatus(unsigned int status);
/** The guard interval of a terrestrial delivery system descriptor: "1/32" to "1/4". */
const char* guardInterval(unsigned int value);
/** Its transmission mode: "mode 1 (2k)", "mode 2 (4k)", "mode 3 (8k)", "undefined". */
const char* transmissionMode(unsigned int value);
/** Content nibble level 1 of the Brazilian genre table ("Jornalismo", ...). */
const char* genre(unsigned int level1);
/** Level 2 under level1 ("Telejornais", ...); "" when the table has none. */
const char* subgenre(unsigned int level1, unsigned int level2);
/** The subgenre when it says more than the genre ("Telejornais"), else "". */
const char* distinctSubgenre(unsigned int level1, unsigned int level2);
/** "Jornalismo / Telejornais", "Novela"; "" when the genre has no name. */
std::string genreText(unsigned int level1, unsigned int level2);
/** The Brazilian age rating of a parental rating's age nibble: "L", "10", ..., "18"; "" else. */
const char* ageRating(unsigned int age);
/** The content warnings of the upper nibble ("drugs", "violence", "sex"), comma-separated. */
std::string contentWarnings(unsigned int content);
/** "Ginga-NCL", "Ginga-J", "Ginga HTML5"; "" when unknown. */
const char* applicationType(unsigned int type);
/** "AUTOSTART", "PRESENT", ...; "" when unknown. */
const char* controlCode(unsigned int code);
/** A video component's resolution and aspect ("1080i 16:9"); "" when unknown. */
std::string videoComponent(unsigned int componentType);
/** An audio component's channels ("stereo (2/0)"); "" when unknown. */
const char* audioComponent(unsigned int componentType);
/** An audio component's sampling rate ("48 kHz"); "" when unknown. */
const char* samplingRate(unsigned int value);

/** "0x" and digits upper-case hexadecimal digits, zero-filled. */
std::string hex(unsigned int value, int digits);

}  // namespace names
}  // namespace sarntool

#endif
