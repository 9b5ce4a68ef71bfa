#ifndef SARN_TDOWNLOADCONTENTDESCRIPTOR_H
#define SARN_TDOWNLOADCONTENTDESCRIPTOR_H

#include <string>
#include <vector>

#include "TCompatibilityDescriptor.h"
#include "TDownloadContentDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Download content descriptor (tag 0xC9) of a software download trigger
 * table entry: the download's flags, size, carousel download id, DII time-out
 * and leak rate, optionally the receivers it is meant for (compatibility
 * structure), its modules, private data and a text. Renders as the base
 * descriptor, content in hexadecimal.
 */
class TDownloadContentDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0xC9;

    /**
     * Needs a descriptor_length of at least 18. Fails with 2568 for a bad
     * header, 2570 when a module or the module count cannot be read, 2569 for
     * private data, language code or text that do not fit, and with the
     * compatibility structure's code when that fails. *bytesRead (when asked)
     * receives the bytes read after the two header bytes.
     */
    static TDownloadContentDescriptor* parse(unsigned char* data, unsigned int length,
                                             unsigned int* bytesRead, unsigned short* error);

    TDownloadContentDescriptor(unsigned char* data, unsigned int length);
    TDownloadContentDescriptor(const TDownloadContentDescriptor&) = delete;
    TDownloadContentDescriptor& operator=(const TDownloadContentDescriptor&) = delete;
    ~TDownloadContentDescriptor() override;

    unsigned char getReboot() const { return reboot; }
    unsigned char getAddOn() const { return addOn; }
    unsigned char getCompatibilityFlag() const { return compatibilityFlag; }
    unsigned char getModuleInfoFlag() const { return moduleInfoFlag; }
    unsigned char getTextInfoFlag() const { return textInfoFlag; }
    unsigned int getComponentSize() const { return componentSize; }
    unsigned int getDownloadID() const { return downloadID; }
    unsigned int getTimeOutValueDII() const { return timeOutValueDII; }
    unsigned int getLeakRate() const { return leakRate; }
    unsigned char getComponentTag() const { return componentTag; }
    unsigned char getPrivateDataLength() const { return privateDataLength; }
    /** The private data bytes (owned by the descriptor), or null when there are none. */
    unsigned char* getPrivateData() const { return privateData; }
    std::string getLanguageCode() const { return languageCode; }
    std::string getText() const { return text; }
    /** The compatibility structure (owned), or null when the flag is clear. */
    TCompatibilityDescriptor* getCompatibilityDescriptor() const { return compatibilityDescriptor; }

    int getDownloadContentDescriptorItemSize() const { return static_cast<int>(items.size()); }
    /** The module at that position, or null at or beyond the end. */
    TDownloadContentDescriptorItem* getDownloadContentDescriptorItem(unsigned char index) const;
    /** Appends a module, which the descriptor then owns. */
    void addDownloadContentDescriptorItem(TDownloadContentDescriptorItem* item);
    /** Deletes the module at that position; false when there is none. */
    bool removeDownloadContentDescriptorItem(unsigned char index);

  private:
    SARN_DESCRIPTOR_BUILD(TDownloadContentDescriptor)
    unsigned char reboot = 0;
    unsigned char addOn = 0;
    unsigned char compatibilityFlag = 0;
    unsigned char moduleInfoFlag = 0;
    unsigned char textInfoFlag = 0;
    unsigned int componentSize = 0;
    unsigned int downloadID = 0;
    unsigned int timeOutValueDII = 0;
    unsigned int leakRate = 0;
    unsigned char componentTag = 0;
    unsigned char privateDataLength = 0;
    unsigned char* privateData = nullptr;
    std::string languageCode;
    std::string text;
    TCompatibilityDescriptor* compatibilityDescriptor = nullptr;
    std::vector<TDownloadContentDescriptorItem*> items;
};

}  // namespace Sarn

#endif
