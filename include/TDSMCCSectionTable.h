#ifndef SARN_TDSMCCSECTIONTABLE_H
#define SARN_TDSMCCSECTIONTABLE_H

#include <list>

#include "TISDBTVersionedTable.h"
#include "TNPTEndpointDescriptor.h"
#include "TNPTReferenceDescriptor.h"
#include "TStreamEventDescriptor.h"
#include "TStreamModeDescriptor.h"

namespace Sarn {

/**
 * DSM-CC section with table_id 0x3D: stream descriptors of a data broadcast
 * (NPT reference, NPT endpoint, stream mode, stream event), one slot each.
 * The table_id_extension carries data_event_id (4 bits) and
 * event_msg_group_id (12 bits).
 *
 * The descriptors are read from the caller's bytes and point into them: keep
 * those bytes alive while the descriptors are used. A stream event
 * descriptor with the standard tag 0x1A has that tag byte rewritten to 0x04
 * in the caller's buffer. Renders the section header only.
 */
class TDSMCCSectionTable : public TISDBTVersionedTable {
  public:
    /** The CRC is checked when checkCrc (the first integer) is 1; the second is not used. */
    static TDSMCCSectionTable* parse(unsigned char* data, unsigned int length, int checkCrc, int,
                                     unsigned short* error, TDSMCCSectionTable* previous);

    TDSMCCSectionTable(unsigned char* data, unsigned int length);
    TDSMCCSectionTable(const TDSMCCSectionTable&) = delete;
    TDSMCCSectionTable& operator=(const TDSMCCSectionTable&) = delete;
    ~TDSMCCSectionTable() override;

    unsigned char getDataEventID() const { return dataEventId; }
    unsigned short getEventMsgGroupID() const { return eventMsgGroupId; }

    TNPTReferenceDescriptor* getNPTReferenceDescriptor() const;
    TNPTEndpointDescriptor* getNPTEndpointDescriptor() const;
    TStreamModeDescriptor* getStreamModeDescriptor() const;
    TStreamEventDescriptor* getStreamEventDescriptor() const;

    /** The descriptor in the slot of tag 1 to 4, or null (any other tag, or absent). */
    TISDBTDescriptor* getDescriptor(unsigned char tag) const;
    /** Tags of the slots that hold a descriptor, in the order 1, 2, 3, 4. */
    std::list<unsigned char> getDescriptorTags() const;

  private:
    static constexpr int kSlots = 4;

    unsigned char dataEventId;
    unsigned short eventMsgGroupId;
    // Owned descriptors indexed by tag - 1: NPT reference, NPT endpoint,
    // stream mode, stream event.
    TISDBTDescriptor* slots[kSlots];
};

}  // namespace Sarn

#endif
