// The section header shared by every table, the PAT on top of it, and
// Sarn::parseSection choosing the class by table_id.
#include <gtest/gtest.h>

#include <cstdio>

#include "ISDBTUtils.h"
#include "SectionParse.h"
#include "TAITTable.h"
#include "TEITTable.h"
#include "TNITTable.h"
#include "TPATTable.h"
#include "TPMTTable.h"
#include "TSDTTable.h"
#include "TTOTTable.h"

using namespace Sarn;

namespace {

// Program 0x5C20 on PID 0x0101, network PID 0x0010, in TS 0x02E1.
Bytes patSection(unsigned char version = 1, unsigned char sectionNumber = 0) {
    return longSection(0x00, 0x02E1, version, {0x00, 0x00, 0xE0, 0x10, 0x5C, 0x20, 0xE1, 0x01},
                       sectionNumber);
}

const std::string kPatJson =
    "{\"transportStreamId\":737,\"programs\":[{\"programNumber\":23584,\"networkPid\":16,"
    "\"programMapPid\":257}]}";

TPATTable* parsePat(Bytes& b, unsigned short* code, int checkCrc = 1,
                    TPATTable* previous = nullptr) {
    return TPATTable::parse(b.data(), length(b), 0, checkCrc, code, previous);
}

}  // namespace

TEST(Sections, HeaderChecksInOrder) {
    const Bytes pat = patSection();
    Bytes stuffed = pat + Bytes{0xFF};
    Bytes damaged = with(pat, 13, pat[13] ^ 0x01);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {sectionOutcome(Bytes(pat.begin(), pat.begin() + 6)),
         "null code=2563" + kWarn +
             "TISDBTTable::parse: Longer data length is required: 6 < 12. Aborting!"},
        // section_length one beyond the bytes handed in.
        {sectionOutcome(with(pat, 2, 0x12)),
         "null code=2565" + kWarn +
             "TISDBTTable::parse: Section length exceeds data length. Aborting!"},
        {sectionOutcome(damaged),
         "null code=2566" + kError +
             "TISDBTTable::parse: CRC32  FAIL! (0xD1EC3AC0 != 0xD0349647). Data may be corrupted!"},
        // Unchecked, a damaged program entry is simply read.
        {sectionOutcome(damaged, nullptr, 0, 0),
         "{\"transportStreamId\":737,\"programs\":[{\"programNumber\":23585,\"networkPid\":16,"
         "\"programMapPid\":257}]}"},
        // The stored CRC is read from the end of the buffer: a stuffing byte
        // after the section fails the check; any switch but 1 skips it.
        {sectionOutcome(stuffed),
         "null code=2566" + kError +
             "TISDBTTable::parse: CRC32  FAIL! (0xD0349647 != 0x349647FF). Data may be corrupted!"},
        {sectionOutcome(stuffed, nullptr, 0, 2), kPatJson},
        // The upper nibble of byte 1 is not part of section_length.
        {sectionOutcome(with(pat, 1, 0x70), nullptr, 0, 0), kPatJson},
        // A long-form body shorter than its five header bytes.
        {sectionOutcome(Bytes{0x00, 0xB0, 0x08, 0x00, 0x01, 0xC1, 0x00, 0x00, 0, 0, 0, 0}, nullptr,
                        0, 0),
         "null code=2565" + kWarn + "TISDBTVersionedTable::parse: Section length 4 < 5"},
        // An EIT takes fourteen bytes, the fixed fields without events or CRC;
        // version 17 uses all five bits.
        {sectionOutcome(Bytes{0x4E, 0xF0, 0x0B, 0, 1, 0xE3, 0, 0, 0, 1, 0, 1, 0, 0x4E}, nullptr, 0,
                        0),
         "{\"table_id\":78,\"section_length\":11,\"table_id_extension\":1,\"version_number\":17,"
         "\"current_next_indicator\":1,\"section_number\":0,\"last_section_number\":0,"
         "\"transport_stream_id\":1,\"original_network_id\":1,\"segment_last_section_number\":0,"
         "\"last_table_id\":78,\"event_loop\":[]}"},
        // The minimum is raised to 7 for every class (the DSM-CC section asks for 4).
        {sectionOutcome(Bytes{0x3D, 0xB0, 0x03, 0, 0, 0}),
         "null code=2563" + kWarn +
             "TISDBTTable::parse: Longer data length is required: 6 < 7. Aborting!"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.first, c.second);

    // Straight to a class: null data, another table_id, every line under the tag "Sarn".
    LogCapture log;
    unsigned short code = 0;
    EXPECT_EQ(TPATTable::parse(nullptr, 20, 0, 1, &code, nullptr), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    Bytes pmtId = with(pat, 0, 0x02);
    EXPECT_EQ(parsePat(pmtId, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_TABLE_ID);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               warnLine("TISDBTTable::parse: Invalid data. Aborting!"),
                               warnLine("TISDBTTable::parse: Unexpected table ID. Got 0x02, "
                                        "instead of 0x00. Aborting!")}));
    for (const LogLine& l : log.lines())
        EXPECT_EQ(l.tag, "Sarn");

    // A long-form header must lie within the bytes even when a section_length
    // of 2 wraps the body count; eight bytes are enough and nothing is written
    // on success.
    TISDBTVersionedTable table(TISDBTTable::TYPE_DCT, 2, 0x99, nullptr, 0);
    Bytes seven = {0x99, 0xB0, 0x02, 0x00, 0x01, 0xC1, 0x00};
    unsigned short remaining = 0;
    EXPECT_FALSE(table.parseCommonHeader(seven.data(), 7, 0, &code, &remaining, nullptr));
    EXPECT_EQ(code, ERROR_SECTION_LENGTH);
    EXPECT_EQ(log.texts().back(),
              warnLine("TISDBTTable::parse: Section length exceeds data length. Aborting!"));
    seven.push_back(0x00);
    code = 99;
    EXPECT_TRUE(table.parseCommonHeader(seven.data(), 8, 0, &code, &remaining, nullptr));
    EXPECT_EQ(code, 99);
    EXPECT_EQ(remaining, 65529);
    EXPECT_EQ(table.toJSON(),
              "\"table_id\":153,\"section_length\":2,\"table_id_extension\":1,"
              "\"version_number\":0,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0");
}

