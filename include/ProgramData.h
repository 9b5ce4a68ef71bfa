#ifndef SARN_PROGRAMDATA_H
#define SARN_PROGRAMDATA_H

namespace Sarn {

/** Summary of one elementary stream that carries a component tag. */
struct ProgramData {
    unsigned short elementaryPid;
    unsigned char streamType;
    unsigned char componentTag;
};

}  // namespace Sarn

#endif
