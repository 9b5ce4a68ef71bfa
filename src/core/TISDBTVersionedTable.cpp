#include "TISDBTVersionedTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Parse.h"

namespace Sarn {

TISDBTVersionedTable::TISDBTVersionedTable(Type tableType, unsigned int minimumLength,
                                           unsigned short expectedId, unsigned char* bytes,
                                           unsigned int length)
    : TISDBTTable(tableType, minimumLength, expectedId, bytes, length),
      tableIdExtension(0),
      version(0),
      currentNextIndicator(0),
      sectionNumber(0),
      lastSectionNumber(0) {}

TISDBTVersionedTable::~TISDBTVersionedTable() {}

bool TISDBTVersionedTable::parseCommonHeader(unsigned char* bytes, unsigned int length,
                                             int checkCrc, unsigned short* error,
                                             unsigned short* remaining, TISDBTTable* previous) {
    unsigned short body = 0;
    if (!TISDBTTable::parseCommonHeader(bytes, length, checkCrc, error, &body, nullptr))
        return false;
    if (previous != nullptr && previous->getType() != type)
        return parse::refuse(error, ERROR_PREVIOUS_TABLE_TYPE);
    if (body < 5) {
        SARN_LOGW("%s: TISDBTVersionedTable::parse: Section length %d < 5", static_cast<int>(body));
        return parse::refuse(error, ERROR_SECTION_LENGTH);
    }
    // A section_length below 4 wraps the count above; the long-form header
    // (bytes 3 to 7) must still lie within the bytes handed in.
    if (length < 8) {
        SARN_LOGW("%s: TISDBTTable::parse: Section length exceeds data length. Aborting!");
        return parse::refuse(error, ERROR_SECTION_LENGTH);
    }
    tableIdExtension = bytes::be16(bytes + 3);
    version = static_cast<unsigned char>((bytes[5] & 0x3E) >> 1);
    currentNextIndicator = bytes[5] & 0x01;
    sectionNumber = bytes[6];
    lastSectionNumber = bytes[7];
    body = static_cast<unsigned short>(body - 5);
    if (remaining != nullptr)
        *remaining = body;
    if (previous == nullptr)
        return true;

    if (sectionNumber != 0) {
        // Only single-section tables are compared with a previous table; the
        // caller's error code is left as it was.
        SARN_LOGW("%s: TISDBTVersionedTable::parse: Multi-section parsing not supported. TODO!");
        return false;
    }
    // Same kind (checked above), so previous is versioned as well.
    const TISDBTVersionedTable* before = static_cast<const TISDBTVersionedTable*>(previous);
    if (before->version != version || before->crc32 != crc32)
        return true;
    return parse::refuse(error, ERROR_TABLE_UNCHANGED);
}

void TISDBTVersionedTable::appendHeaderJSON(std::string& out) const {
    TISDBTTable::appendHeaderJSON(out);
    json::Out(out) << ",\"table_id_extension\":" << tableIdExtension
                   << ",\"version_number\":" << version
                   << ",\"current_next_indicator\":" << currentNextIndicator
                   << ",\"section_number\":" << sectionNumber
                   << ",\"last_section_number\":" << lastSectionNumber;
}

std::string TISDBTVersionedTable::toJSON() const {
    std::string out;
    appendHeaderJSON(out);
    return out;
}

}  // namespace Sarn
