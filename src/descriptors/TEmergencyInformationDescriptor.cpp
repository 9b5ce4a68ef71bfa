#include "TEmergencyInformationDescriptor.h"

#include <iterator>

#include "Bytes.h"
#include "DescriptorFields.h"
#include "ISDBTUtils.h"
#include "Log.h"

namespace Sarn {

TEmergencyInformationDescriptorItem::TEmergencyInformationDescriptorItem()
    : serviceID(0), start(0), signalLevel(0), areaCodeLength(0), areaCodes(nullptr) {}

TEmergencyInformationDescriptorItem::~TEmergencyInformationDescriptorItem() {
    delete[] areaCodes;
}

TEmergencyInformationDescriptorItem* TEmergencyInformationDescriptorItem::parse(
    unsigned char* bytes, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    // The fixed part is four bytes, but an item is only taken with at least
    // six bytes left.
    if (bytes == nullptr || length < 6) {
        SARN_LOGW(
            "%s: TEmergencyInformationDescriptorItem::parse: Item length not valid: %u. Aborting!",
            length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TEmergencyInformationDescriptorItem* item = new TEmergencyInformationDescriptorItem();
    item->serviceID = bytes::be16(bytes);
    item->start = (bytes[2] >> 7) & 1;
    item->signalLevel = (bytes[2] >> 6) & 1;
    item->areaCodeLength = bytes[3];
    if (item->areaCodeLength % 2 != 0) {
        SARN_LOGE(
            "%s: TEmergencyInformationDescriptorItem::parse The area code length is not a multiple "
            "of 2 (value: %u)",
            static_cast<unsigned int>(item->areaCodeLength));
        ISDBTUtils::setErrorCode(error, ERROR_INVALID_DATA);
        delete item;
        return nullptr;
    }
    // Area codes announced beyond the bytes handed in make the item as short
    // as one without its fixed part.
    if (!bytes::fits(4, item->areaCodeLength, length)) {
        SARN_LOGW(
            "%s: TEmergencyInformationDescriptorItem::parse: Item length not valid: %u. Aborting!",
            length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        delete item;
        return nullptr;
    }
    const unsigned int count = item->areaCodeLength / 2u;
    if (count != 0) {
        // Each code is 12 bits followed by 4 reserved bits.
        item->areaCodes = fields::readBe16Array(bytes + 4, count, count);
        for (unsigned int i = 0; i < count; ++i)
            item->areaCodes[i] >>= 4;
    }
    if (bytesRead != nullptr)
        *bytesRead = item->areaCodeLength + 4u;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return item;
}

TEmergencyInformationDescriptor::TEmergencyInformationDescriptor(unsigned char* bytes,
                                                                 unsigned int length)
    : TISDBTDescriptor(0xFC, bytes, length) {}

TEmergencyInformationDescriptor::~TEmergencyInformationDescriptor() {
    for (TEmergencyInformationDescriptorItem* item : items)
        delete item;
}

TEmergencyInformationDescriptor* TEmergencyInformationDescriptor::parse(unsigned char* bytes,
                                                                        unsigned int length,
                                                                        unsigned int* bytesRead,
                                                                        unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0xFC))
        return nullptr;
    TEmergencyInformationDescriptor* d = new TEmergencyInformationDescriptor(bytes, length);
    // Items fill the bytes handed in, not just descriptor_length.
    unsigned int p = 2;
    unsigned int remaining = length - 2;
    unsigned int itemRead = 0;
    while (remaining != 0) {
        TEmergencyInformationDescriptorItem* item =
            TEmergencyInformationDescriptorItem::parse(bytes + p, remaining, &itemRead, error);
        if (item == nullptr) {
            SARN_LOGW("%s: TEmergencyInformationDescriptor::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
            delete d;
            return nullptr;
        }
        d->items.push_back(item);
        p += itemRead;
        remaining -= itemRead;
    }
    if (bytesRead != nullptr)
        *bytesRead = itemRead;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
}

void TEmergencyInformationDescriptor::add(TEmergencyInformationDescriptorItem* item) {
    if (item != nullptr)
        items.push_back(item);
}

TEmergencyInformationDescriptorItem* TEmergencyInformationDescriptor::get(
    unsigned char index) const {
    if (index >= items.size())
        return nullptr;
    return *std::next(items.begin(), index);
}

bool TEmergencyInformationDescriptor::remove(unsigned char index) {
    if (index >= items.size())
        return false;
    auto it = std::next(items.begin(), index);
    delete *it;
    items.erase(it);
    return true;
}

std::string TEmergencyInformationDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"emergencyInformationDescriptor\",\"loop\":[";
    bool first = true;
    for (const TEmergencyInformationDescriptorItem* item : items) {
        if (!first)
            o << ',';
        first = false;
        o << "{\"serviceId\":" << item->getServiceID() << ",\"start\":" << item->isStart()
          << ",\"signalLevel\":" << item->getSignalLevel() << ",\"areaCodes\":[";
        json::appendNumbers(o, item->getAreaCodes(), item->getAreaCodeCounter());
        o << "]}";
    }
    o << ']';
    return out;
}

}  // namespace Sarn
