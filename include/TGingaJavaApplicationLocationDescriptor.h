#ifndef SARN_TGINGAJAVAAPPLICATIONLOCATIONDESCRIPTOR_H
#define SARN_TGINGAJAVAAPPLICATIONLOCATIONDESCRIPTOR_H

#include "TGingaApplicationLocationDescriptor.h"

namespace Sarn {

/** Ginga-J (Java) application location descriptor (AIT tag 0x04). */
class TGingaJavaApplicationLocationDescriptor : public TGingaApplicationLocationDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x04;

    static TGingaJavaApplicationLocationDescriptor* parse(unsigned char* data, unsigned int len,
                                                          unsigned int* bytesRead,
                                                          unsigned short* err);

    TGingaJavaApplicationLocationDescriptor(unsigned char* bytes, unsigned int len)
        : TGingaApplicationLocationDescriptor(DESCRIPTOR_TAG, bytes, len) {}
    explicit TGingaJavaApplicationLocationDescriptor(
        const TGingaJavaApplicationLocationDescriptor* src)
        : TGingaApplicationLocationDescriptor(src) {}

  private:
    SARN_DESCRIPTOR_BUILD(TGingaJavaApplicationLocationDescriptor)
};

}  // namespace Sarn

#endif
