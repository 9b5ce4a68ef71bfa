#ifndef SARN_TGINGAHTML5APPLICATIONLOCATIONDESCRIPTOR_H
#define SARN_TGINGAHTML5APPLICATIONLOCATIONDESCRIPTOR_H

#include "TGingaApplicationLocationDescriptor.h"

namespace Sarn {

/** Ginga HTML5 application location descriptor (AIT tag 0x0F). */
class TGingaHtml5ApplicationLocationDescriptor : public TGingaApplicationLocationDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x0F;

    static TGingaHtml5ApplicationLocationDescriptor* parse(unsigned char* data, unsigned int len,
                                                           unsigned int* bytesRead,
                                                           unsigned short* err);

    TGingaHtml5ApplicationLocationDescriptor(unsigned char* bytes, unsigned int len)
        : TGingaApplicationLocationDescriptor(DESCRIPTOR_TAG, bytes, len) {}
    explicit TGingaHtml5ApplicationLocationDescriptor(
        const TGingaHtml5ApplicationLocationDescriptor* src)
        : TGingaApplicationLocationDescriptor(src) {}

  private:
    SARN_DESCRIPTOR_BUILD(TGingaHtml5ApplicationLocationDescriptor)
};

}  // namespace Sarn

#endif
