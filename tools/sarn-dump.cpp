// sarn-dump: prints the tables found in a list of sections as JSON Lines.
//
// Input: lines "pid=0x0011 tid=0x42 len=N <hex of the section>" (the format
// of the capture listings), from a file or standard input ("-").
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "SectionDispatch.h"

namespace {

void usage(std::FILE* out) {
    std::fprintf(out,
                 "usage: sarn-dump [--all] FILE|-\n"
                 "Parses every section of FILE (lines \"pid=0xPPPP tid=0xTT len=N HEX\")\n"
                 "and prints one JSON object per section on standard output.\n"
                 "  --all   also print sections that repeat a table already printed\n"
                 "  --help  this text\n");
}

bool parseHexLine(const std::string& line, unsigned int& pid, std::vector<unsigned char>& bytes) {
    unsigned int tid = 0, len = 0;
    int consumed = 0;
    if (std::sscanf(line.c_str(), "pid=0x%x tid=0x%x len=%u %n", &pid, &tid, &len, &consumed) < 3 ||
        consumed == 0)
        return false;
    bytes.clear();
    int high = -1;
    for (const char* p = line.c_str() + consumed; *p; ++p) {
        int v;
        if (*p >= '0' && *p <= '9')
            v = *p - '0';
        else if (*p >= 'a' && *p <= 'f')
            v = *p - 'a' + 10;
        else if (*p >= 'A' && *p <= 'F')
            v = *p - 'A' + 10;
        else
            continue;
        if (high < 0) {
            high = v;
        } else {
            bytes.push_back(static_cast<unsigned char>(high * 16 + v));
            high = -1;
        }
    }
    return !bytes.empty();
}

struct Counts {
    unsigned long parsed = 0, repeated = 0, failed = 0, unknown = 0;
};

}  // namespace

int main(int argc, char** argv) {
    bool all = false;
    const char* path = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--all") == 0) {
            all = true;
        } else if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            usage(stdout);
            return 0;
        } else if (argv[i][0] == '-' && argv[i][1] != '\0') {
            std::fprintf(stderr, "sarn-dump: unknown option %s\n", argv[i]);
            usage(stderr);
            return 2;
        } else if (path == nullptr) {
            path = argv[i];
        } else {
            usage(stderr);
            return 2;
        }
    }
    if (path == nullptr) {
        usage(stderr);
        return 2;
    }
    std::ifstream file;
    std::istream* in = &std::cin;
    if (std::strcmp(path, "-") != 0) {
        file.open(path);
        if (!file) {
            std::fprintf(stderr, "sarn-dump: cannot read %s\n", path);
            return 1;
        }
        in = &file;
    }

    sarntool::SectionDispatch dispatch;
    std::map<std::pair<unsigned int, unsigned int>, Counts> counts;
    std::string line;
    std::vector<unsigned char> bytes;
    unsigned int pid = 0;
    while (std::getline(*in, line)) {
        if (!parseHexLine(line, pid, bytes))
            continue;
        const unsigned int tableId = bytes[0];
        sarntool::SectionResult r =
            dispatch.handle(pid, bytes.data(), static_cast<unsigned int>(bytes.size()));
        Counts& c = counts[{pid, tableId}];
        if (!r.known) {
            ++c.unknown;
            continue;
        }
        if (r.error == Sarn::ERROR_TABLE_UNCHANGED) {
            ++c.repeated;
            if (!all)
                continue;
        } else if (r.error != 0) {
            ++c.failed;
        } else {
            ++c.parsed;
        }
        std::printf("{\"pid\":%u,\"table_id\":%u,\"section_number\":%u,\"error\":%u", pid, tableId,
                    r.sectionNumber, r.error);
        if (!r.json.empty())
            std::printf(",\"table\":%s", r.json.c_str());
        std::printf("}\n");
    }

    std::fprintf(stderr, "%-8s %-8s %8s %8s %8s %8s\n", "pid", "table_id", "parsed", "repeated",
                 "failed", "skipped");
    for (const auto& entry : counts)
        std::fprintf(stderr, "0x%04X   0x%02X     %8lu %8lu %8lu %8lu\n", entry.first.first,
                     entry.first.second, entry.second.parsed, entry.second.repeated,
                     entry.second.failed, entry.second.unknown);
    return 0;
}
