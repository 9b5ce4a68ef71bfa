#ifndef SARN_TESTS_DESCRIPTORPARSE_H
#define SARN_TESTS_DESCRIPTORPARSE_H

#include <string>
#include <utility>

#include "LogCapture.h"
#include "Sections.h"

/**
 * Runs T::parse over its own copy of the bytes, keeping the byte count and
 * the error code (both preset to values no parser writes) and deleting the
 * result at the end of the scope.
 */
template <typename T>
struct ParsedDescriptor {
    explicit ParsedDescriptor(Bytes b) : bytes(std::move(b)) {
        d = T::parse(bytes.data(), static_cast<unsigned int>(bytes.size()), &read, &code);
    }
    ~ParsedDescriptor() { delete d; }
    ParsedDescriptor(const ParsedDescriptor&) = delete;
    ParsedDescriptor& operator=(const ParsedDescriptor&) = delete;

    Bytes bytes;
    unsigned int read = 0xDEAD;
    unsigned short code = 0xBEEF;
    T* d = nullptr;
};

/**
 * A parse result in one line: "read=<byte count> <JSON>" for a descriptor
 * with error code 0, otherwise "null code=<code>" or
 * "code=<code> read=<byte count> <JSON>".
 */
template <typename T>
std::string describe(const ParsedDescriptor<T>& p) {
    if (p.d == nullptr)
        return "null code=" + std::to_string(p.code);
    const std::string read = "read=" + std::to_string(p.read) + " ";
    return (p.code == 0 ? read : "code=" + std::to_string(p.code) + " " + read) + p.d->toJSON();
}

/** T::parse over the bytes, described in one line as above. */
template <typename T>
std::string outcome(Bytes b) {
    ParsedDescriptor<T> p(std::move(b));
    return describe(p);
}

#endif
