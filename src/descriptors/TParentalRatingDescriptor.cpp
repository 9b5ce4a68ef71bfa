#include "TParentalRatingDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

// ---------------------------------------------------------------------------
// Item: country_code (3 bytes), rating byte.
// ---------------------------------------------------------------------------

TParentalRatingDescriptorItem::~TParentalRatingDescriptorItem() {}

TParentalRatingDescriptorItem* TParentalRatingDescriptorItem::parse(unsigned char* data,
                                                                    unsigned int len,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* err) {
    if (data == nullptr)
        len = 0;  // nothing to read
    if (len < 4) {
        SARN_LOGW(
            "%s: TParentalRatingDescriptorItem::parse: Descriptor length not valid: %u. Aborting!",
            len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TParentalRatingDescriptorItem* item = new TParentalRatingDescriptorItem();
    if (ParserUtils::parseStr(data, item->countryCode, 3, len) != 3) {
        SARN_LOGW(
            "%s: TParentalRatingDescriptorItem:: parse: ERROR: parsing Language Code. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete item;
        return nullptr;
    }
    item->rating = static_cast<unsigned char>(data[3] & 0x0F);
    item->ratingContent = static_cast<unsigned char>(data[3] >> 4);
    if (bytesRead != nullptr)
        *bytesRead = 4;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return item;
}

// ---------------------------------------------------------------------------
// Descriptor: tag, length, four-byte items.
// ---------------------------------------------------------------------------

TParentalRatingDescriptor::TParentalRatingDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x55, bytes, len) {}

TParentalRatingDescriptor::~TParentalRatingDescriptor() {
    for (TParentalRatingDescriptorItem* item : items)
        delete item;
}

TParentalRatingDescriptor* TParentalRatingDescriptor::parse(unsigned char* data, unsigned int len,
                                                            unsigned int* bytesRead,
                                                            unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 0, 0x55)) {
        SARN_LOGW(
            "%s: TParentalRatingDescriptor::parse: parseCommonHeader: Invalid item. Aborting!");
        return nullptr;
    }
    TParentalRatingDescriptor* d = new TParentalRatingDescriptor(data, len);
    // Items run to the end of the bytes handed in; a generic loop hands in
    // exactly the descriptor.
    unsigned int pos = 2;
    unsigned int total = 0;
    while (pos < len) {
        unsigned int itemRead = 0;
        TParentalRatingDescriptorItem* item =
            TParentalRatingDescriptorItem::parse(data + pos, len - pos, &itemRead, err);
        if (item == nullptr) {
            SARN_LOGW("%s: TParentalRatingDescriptor::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(err, ERROR_DESCRIPTOR_LENGTH);
            delete d;
            return nullptr;
        }
        d->items.push_back(item);
        pos += itemRead;
        total += itemRead;
    }
    // The items only, without the two header bytes.
    if (bytesRead != nullptr)
        *bytesRead = total;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

void TParentalRatingDescriptor::add(TParentalRatingDescriptorItem** item) {
    if (item != nullptr && *item != nullptr)
        items.push_back(*item);
}

TParentalRatingDescriptorItem* TParentalRatingDescriptor::get(unsigned char index) const {
    return index < items.size() ? items[index] : nullptr;
}

bool TParentalRatingDescriptor::remove(unsigned char index) {
    if (index >= items.size() || items[index] == nullptr)
        return false;
    delete items[index];
    items.erase(items.begin() + index);
    return true;
}

std::string TParentalRatingDescriptor::toJSON() const {
    // The colons inside the two keys are part of the keys.
    std::string out;
    json::Out o(out);
    o << "\"name:\":\"parentalRatingDescriptor\",\"parentalRatings:\":[";
    for (size_t i = 0; i < items.size(); ++i) {
        if (i != 0)
            o << ',';
        // "rating" carries the content-warning nibble, not the age class.
        o << "{\"countryCode\":\"" << items[i]->countryCode
          << "\",\"rating\":" << items[i]->ratingContent << '}';
    }
    o << ']';
    return out;
}

}  // namespace Sarn
