#include "TTimeShiftedServiceDescriptor.h"

#include "Bytes.h"

namespace Sarn {

TTimeShiftedServiceDescriptor::TTimeShiftedServiceDescriptor(unsigned char* bytes,
                                                             unsigned int length)
    : TISDBTDescriptor(0x4C, bytes, length), referenceServiceID(0) {}

TTimeShiftedServiceDescriptor::~TTimeShiftedServiceDescriptor() {}

TTimeShiftedServiceDescriptor* TTimeShiftedServiceDescriptor::parse(unsigned char* bytes,
                                                                    unsigned int length,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0x4C))
        return nullptr;
    TTimeShiftedServiceDescriptor* d = new TTimeShiftedServiceDescriptor(bytes, length);
    d->referenceServiceID = bytes::be16(bytes + 2);
    if (bytesRead != nullptr)
        *bytesRead = 2;
    return d;
}

}  // namespace Sarn
