#include "TTSInformationDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "ParserUtils.h"

namespace Sarn {

TTSInformationDescriptorItem::TTSInformationDescriptorItem()
    : transmission_type_info(0), number_of_services(0), services(nullptr) {}

TTSInformationDescriptorItem::~TTSInformationDescriptorItem() {
    delete[] services;
    services = nullptr;
    number_of_services = 0;
}

TTSInformationDescriptorItem* TTSInformationDescriptorItem::parse(unsigned char* bytes,
                                                                  unsigned int length,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* error) {
    if (bytes == nullptr || length < 2) {
        SARN_LOGW("%s: TTSInformationDescriptorItem::parse: Item length not valid: %u. Aborting!",
                  length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TTSInformationDescriptorItem* item = new TTSInformationDescriptorItem();
    item->transmission_type_info = bytes[0];
    item->number_of_services = bytes[1];
    unsigned int pos = 2;
    if (item->number_of_services != 0) {
        // Announced services that the bytes do not reach stay 0; the count
        // is kept as announced.
        item->services = new unsigned short[item->number_of_services]();
        for (unsigned int i = 0; i < item->number_of_services && pos + 1 < length; ++i, pos += 2)
            item->services[i] = bytes::be16(bytes + pos);
    }
    if (bytesRead != nullptr)
        *bytesRead = pos;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return item;
}

TTSInformationDescriptor::TTSInformationDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xCD, bytes, length), remote_control_key_id(0), txInformation(0) {}

TTSInformationDescriptor::~TTSInformationDescriptor() {
    owned::deleteAll(transmissionTypes);
}

TTSInformationDescriptor* TTSInformationDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                          unsigned int* bytesRead,
                                                          unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0xCD))
        return nullptr;
    TTSInformationDescriptor* d = new TTSInformationDescriptor(bytes, length);
    d->remote_control_key_id = bytes[2];
    // length_of_ts_name (6 bits) and transmission_type_count (2 bits).
    const unsigned int nameLength = bytes[3] >> 2;
    const unsigned int typeCount = bytes[3] & 0x03;
    unsigned int pos = 4;
    if (nameLength != 0) {
        if (ParserUtils::parseStr(bytes + 4, d->transportStreamName, nameLength, length - 4) !=
            static_cast<int>(nameLength)) {
            SARN_LOGW("%s: TTSInformationDescriptor:: parse: ERROR: parsing TS Name. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
            delete d;
            return nullptr;
        }
        pos += nameLength;
    }
    for (unsigned int i = 0; i < typeCount && pos < length; ++i) {
        unsigned int n = 0;
        TTSInformationDescriptorItem* item =
            TTSInformationDescriptorItem::parse(bytes + pos, length - pos, &n, error);
        if (item == nullptr) {
            SARN_LOGW("%s: TTSInformationDescriptor::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
            delete d;
            return nullptr;
        }
        d->transmissionTypes.push_back(item);
        pos += n;
    }
    const size_t count = d->transmissionTypes.size();
    d->txInformation = count >= 1 && count <= 3 ? static_cast<unsigned char>(count) : 0;
    if (bytesRead != nullptr)
        *bytesRead = pos;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
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
    return owned::eraseAt(transmissionTypes, index);
}

std::string TTSInformationDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"tsInformationDescriptor\",\"remoteControlKeyId\":" << remote_control_key_id
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
    return out;
}

}  // namespace Sarn
