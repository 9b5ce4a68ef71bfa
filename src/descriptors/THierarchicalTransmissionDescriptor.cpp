#include "THierarchicalTransmissionDescriptor.h"

#include "Parse.h"
#include "Reader.h"

namespace Sarn {

THierarchicalTransmissionDescriptor::THierarchicalTransmissionDescriptor(unsigned char* bytes,
                                                                         unsigned int length)
    : TISDBTDescriptor(0xC0, bytes, length), qualityLevel(0), referencePid(0) {}

THierarchicalTransmissionDescriptor::~THierarchicalTransmissionDescriptor() {}

THierarchicalTransmissionDescriptor* THierarchicalTransmissionDescriptor::parse(
    unsigned char* bytes, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 3, 0xC0))
        return nullptr;
    std::unique_ptr<THierarchicalTransmissionDescriptor> d(
        new THierarchicalTransmissionDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->qualityLevel = r.u8() & 1;
    d->referencePid = r.pid();
    if (bytesRead != nullptr)
        *bytesRead = 3;
    return parse::done(error, d);
}

}  // namespace Sarn
