// One side of a comparison between two builds of the library (see
// bench/against.sh): it uses the public interface alone, so that the same
// source builds against an older commit's headers as well.
//
//   sarn_bench_against parse|json MILLISECONDS LISTING...
//
// reads the sections of the listings ("pid=0x0012 tid=0x4e len=N HEX" lines),
// parses each once (json) or over and over (parse: parse + delete, CRC check
// off), and prints the nanoseconds per section of a batch that lasts about
// MILLISECONDS.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "SarnISDBTUtils.h"

namespace {

struct Section {
    unsigned int pid;
    std::vector<unsigned char> bytes;
};

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

void readListing(const char* path, std::vector<Section>& out) {
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, 6, "pid=0x") != 0)
            continue;
        Section s;
        s.pid = static_cast<unsigned int>(std::strtoul(line.c_str() + 6, nullptr, 16));
        const std::string::size_type hex = line.rfind(' ');
        if (hex == std::string::npos)
            continue;
        for (std::string::size_type i = hex + 1; i + 1 < line.size(); i += 2) {
            const int hi = hexValue(line[i]), lo = hexValue(line[i + 1]);
            if (hi < 0 || lo < 0)
                break;
            s.bytes.push_back(static_cast<unsigned char>(hi * 16 + lo));
        }
        if (!s.bytes.empty())
            out.push_back(std::move(s));
    }
}

Sarn::TISDBTTable* parse(Section& s) {
    unsigned short code = 0;
    return Sarn::parseSection(s.bytes.data(), static_cast<unsigned int>(s.bytes.size()), 0, &code,
                              s.pid);
}

volatile std::size_t gSink;

}  // namespace

// The library's failure messages are not part of what is measured.
extern "C" int __android_log_print(int, const char*, const char*, ...) {
    return 0;
}

int main(int argc, char** argv) {
    if (argc < 4 || (std::strcmp(argv[1], "parse") != 0 && std::strcmp(argv[1], "json") != 0)) {
        std::fprintf(stderr, "usage: %s parse|json MILLISECONDS LISTING...\n", argv[0]);
        return 2;
    }
    const bool json = std::strcmp(argv[1], "json") == 0;
    const double batch = std::atof(argv[2]) * 1e6;
    std::vector<Section> sections;
    for (int i = 3; i < argc; ++i)
        readListing(argv[i], sections);
    std::vector<Sarn::TISDBTTable*> tables;
    for (Section& s : sections)
        tables.push_back(parse(s));

    auto once = [&] {
        std::size_t sink = 0;
        if (json) {
            for (const Sarn::TISDBTTable* t : tables)
                if (t != nullptr)
                    sink += t->toJSON().size();
        } else {
            for (Section& s : sections) {
                Sarn::TISDBTTable* t = parse(s);
                sink += t != nullptr;
                delete t;
            }
        }
        gSink = gSink + sink;
    };
    using Clock = std::chrono::steady_clock;
    for (int warm = 0; warm < 50; ++warm)
        once();
    long passes = 0;
    const Clock::time_point start = Clock::now();
    double elapsed = 0;
    while (elapsed < batch) {
        once();
        ++passes;
        elapsed = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
    }
    std::printf("%.1f\n", elapsed / static_cast<double>(passes * (long)sections.size()));
    for (Sarn::TISDBTTable* t : tables)
        delete t;
    return sections.empty() ? 1 : 0;
}
