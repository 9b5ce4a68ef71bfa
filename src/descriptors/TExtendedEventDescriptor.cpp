#include "TExtendedEventDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

// ---------------------------------------------------------------------------
// Item: item_description_length, description, item_length, text.
// ---------------------------------------------------------------------------

TExtendedEventDescriptorItem::~TExtendedEventDescriptorItem() {}

TExtendedEventDescriptorItem* TExtendedEventDescriptorItem::parse(unsigned char* data,
                                                                  unsigned int len,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* err) {
    if (data == nullptr)
        len = 0;  // nothing to read
    if (len < 2) {
        SARN_LOGW("%s: TExtendedEventDescriptorItem::parse invalid data length %u", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TExtendedEventDescriptorItem* item = new TExtendedEventDescriptorItem();
    const unsigned int descLength = data[0];
    if (descLength > len - 1) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptorItem::parse Declared description length is larger than "
            "the buffer size (%u > %d)",
            descLength, static_cast<int>(len - 1));
        delete item;
        ISDBTUtils::setErrorCode(err, ERROR_INVALID_DATA);
        return nullptr;
    }
    if (descLength > 0 && ParserUtils::parseStr(data + 1, item->description, descLength, len - 1) !=
                              static_cast<int>(descLength)) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptorItem::parse error parsing description string. "
            "Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete item;
        return nullptr;
    }
    // descLength <= len - 1 here, so this is the count of bytes after the description.
    if (len - 1 - descLength == 0) {
        SARN_LOGW("%s: TExtendedEventDescriptorItem::parse Missing bytes to read the text length");
        delete item;
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    const unsigned int textLength = data[1 + descLength];
    if (textLength > 0 &&
        ParserUtils::parseStr(data + 2 + descLength, item->text, textLength,
                              len - 2 - descLength) != static_cast<int>(textLength)) {
        SARN_LOGW("%s: TExtendedEventDescriptorItem::parse error parsing text string. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete item;
        return nullptr;
    }
    // The stored sizes, after control bytes were dropped: an item with control
    // codes reports fewer bytes than it takes on the wire.
    if (bytesRead != nullptr)
        *bytesRead = static_cast<unsigned int>(item->description.size() + 2 + item->text.size());
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return item;
}

// ---------------------------------------------------------------------------
// Descriptor: tag, length, descriptor_number and last_descriptor_number (4 bits
// each), ISO 639 code, length_of_items, items, text_length, text.
// ---------------------------------------------------------------------------

TExtendedEventDescriptor::TExtendedEventDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x4E, bytes, len), descriptorNumber(0), lastDescriptorNumber(0) {}

TExtendedEventDescriptor::~TExtendedEventDescriptor() {
    for (TExtendedEventDescriptorItem* item : items)
        delete item;
}

TExtendedEventDescriptor* TExtendedEventDescriptor::parse(unsigned char* data, unsigned int len,
                                                          unsigned int* bytesRead,
                                                          unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 6, 0x4E))
        return nullptr;
    TExtendedEventDescriptor* d = new TExtendedEventDescriptor(data, len);
    // Bytes still to read from the current position; the header check
    // guarantees eight bytes in all, so it stays positive up to the items.
    long long remaining = static_cast<long long>(len) - 2;
    d->descriptorNumber = data[2] >> 4;
    d->lastDescriptorNumber = data[2] & 0x0F;
    remaining -= 1;

    if (ParserUtils::parseStr(data + 3, d->languageCode, 3, static_cast<unsigned int>(remaining)) !=
        3) {
        SARN_LOGW("%s: TExtendedEventDescriptor::parse error parsing Language Code. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    remaining -= 3;

    const unsigned int itemsLength = data[6];
    remaining -= 1;
    if (itemsLength > remaining) {
        SARN_LOGW(
            "%s: TExtendedEventDescriptor::parse Declared items length is larger than the buffer "
            "size (%u > %d)",
            itemsLength, static_cast<int>(remaining));
        delete d;
        ISDBTUtils::setErrorCode(err, ERROR_INVALID_DATA);
        return nullptr;
    }

    // Each item is offered every byte left, not only the rest of the items
    // area, so the last item may run past length_of_items.
    unsigned char* position = data + 7;
    unsigned int consumed = 0;
    while (remaining > 0 && consumed < itemsLength) {
        unsigned int itemRead = 0;
        TExtendedEventDescriptorItem* item = TExtendedEventDescriptorItem::parse(
            position, static_cast<unsigned int>(remaining), &itemRead, err);
        if (item == nullptr) {
            delete d;
            return nullptr;
        }
        d->items.push_back(item);
        position += itemRead;
        remaining -= itemRead;
        consumed += itemRead;
    }

    if (remaining > 0) {
        const unsigned int textLength = *position++;
        remaining -= 1;
        if (textLength > 0 && ParserUtils::parseStr(position, d->text, textLength,
                                                    static_cast<unsigned int>(remaining)) !=
                                  static_cast<int>(textLength)) {
            SARN_LOGW("%s: TExtendedEventDescriptor::parse error parsing text. Aborting!");
            ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
            delete d;
            return nullptr;
        }
    } else {
        SARN_LOGW(
            "%s: TExtendedEventDescriptor::parse Missing bytes to read the text length field.");
        delete d;
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    // Two less than the size on the wire (and less again by any control bytes
    // dropped from the text): callers walking a loop use descriptor_length.
    if (bytesRead != nullptr)
        *bytesRead = consumed + 6 + static_cast<unsigned int>(d->text.size());
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

TExtendedEventDescriptorItem* TExtendedEventDescriptor::get(unsigned char index) const {
    return index < items.size() ? items[index] : nullptr;
}

std::string TExtendedEventDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"descriptor_number\":" << descriptorNumber
      << ",\"last_descriptor_number\":" << lastDescriptorNumber << ",\"ISO_639_language_code\":\""
      << languageCode << "\",\"items\":[";
    // Each item is one string, "name : value".
    for (size_t i = 0; i < items.size(); ++i) {
        if (i != 0)
            o << ',';
        o << '"' << ISDBTUtils::escapeJSONString(items[i]->description) << " : "
          << ISDBTUtils::escapeJSONString(items[i]->text) << '"';
    }
    o << "],\"text\":\"" << ISDBTUtils::escapeJSONString(text) << '"';
    return out;
}

}  // namespace Sarn
