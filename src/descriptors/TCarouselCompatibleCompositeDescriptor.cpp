#include "TCarouselCompatibleCompositeDescriptor.h"

#include "Arena.h"
#include "Log.h"

namespace Sarn {

TCarouselCompatibleCompositeDescriptor::TCarouselCompatibleCompositeDescriptor(unsigned char* bytes,
                                                                               unsigned int length)
    : TISDBTDescriptor(0xF7, bytes, length) {}

TCarouselCompatibleCompositeDescriptor::~TCarouselCompatibleCompositeDescriptor() {}

SARN_DESCRIPTOR_PARSE(TCarouselCompatibleCompositeDescriptor, arena, bytes, length, bytesRead,
                      error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0xF7))
        return nullptr;
    // The composite's sub-descriptors are not decoded: the caller still gets
    // an object carrying the raw payload.
    SARN_LOGW(
        "%s: TCarouselCompatibleCompositeDescriptor::parse: TODO: Descriptor not implemented yet. "
        "If you really need this descriptor, please contact support.");
    if (bytesRead != nullptr)
        *bytesRead = length;
    return memory::make<TCarouselCompatibleCompositeDescriptor>(arena, bytes, length);
}

}  // namespace Sarn
