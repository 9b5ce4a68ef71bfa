#ifndef SARN_TSERVICEDESCRIPTION_H
#define SARN_TSERVICEDESCRIPTION_H

#include "DescriptorLoop.h"
#include "SarnAllocation.h"

namespace Sarn {

class TSDTTable;

/**
 * One service of an SDT: service_id, the EIT flags, running_status,
 * free_CA_mode and the service descriptor loop.
 */
class TServiceDescription : public DescriptorLoop {
  public:
    SARN_ALLOCATION_FUNCTIONS

    /**
     * Parses one entry from data (length bytes available); stores the
     * entry's size in *bytesRead. The integer argument is not used.
     */
    static TServiceDescription* parse(unsigned char* data, unsigned int length, int,
                                      unsigned int* bytesRead, unsigned short* error);

    TServiceDescription();
    ~TServiceDescription() override;

    unsigned short getServiceID() const { return serviceId; }
    bool hasEITSchedule() const { return eitSchedule != 0; }
    bool hasEITPresentFollowing() const { return eitPresentFollowing != 0; }
    /** 0 undefined, 1 not running, 2 starts in a few seconds, 3 pausing, 4 running. */
    unsigned char getRunningStatus() const { return runningStatus; }
    unsigned char getFreeCAMode() const { return freeCAMode; }

  private:
    SARN_ENTRY_BUILD(TServiceDescription)
    friend class TSDTTable;

    unsigned short serviceId;
    int eitSchedule;
    int eitPresentFollowing;
    unsigned char runningStatus;
    unsigned char freeCAMode;
};

}  // namespace Sarn

#endif
