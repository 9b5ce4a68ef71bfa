#ifndef SARN_TGINGANCLAPPLICATIONLOCATIONDESCRIPTOR_H
#define SARN_TGINGANCLAPPLICATIONLOCATIONDESCRIPTOR_H

#include "TGingaApplicationLocationDescriptor.h"

namespace Sarn {

/** Ginga-NCL application location descriptor (AIT tag 0x07). */
class TGingaNCLApplicationLocationDescriptor : public TGingaApplicationLocationDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x07;

    static TGingaNCLApplicationLocationDescriptor* parse(unsigned char* data, unsigned int len,
                                                         unsigned int* bytesRead,
                                                         unsigned short* err);

    TGingaNCLApplicationLocationDescriptor(unsigned char* bytes, unsigned int len)
        : TGingaApplicationLocationDescriptor(DESCRIPTOR_TAG, bytes, len) {}
    explicit TGingaNCLApplicationLocationDescriptor(
        const TGingaNCLApplicationLocationDescriptor* src)
        : TGingaApplicationLocationDescriptor(src) {}

  private:
    SARN_DESCRIPTOR_BUILD(TGingaNCLApplicationLocationDescriptor)
};

}  // namespace Sarn

#endif
