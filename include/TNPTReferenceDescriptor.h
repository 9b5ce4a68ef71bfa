#ifndef SARN_TNPTREFERENCEDESCRIPTOR_H
#define SARN_TNPTREFERENCEDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * DSM-CC NPT reference descriptor of a stream descriptor section (0x3D):
 * maps a system time clock value onto normal play time, with the rate
 * scale_numerator / scale_denominator. The 33-bit clock values are split into
 * bit 32 (H) and bits 31-0 (L). Renders as the base descriptor.
 */
class TNPTReferenceDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x01;

    /** Needs a descriptor_length of at least 18; never writes *bytesRead. */
    static TNPTReferenceDescriptor* parse(unsigned char* data, unsigned int length,
                                          unsigned int* bytesRead, unsigned short* error);

    TNPTReferenceDescriptor(unsigned char* data, unsigned int length);
    ~TNPTReferenceDescriptor() override;

    bool isPostDiscontinuity() const { return postDiscontinuityIndicator != 0; }
    unsigned char getDSMCCContentID() const { return contentId; }
    unsigned char getSTCReferenceH() const { return stcReferenceH; }
    unsigned int getSTCReferenceL() const { return stcReferenceL; }
    unsigned char getNPTReferenceH() const { return nptReferenceH; }
    unsigned int getNPTReferenceL() const { return nptReferenceL; }
    unsigned short getScaleNumerator() const { return scaleNumerator; }
    unsigned short getScaleDenominator() const { return scaleDenominator; }

  private:
    SARN_DESCRIPTOR_BUILD(TNPTReferenceDescriptor)
    int postDiscontinuityIndicator = 0;
    unsigned char contentId = 0;
    unsigned char stcReferenceH = 0;
    unsigned int stcReferenceL = 0;
    unsigned char nptReferenceH = 0;
    unsigned int nptReferenceL = 0;
    unsigned short scaleNumerator = 0;
    unsigned short scaleDenominator = 0;
};

}  // namespace Sarn

#endif
