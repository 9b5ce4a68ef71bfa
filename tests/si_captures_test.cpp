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

TEST(SICaptures, EveryPmtNitSdtAndTotParsesAndRenders) {
    auto all = capturedSections();
    if (all.empty())
        GTEST_SKIP() << "shared captures not present";
    std::map<unsigned int, int> parsed;
    for (auto& s : all) {
        unsigned char* data = s.bytes.data();
        const unsigned int length = static_cast<unsigned int>(s.bytes.size());
        LogCapture log;
        unsigned short code = 0xFFFF;
        TISDBTTable* t = nullptr;
        switch (s.tableId) {
            case 0x02:
                t = TPMTTable::parse(data, length, 0, 1, &code, nullptr);
                break;
            case 0x40:
                t = TNITTable::parse(data, length, 1, 0, &code, nullptr);
                break;
            case 0x42:
                t = TSDTTable::parse(data, length, 0, 1, &code, nullptr);
                break;
            case 0x73:
                t = TTOTTable::parse(data, length, 1, 1, &code, nullptr);
                break;
            default:
                continue;
        }
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

namespace {
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

void parseAndRender(Bytes bytes) {
    // An exact-size copy, so that a read past the end is caught by the
    // sanitizers; the CRC check is off so that damage reaches the body walk.
    unsigned char* data = bytes.empty() ? nullptr : bytes.data();
    const unsigned int length = static_cast<unsigned int>(bytes.size());
    unsigned short code = 0;
    TISDBTTable* t = nullptr;
    switch (bytes.empty() ? 0 : bytes[0]) {
        case 0x02:
            t = TPMTTable::parse(data, length, 0, 0, &code, nullptr);
            break;
        case 0x40:
            t = TNITTable::parse(data, length, 0, 0, &code, nullptr);
            break;
        case 0x42:
            t = TSDTTable::parse(data, length, 0, 0, &code, nullptr);
            break;
        case 0x73:
            t = TTOTTable::parse(data, length, 0, 1, &code, nullptr);
            break;
        default:
            return;
    }
    EXPECT_EQ(t == nullptr, code != 0);
    if (t != nullptr) {
        EXPECT_FALSE(t->toJSON().empty());
    }
    delete t;
}
}  // namespace

TEST(SICaptures, CutAndDamagedSectionsStayInsideTheirBytes) {
    std::vector<Bytes> sections = sampleSections();
    for (auto& s : capturedSections())
        sections.push_back(s.bytes);
    ASSERT_FALSE(sections.empty());
    LogCapture quiet;
    for (const Bytes& s : sections) {
        if (s[0] != 0x02 && s[0] != 0x40 && s[0] != 0x42 && s[0] != 0x73)
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
