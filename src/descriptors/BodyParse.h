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
 * How a parseData ends when it has read its body: read goes through
 * bytesRead (a null bytesRead is ignored), 0 through err, and 1 comes back.
 * A failure logs its line and returns parse::refuse(err, code), which is 0.
 */
inline int bodyDone(unsigned short* err, unsigned int* bytesRead, unsigned int read) {
    if (bytesRead != nullptr)
        *bytesRead = read;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return 1;
}

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
