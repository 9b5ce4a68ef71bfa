#ifndef SARN_DESCRIPTORS_BODYPARSE_H
#define SARN_DESCRIPTORS_BODYPARSE_H

// Second half of the parse of the descriptor families whose subclasses read
// their body through the virtual
//   int parseData(unsigned char* data, unsigned int len,
//                 unsigned int* bytesRead, unsigned short* error);
// (1 on success): Ginga application and location descriptors, transport
// protocol descriptors.

#include <memory>

#include "Parse.h"
#include "Reader.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * The descriptor_length bytes after the two header bytes at data, as a
 * reader of their own (empty and failed when the length bytes given do not
 * hold them; the header check has made sure they do).
 */
inline bytes::Reader descriptorBody(unsigned char* data, unsigned int length) {
    bytes::Reader r(data, length);
    r.skip(1);
    return r.sub(r.u8());
}

/**
 * Lets d read body through parseData. Returns d, with the code 0, when
 * parseData succeeds; otherwise deletes d and returns null with parseData's
 * code.
 */
template <class T>
T* parseBody(std::unique_ptr<T>& d, bytes::Reader body, unsigned int* bytesRead,
             unsigned short* err) {
    if (d->parseData(body.mutableCurrent(), body.remaining(), bytesRead, err) != 1)
        return nullptr;
    return parse::done(err, d);
}

/**
 * The same for a descriptor still held by raw pointer, whose header at data
 * has been checked.
 */
template <class T>
T* parseBody(T* d, unsigned char* data, unsigned int* bytesRead, unsigned short* err) {
    std::unique_ptr<T> owner(d);
    bytes::Reader head(data, 2);
    head.skip(1);
    return parseBody(owner, descriptorBody(data, 2u + head.u8()), bytesRead, err);
}

}  // namespace Sarn
#pragma GCC visibility pop

#endif
