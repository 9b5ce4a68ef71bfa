#include "TEmergencyInformationDescriptor.h"

#include <iterator>
#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Log.h"

namespace Sarn {

TEmergencyInformationDescriptorItem::TEmergencyInformationDescriptorItem() {}

TEmergencyInformationDescriptorItem::~TEmergencyInformationDescriptorItem() {
    releaseObject(areaCodes);
}

TEmergencyInformationDescriptorItem* TEmergencyInformationDescriptorItem::parse(
    unsigned char* bytes, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    bytes::Reader r(bytes, length);
    // The fixed part is four bytes, but an item is only taken with at least
    // six bytes left. Both shortages log the length handed in.
    auto tooShort = [length, error]() {
        SARN_LOGW(
            "%s: TEmergencyInformationDescriptorItem::parse: Item length not valid: %u. Aborting!",
            length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    };
    if (!r.has(6))
        return tooShort();
    std::unique_ptr<TEmergencyInformationDescriptorItem> item(
        new TEmergencyInformationDescriptorItem());
    item->serviceID = r.u16();
    const unsigned char flags = r.u8();
    item->start = (flags >> 7) & 1;
    item->signalLevel = (flags >> 6) & 1;
    item->areaCodeLength = r.u8();
    if (item->areaCodeLength % 2 != 0) {
        SARN_LOGE(
            "%s: TEmergencyInformationDescriptorItem::parse The area code length is not a multiple "
            "of 2 (value: %u)",
            static_cast<unsigned int>(item->areaCodeLength));
        return parse::fail(error, ERROR_INVALID_DATA);
    }
    // Area codes announced beyond the bytes handed in make the item as short
    // as one without its fixed part.
    if (!r.has(item->areaCodeLength))
        return tooShort();
    const unsigned int count = item->areaCodeLength / 2u;
    if (count != 0) {
        // Each code is 12 bits followed by 4 reserved bits.
        item->areaCodes = fields::readBe16Array(nullptr, r, count, count);
        for (unsigned int i = 0; i < count; ++i)
            item->areaCodes[i] >>= 4;
    }
    return parse::done(error, item, bytesRead, item->areaCodeLength + 4u);
}

TEmergencyInformationDescriptor::TEmergencyInformationDescriptor(unsigned char* bytes,
                                                                 unsigned int length)
    : TISDBTDescriptor(0xFC, bytes, length) {}

TEmergencyInformationDescriptor::~TEmergencyInformationDescriptor() {
    for (TEmergencyInformationDescriptorItem* item : items)
        delete item;
}

SARN_DESCRIPTOR_PARSE(TEmergencyInformationDescriptor, arena, bytes, length, bytesRead, error) {
    // Items fill the bytes handed in, not just descriptor_length; the byte
    // count is the last item's.
    SARN_OPEN_OR_RETURN(arena, d, r, TEmergencyInformationDescriptor, bytes, length, error, 4,
                        0xFC);
    TEmergencyInformationDescriptor* emergency = d.get();
    auto store = [emergency](TEmergencyInformationDescriptorItem* item) {
        emergency->items.push_back(item);
    };
    if (!readItems<TEmergencyInformationDescriptorItem>(r, "TEmergencyInformationDescriptor",
                                                        bytesRead, error, store))
        return nullptr;
    return parse::done(error, d);
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

void TEmergencyInformationDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"emergencyInformationDescriptor\",\"loop\":";
    json::appendArray(o, items, [&o](const TEmergencyInformationDescriptorItem* item) {
        o << "{\"serviceId\":" << item->getServiceID() << ",\"start\":" << item->isStart()
          << ",\"signalLevel\":" << item->getSignalLevel() << ",\"areaCodes\":[";
        json::appendNumbers(o, item->getAreaCodes(), item->getAreaCodeCounter());
        o << "]}";
    });
}

std::string TEmergencyInformationDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
