#ifndef SARN_FUZZ_FUZZTABLES_H
#define SARN_FUZZ_FUZZTABLES_H

// fuzz_tables hands every section to Sarn::parseSection, which picks the
// table class by the section's own table_id. The selector byte before the
// section gives the PID it came on, which picks the EIT variant.

#include <SarnISDBTUtils.h>

namespace sarnfuzz {

/** The PID of a selector: odd, the full-segment EIT PID; even, a one-segment one. */
inline unsigned int pidOf(unsigned char selector) {
    return (selector & 1) ? 0x0012 : 0x0027;
}

/** The selector that stands for a section captured on pid. */
inline unsigned char selectorOf(unsigned int pid) {
    return pid == 0x0012 ? 1 : 0;
}

}  // namespace sarnfuzz

#endif
