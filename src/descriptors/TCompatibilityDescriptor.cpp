// The compatibility structure of a download content descriptor, its entries
// and their sub descriptors.
#include "TCompatibilityDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"
#include "Reader.h"

namespace Sarn {

namespace {
// Model and version are taken as the first byte shifted left by the second,
// cut to 16 bits; from a shift of 16 on nothing is left of the byte.
unsigned short shifted(unsigned char value, unsigned char shift) {
    return shift < 16 ? static_cast<unsigned short>(static_cast<unsigned int>(value) << shift) : 0;
}
}  // namespace

// ---------------------------------------------------------------------------

TCompatibilityDescriptorSubItem::TCompatibilityDescriptorSubItem() {}

TCompatibilityDescriptorSubItem::~TCompatibilityDescriptorSubItem() {
    delete[] additionalInformation;
}

TCompatibilityDescriptorSubItem* TCompatibilityDescriptorSubItem::parse(unsigned char* data,
                                                                        unsigned int length,
                                                                        unsigned int* bytesRead,
                                                                        unsigned short* error) {
    bytes::Reader r(data, length);  // no bytes at all without data
    // subDescriptorType(8) subDescriptorLength(8) additionalInformation; the
    // information must lie within the bytes given as well.
    if (!r.has(2) || r.remaining() - 2 < r.peek(1)) {
        SARN_LOGW(
            "%s: TCompatibilityDescriptorSubItem::parse: Item length not valid: %u. Aborting!",
            r.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TCompatibilityDescriptorSubItem> sub(new TCompatibilityDescriptorSubItem());
    sub->subDescriptorType = r.u8();
    sub->additionalInformationLength = r.u8();
    if (sub->additionalInformationLength != 0 &&
        !r.byteArray(sub->additionalInformation, sub->additionalInformationLength)) {
        SARN_LOGW(
            "%s: TCompatibilityDescriptorSubItem:: parse: ERROR: parsing Additional "
            "Information. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    return parse::done(error, sub, bytesRead, r.position());
}

// ---------------------------------------------------------------------------

TCompatibilityDescriptorItem::TCompatibilityDescriptorItem() {}

TCompatibilityDescriptorItem::~TCompatibilityDescriptorItem() {
    owned::deleteAll(subItems);
}

TCompatibilityDescriptorItem* TCompatibilityDescriptorItem::parse(unsigned char* data,
                                                                  unsigned int length,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* error) {
    bytes::Reader r(data, length);  // no bytes at all without data
    if (!r.has(11)) {
        SARN_LOGW("%s: TCompatibilityDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  r.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    // descriptorType(8) descriptorLength(8, not used) specifierType(8)
    // specifierData(24) model(16) version(16) subDescriptorCount(8).
    std::unique_ptr<TCompatibilityDescriptorItem> item(new TCompatibilityDescriptorItem());
    item->descriptorType = r.u8();
    r.skip(1);
    item->specifierType = r.u8();
    item->specifierData = r.u24();
    const unsigned char model = r.u8();
    item->model = shifted(model, r.u8());
    const unsigned char version = r.u8();
    item->version = shifted(version, r.u8());
    auto store = [&item](TCompatibilityDescriptorSubItem* sub) { item->subItems.push_back(sub); };
    if (!readCounted<TCompatibilityDescriptorSubItem>(r, r.u8(), error, store)) {
        SARN_LOGW("%s: TCompatibilityDescriptorItem::parse: Invalid sub item. Aborting!");
        return parse::fail(error, ERROR_INVALID_ITEM);
    }
    return parse::done(error, item, bytesRead, r.position());
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
    bytes::Reader r(data, length);  // no bytes at all without data
    // compatibilityDescriptorLength(16) descriptorCount(16): without the
    // count there is nothing to read.
    if (!r.has(4)) {
        SARN_LOGW("%s: TCompatibilityDescriptor::parse: Item length not valid: %u. Aborting!",
                  r.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TCompatibilityDescriptor> compatibility(
        new TCompatibilityDescriptor(data, length));
    r.skip(2);
    auto store = [&compatibility](TCompatibilityDescriptorItem* item) {
        compatibility->items.push_back(item);
    };
    if (!readCounted<TCompatibilityDescriptorItem>(r, r.u16(), error, store)) {
        SARN_LOGW("%s: TCompatibilityDescriptor::parse: Invalid item. Aborting!");
        return parse::fail(error, ERROR_INVALID_ITEM);
    }
    // The length field itself is not counted.
    return parse::done(error, compatibility, bytesRead, r.position() - 2);
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
