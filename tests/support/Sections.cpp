#include "Sections.h"

#include "SectionListing.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

unsigned int referenceCrc32(const unsigned char* data, size_t length) {
    unsigned int crc = 0xFFFFFFFFu;
    for (size_t i = 0; i < length; ++i) {
        crc ^= static_cast<unsigned int>(data[i]) << 24;
        for (int b = 0; b < 8; ++b)
            crc = (crc & 0x80000000u) ? (crc << 1) ^ 0x04C11DB7u : crc << 1;
    }
    return crc;
}

Bytes withCrc(Bytes section) {
    const unsigned int crc = referenceCrc32(section.data(), section.size());
    for (int shift = 24; shift >= 0; shift -= 8)
        section.push_back(static_cast<unsigned char>(crc >> shift));
    return section;
}

Bytes longSection(unsigned char tableId, unsigned short extension, unsigned char version,
                  const Bytes& body, unsigned char sectionNumber, unsigned char lastSectionNumber) {
    const size_t sectionLength = 5 + body.size() + 4;
    Bytes s = {tableId,
               static_cast<unsigned char>(0xB0 | ((sectionLength >> 8) & 0x0F)),
               static_cast<unsigned char>(sectionLength & 0xFF),
               static_cast<unsigned char>(extension >> 8),
               static_cast<unsigned char>(extension & 0xFF),
               static_cast<unsigned char>(0xC1 | ((version & 0x1F) << 1)),
               sectionNumber,
               lastSectionNumber};
    s.insert(s.end(), body.begin(), body.end());
    return withCrc(s);
}

Bytes shortSection(unsigned char tableId, const Bytes& body) {
    const size_t sectionLength = body.size() + 4;
    Bytes s = {tableId, static_cast<unsigned char>(0xB0 | ((sectionLength >> 8) & 0x0F)),
               static_cast<unsigned char>(sectionLength & 0xFF)};
    s.insert(s.end(), body.begin(), body.end());
    return withCrc(s);
}

Bytes loop12(const Bytes& content) {
    const size_t n = content.size();
    // Sized once and filled in place: growing a two-byte vector by insert()
    // makes g++ 12 at -O3 warn about a memcpy past its old end (-Warray-bounds)
    // although the copy goes to the new storage.
    Bytes b(n + 2);
    b[0] = static_cast<unsigned char>(0xF0 | ((n >> 8) & 0x0F));
    b[1] = static_cast<unsigned char>(n & 0xFF);
    std::copy(content.begin(), content.end(), b.begin() + 2);
    return b;
}

Bytes join(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts)
        out.insert(out.end(), p.begin(), p.end());
    return out;
}

Bytes fromHex(const std::string& hex) {
    Bytes out;
    sarntool::appendHexBytes(hex.c_str(), out);
    return out;
}

std::string capturesDir() {
    std::string dir = std::string(SARN_SHARED_DIR) + "/captures/sections";
    struct stat st {};
    return stat(dir.c_str(), &st) == 0 && S_ISDIR(st.st_mode) ? dir : std::string();
}

std::vector<CapturedSection> capturedSections() {
    std::vector<CapturedSection> all;
    const std::string dir = capturesDir();
    if (dir.empty())
        return all;
    const std::vector<std::string> names = sarntool::listingFiles(dir);
    for (const std::string& name : names) {
        std::vector<CapturedSection> file = listedSections(dir + "/" + name, name);
        all.insert(all.end(), file.begin(), file.end());
    }
    return all;
}

std::vector<CapturedSection> listedSections(const std::string& path, const std::string& name) {
    std::vector<CapturedSection> all;
    sarntool::forEachListedSection(path,
                                   [&](unsigned int pid, unsigned int tid, const Bytes& bytes) {
                                       all.push_back({name, pid, tid, bytes});
                                   });
    return all;
}
