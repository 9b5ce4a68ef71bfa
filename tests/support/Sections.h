#ifndef SARN_TESTS_SECTIONS_H
#define SARN_TESTS_SECTIONS_H

#include <initializer_list>
#include <string>
#include <vector>

using Bytes = std::vector<unsigned char>;

/** CRC-32/MPEG-2 computed bit by bit, independently of the library's table. */
unsigned int referenceCrc32(const unsigned char* data, size_t length);

/** The bytes followed by their CRC32, big-endian. */
Bytes withCrc(Bytes section);

/**
 * A long-form section around body: table_id, section_length (with the syntax
 * bits 0xB0), table_id_extension, the 5-bit version_number with
 * current_next_indicator 1, section_number and last_section_number, body and
 * a correct CRC32.
 */
Bytes longSection(unsigned char tableId, unsigned short extension, unsigned char version,
                  const Bytes& body, unsigned char sectionNumber = 0,
                  unsigned char lastSectionNumber = 0);

/** A short-form section (no table_id_extension) with a correct section_length and CRC32. */
Bytes shortSection(unsigned char tableId, const Bytes& body);

/** A loop: four reserved bits and a 12-bit length, then the content. */
Bytes loop12(const Bytes& content);

/** Two bytes, big-endian. */
inline Bytes be16(unsigned int v) {
    return {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
}

/** The parts one after another. */
Bytes join(std::initializer_list<Bytes> parts);

/** Concatenation, to build loops piece by piece. */
/** b with the byte at `at` set to value. */
inline Bytes with(Bytes b, size_t at, unsigned char value) {
    b[at] = value;
    return b;
}

inline Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/** The byte count of a buffer, as the parsers take it. */
inline unsigned int length(const Bytes& b) {
    return static_cast<unsigned int>(b.size());
}

/** Bytes from hexadecimal text; blanks are ignored. */
Bytes fromHex(const std::string& hex);

/** One line of a capture's section listing: "pid=0x0011 tid=0x42 len=N <hex>". */
struct CapturedSection {
    std::string file;
    unsigned int pid;
    unsigned int tableId;
    Bytes bytes;
};

/** Directory of the shared captures, or "" when it is not beside the checkout. */
std::string capturesDir();

/** Every section of every listing in the captures directory (empty when absent). */
std::vector<CapturedSection> capturedSections();

/** Every section of one listing file, each marked with name (empty when unreadable). */
std::vector<CapturedSection> listedSections(const std::string& path, const std::string& name);

#endif
