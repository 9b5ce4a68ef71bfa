// Datacaster carousel table (private table_id 0x99) and its carousel entries.
#include "TDCTTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "OwnedItems.h"
#include "ParserUtils.h"

namespace Sarn {

TDatacasterCarousel::TDatacasterCarousel()
    : parent(nullptr), pid(0), version(0), carouselId(0), componentTag(0) {}

TDatacasterCarousel::~TDatacasterCarousel() {}

TDatacasterCarousel* TDatacasterCarousel::parse(unsigned char* data, unsigned int length, int,
                                                unsigned int* bytesRead, unsigned short* error) {
    if (data == nullptr)
        length = 0;
    // The eight fixed bytes must be there; the name's length byte may be
    // missing at the very end, which reads as an empty name.
    if (length < 8) {
        SARN_LOGW("%s: TDatacasterCarousel::parse: Item length not valid: %u. Aborting!", length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TDatacasterCarousel* carousel = new TDatacasterCarousel();
    carousel->pid = bytes::pid13(data);
    carousel->version = data[2];
    carousel->carouselId = bytes::be32(data + 3);
    carousel->componentTag = data[7];
    const int nameBytes = ParserUtils::parseStr(data + 8, carousel->applicationName, 0, length - 8);
    if (nameBytes < 0) {
        SARN_LOGW("%s: TDatacasterCarousel:: parse: ERROR: parsing ApplicationName. Aborting!");
        ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
        delete carousel;
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = 8 + static_cast<unsigned int>(nameBytes);
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return carousel;
}

// ---------------------------------------------------------------------------

TDCTTable::TDCTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_DCT, 2, 0x99, bytes, length) {}

TDCTTable::~TDCTTable() {
    owned::deleteAll(carousels);
}

TDCTTable* TDCTTable::parse(unsigned char* bytes, unsigned int length, int checkCrc, int,
                            unsigned short* error, TDCTTable* previous) {
    TDCTTable* table = new TDCTTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    // Only a section_length below 4 leaves the loop length outside a buffer
    // that passed the header checks.
    if (!bytes::fits(8, 2, length)) {
        SARN_LOGW("%s: TDCTTable::parse: Item length not valid: %u. Aborting!", length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        delete table;
        return nullptr;
    }
    unsigned short loopLength = bytes::len12(bytes + 8);
    remaining = static_cast<unsigned short>(remaining - 2);
    unsigned int p = 10;
    // The loop length runs down to exactly 0; one that is not a sum of whole
    // entries wraps and the walk goes on until an entry fails, at the latest
    // at the end of the buffer.
    while (loopLength != 0) {
        const unsigned int available = bodyEnd(p, remaining, length) - p;
        unsigned int read = 0;
        TDatacasterCarousel* carousel =
            TDatacasterCarousel::parse(bytes + p, available, 1, &read, error);
        if (carousel == nullptr) {
            SARN_LOGW("%s: TDCTTable::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_INVALID_ITEM);
            delete table;
            return nullptr;
        }
        table->carousels.push_back(carousel);
        p += read;
        loopLength = static_cast<unsigned short>(loopLength - read);
        remaining = static_cast<unsigned short>(remaining - read);
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
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
