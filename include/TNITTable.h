#ifndef SARN_TNITTABLE_H
#define SARN_TNITTABLE_H

#include <list>
#include <string>
#include <utility>
#include <vector>
#include "SarnAllocation.h"

#include "DescriptorLoop.h"
#include "TISDBTVersionedTable.h"
#include "TTransportStreamInfo.h"

namespace Sarn {

/**
 * Network information table, actual network (table_id 0x40): the network
 * descriptors and one entry per transport stream of the network, kept in
 * ascending transport_stream_id order.
 *
 * Both loops are walked over the bytes handed to parse, so the descriptors
 * point into the caller's buffer: keep it alive while the table is used.
 */
class TNITTable : public TISDBTVersionedTable, public DescriptorLoop {
  public:
    /** The CRC is checked when checkCrc is 1; the second integer is not used. */
    static TNITTable* parse(unsigned char* data, unsigned int length, int checkCrc, int,
                            unsigned short* error, TNITTable* previous);

    TNITTable(unsigned char* data, unsigned int length);
    TNITTable(const TNITTable&) = delete;
    TNITTable& operator=(const TNITTable&) = delete;
    ~TNITTable() override;

    std::string toJSON() const override;

    unsigned short getNetworkID() const { return tableIdExtension; }
    int getTransportStreamLoopSize() const { return static_cast<int>(transportStreams.size()); }

    /**
     * Stores info under its transport_stream_id. An entry already stored
     * under that id is replaced, not deleted: a caller that still holds it
     * owns it.
     */
    void addTransportStreamInfo(TTransportStreamInfo* info);
    TTransportStreamInfo* getTransportStreamInfo(unsigned short transportStreamId) const;
    std::list<unsigned short> getTransportStreamIDs() const;
    bool removeTransportStreamInfo(unsigned short transportStreamId);

  private:
    memory::BlockVector<std::pair<unsigned short, TTransportStreamInfo*>> transportStreams;
};

}  // namespace Sarn

#endif
