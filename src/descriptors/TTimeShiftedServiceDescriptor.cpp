#include "TTimeShiftedServiceDescriptor.h"

#include "Parse.h"
#include "Reader.h"

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
    std::unique_ptr<TTimeShiftedServiceDescriptor> d(
        new TTimeShiftedServiceDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->referenceServiceID = r.u16();
    if (bytesRead != nullptr)
        *bytesRead = 2;
    return parse::done(error, d);
}

}  // namespace Sarn
