#ifndef SARN_TTIMESHIFTEDSERVICEDESCRIPTOR_H
#define SARN_TTIMESHIFTEDSERVICEDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Time-shifted service descriptor (tag 0x4C): the reference service of which
 * this service is a time-shifted copy. Renders through the base JSON.
 */
class TTimeShiftedServiceDescriptor : public TISDBTDescriptor {
  public:
    /** bytesRead receives the payload size, 2. */
    static TTimeShiftedServiceDescriptor* parse(unsigned char* data, unsigned int length,
                                                unsigned int* bytesRead, unsigned short* error);

    TTimeShiftedServiceDescriptor(unsigned char* data, unsigned int length);
    ~TTimeShiftedServiceDescriptor() override;

    unsigned short getReferenceServiceID() const { return referenceServiceID; }

  private:
    SARN_DESCRIPTOR_BUILD(TTimeShiftedServiceDescriptor)
    unsigned short referenceServiceID = 0;
};

}  // namespace Sarn

#endif
