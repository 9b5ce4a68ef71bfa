#include "TAVCTimingAndHRDDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TAVCTimingAndHRDDescriptor::TAVCTimingAndHRDDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x2A, bytes, length) {}

TAVCTimingAndHRDDescriptor::~TAVCTimingAndHRDDescriptor() {}

namespace {
// The timing fields announced by the flags do not fit in the bytes handed in.
std::nullptr_t refuseShort(unsigned short* error, unsigned int got, unsigned int needed) {
    SARN_LOGW(
        "%s: TAVCTimingAndHRDDescriptor::parse: Longer data length is required: %u < %u. "
        "Aborting!",
        got, needed);
    return parse::fail(error, ERROR_DESCRIPTOR_LENGTH);
}
}  // namespace

SARN_DESCRIPTOR_PARSE(TAVCTimingAndHRDDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TAVCTimingAndHRDDescriptor, bytes, length, error, 2, 0x2A);
    // Two readings of ours differ from the published layout and are kept for
    // the receivers that rely on them: picture_and_timing_info_present is
    // bit 0 of the first payload byte, and the frame-rate flags are taken
    // from the next byte to read after the timing fields, which is the first
    // byte of num_units_in_tick when timing information is present.
    const unsigned char first = r.u8();
    d->hrdManagementValid = (first >> 7) & 1;
    d->pictureTimingInfoPresent = first & 1;
    unsigned int count = 1;
    if (d->pictureTimingInfoPresent) {
        if (r.remaining() < 6)
            return refuseShort(error, r.remaining(), 6);
        d->flag90kHz = (r.u8() >> 7) & 1;
        count = 2;
        if (d->flag90kHz) {
            if (r.remaining() < 13)
                return refuseShort(error, r.remaining(), 13);
            d->n = r.u32();
            d->k = r.u32();
            count = 10;
        }
    }
    const unsigned char flags = r.peek();
    if (d->pictureTimingInfoPresent)
        d->numUnitsInTick = r.u32();
    d->fixedFrameRate = (flags >> 7) & 1;
    d->temporalPoc = (flags >> 6) & 1;
    d->pictureToDisplayConversion = (flags >> 5) & 1;
    return parse::done(error, d, bytesRead, count + 1);
}

void TAVCTimingAndHRDDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    // The 32-bit fields are written as signed numbers.
    o << "\"name\":\"avcTimingAndHrdDescriptor\",\"hrdManagementValidFlag\":" << hrdManagementValid
      << ",\"fixedFrameRateFlag\":" << fixedFrameRate << ",\"temporalPocFlag\":" << temporalPoc
      << ",\"pictureToDisplayConversionFlag\":" << pictureToDisplayConversion
      << ",\"flag90kHz\":" << flag90kHz << ",\"n\":" << static_cast<int>(n)
      << ",\"k\":" << static_cast<int>(k)
      << ",\"numUnitsInTick\":" << static_cast<int>(numUnitsInTick);
}

std::string TAVCTimingAndHRDDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
