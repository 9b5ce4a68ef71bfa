#ifndef SARN_TCONTENTDESCRIPTOR_H
#define SARN_TCONTENTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Content descriptor (tag 0x54): the genre of an event. Only the first
 * genre entry is kept, and the descriptor header is not checked: any four
 * bytes are read as tag, length, genre and user byte.
 */
class TContentDescriptor : public TISDBTDescriptor {
  public:
    static TContentDescriptor* parse(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                                     unsigned short* err);

    TContentDescriptor(unsigned char* data, unsigned int len);
    ~TContentDescriptor() override;

    unsigned char getContentNibbleLevel1() const { return contentNibbleLevel1; }
    unsigned char getContentNibbleLevel2() const { return contentNibbleLevel2; }
    /** Both user nibbles, as one byte. */
    unsigned char getUserByte() const { return userByte; }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TContentDescriptor)
    unsigned char contentNibbleLevel1 = 0;
    unsigned char contentNibbleLevel2 = 0;
    unsigned char userByte = 0;
};

}  // namespace Sarn

#endif
