#include "TTimeShiftedServiceDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TTimeShiftedServiceDescriptor::TTimeShiftedServiceDescriptor(unsigned char* bytes,
                                                             unsigned int length)
    : TISDBTDescriptor(0x4C, bytes, length) {}

TTimeShiftedServiceDescriptor::~TTimeShiftedServiceDescriptor() {}

SARN_DESCRIPTOR_PARSE(TTimeShiftedServiceDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TTimeShiftedServiceDescriptor, bytes, length, error, 2, 0x4C);
    d->referenceServiceID = r.u16();
    return parse::done(error, d, bytesRead, 2);
}

}  // namespace Sarn
