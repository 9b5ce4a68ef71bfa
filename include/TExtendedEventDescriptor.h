#ifndef SARN_TEXTENDEDEVENTDESCRIPTOR_H
#define SARN_TEXTENDEDEVENTDESCRIPTOR_H

#include <string>
#include <vector>

#include "TExtendedEventDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Extended event descriptor (tag 0x4E): one numbered part of an event's long
 * description, made of named items and free text. Texts are escaped when
 * rendered.
 */
class TExtendedEventDescriptor : public TISDBTDescriptor {
  public:
    static TExtendedEventDescriptor* parse(unsigned char* data, unsigned int len,
                                           unsigned int* bytesRead, unsigned short* err);

    TExtendedEventDescriptor(unsigned char* data, unsigned int len);
    TExtendedEventDescriptor(const TExtendedEventDescriptor&) = delete;
    TExtendedEventDescriptor& operator=(const TExtendedEventDescriptor&) = delete;
    ~TExtendedEventDescriptor() override;

    int getDescriptorNumber() const { return descriptorNumber; }
    int getLastDescriptorNumber() const { return lastDescriptorNumber; }
    std::string getLanguageCode() const { return languageCode; }
    std::string getText() const { return text.str(); }

    int size() const { return static_cast<int>(items.size()); }
    /** The item at that position, or null beyond the last one. */
    TExtendedEventDescriptorItem* get(unsigned char index) const;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TExtendedEventDescriptor)
    int descriptorNumber = 0;
    int lastDescriptorNumber = 0;
    std::string languageCode;
    std::vector<TExtendedEventDescriptorItem*> items;  // owned, wire order
    memory::Text text;
};

}  // namespace Sarn

#endif
