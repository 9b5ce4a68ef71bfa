#ifndef SARN_TPMTTABLE_H
#define SARN_TPMTTABLE_H

#include <list>
#include <string>
#include <vector>
#include "SarnAllocation.h"

#include "DescriptorLoop.h"
#include "ProgramData.h"
#include "TISDBTVersionedTable.h"
#include "TProgramMap.h"

namespace Sarn {

/**
 * Program map table (table_id 0x02) of one program: PCR PID, program info
 * descriptors and the elementary streams in section order.
 *
 * Both descriptor loops are walked over the bytes handed to parse, so the
 * descriptors point into the caller's buffer: keep it alive while the table
 * is used.
 */
class TPMTTable : public TISDBTVersionedTable, public DescriptorLoop {
  public:
    /** The CRC is checked when checkCrc is 1; the first integer is not used. */
    static TPMTTable* parse(unsigned char* data, unsigned int length, int, int checkCrc,
                            unsigned short* error, TPMTTable* previous);

    TPMTTable(unsigned char* data, unsigned int length);
    TPMTTable(const TPMTTable&) = delete;
    TPMTTable& operator=(const TPMTTable&) = delete;
    ~TPMTTable() override;

    std::string toJSON() const override;

    unsigned short getProgramNumber() const { return tableIdExtension; }
    unsigned short getPCRPID() const { return pcrPid; }
    int size() const { return static_cast<int>(programMaps.size()); }

    /** Appends a stream; the table owns it from then on. */
    void addProgramMap(TProgramMap* map);
    /** The stream at that position in section order, or null beyond the last. */
    TProgramMap* getProgramMap(unsigned char index) const;
    std::list<TProgramMap*> getProgramMapByStreamType(unsigned char streamType) const;
    /** Same as getProgramMapByStreamType. */
    std::list<TProgramMap*> getProgramMapsByStreamType(unsigned char streamType) const;
    /** Streams whose first stream identifier descriptor carries componentTag. */
    std::list<TProgramMap*> getProgramMapByComponentTag(unsigned char componentTag) const;
    /**
     * Streams of streamType whose first data component descriptor carries
     * dataComponentId. The id is 16 bits on the wire; only ids up to 255 can
     * be asked for.
     */
    std::list<TProgramMap*> getProgramMap(unsigned char streamType,
                                          unsigned char dataComponentId) const;
    /** Every stream with a stream identifier descriptor, in section order. */
    std::list<ProgramData> getAllPrograms() const;
    /** Deletes the stream at that position; false when there is none. */
    bool removeProgramMap(unsigned char index);

  private:
    unsigned short pcrPid;
    memory::BlockVector<TProgramMap*> programMaps;
};

}  // namespace Sarn

#endif
