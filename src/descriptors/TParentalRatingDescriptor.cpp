#include "TParentalRatingDescriptor.h"

#include "Arena.h"
#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

namespace Sarn {

// ---------------------------------------------------------------------------
// Item: country_code (3 bytes), rating byte.
// ---------------------------------------------------------------------------

TParentalRatingDescriptorItem::~TParentalRatingDescriptorItem() {}

TParentalRatingDescriptorItem* TParentalRatingDescriptorItem::parse(unsigned char* data,
                                                                    unsigned int len,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* err) {
    bytes::Reader r(data, len);  // no data: nothing to read
    if (!r.has(4)) {
        SARN_LOGW(
            "%s: TParentalRatingDescriptorItem::parse: Descriptor length not valid: %u. Aborting!",
            r.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TParentalRatingDescriptorItem> item(new TParentalRatingDescriptorItem());
    if (r.string(item->countryCode, 3) != 3) {
        SARN_LOGW(
            "%s: TParentalRatingDescriptorItem:: parse: ERROR: parsing Language Code. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    const unsigned char rating = r.u8();
    item->rating = static_cast<unsigned char>(rating & 0x0F);
    item->ratingContent = static_cast<unsigned char>(rating >> 4);
    return parse::done(err, item, bytesRead, 4);
}

// ---------------------------------------------------------------------------
// Descriptor: tag, length, four-byte items.
// ---------------------------------------------------------------------------

TParentalRatingDescriptor::TParentalRatingDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x55, bytes, len) {}

TParentalRatingDescriptor::~TParentalRatingDescriptor() {
    owned::deleteAll(items);
}

SARN_DESCRIPTOR_PARSE(TParentalRatingDescriptor, arena, data, len, bytesRead, err) {
    if (!parseCommonHeader(data, len, err, 0, 0x55)) {
        SARN_LOGW(
            "%s: TParentalRatingDescriptor::parse: parseCommonHeader: Invalid item. Aborting!");
        return nullptr;
    }
    std::unique_ptr<TParentalRatingDescriptor> d(
        memory::make<TParentalRatingDescriptor>(arena, data, len));
    // Items run to the end of the bytes handed in; a generic loop hands in
    // exactly the descriptor.
    bytes::Reader r(data, len);
    r.skip(2);
    if (!readItems<TParentalRatingDescriptorItem>(
            r, "TParentalRatingDescriptor", nullptr, err,
            [&d](TParentalRatingDescriptorItem* item) { d->items.push_back(item); }))
        return nullptr;
    // The items only, without the two header bytes.
    return parse::done(err, d, bytesRead, r.position() - 2);
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

void TParentalRatingDescriptor::appendJSON(std::string& out) const {
    // The colons inside the two keys are part of the keys.
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
}

std::string TParentalRatingDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
