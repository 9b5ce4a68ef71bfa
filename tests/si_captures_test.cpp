// End to end over real broadcast captures: every PMT, NIT, SDT and TOT
// section parses without a message and renders; cut and damaged copies of
// them (and of the bundled sample) never lead a parser outside the bytes.
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "LogCapture.h"
#include "Sections.h"
#include "TNITTable.h"
#include "TPMTTable.h"
#include "TSDTTable.h"
#include "TTOTTable.h"

using namespace Sarn;

namespace {
bool isSiTable(const Bytes& b) {
    return !b.empty() && (b[0] == 0x02 || b[0] == 0x40 || b[0] == 0x42 || b[0] == 0x73);
}

// The table class of the section's table_id, with each class's own CRC
// argument set to crc; null for other table_ids.
TISDBTTable* parseTable(Bytes& b, int crc, unsigned short* code) {
    unsigned char* data = b.empty() ? nullptr : b.data();
    const unsigned int length = static_cast<unsigned int>(b.size());
    switch (b.empty() ? 0 : b[0]) {
        case 0x02:
            return TPMTTable::parse(data, length, 0, crc, code, nullptr);
        case 0x40:
            return TNITTable::parse(data, length, crc, 0, code, nullptr);
        case 0x42:
            return TSDTTable::parse(data, length, 0, crc, code, nullptr);
        case 0x73:
            return TTOTTable::parse(data, length, crc, 1, code, nullptr);
        default:
            return nullptr;
    }
}

// The bundled sample multiplex, in the same line format as the captures.
std::vector<Bytes> sampleSections() {
    std::vector<Bytes> all;
    std::ifstream in(std::string(SARN_SOURCE_DIR) + "/data/sample-sections.txt");
    std::string line;
    while (std::getline(in, line)) {
        const size_t hex = line.rfind(' ');
        if (line.rfind("pid=", 0) == 0 && hex != std::string::npos)
            all.push_back(fromHex(line.substr(hex + 1)));
    }
    return all;
}

// An exact-size copy, so that a read past the end is caught by the
// sanitizers; the CRC check is off so that damage reaches the body walk.
void parseAndRender(Bytes bytes) {
    if (!isSiTable(bytes))
        return;
    unsigned short code = 0;
    TISDBTTable* t = parseTable(bytes, 0, &code);
    EXPECT_EQ(t == nullptr, code != 0);
    if (t != nullptr) {
        EXPECT_FALSE(t->toJSON().empty());
    }
    delete t;
}
}  // namespace

TEST(SICaptures, EveryPmtNitSdtAndTotParsesAndRenders) {
    auto all = capturedSections();
    if (all.empty())
        GTEST_SKIP() << "shared captures not present";
    std::map<unsigned int, int> parsed;
    for (auto& s : all) {
        if (!isSiTable(s.bytes))
            continue;
        LogCapture log;
        unsigned short code = 0xFFFF;
        TISDBTTable* t = parseTable(s.bytes, 1, &code);
        ASSERT_NE(t, nullptr) << s.file << " pid " << s.pid;
        EXPECT_EQ(code, 0) << s.file << " pid " << s.pid;
        EXPECT_TRUE(log.lines().empty()) << s.file << " pid " << s.pid;
        const std::string json = t->toJSON();
        EXPECT_EQ(json.front(), '{');
        EXPECT_EQ(json.back(), '}');
        delete t;
        ++parsed[s.tableId];
    }
    // What the captures hold (no file carries a TOT).
    EXPECT_GE(parsed[0x02], 10);
    EXPECT_GE(parsed[0x40], 5);
    EXPECT_GE(parsed[0x42], 4);
}

TEST(SICaptures, CutAndDamagedSectionsStayInsideTheirBytes) {
    std::vector<Bytes> sections = sampleSections();
    for (auto& s : capturedSections())
        sections.push_back(s.bytes);
    ASSERT_FALSE(sections.empty());
    LogCapture quiet;
    for (const Bytes& s : sections) {
        if (!isSiTable(s))
            continue;
        for (size_t n = 0; n <= s.size(); ++n)
            parseAndRender(Bytes(s.begin(), s.begin() + static_cast<long>(n)));
        // Every header and loop length byte near the front set to extremes.
        for (size_t i = 1; i < s.size() && i < 48; ++i) {
            for (unsigned char v : {0x00, 0x03, 0x0F, 0xFF}) {
                Bytes damaged = s;
                damaged[i] = v;
                parseAndRender(damaged);
            }
        }
        quiet.clear();
    }
}