TEST(Sections, PreviousTableVersionAndSectionNumber) {
    LogCapture log;
    unsigned short code = 0;
    Bytes first = patSection(3);
    TPATTable* a = parsePat(first, &code);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(parsePat(first, &code, 1, a), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    // Same version and another CRC: a new table.
    Bytes changed = longSection(0x00, 0x02E1, 3, {0x00, 0x00, 0xE0, 0x11});
    TPATTable* b = parsePat(changed, &code, 1, a);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(code, 0);
    delete b;
    // CRC off on both: an equal version alone counts as unchanged.
    TPATTable* unchecked = parsePat(changed, &code, 0);
    ASSERT_NE(unchecked, nullptr);
    EXPECT_EQ(parsePat(first, &code, 0, unchecked), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    delete unchecked;
    // Another version; version 4 and current_next_indicator 0 in one byte.
    Bytes next = with(patSection(4), 5, 0xC8);
    next = withCrc(Bytes(next.begin(), next.end() - 4));
    b = parsePat(next, &code, 1, a);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->getVersion(), 4);
    EXPECT_EQ(b->getCurrentIndicator(), 0);
    delete b;
    EXPECT_TRUE(log.lines().empty());

    // Section 1 of a multi-section table: refused against a previous table
    // without touching the code, parsed without one.
    Bytes second = patSection(4, 1);
    code = 1234;
    EXPECT_EQ(parsePat(second, &code, 1, a), nullptr);
    EXPECT_EQ(code, 1234);
    EXPECT_EQ(log.texts(), std::vector<std::string>{warnLine(
                               "TISDBTVersionedTable::parse: Multi-section parsing not supported. "
                               "TODO!")});
    b = parsePat(second, &code);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->getSectionNumber(), 1);
    delete b;
    delete a;
}

