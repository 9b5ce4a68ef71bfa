#include "TLDMDescriptor.h"

#include <memory>

#include "Arena.h"
#include "Reader.h"

namespace Sarn {

TLDMDescriptor::TLDMDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x7C, bytes, length) {}

TLDMDescriptor::~TLDMDescriptor() {}

SARN_DESCRIPTOR_PARSE(TLDMDescriptor, arena, bytes, length, bytesRead, error) {
    // Neither the tag nor descriptor_length is checked, and the error code is
    // never written, not even when a gloss is refused.
    std::unique_ptr<TLDMDescriptor> d(memory::make<TLDMDescriptor>(arena, bytes, length));
    // Fields missing from a short descriptor are left at zero and the walk
    // stops at the end of the bytes handed in.
    bytes::Reader r(bytes, length);
    r.skip(2);
    if (r.has(1))
        d->messageId = r.u8();
    r.skip(1);  // byte 3 is not read
    if (!r.has(2))
        return d.release();
    int count = r.u16();
    // count shrinks by each gloss's length while i counts entries: the walk
    // ends when the entries read reach the declared count less the bytes of
    // the glosses read so far. Receivers depend on this bound.
    for (int i = 0; i < count && !r.atEnd(); ++i) {
        const unsigned int n = r.u8();
        if (n == 0)
            continue;
        std::string text;
        if (r.loggedString(text, n) != static_cast<int>(n))
            return nullptr;
        d->glosas.push_back(std::move(text));
        count -= static_cast<int>(n);
    }
    return d.release();
}

}  // namespace Sarn
