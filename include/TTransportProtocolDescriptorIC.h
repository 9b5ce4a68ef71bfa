#ifndef SARN_TTRANSPORTPROTOCOLDESCRIPTORIC_H
#define SARN_TTRANSPORTPROTOCOLDESCRIPTORIC_H

#include <string>
#include <utility>
#include <vector>

#include "TTransportProtocolDescriptor.h"

namespace Sarn {

/**
 * Interaction channel transport: URL bases, each with its URL extensions.
 * parse() does not build it (protocol_id 3 is refused); the class is here
 * for callers that read such a selector themselves through parseData.
 */
class TTransportProtocolDescriptorIC : public TTransportProtocolDescriptor {
  public:
    TTransportProtocolDescriptorIC(unsigned char* data, unsigned int len);
    explicit TTransportProtocolDescriptorIC(const TTransportProtocolDescriptorIC* src);
    ~TTransportProtocolDescriptorIC() override;

    int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                  unsigned short* err) override;

    unsigned int getURLCount() const { return static_cast<unsigned int>(urls.size()); }
    /** The URL base at index, or an empty string beyond the end. */
    std::string getURLBase(unsigned int index) const;
    /** Number of extensions of the URL at index (0 beyond the end). */
    unsigned int getURLExtensionCount(unsigned int index) const;
    /** An extension of the URL at index, or an empty string beyond either end. */
    std::string getURLExtension(unsigned int index, unsigned int extensionIndex) const;

  private:
    std::vector<std::pair<std::string, std::vector<std::string>>> urls;
};

}  // namespace Sarn

#endif
