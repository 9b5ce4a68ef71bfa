#ifndef SARN_TGINGAJAVAAPPLICATIONDESCRIPTOR_H
#define SARN_TGINGAJAVAAPPLICATIONDESCRIPTOR_H

#include "TGingaApplicationDescriptor.h"

namespace Sarn {

/** Ginga-J (Java) application descriptor (AIT tag 0x03). */
class TGingaJavaApplicationDescriptor : public TGingaApplicationDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x03;

    static TGingaJavaApplicationDescriptor* parse(unsigned char* data, unsigned int len,
                                                  unsigned int* bytesRead, unsigned short* err);

    TGingaJavaApplicationDescriptor(unsigned char* bytes, unsigned int len)
        : TGingaApplicationDescriptor(DESCRIPTOR_TAG, bytes, len) {}
    explicit TGingaJavaApplicationDescriptor(const TGingaJavaApplicationDescriptor* src)
        : TGingaApplicationDescriptor(src) {}

  private:
    SARN_DESCRIPTOR_BUILD(TGingaJavaApplicationDescriptor)
};

}  // namespace Sarn

#endif
