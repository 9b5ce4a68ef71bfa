#ifndef SARN_DESCRIPTORS_BODYPARSE_H
#define SARN_DESCRIPTORS_BODYPARSE_H

// Second half of the parse of the descriptor families whose subclasses read
// their body through the virtual parseData (Ginga application and location
// descriptors, transport protocol descriptors).

#include "ISDBTUtils.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * Lets d read the descriptor_length bytes after the header at data (the
 * header has been checked). Returns d, with the code 0, when parseData
 * succeeds; otherwise deletes d and returns null with parseData's code.
 */
template <class T>
T* parseBody(T* d, unsigned char* data, unsigned int* bytesRead, unsigned short* err) {
    if (d->parseData(data + 2, data[1], bytesRead, err) != 1) {
        delete d;
        return nullptr;
    }
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

}  // namespace Sarn
#pragma GCC visibility pop

#endif
