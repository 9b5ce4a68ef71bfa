#include "THierarchicalTransmissionDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

THierarchicalTransmissionDescriptor::THierarchicalTransmissionDescriptor(unsigned char* bytes,
                                                                         unsigned int length)
    : TISDBTDescriptor(0xC0, bytes, length) {}

THierarchicalTransmissionDescriptor::~THierarchicalTransmissionDescriptor() {}

THierarchicalTransmissionDescriptor* THierarchicalTransmissionDescriptor::parse(
    unsigned char* data, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    return build(nullptr, data, length, bytesRead, error);
}

THierarchicalTransmissionDescriptor* THierarchicalTransmissionDescriptor::build(
    memory::Arena* arena, unsigned char* bytes, unsigned int length, unsigned int* bytesRead,
    unsigned short* error) {
    SARN_OPEN_OR_RETURN(arena, d, r, THierarchicalTransmissionDescriptor, bytes, length, error, 3,
                        0xC0);
    d->qualityLevel = r.u8() & 1;
    d->referencePid = r.pid();
    return parse::done(error, d, bytesRead, 3);
}

}  // namespace Sarn
