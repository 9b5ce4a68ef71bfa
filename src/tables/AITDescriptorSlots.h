#ifndef SARN_TABLES_AITDESCRIPTORSLOTS_H
#define SARN_TABLES_AITDESCRIPTORSLOTS_H

// The AIT keeps its descriptors in ten slots, one per kind, both in the
// table's common loop and in every application's own loop; the two Ginga
// slots hold the Java, NCL or HTML5 variant. Both loops are walked, looked
// up, listed, rendered and copied here. The few places where the table and
// an application behave differently take the owner as a parameter.

#include <list>

#include "Arena.h"
#include "Json.h"
#include "Reader.h"
#include "TISDBTDescriptor.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace ait {

enum Slot {
    SLOT_APPLICATION,
    SLOT_NAME,
    SLOT_ICON,
    SLOT_AUTHORIZATION,
    SLOT_TRANSPORT,
    SLOT_IP_SIGNALING,
    SLOT_PREFETCH,
    SLOT_DII_LOCATION,
    SLOT_GINGA,
    SLOT_GINGA_LOCATION,
    SLOT_COUNT
};
using Slots = TISDBTDescriptor* [SLOT_COUNT];

/**
 * Walks one descriptor loop of loopLength bytes from the reader's position;
 * the reader holds the bytes left for the rest of the owner. The owner is
 * the table (applicationType null) or an application, which takes its type
 * from its Ginga descriptors. The descriptors are built in arena (on the
 * heap when null). Returns false, logged and with the code set, when a
 * descriptor overruns or fails.
 */
bool walkDescriptorLoop(memory::Arena* arena, bytes::Reader& r, unsigned short loopLength,
                        Slots& slots, unsigned short* err, unsigned short* applicationType);

/**
 * The descriptor with that tag, or null. The HTML5 tags differ by owner: the
 * table looks for 0x0F in the Ginga application slot, an application answers
 * 0x0E and 0x0F from the location slot holding 0x0F.
 */
TISDBTDescriptor* lookup(const Slots& slots, unsigned char tag, bool table);

/** The tags of the present slots, in slot order. */
std::list<unsigned char> tagsOf(const Slots& slots);

/**
 * Renders the descriptors as the tag list and the lookup see them: each
 * present slot in order, looked up by its tag. A lookup that finds nothing
 * (the HTML5 asymmetries) leaves its element out.
 */
void appendSlotsJSON(json::Out& o, const Slots& slots, bool table);

/** A copy of d of its own class, or null (for null, or a class its tag does not name). */
TISDBTDescriptor* copyDescriptor(const TISDBTDescriptor* d);

void deleteSlots(Slots& slots);

}  // namespace ait
}  // namespace Sarn
#pragma GCC visibility pop

#endif
