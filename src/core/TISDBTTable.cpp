#include "TISDBTTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Parse.h"

namespace Sarn {

TISDBTTable::TISDBTTable(Type tableType, unsigned int minimumLength, unsigned short expectedId,
                         unsigned char* bytes, unsigned int length)
    : TISDBTDataHolder(bytes, length, 1),
      type(tableType),
      // Three header bytes and the CRC32 are the least any section holds.
      minLength(minimumLength < 7 ? 7 : minimumLength),
      expectedTableId(expectedId),
      tableId(0),
      sectionLength(0),
      crc32(0) {}

TISDBTTable::~TISDBTTable() {}

bool TISDBTTable::parseCommonHeader(unsigned char* bytes, unsigned int length, int checkCrc,
                                    unsigned short* error, unsigned short* remaining,
                                    TISDBTTable* /*previous*/) {
    if (bytes == nullptr) {
        SARN_LOGW("%s: TISDBTTable::parse: Invalid data. Aborting!");
        return parse::refuse(error, ERROR_INVALID_DATA);
    }
    if (length < minLength) {
        SARN_LOGW("%s: TISDBTTable::parse: Longer data length is required: %u < %u. Aborting!",
                  length, minLength);
        return parse::refuse(error, ERROR_DATA_TOO_SHORT);
    }
    // minLength is at least 7: the three header bytes and the CRC32 are there.
    const unsigned char id = bytes[0];
    if (expectedTableId < 0xFFFF && id != expectedTableId) {
        SARN_LOGW(
            "%s: TISDBTTable::parse: Unexpected table ID. Got 0x%02X, instead of 0x%02X. "
            "Aborting!",
            static_cast<unsigned int>(id), static_cast<unsigned int>(expectedTableId));
        return parse::refuse(error, ERROR_UNEXPECTED_TABLE_ID);
    }
    tableId = id;
    sectionLength = bytes::len12(bytes + 1);
    if (sectionLength > length - 3) {
        SARN_LOGW("%s: TISDBTTable::parse: Section length exceeds data length. Aborting!");
        return parse::refuse(error, ERROR_SECTION_LENGTH);
    }
    if (checkCrc == 1) {
        // The CRC covers table_id up to the CRC field of the section; the
        // stored value is taken from the last four bytes of the buffer.
        const unsigned int covered = sectionLength > 0 ? sectionLength - 1u : 0u;
        const unsigned int computed = ISDBTUtils::getSectionCRC32(bytes, covered);
        crc32 = bytes::be32(bytes + length - 4);
        if (computed != crc32) {
            SARN_LOGE(
                "%s: TISDBTTable::parse: CRC32  FAIL! (0x%08X != 0x%08X). Data may be corrupted!",
                computed, crc32);
            return parse::refuse(error, ERROR_CRC32);
        }
    }
    // Body bytes after the three-byte header, less the CRC32. A section_length
    // below 4 wraps here; body walks bound themselves by the buffer as well.
    if (remaining != nullptr)
        *remaining = static_cast<unsigned short>(sectionLength - 4);
    return true;
}

void TISDBTTable::appendHeaderJSON(std::string& out) const {
    json::Out(out) << "\"table_id\":" << tableId << ",\"section_length\":" << sectionLength;
}

std::string TISDBTTable::toJSON() const {
    std::string out;
    appendHeaderJSON(out);
    return out;
}

unsigned int TISDBTTable::bodyEnd(unsigned int bodyStart, unsigned short remaining,
                                  unsigned int length) {
    const unsigned int end = bodyStart + remaining;
    return end < length ? end : length;
}

}  // namespace Sarn
