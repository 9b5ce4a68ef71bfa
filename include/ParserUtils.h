#ifndef SARN_PARSERUTILS_H
#define SARN_PARSERUTILS_H

#include <string>

namespace Sarn {

/** Readers for the string and byte-array fields of descriptors and loop entries. */
class ParserUtils {
  public:
    /**
     * Reads a string of length bytes, or, when length is 0 and bytes are
     * available, a string prefixed by its one-byte length. ARIB control codes
     * (C0 but tab and line feed, DEL and C1 up to 0xA0) are removed.
     * Returns the bytes consumed, or -1 when the string does not fit.
     */
    static int parseStr(unsigned char* data, std::string& out, unsigned int length,
                        unsigned int available);
    /** Allocates target (freed by its owner with delete[]) and copies length bytes into it. */
    static void parseByteArray(unsigned char* data, unsigned char*& target, unsigned char length);
};

}  // namespace Sarn

#endif
