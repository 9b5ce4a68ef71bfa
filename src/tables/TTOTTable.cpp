#include "TTOTTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"

namespace Sarn {

namespace {

// The TOT carries local time offset descriptors only.
constexpr DescriptorTagSet kTimeOffsetTags = {0x58};

}  // namespace

TTOTTable::TTOTTable(unsigned char* bytes, unsigned int length)
    : TISDBTTable(TYPE_TOT, 14, 0x73, bytes, length),
      DescriptorLoop(kTimeOffsetTags),
      unixTime(0) {}

TTOTTable::~TTOTTable() {}

TTOTTable* TTOTTable::parse(unsigned char* bytes, unsigned int length, int checkCrc,
                            int parseDescriptors, unsigned short* error, TTOTTable*) {
    TTOTTable* table = new TTOTTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, nullptr)) {
        delete table;
        return nullptr;
    }
    // From here on the table's own copy is read.
    const unsigned char* d = table->data;
    // JST_time / UTC-3 time: 16-bit MJD, then BCD hh mm ss.
    table->unixTime = static_cast<int>(ISDBTUtils::mjd2unix(bytes::be16(d + 3)) +
                                       ISDBTUtils::bcd2U8(d[5]) * 3600u +
                                       ISDBTUtils::bcd2U8(d[6]) * 60u + ISDBTUtils::bcd2U8(d[7]));
    if (parseDescriptors != 0) {
        const unsigned int loopLength = bytes::len12(d + 8);
        unsigned int end = 10 + loopLength;
        // A loop running past the section is read up to the end of the
        // bytes handed in (the CRC bytes included) rather than refused.
        if (end > length) {
            SARN_LOGW("%s: TTOTTable::parse: descriptor length bigger than data length! (%u > %u)",
                      loopLength, length - 10);
            end = length;
        }
        table->parseDescriptorsLoop(table->data + 10, end - 10);
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

std::string TTOTTable::toJSON() const {
    std::string out = "{";
    appendHeaderJSON(out);
    json::Out o(out);
    o << ",\"UTC-3_time\":\"";
    json::appendUtcTime(o, unixTime);
    o << "\",\"descriptors\":";
    appendDescriptorsJSON(out);
    o << '}';
    return out;
}

}  // namespace Sarn