TEST(Sections, PatProgramsAndNetworkEntries) {
    // TS 0x7ED0, version 5: network PID 0x0010, programs 0x0102 and 0x0101
    // (out of order on the wire).
    Bytes b = withCrc({0x00, 0xB0, 0x15, 0x7E, 0xD0, 0xCB, 0x00, 0x00, 0x00, 0x00,
                       0xE0, 0x10, 0x01, 0x02, 0xE1, 0xF1, 0x01, 0x01, 0xE1, 0xF0});
    EXPECT_EQ(sectionOutcome(b),
              "{\"transportStreamId\":32464,\"programs\":["
              "{\"programNumber\":257,\"networkPid\":16,\"programMapPid\":496},"
              "{\"programNumber\":258,\"networkPid\":16,\"programMapPid\":497}]}");
    // No network entry: the network PID stays 0. A repeated program_number
    // replaces the earlier entry; two bytes short of an entry are ignored.
    EXPECT_EQ(sectionOutcome(withCrc({0x00, 0xB0, 0x13, 0x00, 0x02, 0xC1, 0x00, 0x00, 0x00, 0x07,
                                      0xE1, 0x00, 0x00, 0x07, 0xE1, 0x01, 0xAB, 0xCD})),
              "{\"transportStreamId\":2,\"programs\":[{\"programNumber\":7,\"networkPid\":0,"
              "\"programMapPid\":257}]}");
    // A later network entry overrides an earlier one.
    EXPECT_EQ(sectionOutcome(withCrc({0x00, 0xB0, 0x15, 0x00, 0x03, 0xC1, 0x00, 0x00, 0x00, 0x00,
                                      0xE0, 0x10, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x01, 0x00, 0x20})),
              "{\"transportStreamId\":3,\"programs\":[{\"programNumber\":1,\"networkPid\":8191,"
              "\"programMapPid\":32}]}");
    // section_length 0..3 wraps the body count; the walk stays inside the
    // 12 bytes handed in (the sanitized run checks the reads).
    for (unsigned char len = 0; len < 4; ++len)
        EXPECT_EQ(sectionOutcome(
                      Bytes{0x00, 0xB0, len, 0x00, 0x01, 0xC1, 0x00, 0x00, 0x01, 0x02, 0xE0, 0x30},
                      nullptr, 0, 0),
                  "{\"transportStreamId\":1,\"programs\":[{\"programNumber\":258,"
                  "\"networkPid\":0,\"programMapPid\":48}]}");

    unsigned short code = 0;
    TPATTable* t = parsePat(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getNetworkPid(), 16);
    EXPECT_EQ(t->getProgramNumbers(), (std::list<unsigned short>{0x0101, 0x0102}));
    EXPECT_EQ(t->get(0x0000), nullptr);
    EXPECT_FALSE(t->remove(0x0999));
    EXPECT_TRUE(t->remove(0x0101));
    EXPECT_EQ(t->size(), 1);
    TProgramAssociation* extra = new TProgramAssociation(0x0005, 0x0500);
    t->add(extra);
    EXPECT_EQ(t->get(5), extra);
    EXPECT_EQ(t->getProgramNumbers(), (std::list<unsigned short>{0x0005, 0x0102}));
    delete t;
    // A caller's own room still takes an entry: new (room) T(...).
    alignas(TProgramAssociation) unsigned char room[sizeof(TProgramAssociation)];
    TProgramAssociation* placed = new (room) TProgramAssociation(7, 0x100);
    EXPECT_EQ(placed->getProgramMapPid(), 0x100);
    placed->~TProgramAssociation();
}

