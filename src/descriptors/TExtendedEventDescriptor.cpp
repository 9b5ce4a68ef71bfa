#include "TExtendedEventDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

// ---------------------------------------------------------------------------
// Item: item_description_length, description, item_length, text.
// ---------------------------------------------------------------------------

TExtendedEventDescriptorItem::~TExtendedEventDescriptorItem() {}

TExtendedEventDescriptorItem* TExtendedEventDescriptorItem::parse(unsigned char* data,
                                                                  unsigned int len,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* err) {
    bytes::Reader r(data, len);  // no bytes at all without data
    if (!r.has(2)) {
        SARN_LOGW("%s: TExtendedEventDescriptorItem::parse invalid data length %u", r.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TExtendedEventDescriptorItem> item(new TExtendedEventDescriptorItem());
    const unsigned int descLength = r.u8();
    if (descLength > r.remaining()) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptorItem::parse Declared description length is larger than "
            "the buffer size (%u > %d)",
            descLength, static_cast<int>(r.remaining()));
        return parse::fail(err, ERROR_INVALID_DATA);
    }
    if (descLength > 0 &&
        r.loggedString(item->description, descLength) != static_cast<int>(descLength)) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptorItem::parse error parsing description string. "
            "Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    if (r.atEnd()) {
        SARN_LOGW("%s: TExtendedEventDescriptorItem::parse Missing bytes to read the text length");
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    const unsigned int textLength = r.u8();
    if (textLength > 0 && r.loggedString(item->text, textLength) != static_cast<int>(textLength)) {
        SARN_LOGW("%s: TExtendedEventDescriptorItem::parse error parsing text string. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    // The stored sizes, after control bytes were dropped: an item with control
    // codes reports fewer bytes than it takes on the wire.
    return parse::done(err, item, bytesRead,
                       static_cast<unsigned int>(item->description.size() + 2 + item->text.size()));
}

// ---------------------------------------------------------------------------
// Descriptor: tag, length, descriptor_number and last_descriptor_number (4 bits
// each), ISO 639 code, length_of_items, items, text_length, text.
// ---------------------------------------------------------------------------

TExtendedEventDescriptor::TExtendedEventDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x4E, bytes, len) {}

TExtendedEventDescriptor::~TExtendedEventDescriptor() {
    owned::deleteAll(items);
}

SARN_DESCRIPTOR_PARSE(TExtendedEventDescriptor, arena, data, len, bytesRead, err) {
    // Read from the bytes handed in; the header check guarantees eight bytes
    // in all, so some are left up to the items.
    SARN_OPEN_OR_RETURN(arena, d, r, TExtendedEventDescriptor, data, len, err, 6, 0x4E);
    const unsigned char numbers = r.u8();
    d->descriptorNumber = numbers >> 4;
    d->lastDescriptorNumber = numbers & 0x0F;

    if (r.loggedString(d->languageCode, 3) != 3) {
        SARN_LOGW("%s: TExtendedEventDescriptor::parse error parsing Language Code. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }

    const unsigned int itemsLength = r.u8();
    if (itemsLength > r.remaining()) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptor::parse Declared items length is larger than the buffer "
            "size (%u > %d)",
            itemsLength, static_cast<int>(r.remaining()));
        return parse::fail(err, ERROR_INVALID_DATA);
    }

    // Each item is offered every byte left, not only the rest of the items
    // area, so the last item may run past length_of_items. Items count the
    // bytes of their strings after control codes are dropped, and the next
    // one is read that many bytes on.
    unsigned int consumed = 0;
    while (!r.atEnd() && consumed < itemsLength) {
        unsigned int itemRead = 0;
        std::unique_ptr<TExtendedEventDescriptorItem> item =
            nextItem<TExtendedEventDescriptorItem>(r, err, &itemRead);
        if (item == nullptr)
            return nullptr;
        d->items.push_back(item.release());
        consumed += itemRead;
    }

    if (r.atEnd()) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptor::parse Missing bytes to read the text length field.");
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    const unsigned int textLength = r.u8();
    if (textLength > 0 &&
        r.loggedString(d->text, textLength, arena) != static_cast<int>(textLength)) {
        SARN_LOGW("%s: TExtendedEventDescriptor::parse error parsing text. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    // Two less than the size on the wire (and less again by any control bytes
    // dropped from the text): callers walking a loop use descriptor_length.
    return parse::done(err, d, bytesRead, consumed + 6 + static_cast<unsigned int>(d->text.size()));
}

TExtendedEventDescriptorItem* TExtendedEventDescriptor::get(unsigned char index) const {
    return index < items.size() ? items[index] : nullptr;
}

void TExtendedEventDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"descriptor_number\":" << descriptorNumber
      << ",\"last_descriptor_number\":" << lastDescriptorNumber << ",\"ISO_639_language_code\":\""
      << languageCode << "\",\"items\":[";
    // Each item is one string, "name : value".
    for (size_t i = 0; i < items.size(); ++i) {
        if (i != 0)
            o << ',';
        o << '"';
        o.escaped(items[i]->description) << " : ";
        o.escaped(items[i]->text) << '"';
    }
    o << "],\"text\":\"";
    o.escaped(text) << '"';
}

std::string TExtendedEventDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
