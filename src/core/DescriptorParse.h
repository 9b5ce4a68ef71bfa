#ifndef SARN_CORE_DESCRIPTORPARSE_H
#define SARN_CORE_DESCRIPTORPARSE_H

// The opening and the closing that every descriptor parse shares. A parse
// opens with
//     SARN_OPEN_OR_RETURN(arena, d, r, TXxxDescriptor, data, length, error, minLength, tag);
// which returns null from the parse when the common header is refused and
// otherwise declares d (the object under construction, in arena when there
// is one, core/Arena.h) and r (a reader after tag and length); it reads its fields through r, fails
// through parse::fail and ends with
//     return parse::done(error, d, bytesRead, figure);
// (clang-14 does not let a lambda capture d or r, which are structured
// bindings: capture d.get() or pass r as an argument.)

#include <memory>

#include "Arena.h"
#include "Parse.h"
#include "Reader.h"
#include "TISDBTDescriptor.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace parse {

/** What open yields: the descriptor under construction and a reader over its bytes. */
template <class D>
struct Opened {
    std::unique_ptr<D> d;
    bytes::Reader r;
};

/**
 * Checks the two-byte header (TISDBTDescriptor::parseCommonHeader: the tag,
 * the minimum descriptor_length, the bytes it announces; logs and sets the
 * code when it fails). When it passes, d is a new D over (data, length) and
 * r reads the same bytes from the one after descriptor_length; otherwise d
 * is null.
 */
template <class D>
Opened<D> open(memory::Arena* arena, unsigned char* data, unsigned int length,
               unsigned short* error, unsigned char minLength, unsigned short tag) {
    Opened<D> opened;
    if (!TISDBTDescriptor::parseCommonHeader(data, length, error, minLength, tag))
        return opened;
    opened.d.reset(memory::make<D>(arena, data, length));
    opened.r = bytes::Reader(data, length);
    opened.r.skip(2);
    return opened;
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

/**
 * parse::open<T>(...) into d and r; returns null from the enclosing parse when
 * the header check refuses the bytes (it has logged and set the code then).
 */
#define SARN_OPEN_OR_RETURN(arena, d, r, T, data, length, error, minLength, tag)      \
    auto [d, r] = ::Sarn::parse::open<T>(arena, data, length, error, minLength, tag); \
    if (d == nullptr)                                                                 \
    return nullptr

#endif
