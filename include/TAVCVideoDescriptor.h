#ifndef SARN_TAVCVIDEODESCRIPTOR_H
#define SARN_TAVCVIDEODESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** AVC video descriptor (tag 0x28): H.264 profile, constraint flags and level. */
class TAVCVideoDescriptor : public TISDBTDescriptor {
  public:
    static TAVCVideoDescriptor* parse(unsigned char* data, unsigned int length,
                                      unsigned int* bytesRead, unsigned short* error);

    TAVCVideoDescriptor(unsigned char* data, unsigned int length);
    ~TAVCVideoDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned char getProfileIDC() const { return profileIdc; }
    int getConstraintSet0Flag() const { return constraintSet0Flag; }
    int getConstraintSet1Flag() const { return constraintSet1Flag; }
    int getConstraintSet2Flag() const { return constraintSet2Flag; }
    unsigned char getAVCCompatibleFlags() const { return avcCompatibleFlags; }
    unsigned char getLevelIDC() const { return levelIdc; }
    int isAVCStillPresent() const { return avcStillPresent; }
    int getAVC24HourPictureFlag() const { return avc24HourPictureFlag; }

  private:
    SARN_DESCRIPTOR_BUILD(TAVCVideoDescriptor)
    unsigned char profileIdc = 0;
    int constraintSet0Flag = 0;
    int constraintSet1Flag = 0;
    int constraintSet2Flag = 0;
    unsigned char avcCompatibleFlags = 0;
    unsigned char levelIdc = 0;
    int avcStillPresent = 0;
    int avc24HourPictureFlag = 0;
};

}  // namespace Sarn

#endif
