#include "TTOTTable.h"

#include "Json.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"
#include "TableParse.h"

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
    memory::Arena arena(tables::blockFor(length));
    std::unique_ptr<TTOTTable> table(tables::build<TTOTTable>(arena, bytes, length));
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, nullptr, nullptr))
        return nullptr;
    // From here on the table's own copy is read; the minimum length of 14
    // covers the fixed fields.
    bytes::Reader in(table->data, table->dataLength);
    in.skip(3);
    // JST_time / UTC-3 time: 16-bit MJD, then BCD hh mm ss.
    table->unixTime = static_cast<int>(in.mjdTime());
    if (parseDescriptors != 0) {
        const unsigned int loopLength = in.length12();
        // A loop running past the section is read up to the end of the
        // bytes handed in (the CRC bytes included) rather than refused.
        if (!in.has(loopLength))
            SARN_LOGW("%s: TTOTTable::parse: descriptor length bigger than data length! (%u > %u)",
                      loopLength, in.remaining());
        bytes::Reader loop = in.subAtMost(loopLength);
        memory::Builder::descriptors(&arena, *table, loop.mutableCurrent(), loop.remaining());
    }
    return parse::done(error, table);
}

std::string TTOTTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    out.push_back('{');
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
