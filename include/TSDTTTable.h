#ifndef SARN_TSDTTTABLE_H
#define SARN_TSDTTTABLE_H

#include <vector>

#include "TDownloadContent.h"
#include "TISDBTVersionedTable.h"

namespace Sarn {

/**
 * Software download trigger table (table_id 0xC3, PIDs 0x0023 and 0x0028):
 * announces software updates for the receivers of one maker and model (the
 * table_id_extension) and lists the download contents with their schedules.
 * The table walks its own copy of the section, so the download content
 * descriptors stay valid as long as the table. Renders the section header
 * only.
 */
class TSDTTTable : public TISDBTVersionedTable {
  public:
    /**
     * The CRC is checked when checkCrc (the first integer) is 1; the second
     * is not used. A content that fails makes the table fail with 2570.
     */
    static TSDTTTable* parse(unsigned char* data, unsigned int length, int checkCrc, int,
                             unsigned short* error, TSDTTTable* previous);

    TSDTTTable(unsigned char* data, unsigned int length);
    TSDTTTable(const TSDTTTable&) = delete;
    TSDTTTable& operator=(const TSDTTTable&) = delete;
    ~TSDTTTable() override;

    unsigned short getTableIDExtension() const { return tableIdExtension; }
    unsigned char getMakerID() const { return static_cast<unsigned char>(tableIdExtension >> 8); }
    unsigned char getModelID() const { return static_cast<unsigned char>(tableIdExtension & 0xFF); }
    unsigned short getTransportStreamID() const { return transportStreamId; }
    unsigned short getOriginalNetworkID() const { return originalNetworkId; }
    unsigned short getServiceID() const { return serviceId; }

    int getDownloadContentSize() const { return static_cast<int>(contents.size()); }
    /** Appends a content, which the table then owns (its parent is not set). */
    void addDownloadContent(TDownloadContent* content);
    /** The content at that position, or null at or beyond the end. */
    TDownloadContent* getDownloadContent(unsigned char index) const;
    /** Deletes the content at that position; false when there is none. */
    bool removeDownloadContent(unsigned char index);

  private:
    unsigned short transportStreamId;
    unsigned short originalNetworkId;
    unsigned short serviceId;
    std::vector<TDownloadContent*> contents;
};

}  // namespace Sarn

#endif