TEST(Sections, EachTableIdToItsClassWithTheCrcSwitchHonoured) {
    struct Kind {
        Bytes section;
        TISDBTTable::Type type;
        bool checked;  // the data carousel tables are kept whole: no header read, no CRC check
    };
    const Bytes eitBody = {0x00, 0x01, 0x00, 0x01, 0x00, 0x4E};
    const std::vector<Kind> kinds = {
        {longSection(0x00, 1, 0, {0x00, 0x00, 0xE0, 0x10}), TISDBTTable::TYPE_PAT, true},
        {longSection(0x02, 1, 0, {0xE1, 0x00, 0xF0, 0x00}), TISDBTTable::TYPE_PMT, true},
        {longSection(0x3B, 1, 0, {}), TISDBTTable::TYPE_DSI_DII, false},
        {longSection(0x3C, 1, 0, {}), TISDBTTable::TYPE_DDB, false},
        {longSection(0x3D, 1, 0, {}), TISDBTTable::TYPE_DSMCC, true},
        {longSection(0x40, 1, 0, {0xF0, 0x00, 0xF0, 0x00}), TISDBTTable::TYPE_NIT, true},
        {longSection(0x42, 1, 0, {0x00, 0x01, 0xFF}), TISDBTTable::TYPE_SDT, true},
        {longSection(0x4E, 1, 0, eitBody), TISDBTTable::TYPE_EIT_27, true},
        {longSection(0x6F, 1, 0, eitBody), TISDBTTable::TYPE_EIT_27, true},
        {withCrc({0x73, 0x70, 0x0B, 0xE8, 0x36, 0x12, 0x00, 0x00, 0xF0, 0x00}),
         TISDBTTable::TYPE_TOT, true},
        {longSection(0x74, 1, 0, {0xF0, 0x00, 0xF0, 0x00}), TISDBTTable::TYPE_AIT, true},
        {longSection(0x99, 1, 0, {0xF0, 0x00}), TISDBTTable::TYPE_DCT, true},
        {longSection(0xC3, 1, 0, {0x04, 0x00, 0x7F, 0xE0, 0xFF, 0xF0, 0x00}),
         TISDBTTable::TYPE_SDTT, true},
    };
    for (const Kind& k : kinds) {
        SCOPED_TRACE("table_id " + std::to_string(k.section[0]));
        LogCapture log;
        Bytes b = k.section;
        unsigned short code = 0xBEEF;
        TISDBTTable* t = parseSection(b.data(), length(b), 1, &code, 0x0027);
        ASSERT_NE(t, nullptr);
        EXPECT_EQ(code, ERROR_NONE);
        EXPECT_EQ(t->getType(), k.type);
        EXPECT_EQ(t->getTableId(), k.checked ? k.section[0] : 0);
        delete t;
        // A damaged CRC32 fails the class's check only when the switch is exactly 1.
        b.back() ^= 0x01;
        for (int crc : {0, 2, 1}) {
            code = 0xBEEF;
            t = parseSection(b.data(), length(b), crc, &code, 0x0027);
            const bool refused = crc == 1 && k.checked;
            EXPECT_EQ(t == nullptr, refused) << "checkCrc " << crc;
            EXPECT_EQ(code, refused ? ERROR_CRC32 : ERROR_NONE) << "checkCrc " << crc;
            delete t;
        }
        EXPECT_EQ(log.lines().size(), k.checked ? 1u : 0u);
    }
}

