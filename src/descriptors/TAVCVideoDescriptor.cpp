#include "TAVCVideoDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "Json.h"
#include "Reader.h"

namespace Sarn {

TAVCVideoDescriptor::TAVCVideoDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x28, bytes, length) {}

TAVCVideoDescriptor::~TAVCVideoDescriptor() {}

SARN_DESCRIPTOR_PARSE(TAVCVideoDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TAVCVideoDescriptor, bytes, length, error, 4, 0x28);
    d->profileIdc = r.u8();
    const unsigned char constraints = r.u8();
    d->constraintSet0Flag = (constraints >> 7) & 1;
    d->constraintSet1Flag = (constraints >> 6) & 1;
    d->constraintSet2Flag = (constraints >> 5) & 1;
    d->avcCompatibleFlags = constraints & 0x1F;
    d->levelIdc = r.u8();
    const unsigned char flags = r.u8();
    d->avcStillPresent = (flags >> 7) & 1;
    d->avc24HourPictureFlag = (flags >> 6) & 1;
    return parse::done(error, d, bytesRead, 4);
}

void TAVCVideoDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"avcVideoDescriptor\",\"profileIdc\":" << profileIdc
      << ",\"constraintSet0Flag\":" << constraintSet0Flag
      << ",\"constraintSet1Flag\":" << constraintSet1Flag
      << ",\"constraintSet2Flag\":" << constraintSet2Flag
      << ",\"avcCompatibleFlags\":" << avcCompatibleFlags << ",\"levelIdc\":" << levelIdc
      << ",\"avcStillPresent\":" << avcStillPresent
      << ",\"avc24HourPictureFlag\":" << avc24HourPictureFlag;
}

std::string TAVCVideoDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
