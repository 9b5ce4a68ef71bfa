#include "THierarchicalTransmissionDescriptor.h"

#include "Bytes.h"

namespace Sarn {

THierarchicalTransmissionDescriptor::THierarchicalTransmissionDescriptor(unsigned char* bytes,
                                                                         unsigned int length)
    : TISDBTDescriptor(0xC0, bytes, length), qualityLevel(0), referencePid(0) {}

THierarchicalTransmissionDescriptor::~THierarchicalTransmissionDescriptor() {}

THierarchicalTransmissionDescriptor* THierarchicalTransmissionDescriptor::parse(
    unsigned char* bytes, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 3, 0xC0))
        return nullptr;
    THierarchicalTransmissionDescriptor* d = new THierarchicalTransmissionDescriptor(bytes, length);
    d->qualityLevel = bytes[2] & 1;
    d->referencePid = bytes::pid13(bytes + 3);
    if (bytesRead != nullptr)
        *bytesRead = 3;
    return d;
}

}  // namespace Sarn
