#ifndef SARN_TAPPLICATIONICONDESCRIPTOR_H
#define SARN_TAPPLICATIONICONDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Application icon descriptor (AIT tag 0x0B): where the icons are (locator)
 * and which sizes exist (icon_flags). Renders with the base members and the
 * raw content only.
 */
class TApplicationIconDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x0B;

    static TApplicationIconDescriptor* parse(unsigned char* data, unsigned int len,
                                             unsigned int* bytesRead, unsigned short* err);

    TApplicationIconDescriptor(unsigned char* data, unsigned int len);
    explicit TApplicationIconDescriptor(const TApplicationIconDescriptor* src);
    ~TApplicationIconDescriptor() override;

    const std::string& getIconLocator() const { return iconLocator; }
    unsigned short getIconFlags() const { return iconFlags; }

  private:
    SARN_DESCRIPTOR_BUILD(TApplicationIconDescriptor)
    std::string iconLocator;
    unsigned short iconFlags = 0;
};

}  // namespace Sarn

#endif
