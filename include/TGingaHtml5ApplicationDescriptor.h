#ifndef SARN_TGINGAHTML5APPLICATIONDESCRIPTOR_H
#define SARN_TGINGAHTML5APPLICATIONDESCRIPTOR_H

#include "TGingaApplicationDescriptor.h"

namespace Sarn {

/** Ginga HTML5 application descriptor (AIT tag 0x0E). */
class TGingaHtml5ApplicationDescriptor : public TGingaApplicationDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x0E;

    static TGingaHtml5ApplicationDescriptor* parse(unsigned char* data, unsigned int len,
                                                   unsigned int* bytesRead, unsigned short* err);

    TGingaHtml5ApplicationDescriptor(unsigned char* bytes, unsigned int len)
        : TGingaApplicationDescriptor(DESCRIPTOR_TAG, bytes, len) {}
    explicit TGingaHtml5ApplicationDescriptor(const TGingaHtml5ApplicationDescriptor* src)
        : TGingaApplicationDescriptor(src) {}

  private:
    SARN_DESCRIPTOR_BUILD(TGingaHtml5ApplicationDescriptor)
};

}  // namespace Sarn

#endif
