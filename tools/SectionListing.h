#ifndef SARN_TOOLS_SECTIONLISTING_H
#define SARN_TOOLS_SECTIONLISTING_H

// Section listings: one section per text line, "pid=0x0011 tid=0x42 len=N
// <hex from table_id to CRC32>", the form of the capture listings and of the
// bundled sample. Shared by sarn-dump, its tests, the fuzz seed generator and
// the benchmarks.

#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace sarntool {

/** The names of the listings (files ending in ".txt") in dir, sorted; none when dir is absent. */
inline std::vector<std::string> listingFiles(const std::string& dir) {
    std::vector<std::string> names;
    if (DIR* d = opendir(dir.c_str())) {
        while (dirent* e = readdir(d)) {
            std::string name = e->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".txt") == 0)
                names.push_back(name);
        }
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/** Appends the bytes of hexadecimal text; any other character is skipped. */
inline void appendHexBytes(const char* text, std::vector<unsigned char>& out) {
    int high = -1;
    for (const char* p = text; *p; ++p) {
        const char c = *p;
        const int v = (c >= '0' && c <= '9')   ? c - '0'
                      : (c >= 'a' && c <= 'f') ? c - 'a' + 10
                      : (c >= 'A' && c <= 'F') ? c - 'A' + 10
                                               : -1;
        if (v < 0)
            continue;
        if (high < 0) {
            high = v;
        } else {
            out.push_back(static_cast<unsigned char>(high * 16 + v));
            high = -1;
        }
    }
}

/**
 * Reads one listing line into pid, table_id and the section bytes; false when
 * the line is not one (bytes is then left empty).
 */
inline bool parseListingLine(const char* line, unsigned int& pid, unsigned int& tableId,
                             std::vector<unsigned char>& bytes) {
    unsigned int length = 0;
    int consumed = 0;
    bytes.clear();
    if (std::sscanf(line, " pid=0x%x tid=0x%x len=%u %n", &pid, &tableId, &length, &consumed) !=
            3 ||
        consumed == 0)
        return false;
    appendHexBytes(line + consumed, bytes);
    return !bytes.empty();
}

/** Calls each(pid, table_id, bytes) for every listing line of the file at path, in order. */
template <class Each>
void forEachListedSection(const std::string& path, Each each) {
    std::ifstream in(path);
    std::string line;
    std::vector<unsigned char> bytes;
    unsigned int pid = 0, tableId = 0;
    while (std::getline(in, line))
        if (parseListingLine(line.c_str(), pid, tableId, bytes))
            each(pid, tableId, bytes);
}

}  // namespace sarntool

#endif
