#ifndef SARN_TCAROUSELCOMPATIBLECOMPOSITEDESCRIPTOR_H
#define SARN_TCAROUSELCOMPATIBLECOMPOSITEDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Carousel compatible composite descriptor (tag 0xF7). Its sub-descriptors
 * are not decoded; the object renders the raw payload through the base JSON.
 */
class TCarouselCompatibleCompositeDescriptor : public TISDBTDescriptor {
  public:
    static TCarouselCompatibleCompositeDescriptor* parse(unsigned char* data, unsigned int length,
                                                         unsigned int* bytesRead,
                                                         unsigned short* error);

    TCarouselCompatibleCompositeDescriptor(unsigned char* data, unsigned int length);
    ~TCarouselCompatibleCompositeDescriptor() override;

  private:
    SARN_DESCRIPTOR_BUILD(TCarouselCompatibleCompositeDescriptor)
};

}  // namespace Sarn

#endif
