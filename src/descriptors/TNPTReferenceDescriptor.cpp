#include "TNPTReferenceDescriptor.h"

#include "Bytes.h"

namespace Sarn {

TNPTReferenceDescriptor::TNPTReferenceDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length),
      postDiscontinuityIndicator(0),
      contentId(0),
      stcReferenceH(0),
      stcReferenceL(0),
      nptReferenceH(0),
      nptReferenceL(0),
      scaleNumerator(0),
      scaleDenominator(0) {}

TNPTReferenceDescriptor::~TNPTReferenceDescriptor() {}

TNPTReferenceDescriptor* TNPTReferenceDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                        unsigned int* /*bytesRead*/,
                                                        unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 18, DESCRIPTOR_TAG))
        return nullptr;
    // post_discontinuity_indicator(1) content_id(7), reserved(7) STC_reference(33),
    // reserved(31) NPT_reference(33), scale_numerator(16), scale_denominator(16).
    TNPTReferenceDescriptor* d = new TNPTReferenceDescriptor(bytes, length);
    d->postDiscontinuityIndicator = bytes[2] >> 7;
    d->contentId = bytes[2] & 0x7F;
    d->stcReferenceH = bytes[3] & 0x01;
    d->stcReferenceL = bytes::be32(bytes + 4);
    d->nptReferenceH = bytes[11] & 0x01;
    d->nptReferenceL = bytes::be32(bytes + 12);
    d->scaleNumerator = bytes::be16(bytes + 16);
    d->scaleDenominator = bytes::be16(bytes + 18);
    return d;
}

}  // namespace Sarn
