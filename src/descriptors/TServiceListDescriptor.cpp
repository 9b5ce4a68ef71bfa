#include "TServiceListDescriptor.h"

#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

namespace Sarn {

TServiceListDescriptorItem::~TServiceListDescriptorItem() {}

TServiceListDescriptorItem* TServiceListDescriptorItem::parse(unsigned char* bytes,
                                                              unsigned int length,
                                                              unsigned int* bytesRead,
                                                              unsigned short* error) {
    // An entry is service_id (2) and service_type (1). A remainder of one or
    // two bytes cannot hold one and is refused alike.
    bytes::Reader r(bytes, length);
    if (!r.has(3)) {
        SARN_LOGW(
            "%s: TServiceListDescriptorItem::parse: Descriptor length not valid: %u. Aborting!",
            length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    const unsigned short serviceId = r.u16();
    std::unique_ptr<TServiceListDescriptorItem> item(
        new TServiceListDescriptorItem(serviceId, r.u8()));
    return parse::done(error, item, bytesRead, 3);
}

TServiceListDescriptor::TServiceListDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x41, bytes, length) {}

TServiceListDescriptor::~TServiceListDescriptor() {
    for (auto& entry : items)
        delete entry.second;
}

SARN_DESCRIPTOR_PARSE(TServiceListDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TServiceListDescriptor, bytes, length, error, 2, 0x41);
    // *bytesRead receives the last entry's size.
    TServiceListDescriptor* list = d.get();
    const bool read = readItems<TServiceListDescriptorItem>(
        r, "TServiceListDescriptor", bytesRead, error, [list](TServiceListDescriptorItem* item) {
            // A repeated service_id replaces the earlier entry, which nobody
            // else can hold yet.
            owned::replace(list->items, item->getServiceID(), item);
        });
    if (!read)
        return nullptr;
    return parse::done(error, d);
}

void TServiceListDescriptor::add(TServiceListDescriptorItem* item) {
    if (item != nullptr)
        owned::assign(items, item->getServiceID(), item);
}

TServiceListDescriptorItem* TServiceListDescriptor::get(unsigned short serviceId) const {
    return owned::find(items, serviceId);
}

std::list<unsigned short> TServiceListDescriptor::getServiceIDs() const {
    return owned::keys(items);
}

bool TServiceListDescriptor::remove(unsigned short serviceId) {
    return owned::erase(items, serviceId);
}

void TServiceListDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    // The name member ends with a comma and the loop member begins with one:
    // the double comma is part of our JSON interface and clients expect it.
    o << "\"name\":\"serviceListDescriptor\",,\"loop\":";
    json::appendArray(o, items, [&o](const auto& entry) {
        o << "{\"serviceId\":" << entry.second->getServiceID()
          << ",\"serviceType\":" << entry.second->getServiceType() << '}';
    });
}

std::string TServiceListDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
