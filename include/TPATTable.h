#ifndef SARN_TPATTABLE_H
#define SARN_TPATTABLE_H

#include <list>
#include <string>
#include <utility>
#include <vector>
#include "SarnAllocation.h"

#include "TISDBTVersionedTable.h"
#include "TProgramAssociation.h"

namespace Sarn {

/**
 * Program association table (table_id 0x00): program_number to PMT PID, and
 * the network PID announced by program_number 0.
 */
class TPATTable : public TISDBTVersionedTable {
  public:
    /** The CRC is checked when checkCrc is 1; the first integer is not used. */
    static TPATTable* parse(unsigned char* data, unsigned int length, int, int checkCrc,
                            unsigned short* error, TPATTable* previous);

    TPATTable(unsigned char* data, unsigned int length);
    TPATTable(const TPATTable&) = delete;
    TPATTable& operator=(const TPATTable&) = delete;
    ~TPATTable() override;

    std::string toJSON() const override;

    unsigned short getTransportStreamID() const { return tableIdExtension; }
    /** PID of the network information table; 0 until an entry with program_number 0 sets it. */
    unsigned short getNetworkPid() const { return networkPid; }
    int size() const { return static_cast<int>(programs.size()); }

    /**
     * Stores entry under its program_number. An entry already stored under that
     * number is replaced, not deleted: a caller that still holds it owns it.
     */
    void add(TProgramAssociation* entry);
    TProgramAssociation* get(unsigned short programNumber) const;
    std::list<unsigned short> getProgramNumbers() const;
    bool remove(unsigned short programNumber);

  private:
    unsigned short networkPid;
    memory::BlockVector<std::pair<unsigned short, TProgramAssociation*>> programs;
};

}  // namespace Sarn

#endif
