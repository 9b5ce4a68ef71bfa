#include "THierarchicalTransmissionDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

THierarchicalTransmissionDescriptor::THierarchicalTransmissionDescriptor(unsigned char* bytes,
                                                                         unsigned int length)
    : TISDBTDescriptor(0xC0, bytes, length) {}

THierarchicalTransmissionDescriptor::~THierarchicalTransmissionDescriptor() {}

SARN_DESCRIPTOR_PARSE(THierarchicalTransmissionDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, THierarchicalTransmissionDescriptor, bytes, length, error, 3,
                        0xC0);
    d->qualityLevel = r.u8() & 1;
    d->referencePid = r.pid();
    return parse::done(error, d, bytesRead, 3);
}

}  // namespace Sarn
