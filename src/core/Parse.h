#ifndef SARN_CORE_PARSE_H
#define SARN_CORE_PARSE_H

// The one way a parse ends. While it builds an object, a parser holds it in
// a std::unique_ptr, so every early return deletes it with what it owns so
// far; on failure it logs its line (SARN_LOGW, format passed through as it
// stands) and returns fail(error, code); on success it returns
// done(error, object), which writes 0 and hands the object to the caller.

#include <cstddef>
#include <memory>

#include "ISDBTUtils.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace parse {

/** Writes code through error (a null error is ignored) and yields no object. */
inline std::nullptr_t fail(unsigned short* error, unsigned short code) {
    ISDBTUtils::setErrorCode(error, code);
    return nullptr;
}

/**
 * The same failure for a check that answers yes or no (a header check): writes
 * code through error and yields false.
 */
inline bool refuse(unsigned short* error, unsigned short code) {
    ISDBTUtils::setErrorCode(error, code);
    return false;
}

/** Writes 0 through error and releases the finished object to the caller. */
template <typename T>
T* done(unsigned short* error, std::unique_ptr<T>& object) {
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return object.release();
}

}  // namespace parse
}  // namespace Sarn
#pragma GCC visibility pop

#endif
