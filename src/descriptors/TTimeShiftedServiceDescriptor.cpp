#include "TTimeShiftedServiceDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TTimeShiftedServiceDescriptor::TTimeShiftedServiceDescriptor(unsigned char* bytes,
                                                             unsigned int length)
    : TISDBTDescriptor(0x4C, bytes, length) {}

TTimeShiftedServiceDescriptor::~TTimeShiftedServiceDescriptor() {}

TTimeShiftedServiceDescriptor* TTimeShiftedServiceDescriptor::parse(unsigned char* data,
                                                                    unsigned int length,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* error) {
    return build(nullptr, data, length, bytesRead, error);
}

TTimeShiftedServiceDescriptor* TTimeShiftedServiceDescriptor::build(memory::Arena* arena,
                                                                    unsigned char* bytes,
                                                                    unsigned int length,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TTimeShiftedServiceDescriptor, bytes, length, error, 2, 0x4C);
    d->referenceServiceID = r.u16();
    return parse::done(error, d, bytesRead, 2);
}

}  // namespace Sarn
