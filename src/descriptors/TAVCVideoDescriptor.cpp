#include "TAVCVideoDescriptor.h"

#include "Json.h"

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
    TAVCVideoDescriptor* d = new TAVCVideoDescriptor(bytes, length);
    d->profileIdc = bytes[2];
    d->constraintSet0Flag = (bytes[3] >> 7) & 1;
    d->constraintSet1Flag = (bytes[3] >> 6) & 1;
    d->constraintSet2Flag = (bytes[3] >> 5) & 1;
    d->avcCompatibleFlags = bytes[3] & 0x1F;
    d->levelIdc = bytes[4];
    d->avcStillPresent = (bytes[5] >> 7) & 1;
    d->avc24HourPictureFlag = (bytes[5] >> 6) & 1;
    if (bytesRead != nullptr)
        *bytesRead = 4;
    return d;
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
