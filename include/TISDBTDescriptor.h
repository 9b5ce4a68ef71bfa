#ifndef SARN_TISDBTDESCRIPTOR_H
#define SARN_TISDBTDESCRIPTOR_H

#include <string>

#include "TISDBTDataHolder.h"

namespace Sarn {

/**
 * Base of every descriptor. Points at the descriptor_tag byte inside the
 * bytes its owner walked (never copied, never freed here).
 */
class TISDBTDescriptor : public TISDBTDataHolder {
  public:
    TISDBTDescriptor(unsigned char tag, unsigned char* data, unsigned int length);
    TISDBTDescriptor(const TISDBTDescriptor& other) = default;
    ~TISDBTDescriptor() override;

    /**
     * Checks the two-byte descriptor header against the class's tag and
     * minimum descriptor_length. Logs and sets the code on failure; writes 0
     * on success.
     */
    static bool parseCommonHeader(unsigned char* data, unsigned int length, unsigned short* error,
                                  unsigned char minDescriptorLength, unsigned short expectedTag);

    unsigned char getDescriptorTag() const { return descriptorTag; }
    unsigned char getDescriptorLength() const { return descriptorLength; }
    unsigned char getErrors() const { return errors; }
    void setErrorFlag(unsigned char flag) { errors |= flag; }

    /** Base members without braces; with content, the payload in hexadecimal. */
    std::string toJSONInternal(int withContent) const;
    virtual std::string toJSON() const;
    /**
     * Appends the text toJSON() returns to out. Owners render their
     * descriptors through this, so a whole table is written into one string.
     */
    virtual void appendJSON(std::string& out) const;

  protected:
    /** Appends the base members (as toJSONInternal) to out. */
    void appendBaseJSON(std::string& out, int withContent) const;

    unsigned char descriptorTag;
    unsigned char descriptorLength;
    unsigned char errors;
};

}  // namespace Sarn

#endif
