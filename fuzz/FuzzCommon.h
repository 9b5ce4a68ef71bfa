#ifndef SARN_FUZZ_FUZZCOMMON_H
#define SARN_FUZZ_FUZZCOMMON_H

// Shared by the fuzz harnesses: every input is copied into a heap buffer of
// exactly its size, so that AddressSanitizer catches a read one byte past
// the end of what the library was handed.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

namespace sarnfuzz {

class ExactBuffer {
  public:
    ExactBuffer(const uint8_t* bytes, size_t size)
        : buf(new unsigned char[size ? size : 1]), length(static_cast<unsigned int>(size)) {
        if (size)
            std::memcpy(buf.get(), bytes, size);
    }
    unsigned char* data() { return length ? buf.get() : nullptr; }
    unsigned int size() const { return length; }

  private:
    std::unique_ptr<unsigned char[]> buf;
    unsigned int length;
};

}  // namespace sarnfuzz

#endif
