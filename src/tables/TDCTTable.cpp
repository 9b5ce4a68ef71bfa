// Datacaster carousel table (private table_id 0x99) and its carousel entries.
#include "TDCTTable.h"

#include "Arena.h"
#include "Bytes.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

TDatacasterCarousel::TDatacasterCarousel()
    : parent(nullptr), pid(0), version(0), carouselId(0), componentTag(0) {}

TDatacasterCarousel::~TDatacasterCarousel() {}

SARN_ENTRY_PARSE(TDatacasterCarousel, arena, data, length, bytesRead, error) {
    bytes::Reader in(data, length);
    // The eight fixed bytes must be there; the name's length byte may be
    // missing at the very end, which reads as an empty name.
    if (!tables::hasFixed(in, 8, "TDatacasterCarousel", in.remaining(), error))
        return nullptr;
    // PID (13 bits), version, carousel_id (32 bits), component_tag.
    const unsigned char* fixed = in.bytes(8);
    std::unique_ptr<TDatacasterCarousel> carousel(memory::make<TDatacasterCarousel>(arena));
    carousel->pid = bytes::pid13(fixed);
    carousel->version = fixed[2];
    carousel->carouselId = bytes::be32(fixed + 3);
    carousel->componentTag = fixed[7];
    if (in.string(carousel->applicationName, 0) < 0) {
        SARN_LOGW("%s: TDatacasterCarousel:: parse: ERROR: parsing ApplicationName. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    return tables::finish(in, bytesRead, error, carousel);
}

// ---------------------------------------------------------------------------

TDCTTable::TDCTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_DCT, 2, 0x99, bytes, length) {}

TDCTTable::~TDCTTable() {
    owned::deleteAll(carousels);
}

TDCTTable* TDCTTable::parse(unsigned char* bytes, unsigned int length, int checkCrc, int,
                            unsigned short* error, TDCTTable* previous) {
    memory::Arena arena(tables::blockFor(length));
    return tables::parse(
        tables::build<TDCTTable>(arena, bytes, length), bytes, length, checkCrc, error, previous,
        [&](TDCTTable& table, unsigned short remaining) {
            bytes::Reader section = tables::afterHeader(bytes, length);
            // Only a section_length below 4 leaves the loop length outside a buffer
            // that passed the header checks.
            if (!section.has(2)) {
                SARN_LOGW("%s: TDCTTable::parse: Item length not valid: %u. Aborting!", length);
                return parse::refuse(error, ERROR_DATA_TOO_SHORT);
            }
            const unsigned short loopLength = section.length12();
            // Each entry gets the rest of the body, up to the CRC32 (or the end of
            // the bytes handed in, when a short section_length wrapped the count).
            bytes::Reader body = section.subAtMost(static_cast<unsigned short>(remaining - 2));
            return tables::readLoop<TDatacasterCarousel>(
                arena, body, loopLength, "TDCTTable", error,
                [&](TDatacasterCarousel* carousel) { table.carousels.push_back(carousel); });
        });
}

SARN_OWNED_LIST_METHODS(TDCTTable, TDatacasterCarousel, carousels, addDatacasterCarousel,
                        getDatacasterCarousel, removeDatacasterCarousel)

}  // namespace Sarn
