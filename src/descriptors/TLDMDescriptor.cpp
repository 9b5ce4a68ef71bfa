#include "TLDMDescriptor.h"

#include "Bytes.h"
#include "ParserUtils.h"

namespace Sarn {

TLDMDescriptor::TLDMDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x7C, bytes, length), messageId(0) {}

TLDMDescriptor::~TLDMDescriptor() {}

TLDMDescriptor* TLDMDescriptor::parse(unsigned char* bytes, unsigned int length, unsigned int*,
                                      unsigned short*) {
    TLDMDescriptor* d = new TLDMDescriptor(bytes, length);
    // Fields missing from a short descriptor are left at zero and the walk
    // stops at the end of the bytes handed in.
    const unsigned int available = bytes != nullptr ? length : 0;
    if (available > 2)
        d->messageId = bytes[2];
    unsigned int p = 4;  // byte 3 is skipped
    if (!bytes::fits(p, 2, available))
        return d;
    int count = bytes::be16(bytes + p);
    p += 2;
    // count shrinks by each gloss's length while i counts entries: the walk
    // ends when the entries read reach the declared count less the bytes of
    // the glosses read so far. Receivers depend on this bound.
    for (int i = 0; i < count && p < available; ++i) {
        const unsigned int n = bytes[p++];
        if (n == 0)
            continue;
        const unsigned int left = available - p;
        std::string text;
        if (ParserUtils::parseStr(bytes + p, text, n, n < left ? n : left) != static_cast<int>(n)) {
            delete d;
            return nullptr;
        }
        d->glosas.push_back(std::move(text));
        count -= static_cast<int>(n);
        p += n;
    }
    return d;
}

}  // namespace Sarn
