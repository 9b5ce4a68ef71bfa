#ifndef SARN_TVIDEODECODECONTROLDESCRIPTOR_H
#define SARN_TVIDEODECODECONTROLDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** Video decode control descriptor (tag 0xC8): still picture, sequence end, encode format. */
class TVideoDecodeControlDescriptor : public TISDBTDescriptor {
  public:
    static TVideoDecodeControlDescriptor* parse(unsigned char* data, unsigned int length,
                                                unsigned int* bytesRead, unsigned short* error);

    TVideoDecodeControlDescriptor(unsigned char* data, unsigned int length);
    ~TVideoDecodeControlDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int isStillPicture() const { return stillPicture; }
    int hasSequenceEndCode() const { return sequenceEndCode; }
    unsigned char getVideoEncodeFormat() const { return videoEncodeFormat; }

  private:
    SARN_DESCRIPTOR_BUILD(TVideoDecodeControlDescriptor)
    int stillPicture = 0;
    int sequenceEndCode = 0;
    unsigned char videoEncodeFormat = 0;
};

}  // namespace Sarn

#endif
