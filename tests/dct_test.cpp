// Datacaster carousel table (private table_id 0x99).
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TDCTTable.h"

using namespace Sarn;

namespace {

// Loop length (with four reserved bits set) followed by the entries.
Bytes loop(unsigned short length, const Bytes& entries) {
    return join({{static_cast<unsigned char>(0xF0 | (length >> 8)),
                  static_cast<unsigned char>(length & 0xFF)},
                 entries});
}

// PID 0x1F0 (reserved bits set), version 3, carousel 10, component tag
// 0x40, "Ginga"; then PID 0x200, version 0, carousel 0xFFFFFFFF, tag 0x41,
// no name.
const Bytes kTwoCarousels = {0xE1, 0xF0, 0x03, 0x00, 0x00, 0x00, 0x0A, 0x40, 0x05, 'G',  'i', 'n',
                             'g',  'a',  0xE2, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0x00};

struct Parsed {
    TDCTTable* t;
    unsigned short code;
};

Parsed parse(Bytes& b, int checkCrc = 1, int second = 0) {
    Parsed r{nullptr, 0xFFFF};
    r.t = TDCTTable::parse(b.data(), static_cast<unsigned int>(b.size()), checkCrc, second, &r.code,
                           nullptr);
    return r;
}

}  // namespace

TEST(DCT, CarouselsOfAService) {
    LogCapture log;
    Bytes b = longSection(0x99, 0x0101, 2, loop(23, kTwoCarousels));
    Parsed r = parse(b);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.code, 0);
    TDCTTable* t = r.t;
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_DCT);
    EXPECT_EQ(t->getServiceID(), 0x0101);
    EXPECT_EQ(t->getVersion(), 2);
    EXPECT_EQ(t->toJSON(),
              "\"table_id\":153,\"section_length\":34,\"table_id_extension\":257,"
              "\"version_number\":2,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0");
    ASSERT_EQ(t->getDatacasterCarouselSize(), 2);
    TDatacasterCarousel* first = t->getDatacasterCarousel(0);
    EXPECT_EQ(first->getPID(), 0x1F0);
    EXPECT_EQ(first->getVersion(), 3);
    EXPECT_EQ(first->getCarouselID(), 10u);
    EXPECT_EQ(first->getComponentTag(), 0x40);
    EXPECT_EQ(first->getApplicationName(), "Ginga");
    EXPECT_EQ(first->getParentDCTTable(), nullptr);
    TDatacasterCarousel* second = t->getDatacasterCarousel(1);
    EXPECT_EQ(second->getPID(), 0x200);
    EXPECT_EQ(second->getCarouselID(), 0xFFFFFFFFu);
    EXPECT_EQ(second->getApplicationName(), "");
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(t->getDatacasterCarousel(2), nullptr);
    EXPECT_FALSE(t->removeDatacasterCarousel(2));
    EXPECT_TRUE(t->removeDatacasterCarousel(0));
    EXPECT_EQ(t->getDatacasterCarouselSize(), 1);
    EXPECT_EQ(t->getDatacasterCarousel(0), second);
    second->setParentDCTTable(t);
    EXPECT_EQ(second->getParentDCTTable(), t);
    t->addDatacasterCarousel(new TDatacasterCarousel());
    EXPECT_EQ(t->getDatacasterCarouselSize(), 2);
    delete t;

    // An empty loop; the CRC switch is the first integer.
    Bytes empty = longSection(0x99, 0x0102, 0, loop(0, {}));
    r = parse(empty);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.t->getDatacasterCarouselSize(), 0);
    delete r.t;
    empty[empty.size() - 2] ^= 0x10;
    r = parse(empty, 0, 1);
    ASSERT_NE(r.t, nullptr);
    delete r.t;
    r = parse(empty, 1, 0);
    EXPECT_EQ(r.code, ERROR_CRC32);
}

TEST(DCT, BrokenEntriesFailTheTable) {
    LogCapture log;
    const std::string invalid = warnLine("TDCTTable::parse: Invalid item. Aborting!");
    struct Case {
        Bytes body;
        unsigned short code;
        std::vector<std::string> lines;
    };
    const Bytes unnamed = {0xE2, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x41, 0x00};
    const std::vector<Case> cases = {
        // The name length points past the body.
        {loop(9, {0xE2, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x41, 0x08}),
         ERROR_INVALID_ITEM,
         {warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data length: 8 > "
                   "0. Aborting!"),
          warnLine("TDatacasterCarousel:: parse: ERROR: parsing ApplicationName. Aborting!"),
          invalid}},
        // A loop length that is not a sum of whole entries goes on past the last one.
        {loop(10, unnamed),
         ERROR_INVALID_ITEM,
         {warnLine("TDatacasterCarousel::parse: Item length not valid: 0. Aborting!"), invalid}},
        // An entry cut short inside its fixed part.
        {loop(9, {0xE2, 0x00, 0x00, 0x00, 0x00}),
         ERROR_INVALID_ITEM,
         {warnLine("TDatacasterCarousel::parse: Item length not valid: 5. Aborting!"), invalid}},
    };
    for (const Case& c : cases) {
        log.clear();
        Bytes b = longSection(0x99, 0x0101, 0, c.body);
        Parsed r = parse(b);
        EXPECT_EQ(r.t, nullptr) << testing::PrintToString(c.lines);
        EXPECT_EQ(r.code, c.code);
        EXPECT_EQ(log.texts(), c.lines);
        delete r.t;
    }

    // section_length 0 in an eight-byte buffer: the loop length is not there.
    log.clear();
    Bytes tiny = {0x99, 0xB0, 0x00, 0x01, 0x01, 0xC1, 0x00, 0x00};
    Parsed r = parse(tiny, 0);
    EXPECT_EQ(r.t, nullptr);
    EXPECT_EQ(r.code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               warnLine("TDCTTable::parse: Item length not valid: 8. Aborting!")}));
}

TEST(DCT, CarouselEntryOnItsOwn) {
    LogCapture log;
    Bytes entry = {0xFF, 0xFF, 0x07, 0x12, 0x34, 0x56, 0x78, 0x99, 0x02, 'a', 'b', 'c'};
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    TDatacasterCarousel* c = TDatacasterCarousel::parse(entry.data(), 12, 1, &read, &code);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 11u);
    EXPECT_EQ(c->getPID(), 0x1FFF);
    EXPECT_EQ(c->getCarouselID(), 0x12345678u);
    EXPECT_EQ(c->getApplicationName(), "ab");
    delete c;
    // Eight bytes: the name's length byte is missing, the name is empty.
    c = TDatacasterCarousel::parse(entry.data(), 8, 1, nullptr, &code);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->getApplicationName(), "");
    delete c;
    EXPECT_EQ(TDatacasterCarousel::parse(entry.data(), 2, 1, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TDatacasterCarousel::parse(nullptr, 20, 1, &read, &code), nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TDatacasterCarousel::parse: Item length not valid: 2. Aborting!"),
                  warnLine("TDatacasterCarousel::parse: Item length not valid: 0. Aborting!")}));
}
