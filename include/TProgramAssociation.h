#ifndef SARN_TPROGRAMASSOCIATION_H
#define SARN_TPROGRAMASSOCIATION_H

#include "SarnAllocation.h"
namespace Sarn {

/** One PAT entry: a program_number and the PID of its program map table. */
class TProgramAssociation {
  public:
    SARN_ALLOCATION_FUNCTIONS

    TProgramAssociation(unsigned short number, unsigned short pid)
        : programNumber(number), programMapPid(pid) {}
    virtual ~TProgramAssociation();

    unsigned short getProgramNumber() const { return programNumber; }
    unsigned short getProgramMapPid() const { return programMapPid; }

  private:
    unsigned short programNumber;
    unsigned short programMapPid;
};

}  // namespace Sarn

#endif
