#ifndef SARN_CORE_DESCRIPTORPARSE_H
#define SARN_CORE_DESCRIPTORPARSE_H

// The opening and the closing that every descriptor parse shares. A parse
// opens with
//     bytes::Reader r;
//     auto d = parse::open<TXxxDescriptor>(data, length, error, minLength, tag, r);
//     if (d == nullptr)
//         return nullptr;
// reads its fields through r, fails through parse::fail and ends with
//     return parse::done(error, d, bytesRead, figure);

#include <memory>

#include "Parse.h"
#include "Reader.h"
#include "TISDBTDescriptor.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace parse {

/**
 * Checks the two-byte header (TISDBTDescriptor::parseCommonHeader: the tag,
 * the minimum descriptor_length, the bytes it announces; logs and sets the
 * code when it fails). When it passes, body reads (data, length) from the
 * byte after descriptor_length and the new D over the same bytes comes
 * back; otherwise null, with body untouched.
 */
template <class D>
std::unique_ptr<D> open(unsigned char* data, unsigned int length, unsigned short* error,
                        unsigned char minLength, unsigned short tag, bytes::Reader& body) {
    if (!TISDBTDescriptor::parseCommonHeader(data, length, error, minLength, tag))
        return nullptr;
    body = bytes::Reader(data, length);
    body.skip(2);
    return std::unique_ptr<D>(new D(data, length));
}

/** done(error, object) that first writes read through bytesRead (a null bytesRead is ignored). */
template <typename T>
T* done(unsigned short* error, std::unique_ptr<T>& object, unsigned int* bytesRead,
        unsigned int read) {
    if (bytesRead != nullptr)
        *bytesRead = read;
    return done(error, object);
}

}  // namespace parse
}  // namespace Sarn
#pragma GCC visibility pop

#endif
