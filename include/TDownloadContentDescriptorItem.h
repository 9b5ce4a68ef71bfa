#ifndef SARN_TDOWNLOADCONTENTDESCRIPTORITEM_H
#define SARN_TDOWNLOADCONTENTDESCRIPTORITEM_H

namespace Sarn {

/** One module of a download content descriptor: its id, size and module info bytes. */
class TDownloadContentDescriptorItem {
  public:
    /**
     * Reads module_id (its two bytes taken least significant first),
     * module_size, module_info_length and the module info. Fails with 2563
     * when the bytes given do not hold the fixed seven bytes and the info.
     */
    static TDownloadContentDescriptorItem* parse(unsigned char* data, unsigned int length,
                                                 unsigned int* bytesRead, unsigned short* error);

    TDownloadContentDescriptorItem();
    TDownloadContentDescriptorItem(const TDownloadContentDescriptorItem&) = delete;
    TDownloadContentDescriptorItem& operator=(const TDownloadContentDescriptorItem&) = delete;
    virtual ~TDownloadContentDescriptorItem();

    unsigned short getModuleID() const { return moduleID; }
    unsigned int getModuleSize() const { return moduleSize; }
    unsigned char getModuleInfoLength() const { return moduleInfoLength; }
    /** The module info bytes (owned by the item), or null when there are none. */
    unsigned char* getModuleInfo() const { return moduleInfo; }

  private:
    unsigned short moduleID = 0;
    unsigned int moduleSize = 0;
    unsigned char moduleInfoLength = 0;
    unsigned char* moduleInfo = nullptr;
};

}  // namespace Sarn

#endif
