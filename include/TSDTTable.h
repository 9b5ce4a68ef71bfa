#ifndef SARN_TSDTTABLE_H
#define SARN_TSDTTABLE_H

#include <list>
#include <string>
#include <utility>
#include <vector>
#include "SarnAllocation.h"

#include "TISDBTVersionedTable.h"
#include "TServiceDescription.h"

namespace Sarn {

/**
 * Service description table, actual transport stream (table_id 0x42): the
 * original network and one entry per service, kept in ascending service_id
 * order.
 *
 * The service loops are walked over the bytes handed to parse, so the
 * descriptors point into the caller's buffer: keep it alive while the table
 * is used.
 */
class TSDTTable : public TISDBTVersionedTable {
  public:
    /** The CRC is checked when checkCrc is 1; the first integer is not used. */
    static TSDTTable* parse(unsigned char* data, unsigned int length, int, int checkCrc,
                            unsigned short* error, TSDTTable* previous);

    TSDTTable(unsigned char* data, unsigned int length);
    TSDTTable(const TSDTTable&) = delete;
    TSDTTable& operator=(const TSDTTable&) = delete;
    ~TSDTTable() override;

    std::string toJSON() const override;

    unsigned short getTransportStreamID() const { return tableIdExtension; }
    unsigned short getOriginalNetworkID() const { return originalNetworkId; }
    int size() const { return static_cast<int>(services.size()); }

    /**
     * Stores entry under its service_id. An entry already stored under that
     * id is replaced, not deleted: a caller that still holds it owns it.
     */
    void addServiceDescription(TServiceDescription* entry);
    TServiceDescription* getServiceDescription(unsigned short serviceId) const;
    std::list<unsigned short> getServiceIDs() const;
    bool removeServiceDescription(unsigned short serviceId);

  private:
    memory::BlockVector<std::pair<unsigned short, TServiceDescription*>> services;
    unsigned short originalNetworkId;
};

}  // namespace Sarn

#endif
