#include "TAVCTimingAndHRDDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"

namespace Sarn {

TAVCTimingAndHRDDescriptor::TAVCTimingAndHRDDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x2A, bytes, length),
      hrdManagementValid(0),
      pictureTimingInfoPresent(0),
      flag90kHz(0),
      n(0),
      k(0),
      numUnitsInTick(0),
      fixedFrameRate(0),
      temporalPoc(0),
      pictureToDisplayConversion(0) {}

TAVCTimingAndHRDDescriptor::~TAVCTimingAndHRDDescriptor() {}

namespace {
// The timing fields announced by the flags do not fit in the bytes handed in.
TAVCTimingAndHRDDescriptor* refuseShort(TAVCTimingAndHRDDescriptor* d, unsigned short* error,
                                        unsigned int got, unsigned int needed) {
    SARN_LOGW(
        "%s: TAVCTimingAndHRDDescriptor::parse: Longer data length is required: %u < %u. "
        "Aborting!",
        got, needed);
    ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
    delete d;
    return nullptr;
}
}  // namespace

TAVCTimingAndHRDDescriptor* TAVCTimingAndHRDDescriptor::parse(unsigned char* bytes,
                                                              unsigned int length,
                                                              unsigned int* bytesRead,
                                                              unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 2, 0x2A))
        return nullptr;
    TAVCTimingAndHRDDescriptor* d = new TAVCTimingAndHRDDescriptor(bytes, length);
    // Two readings of ours differ from the published layout and are kept for
    // the receivers that rely on them: picture_and_timing_info_present is
    // bit 0 of the first payload byte, and the frame-rate flags are taken
    // from the byte at p below, which is the first byte of num_units_in_tick
    // when timing information is present.
    d->hrdManagementValid = (bytes[2] >> 7) & 1;
    d->pictureTimingInfoPresent = bytes[2] & 1;
    unsigned int p = 3;
    unsigned int count = 1;
    if (d->pictureTimingInfoPresent) {
        if (length - 3 < 6)
            return refuseShort(d, error, length - 3, 6);
        d->flag90kHz = (bytes[3] >> 7) & 1;
        p = 4;
        count = 2;
        if (d->flag90kHz) {
            if (length - 3 < 14)
                return refuseShort(d, error, length - 4, 13);
            d->n = bytes::be32(bytes + 4);
            d->k = bytes::be32(bytes + 8);
            p = 12;
            count = 10;
        }
        d->numUnitsInTick = bytes::be32(bytes + p);
    }
    d->fixedFrameRate = (bytes[p] >> 7) & 1;
    d->temporalPoc = (bytes[p] >> 6) & 1;
    d->pictureToDisplayConversion = (bytes[p] >> 5) & 1;
    if (bytesRead != nullptr)
        *bytesRead = count + 1;
    return d;
}

std::string TAVCTimingAndHRDDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    // The 32-bit fields are written as signed numbers.
    o << "\"name\":\"avcTimingAndHrdDescriptor\",\"hrdManagementValidFlag\":" << hrdManagementValid
      << ",\"fixedFrameRateFlag\":" << fixedFrameRate << ",\"temporalPocFlag\":" << temporalPoc
      << ",\"pictureToDisplayConversionFlag\":" << pictureToDisplayConversion
      << ",\"flag90kHz\":" << flag90kHz << ",\"n\":" << static_cast<int>(n)
      << ",\"k\":" << static_cast<int>(k)
      << ",\"numUnitsInTick\":" << static_cast<int>(numUnitsInTick);
    return out;
}

}  // namespace Sarn
