#include "TSystemManagementDescriptor.h"

#include "DescriptorFields.h"

namespace Sarn {

TSystemManagementDescriptor::TSystemManagementDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xFE, bytes, length),
      systemManagementId(0),
      broadcastingFlag(0),
      broadcastingIdentifier(0),
      additionalBroadcastingIdentification(0),
      additionalIdentificationInfoSize(0),
      additionalIdentificationInfo(nullptr) {}

TSystemManagementDescriptor::~TSystemManagementDescriptor() {
    delete[] additionalIdentificationInfo;
}

TSystemManagementDescriptor* TSystemManagementDescriptor::parse(unsigned char* bytes,
                                                                unsigned int length,
                                                                unsigned int* bytesRead,
                                                                unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0xFE))
        return nullptr;
    TSystemManagementDescriptor* d = new TSystemManagementDescriptor(bytes, length);
    d->systemManagementId = bytes::be16(bytes + 2);
    // The flag is kept in place (0, 64, 128 or 192), not shifted down.
    d->broadcastingFlag = bytes[2] & 0xC0;
    d->broadcastingIdentifier = bytes[2] & 0x3F;
    d->additionalBroadcastingIdentification = bytes[3];
    // Additional identification info runs to the end of the bytes handed in;
    // its size is kept in 8 bits.
    d->additionalIdentificationInfoSize = static_cast<unsigned char>(length - 4);
    d->additionalIdentificationInfo =
        fields::copyBytes(bytes + 4, d->additionalIdentificationInfoSize);
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return d;
}

std::string TSystemManagementDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    // The system_management_id object opens with a comma: part of our JSON
    // interface, kept for the clients that read it.
    o << "\"name\":\"systemManagementDescriptor\",\"system_management_id\":{,\"broadcastingFlag\":"
      << broadcastingFlag << ",\"broadcastingIdentifier\":" << broadcastingIdentifier
      << ",\"additionalBroadcastingIdentification\":" << additionalBroadcastingIdentification
      << '}';
    if (additionalIdentificationInfoSize != 0) {
        o << ",\"additional_identification_info\":\"0x";
        json::appendHexBytes(o, additionalIdentificationInfo, additionalIdentificationInfoSize);
        o << '"';
    }
    return out;
}

}  // namespace Sarn
