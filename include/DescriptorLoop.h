#ifndef SARN_DESCRIPTORLOOP_H
#define SARN_DESCRIPTORLOOP_H

#include <initializer_list>
#include <list>
#include <string>
#include <vector>

#include "SarnAllocation.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * The set of descriptor tags an owner lets through to the loop's dispatch
 * table: a 256-bit bitmap, built at compile time and shared by every owner of
 * the same kind.
 */
struct DescriptorTagSet {
    unsigned int bits[8];

    constexpr DescriptorTagSet(std::initializer_list<unsigned char> tags) : bits{} {
        for (unsigned char t : tags)
            bits[t >> 5] |= 1u << (t & 31);
    }
    constexpr bool contains(unsigned char tag) const { return (bits[tag >> 5] >> (tag & 31)) & 1u; }
};

/**
 * A generic descriptor loop: walks the loop bytes and creates one descriptor
 * object per tag that is both accepted by the owner and known to the
 * library, in loop order (repeated tags included). Owns those objects.
 */
class DescriptorLoop {
  public:
    DescriptorLoop();
    explicit DescriptorLoop(const DescriptorTagSet& accepted);
    DescriptorLoop(const DescriptorLoop&) = delete;
    DescriptorLoop& operator=(const DescriptorLoop&) = delete;
    virtual ~DescriptorLoop();

    /** Walks length bytes of descriptors; returns the number of bytes walked. */
    unsigned int parseDescriptorsLoop(unsigned char* data, unsigned int length);
    /** Parses one whole descriptor (header included) if its tag is accepted and known. */
    void parseDescriptor(unsigned char* data, unsigned int length);

    /** The first descriptor with that tag in loop order, or null. */
    TISDBTDescriptor* getDescriptor(unsigned char tag) const;
    /** Every descriptor with that tag, in loop order (still owned by the loop). */
    std::list<TISDBTDescriptor*> getDescriptors(unsigned char tag) const;
    /** Every descriptor, in loop order (still owned by the loop). */
    std::list<TISDBTDescriptor*> getDescriptorList() const;

  protected:
    /** Appends "[" + each descriptor as "{...}", comma-separated + "]" to out. */
    void appendDescriptorsJSON(std::string& out) const;
    void setAcceptedTags(const DescriptorTagSet& accepted) { acceptedTags = &accepted; }

    memory::BlockVector<TISDBTDescriptor*> descriptors;
    const DescriptorTagSet* acceptedTags;

  private:
    friend struct memory::Builder;
    /** parseDescriptorsLoop, building the descriptors in arena (on the heap when null). */
    SARN_INTERNAL unsigned int parseDescriptorsLoop(memory::Arena* arena, unsigned char* data,
                                                    unsigned int length);
};

}  // namespace Sarn

#endif
