#ifndef SARN_TEITTABLE_H
#define SARN_TEITTABLE_H

#include <list>
#include <string>
#include <utility>
#include <vector>
#include "SarnAllocation.h"

#include "TEventItem.h"
#include "TISDBTVersionedTable.h"

namespace Sarn {

/**
 * Event information table: one section (present/following or schedule,
 * actual or other; any table_id is taken) with its events keyed by event_id.
 * The full-segment EIT (PID 0x0012) and the one-segment EIT (PID 0x0027) are
 * told apart by the caller; the variant sets the table's type and which
 * descriptors the events keep. Events and their descriptors are read from
 * the table's own copy of the section.
 */
class TEITTable : public TISDBTVersionedTable {
  public:
    /**
     * fullSegment non-zero selects the full-segment EIT; the CRC is checked
     * when checkCrc is 1; the fifth argument is not used.
     */
    static TEITTable* parse(unsigned char* data, unsigned int len, int fullSegment, int checkCrc,
                            int ignored, unsigned short* err, TEITTable* previous);

    TEITTable(TISDBTTable::Type type, unsigned char* data, unsigned int len);
    TEITTable(const TEITTable&) = delete;
    TEITTable& operator=(const TEITTable&) = delete;
    ~TEITTable() override;

    std::string toJSON() const override;

    /**
     * Stores the event under its event_id. An event already stored under that
     * id is replaced, not deleted: a caller that still holds it owns it.
     */
    void addItem(TEventItem* item);
    /** The event_ids in ascending order. */
    std::list<unsigned short> getEventsIDs() const;
    TEventItem* getEvent(unsigned short eventId) const;

    unsigned short getServiceId() const { return tableIdExtension; }
    unsigned short getTransportStreamId() const { return transportStreamId; }
    unsigned short getOriginalNetworkId() const { return originalNetworkId; }
    unsigned char getSegmentLastSectionNumber() const { return segmentLastSectionNumber; }
    unsigned char getLastTableId() const { return lastTableId; }

  private:
    unsigned short transportStreamId;
    unsigned short originalNetworkId;
    unsigned char segmentLastSectionNumber;
    unsigned char lastTableId;
    memory::BlockVector<std::pair<unsigned short, TEventItem*>> events;
};

}  // namespace Sarn

#endif
