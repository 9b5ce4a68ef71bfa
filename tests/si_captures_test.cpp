// End to end over real broadcast captures: every PMT, NIT, SDT and TOT
// section parses without a message and renders.
#include <gtest/gtest.h>

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
