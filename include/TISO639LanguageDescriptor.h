#ifndef SARN_TISO639LANGUAGEDESCRIPTOR_H
#define SARN_TISO639LANGUAGEDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * ISO 639 language descriptor (tag 0x0A): a list of three-letter language
 * codes, each with an audio_type (0 undefined, 1 clean effects, 2 hearing
 * impaired, 3 visual impaired commentary).
 */
class TISO639LanguageDescriptor : public TISDBTDescriptor {
  public:
    struct Item {
        std::string languageCode;
        unsigned char audioType = 0;
    };

    /** Four bytes per entry after the header; trailing bytes short of an entry are ignored. */
    static TISO639LanguageDescriptor* parse(unsigned char* data, unsigned int length,
                                            unsigned int* bytesRead, unsigned short* error);

    TISO639LanguageDescriptor(unsigned char* data, unsigned int length);
    TISO639LanguageDescriptor(const TISO639LanguageDescriptor&) = delete;
    TISO639LanguageDescriptor& operator=(const TISO639LanguageDescriptor&) = delete;
    ~TISO639LanguageDescriptor() override;

    int getLoopSize() const { return loopSize; }
    /** The entries (getLoopSize() of them); null when there are none. */
    Item* getLoopItems() const { return items; }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TISO639LanguageDescriptor)
    int loopSize = 0;
    Item* items = nullptr;
};

}  // namespace Sarn

#endif
