#ifndef SARN_TEVENTITEM_H
#define SARN_TEVENTITEM_H

#include <string>
#include "SarnAllocation.h"

#include "DescriptorLoop.h"

namespace Sarn {

class TEITTable;

/**
 * One event of an event information table section, with its descriptors.
 * Which descriptors an event keeps depends on the EIT variant (full-segment
 * or one-segment) and on the table_id and section_number of the section that
 * carried it.
 */
class TEventItem : public DescriptorLoop {
  public:
    SARN_ALLOCATION_FUNCTIONS

    /**
     * data points at event_id; len is the number of bytes left up to the CRC.
     * *bytesRead receives 12 plus the bytes the descriptor walk covered.
     */
    static TEventItem* parse(unsigned char* data, unsigned int len, int fullSegment,
                             unsigned char tableId, unsigned char sectionNumber,
                             unsigned int* bytesRead, unsigned short* err);

    TEventItem(int fullSegment, unsigned char tableId, unsigned char sectionNumber);
    ~TEventItem() override;

    unsigned short getEventId() const { return eventId; }
    unsigned char getSectionNumber() const { return sectionNumber; }
    /** Seconds since 1970, the broadcast wall-clock time taken as UTC. */
    unsigned int getStartTime() const { return startTime; }
    /** Seconds. */
    unsigned int getDuration() const { return duration; }
    unsigned char getRunningStatus() const { return runningStatus; }
    /** Always 0: every event is reported as free to air. */
    int getFreeCAMode() const { return freeCAMode; }
    unsigned char getTableId() const { return tableId; }
    /** Bytes that were available from event_id to the end of the event area. */
    unsigned int getDataLength() const { return dataLength; }

    /** Events are the same event when their event_ids are equal. */
    bool operator==(const TEventItem& other) const { return eventId == other.eventId; }

  private:
    friend struct memory::Builder;
    SARN_INTERNAL static TEventItem* build(memory::Arena* arena, unsigned char* data,
                                           unsigned int len, int fullSegment, unsigned char tableId,
                                           unsigned char sectionNumber, unsigned int* bytesRead,
                                           unsigned short* err);
    friend class TEITTable;
    /** Appends the event as a JSON object, braces included. */
    void appendJSON(std::string& out) const;

    unsigned short eventId;
    unsigned int startTime;
    unsigned int duration;
    unsigned char runningStatus;
    int freeCAMode;
    unsigned char sectionNumber;
    unsigned char tableId;
    unsigned int dataLength;
};

}  // namespace Sarn

#endif
