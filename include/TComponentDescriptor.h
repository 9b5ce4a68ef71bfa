#ifndef SARN_TCOMPONENTDESCRIPTOR_H
#define SARN_TCOMPONENTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Component descriptor (tag 0x50): a video or other component of an event
 * (stream_content, component_type, component_tag, language, text). Its JSON
 * has a name entry and camel-case keys; the text is written as stored.
 */
class TComponentDescriptor : public TISDBTDescriptor {
  public:
    static TComponentDescriptor* parse(unsigned char* data, unsigned int len,
                                       unsigned int* bytesRead, unsigned short* err);

    TComponentDescriptor(unsigned char* data, unsigned int len);
    ~TComponentDescriptor() override;

    unsigned char getStreamContent() const { return streamContent; }
    unsigned char getComponentType() const { return componentType; }
    /** stream_content in the upper byte, component_type in the lower one. */
    unsigned short getStreamContentComponentType() const {
        return static_cast<unsigned short>(streamContent << 8 | componentType);
    }
    unsigned char getComponentTag() const { return componentTag; }
    std::string getLanguageCode() const { return languageCode; }
    std::string getText() const { return text.str(); }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TComponentDescriptor)
    unsigned char streamContent = 0;
    unsigned char componentType = 0;
    unsigned char componentTag = 0;
    std::string languageCode;
    memory::Text text;
};

}  // namespace Sarn

#endif
