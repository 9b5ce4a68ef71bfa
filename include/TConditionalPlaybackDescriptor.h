#ifndef SARN_TCONDITIONALPLAYBACKDESCRIPTOR_H
#define SARN_TCONDITIONALPLAYBACKDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** Conditional playback descriptor (tag 0xF8): CA system, ECM PID and private data. */
class TConditionalPlaybackDescriptor : public TISDBTDescriptor {
  public:
    static TConditionalPlaybackDescriptor* parse(unsigned char* data, unsigned int length,
                                                 unsigned int* bytesRead, unsigned short* error);

    TConditionalPlaybackDescriptor(unsigned char* data, unsigned int length);
    TConditionalPlaybackDescriptor(const TConditionalPlaybackDescriptor&) = delete;
    TConditionalPlaybackDescriptor& operator=(const TConditionalPlaybackDescriptor&) = delete;
    ~TConditionalPlaybackDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    unsigned short getCASystemID() const { return caSystemId; }
    unsigned short getCAPID() const { return caPid; }
    unsigned char getPrivateDataSize() const { return privateDataSize; }
    unsigned char* getPrivateData() const { return privateData; }

  private:
    SARN_DESCRIPTOR_BUILD(TConditionalPlaybackDescriptor)
    unsigned short caSystemId = 0;
    unsigned short caPid = 0;
    unsigned char privateDataSize = 0;
    unsigned char* privateData = nullptr;
};

}  // namespace Sarn

#endif
