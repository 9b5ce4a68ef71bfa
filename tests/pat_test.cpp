// Program association table from bytes to JSON.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TPATTable.h"

using namespace Sarn;

namespace {
TPATTable* parse(Bytes& b, unsigned short* code) {
    return TPATTable::parse(b.data(), static_cast<unsigned int>(b.size()), 0, 1, code, nullptr);
}
}  // namespace

TEST(PAT, ProgramsNetworkPidAndJson) {
    LogCapture log;
    // TS 0x7ED0, version 5: network PID 0x0010, programs 0x0102 and 0x0101
    // (out of order on the wire), reserved bits 0xE0 set on every PID.
    Bytes b = withCrc({0x00, 0xB0, 0x15, 0x7E, 0xD0, 0xCB, 0x00, 0x00,  //
                       0x00, 0x00, 0xE0, 0x10,                          //
                       0x01, 0x02, 0xE1, 0xF1,                          //
                       0x01, 0x01, 0xE1, 0xF0});
    unsigned short code = 0xFFFF;
    TPATTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getTransportStreamID(), 0x7ED0);
    EXPECT_EQ(t->getNetworkPid(), 16);
    EXPECT_EQ(t->size(), 2);
    EXPECT_EQ(t->getVersion(), 5);
    EXPECT_EQ(t->getProgramNumbers(), (std::list<unsigned short>{0x0101, 0x0102}));
    EXPECT_EQ(t->get(0x0101)->getProgramMapPid(), 0x1F0);
    EXPECT_EQ(t->get(0x0000), nullptr);
    EXPECT_EQ(t->toJSON(),
              "{\"transportStreamId\":32464,\"programs\":["
              "{\"programNumber\":257,\"networkPid\":16,\"programMapPid\":496},"
              "{\"programNumber\":258,\"networkPid\":16,\"programMapPid\":497}]}");

    EXPECT_FALSE(t->remove(0x0999));
    EXPECT_EQ(t->size(), 2);
    EXPECT_TRUE(t->remove(0x0101));
    EXPECT_EQ(t->getProgramNumbers(), (std::list<unsigned short>{0x0102}));
    TProgramAssociation* extra = new TProgramAssociation(0x0005, 0x0500);
    t->add(extra);
    EXPECT_EQ(t->get(5), extra);
    EXPECT_EQ(t->size(), 2);
    delete t;
    EXPECT_TRUE(log.lines().empty());
}

TEST(PAT, NetworkOnlyRepeatsAndPartialEntries) {
    // Only the network entry: an empty programs array, no table-level networkPid.
    Bytes netOnly =
        withCrc({0x00, 0xB0, 0x0D, 0x00, 0x01, 0xC1, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x10});
    unsigned short code = 1;
    TPATTable* t = parse(netOnly, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->size(), 0);
    EXPECT_EQ(t->toJSON(), "{\"transportStreamId\":1,\"programs\":[]}");
    delete t;

    // No network entry: the network PID stays 0. A repeated program_number
    // replaces the earlier entry; a later 0 entry overrides an earlier one.
    // Two bytes that do not fill an entry before the CRC are ignored.
    Bytes b = withCrc({0x00, 0xB0, 0x13, 0x00, 0x02, 0xC1, 0x00, 0x00,  //
                       0x00, 0x07, 0xE1, 0x00,                          //
                       0x00, 0x07, 0xE1, 0x01,                          //
                       0xAB, 0xCD});
    t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getNetworkPid(), 0);
    EXPECT_EQ(t->toJSON(),
              "{\"transportStreamId\":2,\"programs\":[{\"programNumber\":7,\"networkPid\":0,"
              "\"programMapPid\":257}]}");
    delete t;

    Bytes twoNetworks = withCrc({0x00, 0xB0, 0x15, 0x00, 0x03, 0xC1, 0x00, 0x00,  //
                                 0x00, 0x00, 0xE0, 0x10,                          //
                                 0x00, 0x00, 0xFF, 0xFF,                          //
                                 0x00, 0x01, 0x00, 0x20});
    t = parse(twoNetworks, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getNetworkPid(), 0x1FFF);
    EXPECT_EQ(t->get(1)->getProgramMapPid(), 0x20);
    delete t;
}
