#ifndef SARN_CORE_DESCRIPTORFACTORIES_H
#define SARN_CORE_DESCRIPTORFACTORIES_H

// How the loops of the core find a descriptor class without knowing any:
// the core declares the lookup, the descriptors layer defines it from its
// registry of descriptor kinds (src/descriptors/DescriptorKinds.cpp).

#include "TISDBTDescriptor.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * The one shape every descriptor class's static parse has, seen through the
 * base class: parse(data, length, &bytesRead, &error), the header included in
 * data and length; either pointer may be null.
 */
using DescriptorFactory = TISDBTDescriptor* (*)(memory::Arena* arena, unsigned char* data,
                                                unsigned int length, unsigned int* bytesRead,
                                                unsigned short* error);

/**
 * The places where a loop builds descriptor objects by tag. The same tag
 * means different descriptors in different places (0x01 is an application
 * name in an AIT and an NPT reference in a DSM-CC section), so a lookup
 * always names its place. A class registered for no place is parsed only by
 * a caller that holds the bytes of one descriptor.
 */
enum DescriptorPlace : unsigned char {
    /** The generic loop of the PMT, NIT, SDT, EIT and TOT (the owner's accepted tags apply). */
    PLACE_SI_LOOP = 1,
    /** The common and application descriptor loops of the AIT. */
    PLACE_AIT = 2,
    /** The stream descriptors of a DSM-CC section (table_id 0x3D). */
    PLACE_DSMCC = 4,
};

/** For each tag, the class that a loop of one place builds; null: stepped over. */
struct DescriptorFactoryTable {
    DescriptorFactory at[256];
};

/** The factories of one place, by tag. */
const DescriptorFactoryTable& descriptorFactories(DescriptorPlace place);

}  // namespace Sarn
#pragma GCC visibility pop

#endif
