#ifndef SARN_TSHORTEVENTDESCRIPTOR_H
#define SARN_TSHORTEVENTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Short event descriptor (tag 0x4D): the language, name and short
 * description of an event. Texts are the broadcast's 8-bit codes less
 * control bytes; they are escaped when rendered.
 */
class TShortEventDescriptor : public TISDBTDescriptor {
  public:
    static TShortEventDescriptor* parse(unsigned char* data, unsigned int len,
                                        unsigned int* bytesRead, unsigned short* err);

    TShortEventDescriptor(unsigned char* data, unsigned int len);
    ~TShortEventDescriptor() override;

    std::string getLanguageCode() const { return languageCode; }
    std::string getEventName() const { return eventName.str(); }
    std::string getEventDescription() const { return eventDescription.str(); }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TShortEventDescriptor)
    std::string languageCode;
    memory::Text eventName;
    memory::Text eventDescription;
};

}  // namespace Sarn

#endif
