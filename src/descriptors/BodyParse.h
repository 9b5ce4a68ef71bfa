#ifndef SARN_DESCRIPTORS_BODYPARSE_H
#define SARN_DESCRIPTORS_BODYPARSE_H

// Second half of the parse of the descriptor families whose subclasses read
// their body through the virtual parseData (Ginga application and location
// descriptors, transport protocol descriptors).

#include <memory>

#include "ISDBTUtils.h"
#include "Parse.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {

/**
 * Lets d read the descriptor_length bytes after the header at data (the
 * header has been checked). Returns d, with the code 0, when parseData
 * succeeds; otherwise null (d is deleted) with parseData's code.
 */
template <class T>
T* parseBody(std::unique_ptr<T>& d, unsigned char* data, unsigned int* bytesRead,
             unsigned short* err) {
    if (d->parseData(data + 2, d->getDescriptorLength(), bytesRead, err) != 1)
        return nullptr;
    return parse::done(err, d);
}

}  // namespace Sarn
#pragma GCC visibility pop

#endif
