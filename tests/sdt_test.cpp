// Service description table: services, flags, descriptor loops, failures.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TSDTTable.h"
#include "TServiceDescriptor.h"

using namespace Sarn;

namespace {

TSDTTable* parse(Bytes& b, unsigned short* code, int checkCrc = 1, TSDTTable* previous = nullptr) {
    return TSDTTable::parse(b.data(), static_cast<unsigned int>(b.size()), 0, checkCrc, code,
                            previous);
}

// service_id, EIT flags byte, running_status/free_CA_mode nibble, descriptors.
Bytes service(unsigned short id, unsigned char eitFlags, unsigned char statusAndCa,
              const Bytes& descriptors) {
    const unsigned int n = static_cast<unsigned int>(descriptors.size());
    Bytes b = {static_cast<unsigned char>(id >> 8), static_cast<unsigned char>(id),
               static_cast<unsigned char>(0xFC | eitFlags),
               static_cast<unsigned char>((statusAndCa << 4) | (n >> 8)),
               static_cast<unsigned char>(n)};
    return b + descriptors;
}

Bytes serviceDescriptor(unsigned char type, const std::string& provider, const std::string& name) {
    Bytes b = {0x48, static_cast<unsigned char>(3 + provider.size() + name.size()), type,
               static_cast<unsigned char>(provider.size())};
    b.insert(b.end(), provider.begin(), provider.end());
    b.push_back(static_cast<unsigned char>(name.size()));
    b.insert(b.end(), name.begin(), name.end());
    return b;
}
}  // namespace

TEST(SDT, ServicesFlagsAndJson) {
    LogCapture log;
    // The one-seg service first on the wire (EIT p/f only, running), then the
    // HD service (EIT schedule and p/f, running, scrambled) with a logo
    // transmission descriptor that is accepted but not decoded and a stream
    // identifier that an SDT does not accept.
    Bytes b =
        longSection(0x42, 0x0641, 2,
                    Bytes{0x06, 0x41, 0xFF} +
                        service(0xC858, 0x01, 0x08, serviceDescriptor(0xC0, "SARN", "SARN 1SEG")) +
                        service(0xC840, 0x03, 0x09,
                                serviceDescriptor(0x01, "SARN", "SARN HD") +
                                    Bytes{0xCF, 0x03, 0x01, 0x00, 0x01, 0x52, 0x01, 0x00}));
    unsigned short code = 0xFFFF;
    TSDTTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(t->getTransportStreamID(), 0x0641);
    EXPECT_EQ(t->getVersion(), 2);
    EXPECT_EQ(t->getCurrentIndicator(), 1);
    EXPECT_EQ(t->getOriginalNetworkID(), 0x0641);
    EXPECT_EQ(t->getServiceIDs(), (std::list<unsigned short>{0xC840, 0xC858}));
    EXPECT_EQ(t->toJSON(),
              "{\"transportStreamId\":1601,\"originalNetworkId\":1601,\"services\":["
              "{\"serviceId\":51264,\"eitScheduleFlag\":1,\"eitPresentFollowingFlag\":1,"
              "\"runningStatus\":4,\"freeCaMode\":1,\"serviceDescriptors\":["
              "{\"name\":\"serviceDescriptor\",\"serviceType\":1,\"serviceProvider\":\"SARN\","
              "\"serviceName\":\"SARN HD\"}]},"
              "{\"serviceId\":51288,\"eitScheduleFlag\":0,\"eitPresentFollowingFlag\":1,"
              "\"runningStatus\":4,\"freeCaMode\":0,\"serviceDescriptors\":["
              "{\"name\":\"serviceDescriptor\",\"serviceType\":192,\"serviceProvider\":\"SARN\","
              "\"serviceName\":\"SARN 1SEG\"}]}]}");
    const TServiceDescription* oneSeg = t->getServiceDescription(0xC858);
    ASSERT_NE(oneSeg, nullptr);
    EXPECT_FALSE(oneSeg->hasEITSchedule());
    EXPECT_TRUE(oneSeg->hasEITPresentFollowing());
    // Descriptors point into the caller's bytes.
    EXPECT_EQ(oneSeg->getDescriptor(0x48)->getData(), b.data() + 16);
    EXPECT_EQ(t->getServiceDescription(0x0001), nullptr);

    // The CRC switch is the second integer argument.
    EXPECT_EQ(parse(b, &code, 1, t), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    delete t;
    b[b.size() - 1] ^= 0xFF;
    t = TSDTTable::parse(b.data(), static_cast<unsigned int>(b.size()), 1, 0, &code, nullptr);
    EXPECT_NE(t, nullptr);
    delete t;
}

TEST(SDT, EmptyRepeatedAndBrokenServices) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    Bytes none = longSection(0x42, 0x0001, 0, {0x00, 0x02, 0xFF});
    TSDTTable* t = parse(none, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->toJSON(), "{\"transportStreamId\":1,\"originalNetworkId\":2,\"services\":[]}");
    delete t;

    // A repeated service_id: the later entry stays.
    Bytes twice = longSection(0x42, 0x0001, 0,
                              Bytes{0x00, 0x02, 0xFF} + service(0x0101, 0x00, 0x02, {}) +
                                  service(0x0101, 0x02, 0x04, {}));
    t = parse(twice, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->size(), 1);
    EXPECT_EQ(t->getServiceDescription(0x0101)->getRunningStatus(), 2);
    delete t;
    EXPECT_TRUE(log.lines().empty());

    // A service descriptor overrunning its loop only warns.
    Bytes overrun = longSection(
        0x42, 0x0001, 0,
        Bytes{0x00, 0x02, 0xFF} + service(0x0101, 0x00, 0x08, {0x48, 0x09, 0x01, 0x00}));
    t = parse(overrun, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(t->getServiceDescription(0x0101)->getDescriptorList().empty());
    delete t;

    // descriptors_loop_length past the section; then a four-byte tail.
    Bytes tooLong = longSection(
        0x42, 0x0001, 0, Bytes{0x00, 0x02, 0xFF} + Bytes{0x01, 0x01, 0xFC, 0x80, 0x03, 0x48});
    EXPECT_EQ(parse(tooLong, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);
    Bytes tail = longSection(
        0x42, 0x0001, 0,
        Bytes{0x00, 0x02, 0xFF} + service(0x0101, 0x00, 0x08, {}) + Bytes{0x01, 0x02, 0xFC, 0x80});
    EXPECT_EQ(parse(tail, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);

    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 11 > 4. "
                     "Aborting!"),
            warnLine("TServiceDescription::parse: readbytes != desc loop length (0 != 4)"),
            warnLine("TServiceDescription::parse: Item length not valid: 3 > 1. Aborting!"),
            warnLine("TSDTTable::parse: Invalid item. Aborting!"),
            warnLine("TServiceDescription::parse: Item length not valid: 4. Aborting!"),
            warnLine("TSDTTable::parse: Invalid item. Aborting!")}));

    // A section_length of 9 leaves no room for original_network_id: the
    // wrapped loop count stays inside the 16 bytes handed in.
    Bytes wrapped = {0x42, 0xB0, 0x09, 0x00, 0x01, 0xC1, 0x00, 0x00,
                     0x00, 0x02, 0xFF, 0x01, 0x01, 0xFC, 0x80, 0x01};
    EXPECT_EQ(parse(wrapped, &code, 0), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);
}
