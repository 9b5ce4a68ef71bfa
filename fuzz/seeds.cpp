// Writes the seed corpora of the harnesses from section listings (lines
// "pid=0xPPPP tid=0xTT len=N HEX"): the real captures and the project's
// sample multiplex.
//   fuzz_seeds OUTDIR LISTING...
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "FuzzDescriptors.h"
#include "FuzzTables.h"
#include "SectionListing.h"

namespace {

void writeSeed(const std::string& dir, unsigned int n, const std::vector<unsigned char>& bytes) {
    mkdir(dir.c_str(), 0755);
    std::ofstream(dir + "/seed-" + std::to_string(n), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: fuzz_seeds OUTDIR LISTING...\n");
        return 2;
    }
    const std::string out = argv[1];
    mkdir(out.c_str(), 0755);
    unsigned int count = 0;
    for (int i = 2; i < argc; ++i) {
        const std::string name = argv[i];
        if (name.size() > 3 && name.compare(name.size() - 3, 3, ".ts") == 0) {
            // Transport streams seed the demultiplexer: the first 64 KB, fed
            // in chunks of 187 bytes (selector 62) so that packets straddle.
            std::ifstream ts(name, std::ios::binary);
            std::vector<unsigned char> seed(1, 62);
            std::vector<char> head(65536);
            ts.read(head.data(), static_cast<std::streamsize>(head.size()));
            seed.insert(seed.end(), head.begin(), head.begin() + ts.gcount());
            writeSeed(out + "/demux", count++, seed);
            continue;
        }
        sarntool::forEachListedSection(argv[i], [&](unsigned int pid, unsigned int,
                                                    const std::vector<unsigned char>& section) {
            std::vector<unsigned char> tableSeed(1, sarnfuzz::selectorOf(pid));
            tableSeed.insert(tableSeed.end(), section.begin(), section.end());
            writeSeed(out + "/tables", count++, tableSeed);
            // Descriptor seeds: every place in the section where a known tag is
            // followed by a length that fits is taken as a candidate descriptor.
            for (size_t p = 3; p + 2 <= section.size(); ++p) {
                const size_t whole = 2u + section[p + 1];
                if (p + whole > section.size())
                    continue;
                for (unsigned int k = 0; k < sarnfuzz::kindCount(); ++k) {
                    if (sarnfuzz::tagOf(k) != section[p])
                        continue;
                    std::vector<unsigned char> seed(1, static_cast<unsigned char>(k));
                    seed.insert(seed.end(), section.begin() + static_cast<long>(p),
                                section.begin() + static_cast<long>(p + whole));
                    writeSeed(out + "/descriptors", count++, seed);
                }
            }
            // The string readers see the section bodies as well.
            std::vector<unsigned char> utils = {0, 1};
            utils.insert(utils.end(), section.begin(), section.end());
            writeSeed(out + "/parser_utils", count++, utils);
        });
    }
    std::printf("%u seeds in %s\n", count, out.c_str());
    return 0;
}
