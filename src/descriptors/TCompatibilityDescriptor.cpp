// The compatibility structure of a download content descriptor, its entries
// and their sub descriptors.
#include "TCompatibilityDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"

namespace Sarn {

namespace {
// Model and version are taken as the first byte shifted left by the second,
// cut to 16 bits; from a shift of 16 on nothing is left of the byte.
unsigned short shifted(unsigned char value, unsigned char shift) {
    return shift < 16 ? static_cast<unsigned short>(static_cast<unsigned int>(value) << shift) : 0;
}
}  // namespace

// ---------------------------------------------------------------------------

TCompatibilityDescriptorSubItem::TCompatibilityDescriptorSubItem()
    : subDescriptorType(0), additionalInformationLength(0), additionalInformation(nullptr) {}

TCompatibilityDescriptorSubItem::~TCompatibilityDescriptorSubItem() {
    delete[] additionalInformation;
}

TCompatibilityDescriptorSubItem* TCompatibilityDescriptorSubItem::parse(unsigned char* data,
                                                                        unsigned int length,
                                                                        unsigned int* bytesRead,
                                                                        unsigned short* error) {
    if (data == nullptr)
        length = 0;
    // subDescriptorType(8) subDescriptorLength(8) additionalInformation; the
    // information must lie within the bytes given as well.
    if (length < 2 || (length - 2 < data[1])) {
        SARN_LOGW(
            "%s: TCompatibilityDescriptorSubItem::parse: Item length not valid: %u. Aborting!",
            length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TCompatibilityDescriptorSubItem* sub = new TCompatibilityDescriptorSubItem();
    sub->subDescriptorType = data[0];
    sub->additionalInformationLength = data[1];
    unsigned int consumed = 2;
    if (sub->additionalInformationLength != 0) {
        ParserUtils::parseByteArray(data + 2, sub->additionalInformation,
                                    sub->additionalInformationLength);
        if (sub->additionalInformation == nullptr) {
            SARN_LOGW(
                "%s: TCompatibilityDescriptorSubItem:: parse: ERROR: parsing Additional "
                "Information. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
            delete sub;
            return nullptr;
        }
        consumed += sub->additionalInformationLength;
    }
    if (bytesRead != nullptr)
        *bytesRead = consumed;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return sub;
}

// ---------------------------------------------------------------------------

TCompatibilityDescriptorItem::TCompatibilityDescriptorItem()
    : descriptorType(0), specifierType(0), specifierData(0), model(0), version(0) {}

TCompatibilityDescriptorItem::~TCompatibilityDescriptorItem() {
    owned::deleteAll(subItems);
}

TCompatibilityDescriptorItem* TCompatibilityDescriptorItem::parse(unsigned char* data,
                                                                  unsigned int length,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* error) {
    if (data == nullptr)
        length = 0;
    if (length < 11) {
        SARN_LOGW("%s: TCompatibilityDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    // descriptorType(8) descriptorLength(8, not used) specifierType(8)
    // specifierData(24) model(16) version(16) subDescriptorCount(8).
    TCompatibilityDescriptorItem* item = new TCompatibilityDescriptorItem();
    item->descriptorType = data[0];
    item->specifierType = data[2];
    item->specifierData = bytes::be24(data + 3);
    item->model = shifted(data[6], data[7]);
    item->version = shifted(data[8], data[9]);
    unsigned int subCount = data[10];
    unsigned int consumed = 11;
    while (subCount != 0) {
        unsigned int read = 0;
        TCompatibilityDescriptorSubItem* sub = TCompatibilityDescriptorSubItem::parse(
            data + consumed, length - consumed, &read, error);
        if (sub == nullptr) {
            SARN_LOGW("%s: TCompatibilityDescriptorItem::parse: Invalid sub item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_INVALID_ITEM);
            delete item;
            return nullptr;
        }
        item->subItems.push_back(sub);
        consumed += read;
        --subCount;
    }
    if (bytesRead != nullptr)
        *bytesRead = consumed;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return item;
}

TCompatibilityDescriptorSubItem* TCompatibilityDescriptorItem::getCompatibilityDescriptorSubItem(
    unsigned char index) const {
    return owned::at(subItems, index);
}

void TCompatibilityDescriptorItem::addCompatibilityDescriptorSubItem(
    TCompatibilityDescriptorSubItem* subItem) {
    owned::append(subItems, subItem);
}

bool TCompatibilityDescriptorItem::removeCompatibilityDescriptorSubItem(unsigned char index) {
    return owned::removeAt(subItems, index);
}

// ---------------------------------------------------------------------------

TCompatibilityDescriptor::TCompatibilityDescriptor(unsigned char* /*data*/,
                                                   unsigned int /*length*/) {}

TCompatibilityDescriptor::~TCompatibilityDescriptor() {
    owned::deleteAll(items);
}

TCompatibilityDescriptor* TCompatibilityDescriptor::parse(unsigned char* data, unsigned int length,
                                                          unsigned int* bytesRead,
                                                          unsigned short* error) {
    if (data == nullptr)
        length = 0;
    // compatibilityDescriptorLength(16) descriptorCount(16): without the
    // count there is nothing to read.
    if (length < 4) {
        SARN_LOGW("%s: TCompatibilityDescriptor::parse: Item length not valid: %u. Aborting!",
                  length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TCompatibilityDescriptor* compatibility = new TCompatibilityDescriptor(data, length);
    unsigned int count = bytes::be16(data + 2);
    unsigned int p = 4;
    while (count != 0) {
        unsigned int read = 0;
        TCompatibilityDescriptorItem* item =
            TCompatibilityDescriptorItem::parse(data + p, length - p, &read, error);
        if (item == nullptr) {
            SARN_LOGW("%s: TCompatibilityDescriptor::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_INVALID_ITEM);
            delete compatibility;
            return nullptr;
        }
        compatibility->items.push_back(item);
        p += read;
        --count;
    }
    // The length field itself is not counted.
    if (bytesRead != nullptr)
        *bytesRead = p - 2;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return compatibility;
}

TCompatibilityDescriptorItem* TCompatibilityDescriptor::getCompatibilityDescriptorItem(
    unsigned char index) const {
    return owned::at(items, index);
}

void TCompatibilityDescriptor::addCompatibilityDescriptorItem(TCompatibilityDescriptorItem* item) {
    owned::append(items, item);
}

bool TCompatibilityDescriptor::removeCompatibilityDescriptorItem(unsigned char index) {
    return owned::removeAt(items, index);
}

}  // namespace Sarn
