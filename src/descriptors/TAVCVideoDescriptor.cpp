#include "TAVCVideoDescriptor.h"

#include <memory>

#include "Json.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TAVCVideoDescriptor::TAVCVideoDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x28, bytes, length),
      profileIdc(0),
      constraintSet0Flag(0),
      constraintSet1Flag(0),
      constraintSet2Flag(0),
      avcCompatibleFlags(0),
      levelIdc(0),
      avcStillPresent(0),
      avc24HourPictureFlag(0) {}

TAVCVideoDescriptor::~TAVCVideoDescriptor() {}

TAVCVideoDescriptor* TAVCVideoDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0x28))
        return nullptr;
    std::unique_ptr<TAVCVideoDescriptor> d(new TAVCVideoDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
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
    if (bytesRead != nullptr)
        *bytesRead = 4;
    return parse::done(error, d);
}

std::string TAVCVideoDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"avcVideoDescriptor\",\"profileIdc\":" << profileIdc
      << ",\"constraintSet0Flag\":" << constraintSet0Flag
      << ",\"constraintSet1Flag\":" << constraintSet1Flag
      << ",\"constraintSet2Flag\":" << constraintSet2Flag
      << ",\"avcCompatibleFlags\":" << avcCompatibleFlags << ",\"levelIdc\":" << levelIdc
      << ",\"avcStillPresent\":" << avcStillPresent
      << ",\"avc24HourPictureFlag\":" << avc24HourPictureFlag;
    return out;
}

}  // namespace Sarn
