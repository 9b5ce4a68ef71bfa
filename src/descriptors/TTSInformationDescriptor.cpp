#include "TTSInformationDescriptor.h"

#include "DescriptorParse.h"
#include "ItemLoop.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

namespace Sarn {

TTSInformationDescriptorItem::TTSInformationDescriptorItem() {}

TTSInformationDescriptorItem::~TTSInformationDescriptorItem() {
    delete[] services;
}

TTSInformationDescriptorItem* TTSInformationDescriptorItem::parse(unsigned char* bytes,
                                                                  unsigned int length,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* error) {
    bytes::Reader r(bytes, length);
    if (!r.has(2)) {
        SARN_LOGW("%s: TTSInformationDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TTSInformationDescriptorItem> item(new TTSInformationDescriptorItem());
    item->transmissionTypeInfo = r.u8();
    item->numberOfServices = r.u8();
    if (item->numberOfServices != 0) {
        // Announced services that the bytes do not reach stay 0; the count
        // is kept as announced.
        item->services = new unsigned short[item->numberOfServices]();
        for (unsigned int i = 0; i < item->numberOfServices && r.has(2); ++i)
            item->services[i] = r.u16();
    }
    return parse::done(error, item, bytesRead, r.position());
}

TTSInformationDescriptor::TTSInformationDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xCD, bytes, length) {}

TTSInformationDescriptor::~TTSInformationDescriptor() {
    owned::deleteAll(transmissionTypes);
}

SARN_DESCRIPTOR_PARSE(TTSInformationDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TTSInformationDescriptor, bytes, length, error, 2, 0xCD);
    d->remoteControlKeyId = r.u8();
    // length_of_ts_name (6 bits) and transmission_type_count (2 bits).
    const unsigned char counts = r.u8();
    const unsigned int nameLength = counts >> 2;
    const unsigned int typeCount = counts & 0x03;
    if (nameLength != 0 &&
        r.loggedString(d->transportStreamName, nameLength, arena) != static_cast<int>(nameLength)) {
        SARN_LOGW("%s: TTSInformationDescriptor:: parse: ERROR: parsing TS Name. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    for (unsigned int i = 0; i < typeCount && !r.atEnd(); ++i) {
        std::unique_ptr<TTSInformationDescriptorItem> item =
            nextItem<TTSInformationDescriptorItem>(r, error);
        if (item == nullptr) {
            SARN_LOGW("%s: TTSInformationDescriptor::parse: Invalid item. Aborting!");
            return parse::fail(error, ERROR_DESCRIPTOR_LENGTH);
        }
        d->transmissionTypes.push_back(item.release());
    }
    const size_t count = d->transmissionTypes.size();
    d->txInformation = count >= 1 && count <= 3 ? static_cast<unsigned char>(count) : 0;
    return parse::done(error, d, bytesRead, r.position());
}

void TTSInformationDescriptor::addTransmissionType(TTSInformationDescriptorItem* item) {
    if (item != nullptr)
        transmissionTypes.push_back(item);
}

TTSInformationDescriptorItem* TTSInformationDescriptor::getTransmissionType(
    unsigned char index) const {
    return owned::at(transmissionTypes, index);
}

bool TTSInformationDescriptor::removeTransmissionType(unsigned char index) {
    return owned::removeAt(transmissionTypes, index);
}

void TTSInformationDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"tsInformationDescriptor\",\"remoteControlKeyId\":" << remoteControlKeyId
      << ",\"tsName\":\"" << transportStreamName << "\",\"loop\":[";
    for (size_t i = 0; i < transmissionTypes.size(); ++i) {
        const TTSInformationDescriptorItem* item = transmissionTypes[i];
        if (i > 0)
            o << ',';
        o << "{\"transmissionLayer\":" << item->getTransmissionParameterType()
          << ",\"modulationSystem\":" << item->getModulationSystem() << ",\"serviceId\":[";
        for (unsigned int s = 0; s < item->getNumberOfServices(); ++s) {
            if (s > 0)
                o << ',';
            o << item->getServices()[s];
        }
        o << "]}";
    }
    o << ']';
}

std::string TTSInformationDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