TEST(Sections, ThePidPicksTheEventVariantAndPreviousTablesAreChecked) {
    LogCapture log;
    Bytes eit = longSection(0x50, 0x0001, 0, {0x00, 0x01, 0x00, 0x01, 0x00, 0x50});
    unsigned short code = 0;
    TISDBTTable* full = parseSection(eit.data(), length(eit), 1, &code, 0x0012);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->getType(), TISDBTTable::TYPE_EIT_12);
    TISDBTTable* oneSeg = parseSection(eit.data(), length(eit), 1, &code, 0x0013);
    ASSERT_NE(oneSeg, nullptr);
    EXPECT_EQ(oneSeg->getType(), TISDBTTable::TYPE_EIT_27);
    // The same table again is unchanged; a table of the other variant is
    // refused by the class, one of another class before the class is asked.
    EXPECT_EQ(sectionOutcome(eit, nullptr, 0x0012, 1, full), "null code=2561");
    EXPECT_EQ(sectionOutcome(eit, nullptr, 0x0012, 1, oneSeg), "null code=2560");
    EXPECT_EQ(sectionOutcome(patSection(), nullptr, 0, 1, full), "null code=2560");
    delete oneSeg;
    delete full;

    // Table_ids without a class (the CAT, the other network's NIT and SDT,
    // the TDT, stuffing, the neighbours of each class), no data, no bytes: a
    // code and nothing logged.
    for (unsigned char tableId : {0x01, 0x03, 0x3A, 0x3E, 0x41, 0x43, 0x46, 0x4D, 0x70, 0x72, 0x75,
                                  0x98, 0x9A, 0xC2, 0xC4, 0xFF})
        EXPECT_EQ(sectionOutcome(longSection(tableId, 1, 0, {0xF0, 0x00, 0xF0, 0x00})),
                  "null code=2564");
    code = 0;
    EXPECT_EQ(parseSection(nullptr, 16, 1, &code, 0), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    EXPECT_EQ(parseSection(eit.data(), 0, 1, &code, 0), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(parseSection(nullptr, 0, 1, nullptr, 0), nullptr);
    EXPECT_TRUE(log.lines().empty());
}

TEST(Sections, FreshTablesAndEntriesRenderTheirDefaults) {
    TEITTable eit(TISDBTTable::TYPE_EIT_12, nullptr, 0);
    eit.addItem(new TEventItem(1, 0x4E, 0));
    TNITTable nit(nullptr, 0);
    nit.addTransportStreamInfo(new TTransportStreamInfo());
    TSDTTable sdt(nullptr, 0);
    sdt.addServiceDescription(new TServiceDescription());
    TPMTTable pmt(nullptr, 0);
    pmt.addProgramMap(new TProgramMap());
    TAITTable ait(nullptr, 0);
    ait.addApplication(new TApplication(nullptr, 0));
    for (const std::string& json :
         {eit.toJSON(), nit.toJSON(), sdt.toJSON(), pmt.toJSON(), ait.toJSON(),
          TTOTTable(nullptr, 0).toJSON(), TPATTable(nullptr, 0).toJSON()})
        EXPECT_TRUE(onlyZeros(json)) << json;
    EXPECT_EQ(ait.getApplication("")->getApplicationType(), 0);
    // A null entry is not added.
    nit.addTransportStreamInfo(nullptr);
    sdt.addServiceDescription(nullptr);
    EXPECT_EQ(nit.getTransportStreamLoopSize(), 1);
    EXPECT_EQ(sdt.size(), 1);
}

#if defined(__SANITIZE_ADDRESS__)
// A parsed table shares one block with its entries; under AddressSanitizer
// the room of an entry deleted from it is poisoned while the block lives on.
TEST(Sections, AnEntryUsedAfterItsRemovalIsReported) {
    Bytes pat = longSection(0x00, 1, 0, {0x00, 0x01, 0xE1, 0x00, 0x00, 0x02, 0xE1, 0x01});
    unsigned short code = 0;
    TPATTable* t = TPATTable::parse(pat.data(), length(pat), 0, 1, &code, nullptr);
    ASSERT_NE(t, nullptr);
    TProgramAssociation* first = t->get(1);
    ASSERT_TRUE(t->remove(1));
    const volatile unsigned char* room = reinterpret_cast<const unsigned char*>(first);
    EXPECT_DEATH(std::printf("%u\n", room[0]), "use-after-poison");
    delete t;
}
#endif
