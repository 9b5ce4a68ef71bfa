#ifndef SARN_DESCRIPTORS_DESCRIPTORKINDS_H
#define SARN_DESCRIPTORS_DESCRIPTORKINDS_H

// The registry of descriptor kinds: every descriptor class of the library
// once, with its tag, its name, its factory and the places whose loops build
// it. The loops find their classes through descriptorFactories()
// (DescriptorFactories.h), which is made from this list; the fuzz harnesses
// walk the list itself.

#include "DescriptorFactories.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

struct DescriptorKind {
    unsigned char tag;
    /** The class name, as in include/. */
    const char* name;
    DescriptorFactory parse;
    /** DescriptorPlace bits: the loops that build it (0: parsed by the caller only). */
    unsigned char places;
};

extern const DescriptorKind kDescriptorKinds[];
extern const unsigned int kDescriptorKindCount;

}  // namespace Sarn
#pragma GCC visibility pop

#endif
