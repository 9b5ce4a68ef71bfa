#ifndef SARN_TPROGRAMMAP_H
#define SARN_TPROGRAMMAP_H

#include "DescriptorLoop.h"
#include "SarnAllocation.h"

namespace Sarn {

class TPMTTable;

/**
 * One elementary stream of a program map section: stream_type,
 * elementary_PID and the ES info descriptor loop.
 */
class TProgramMap : public DescriptorLoop {
  public:
    SARN_ALLOCATION_FUNCTIONS

    /**
     * Parses one stream entry from data (length bytes available); stores the
     * entry's size in *bytesRead. The integer argument is not used.
     */
    static TProgramMap* parse(unsigned char* data, unsigned int length, int,
                              unsigned int* bytesRead, unsigned short* error);

    TProgramMap();
    ~TProgramMap() override;

    unsigned char getStreamType() const { return streamType; }
    unsigned short getElementaryPID() const { return elementaryPid; }

  private:
    SARN_ENTRY_BUILD(TProgramMap)
    friend class TPMTTable;

    unsigned char streamType;
    unsigned short elementaryPid;
};

}  // namespace Sarn

#endif
