#include "TNPTReferenceDescriptor.h"

#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TNPTReferenceDescriptor::TNPTReferenceDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length) {}

TNPTReferenceDescriptor::~TNPTReferenceDescriptor() {}

SARN_DESCRIPTOR_PARSE(TNPTReferenceDescriptor, arena, bytes, length, bytesRead, error) {
    // post_discontinuity_indicator(1) content_id(7), reserved(7) STC_reference(33),
    // reserved(31) NPT_reference(33), scale_numerator(16), scale_denominator(16).
    SARN_OPEN_OR_RETURN(arena, d, r, TNPTReferenceDescriptor, bytes, length, error, 18,
                        DESCRIPTOR_TAG);
    const unsigned char first = r.u8();
    d->postDiscontinuityIndicator = first >> 7;
    d->contentId = first & 0x7F;
    d->stcReferenceH = r.u8() & 0x01;
    d->stcReferenceL = r.u32();
    r.skip(3);
    d->nptReferenceH = r.u8() & 0x01;
    d->nptReferenceL = r.u32();
    d->scaleNumerator = r.u16();
    d->scaleDenominator = r.u16();
    return parse::done(error, d);
}

}  // namespace Sarn
