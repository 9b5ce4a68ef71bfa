#include "TSystemManagementDescriptor.h"

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TSystemManagementDescriptor::TSystemManagementDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0xFE, bytes, length) {}

TSystemManagementDescriptor::~TSystemManagementDescriptor() {
    releaseObject(additionalIdentificationInfo);
}

SARN_DESCRIPTOR_PARSE(TSystemManagementDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TSystemManagementDescriptor, bytes, length, error, 2, 0xFE);
    d->systemManagementId = r.u16();
    const unsigned int broadcasting = d->systemManagementId >> 8;
    // The flag is kept in place (0, 64, 128 or 192), not shifted down.
    d->broadcastingFlag = broadcasting & 0xC0;
    d->broadcastingIdentifier = broadcasting & 0x3F;
    d->additionalBroadcastingIdentification = d->systemManagementId & 0xFF;
    // Additional identification info runs to the end of the bytes handed in;
    // its size is kept in 8 bits.
    d->additionalIdentificationInfo =
        fields::copyRest8(arena, r, d->additionalIdentificationInfoSize);
    return parse::done(error, d, bytesRead, length - 2);
}

void TSystemManagementDescriptor::appendJSON(std::string& out) const {
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
}

std::string TSystemManagementDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
