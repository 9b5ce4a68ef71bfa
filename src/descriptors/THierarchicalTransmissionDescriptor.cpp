#include "THierarchicalTransmissionDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

THierarchicalTransmissionDescriptor::THierarchicalTransmissionDescriptor(unsigned char* bytes,
                                                                         unsigned int length)
    : TISDBTDescriptor(0xC0, bytes, length) {}

THierarchicalTransmissionDescriptor::~THierarchicalTransmissionDescriptor() {}

THierarchicalTransmissionDescriptor* THierarchicalTransmissionDescriptor::parse(
    unsigned char* bytes, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    auto [d, r] = parse::open<THierarchicalTransmissionDescriptor>(bytes, length, error, 3, 0xC0);
    if (d == nullptr)
        return nullptr;
    d->qualityLevel = r.u8() & 1;
    d->referencePid = r.pid();
    return parse::done(error, d, bytesRead, 3);
}

}  // namespace Sarn
