// Datacaster carousel table (private table_id 0x99) and its carousel entries.
#include "TDCTTable.h"

#include "Log.h"
#include "Owned.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TDatacasterCarousel::TDatacasterCarousel()
    : parent(nullptr), pid(0), version(0), carouselId(0), componentTag(0) {}

TDatacasterCarousel::~TDatacasterCarousel() {}

TDatacasterCarousel* TDatacasterCarousel::parse(unsigned char* data, unsigned int length, int,
                                                unsigned int* bytesRead, unsigned short* error) {
    bytes::Reader in(data, length);
    // The eight fixed bytes must be there; the name's length byte may be
    // missing at the very end, which reads as an empty name.
    if (!in.has(8)) {
        SARN_LOGW("%s: TDatacasterCarousel::parse: Item length not valid: %u. Aborting!",
                  in.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TDatacasterCarousel> carousel(new TDatacasterCarousel());
    carousel->pid = in.pid();
    carousel->version = in.u8();
    carousel->carouselId = in.u32();
    carousel->componentTag = in.u8();
    if (in.string(carousel->applicationName, 0) < 0) {
        SARN_LOGW("%s: TDatacasterCarousel:: parse: ERROR: parsing ApplicationName. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    if (bytesRead != nullptr)
        *bytesRead = in.position();
    return parse::done(error, carousel);
}

// ---------------------------------------------------------------------------

TDCTTable::TDCTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_DCT, 2, 0x99, bytes, length) {}

TDCTTable::~TDCTTable() {
    owned::deleteAll(carousels);
}

TDCTTable* TDCTTable::parse(unsigned char* bytes, unsigned int length, int checkCrc, int,
                            unsigned short* error, TDCTTable* previous) {
    std::unique_ptr<TDCTTable> table(new TDCTTable(bytes, length));
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous))
        return nullptr;
    bytes::Reader section(bytes, length);
    section.skip(8);
    // Only a section_length below 4 leaves the loop length outside a buffer
    // that passed the header checks.
    if (!section.has(2)) {
        SARN_LOGW("%s: TDCTTable::parse: Item length not valid: %u. Aborting!", length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    unsigned short loopLength = section.length12();
    // Each entry gets the rest of the body, up to the CRC32 (or the end of
    // the bytes handed in, when a short section_length wrapped the count).
    bytes::Reader body = section.subAtMost(static_cast<unsigned short>(remaining - 2));
    // The loop length runs down to exactly 0; one that is not a sum of whole
    // entries wraps and the walk goes on until an entry fails, at the latest
    // at the end of the body.
    while (loopLength != 0) {
        unsigned int read = 0;
        TDatacasterCarousel* carousel =
            TDatacasterCarousel::parse(body.mutableCurrent(), body.remaining(), 1, &read, error);
        if (carousel == nullptr) {
            SARN_LOGW("%s: TDCTTable::parse: Invalid item. Aborting!");
            return parse::fail(error, ERROR_INVALID_ITEM);
        }
        table->carousels.push_back(carousel);
        body.skip(read);
        loopLength = static_cast<unsigned short>(loopLength - read);
    }
    return parse::done(error, table);
}

void TDCTTable::addDatacasterCarousel(TDatacasterCarousel* carousel) {
    owned::append(carousels, carousel);
}

TDatacasterCarousel* TDCTTable::getDatacasterCarousel(unsigned char index) const {
    return owned::at(carousels, index);
}

bool TDCTTable::removeDatacasterCarousel(unsigned char index) {
    return owned::removeAt(carousels, index);
}

}  // namespace Sarn
