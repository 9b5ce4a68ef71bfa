#ifndef SARN_TLDMDESCRIPTOR_H
#define SARN_TLDMDESCRIPTOR_H

#include <list>
#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Libras data message (tag 0x7C): a message identifier and the gloss strings
 * to be signed, in wire order. The parser is lenient: it checks no header,
 * writes neither the byte count nor the error code, and renders through the
 * base JSON.
 */
class TLDMDescriptor : public TISDBTDescriptor {
  public:
    /** Null only when a gloss runs past the bytes handed in. */
    static TLDMDescriptor* parse(unsigned char* data, unsigned int length, unsigned int* bytesRead,
                                 unsigned short* error);

    TLDMDescriptor(unsigned char* data, unsigned int length);
    ~TLDMDescriptor() override;

    unsigned char getMessageId() const { return messageId; }
    std::list<std::string> getGlosas() const { return glosas; }

  private:
    SARN_DESCRIPTOR_BUILD(TLDMDescriptor)
    unsigned char messageId = 0;
    std::list<std::string> glosas;
};

}  // namespace Sarn

#endif
