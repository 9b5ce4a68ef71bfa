#ifndef SARN_TGINGANCLAPPLICATIONDESCRIPTOR_H
#define SARN_TGINGANCLAPPLICATIONDESCRIPTOR_H

#include "TGingaApplicationDescriptor.h"

namespace Sarn {

/** Ginga-NCL application descriptor (AIT tag 0x06). */
class TGingaNCLApplicationDescriptor : public TGingaApplicationDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x06;

    static TGingaNCLApplicationDescriptor* parse(unsigned char* data, unsigned int len,
                                                 unsigned int* bytesRead, unsigned short* err);

    TGingaNCLApplicationDescriptor(unsigned char* bytes, unsigned int len)
        : TGingaApplicationDescriptor(DESCRIPTOR_TAG, bytes, len) {}
    explicit TGingaNCLApplicationDescriptor(const TGingaNCLApplicationDescriptor* src)
        : TGingaApplicationDescriptor(src) {}

  private:
    SARN_DESCRIPTOR_BUILD(TGingaNCLApplicationDescriptor)
};

}  // namespace Sarn

#endif
