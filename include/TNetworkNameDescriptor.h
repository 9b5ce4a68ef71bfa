#ifndef SARN_TNETWORKNAMEDESCRIPTOR_H
#define SARN_TNETWORKNAMEDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** Network name descriptor (tag 0x40): the network's name, the whole payload. */
class TNetworkNameDescriptor : public TISDBTDescriptor {
  public:
    /** *bytesRead receives the payload size (length - 2). */
    static TNetworkNameDescriptor* parse(unsigned char* data, unsigned int length,
                                         unsigned int* bytesRead, unsigned short* error);

    TNetworkNameDescriptor(unsigned char* data, unsigned int length);
    ~TNetworkNameDescriptor() override;

    /** Raw 8-bit broadcast codes, control codes removed. */
    std::string getNetworkName() const { return networkName.str(); }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TNetworkNameDescriptor)
    memory::Text networkName;
};

}  // namespace Sarn

#endif
