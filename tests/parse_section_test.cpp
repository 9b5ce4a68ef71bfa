// Sarn::parseSection: the table_id picks the class, the PID the EIT variant,
// and the CRC switch reaches every class in its own argument position.
#include <gtest/gtest.h>

#include "LogCapture.h"
#include "ParseSection.h"
#include "Sections.h"
#include "TEITTable.h"
#include "TPATTable.h"

using namespace Sarn;

namespace {

// A long-form section (extension 1, version 0, current) around body, with its CRC32.
struct Kind {
    Bytes section;
    TISDBTTable::Type type;
    bool checked;  // the data carousel tables are kept whole: no header read, no CRC check
};

// The smallest well-formed section of every class.
std::vector<Kind> everyKind() {
    return {
        {longSection(0x00, 0x0001, 0, {0x00, 0x00, 0xE0, 0x10}), TISDBTTable::TYPE_PAT, true},
        {longSection(0x02, 0x0001, 0, {0xE1, 0x00, 0xF0, 0x00}), TISDBTTable::TYPE_PMT, true},
        {longSection(0x3B, 0x0001, 0, {}), TISDBTTable::TYPE_DSI_DII, false},
        {longSection(0x3C, 0x0001, 0, {}), TISDBTTable::TYPE_DDB, false},
        {longSection(0x3D, 0x0001, 0, {}), TISDBTTable::TYPE_DSMCC, true},
        {longSection(0x40, 0x0001, 0, {0xF0, 0x00, 0xF0, 0x00}), TISDBTTable::TYPE_NIT, true},
        {longSection(0x42, 0x0001, 0, {0x00, 0x01, 0xFF}), TISDBTTable::TYPE_SDT, true},
        {longSection(0x4E, 0x0001, 0, {0x00, 0x01, 0x00, 0x01, 0x00, 0x4E}),
         TISDBTTable::TYPE_EIT_27, true},
        {longSection(0x6F, 0x0001, 0, {0x00, 0x01, 0x00, 0x01, 0x00, 0x6F}),
         TISDBTTable::TYPE_EIT_27, true},
        {withCrc({0x73, 0x70, 0x0B, 0xE8, 0x36, 0x12, 0x00, 0x00, 0xF0, 0x00}),
         TISDBTTable::TYPE_TOT, true},
        {longSection(0x74, 0x0001, 0, {0xF0, 0x00, 0xF0, 0x00}), TISDBTTable::TYPE_AIT, true},
        {longSection(0x99, 0x0001, 0, {0xF0, 0x00}), TISDBTTable::TYPE_DCT, true},
        {longSection(0xC3, 0x0001, 0, {0x04, 0x00, 0x7F, 0xE0, 0xFF, 0xF0, 0x00}),
         TISDBTTable::TYPE_SDTT, true},
    };
}

TISDBTTable* parse(Bytes& b, int checkCrc, unsigned short* code, unsigned int pid = 0x0027,
                   TISDBTTable* previous = nullptr) {
    return parseSection(b.data(), static_cast<unsigned int>(b.size()), checkCrc, code, pid,
                        previous);
}

}  // namespace

TEST(ParseSection, EachTableIdToItsClassWithTheCrcSwitchHonoured) {
    for (Kind& k : everyKind()) {
        SCOPED_TRACE("table_id " + std::to_string(k.section[0]));
        LogCapture log;
        unsigned short code = 0xBEEF;
        TISDBTTable* t = parse(k.section, 1, &code);
        ASSERT_NE(t, nullptr);
        EXPECT_EQ(code, ERROR_NONE);
        EXPECT_EQ(t->getType(), k.type);
        EXPECT_EQ(t->getTableId(), k.checked ? k.section[0] : 0);
        delete t;

        // A damaged CRC32 fails the class's check only when the switch is exactly 1.
        Bytes damaged = k.section;
        damaged.back() ^= 0x01;
        for (int crc : {0, 2, 1}) {
            code = 0xBEEF;
            t = parse(damaged, crc, &code);
            const bool refused = crc == 1 && k.checked;
            EXPECT_EQ(t == nullptr, refused) << "checkCrc " << crc;
            EXPECT_EQ(code, refused ? ERROR_CRC32 : ERROR_NONE) << "checkCrc " << crc;
            delete t;
        }
        ASSERT_EQ(log.lines().size(), k.checked ? 1u : 0u);
        if (k.checked) {
            EXPECT_EQ(log.lines()[0].priority, 6);
            EXPECT_NE(log.lines()[0].text.find("CRC32  FAIL!"), std::string::npos);
        }
    }
}

TEST(ParseSection, ThePidPicksTheEventVariantAndPreviousTablesAreChecked) {
    Bytes eit = longSection(0x50, 0x0001, 0, {0x00, 0x01, 0x00, 0x01, 0x00, 0x50});
    unsigned short code = 0;
    TISDBTTable* full = parse(eit, 1, &code, 0x0012);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->getType(), TISDBTTable::TYPE_EIT_12);
    TISDBTTable* oneSeg = parse(eit, 1, &code, 0x0026);
    ASSERT_NE(oneSeg, nullptr);
    EXPECT_EQ(oneSeg->getType(), TISDBTTable::TYPE_EIT_27);

    // The same table again comes back unchanged; a table of another variant
    // is refused by the class, one of another class before the class is asked.
    LogCapture log;
    code = 0;
    EXPECT_EQ(parse(eit, 1, &code, 0x0012, full), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    code = 0;
    EXPECT_EQ(parse(eit, 1, &code, 0x0012, oneSeg), nullptr);
    EXPECT_EQ(code, ERROR_PREVIOUS_TABLE_TYPE);
    Bytes pat = longSection(0x00, 0x0001, 0, {0x00, 0x00, 0xE0, 0x10});
    code = 0;
    EXPECT_EQ(parse(pat, 1, &code, 0x0000, full), nullptr);
    EXPECT_EQ(code, ERROR_PREVIOUS_TABLE_TYPE);
    EXPECT_TRUE(log.lines().empty());
    delete oneSeg;
    delete full;
}

TEST(ParseSection, WithoutAClassNothingIsLogged) {
    LogCapture log;
    unsigned short code = 0;
    // Table_ids the library does not model: the CAT, the other network's NIT
    // and SDT, the TDT, stuffing, and those either side of the EIT range.
    for (unsigned char tableId : {0x01, 0x41, 0x46, 0x4D, 0x70, 0x72, 0xFF}) {
        Bytes b = longSection(tableId, 0x0001, 0, {0xF0, 0x00, 0xF0, 0x00});
        code = 0;
        EXPECT_EQ(parse(b, 1, &code), nullptr) << int(tableId);
        EXPECT_EQ(code, ERROR_UNEXPECTED_TABLE_ID) << int(tableId);
    }
    code = 0;
    EXPECT_EQ(parseSection(nullptr, 16, 1, &code, 0), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    Bytes empty = {0x00};
    code = 0;
    EXPECT_EQ(parseSection(empty.data(), 0, 1, &code, 0), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(parseSection(nullptr, 0, 1, nullptr, 0), nullptr);
    EXPECT_TRUE(log.lines().empty());
}
