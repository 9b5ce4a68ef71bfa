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
 * bits 0xB0), table_id_extension, the version byte (version_number and
 * current_next_indicator), section_number and last_section_number 0, body
 * and a correct CRC32.
 */
Bytes longSection(unsigned char tableId, unsigned short extension, unsigned char versionByte,
                  const Bytes& body);

/** The parts one after another. */
Bytes join(std::initializer_list<Bytes> parts);

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
