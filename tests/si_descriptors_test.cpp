// Network name, service, local time offset and TS information descriptors.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TLocalTimeOffsetDescriptor.h"
#include "TNetworkNameDescriptor.h"
#include "TServiceDescriptor.h"
#include "TTSInformationDescriptor.h"
#include "TTSInformationDescriptorItem.h"

using namespace Sarn;

TEST(NetworkNameAndService, NamesCountsAndJson) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    // "TV INTEGRAÇÃO" in plain 8-bit Latin, with a shift code in the middle.
    Bytes net = {0x40, 0x0E, 'T', 'V', ' ', 0x0E, 'I',  'N',
                 'T',  'E',  'G', 'R', 'A', 0xC7, 0xC3, 'O'};
    TNetworkNameDescriptor* n =
        TNetworkNameDescriptor::parse(net.data(), length(net), &read, &code);
    ASSERT_NE(n, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 14u);
    EXPECT_EQ(n->getNetworkName(), "TV INTEGRA\xC7\xC3O");
    EXPECT_EQ(n->toJSON(),
              "\"name\":\"networkNameDescriptor\",\"networkName\":\"TV INTEGRA\xC7\xC3O\"");
    delete n;
    Bytes unnamed = {0x40, 0x00};
    n = TNetworkNameDescriptor::parse(unnamed.data(), 2, &read, &code);
    ASSERT_NE(n, nullptr);
    EXPECT_EQ(read, 0u);
    delete n;

    Bytes svc = {0x48, 0x0E, 0x01, 0x04, 'S', 'A', 'R', 'N',
                 0x07, 'S',  'A',  'R',  'N', ' ', 'H', 'D'};
    TServiceDescriptor* s = TServiceDescriptor::parse(svc.data(), length(svc), &read, &code);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 13u);  // the two names with their length bytes only
    EXPECT_EQ(s->getServiceType(), 1);
    EXPECT_EQ(s->getServiceProviderName(), "SARN");
    EXPECT_EQ(s->toJSON(),
              "\"name\":\"serviceDescriptor\",\"serviceType\":1,\"serviceProvider\":\"SARN\","
              "\"serviceName\":\"SARN HD\"");
    delete s;
    EXPECT_TRUE(log.lines().empty());

    // The provider name fills the body: no room for the service name's length.
    Bytes full = {0x48, 0x05, 0x01, 0x03, 'A', 'B', 'C'};
    EXPECT_EQ(TServiceDescriptor::parse(full.data(), length(full), &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    Bytes longProvider = {0x48, 0x04, 0x01, 0x05, 'A', 'B'};
    EXPECT_EQ(TServiceDescriptor::parse(longProvider.data(), length(longProvider), &read, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    Bytes longName = {0x48, 0x05, 0x01, 0x00, 0x03, 'A', 'B'};
    EXPECT_EQ(TServiceDescriptor::parse(longName.data(), length(longName), &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TServiceDescriptor::parse: Longer data length is required: 0 < 1. Aborting!"),
            warnLine(
                "ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > "
                "2. Aborting!"),
            warnLine("TServiceDescriptor:: parse: ERROR: parsing Service Provider Name. Aborting!"),
            warnLine(
                "ParserUtils::parseStr: ERROR: String length exceeds available data length: 3 > "
                "2. Aborting!"),
            warnLine("TServiceDescriptor:: parse: ERROR: parsing Service Name. Aborting!")}));
}

namespace {
// country, region/polarity byte, offset hhmm, MJD + BCD time of change, next offset hhmm.
Bytes offsetItem(const char* country, unsigned char regionPolarity, unsigned char h,
                 unsigned char m, unsigned short mjd, unsigned char nh, unsigned char nm) {
    return {static_cast<unsigned char>(country[0]),
            static_cast<unsigned char>(country[1]),
            static_cast<unsigned char>(country[2]),
            regionPolarity,
            h,
            m,
            static_cast<unsigned char>(mjd >> 8),
            static_cast<unsigned char>(mjd),
            0x00,
            0x00,
            0x00,
            nh,
            nm};
}
Bytes offsetDescriptor(const std::vector<Bytes>& items) {
    Bytes b = {0x58, 0x00};
    for (const Bytes& i : items)
        b.insert(b.end(), i.begin(), i.end());
    b[1] = static_cast<unsigned char>(b.size() - 2);
    return b;
}
}  // namespace

TEST(LocalTimeOffset, EntriesInCodeOrderAndOffsetRendering) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    // Brazil, three hours behind, summer time from 2016-10-16 (two hours);
    // then a region of "ARG" whose offsets show the hhmm decoding.
    Bytes b = offsetDescriptor({offsetItem("BRA", 0x03, 0x03, 0x00, 0xE14D, 0x02, 0x00),
                                offsetItem("ARG", 0x0A, 0x03, 0x30, 0x0000, 0x10, 0x30)});
    TLocalTimeOffsetDescriptor* d =
        TLocalTimeOffsetDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 13u);
    EXPECT_EQ(d->getCountryCodes(), (std::list<std::string>{"ARG", "BRA"}));
    const TLocalTimeOffsetDescriptorItem* bra = d->get("BRA");
    ASSERT_NE(bra, nullptr);
    EXPECT_EQ(bra->getLocalTimeOffset(), 10800);
    EXPECT_EQ(bra->getTimeOfChange(), 1476576000u);
    EXPECT_EQ(d->get("ARG")->getLocalTimeOffset(), 39600);
    EXPECT_EQ(d->get("ARG")->getNextTimeOffset(), 14976);  // 604800 kept in 16 bits
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":88,\"descriptor_length\":26,\"loop\":["
              "{\"country_code\":\"ARG\",\"country_region_id\":2,\"local_time_offset_polarity\":0,"
              "\"local_time_offset\":\"11:00\",\"time_of_change\":\"1970-01-01 00:00:00\","
              "\"next_time_offset\":\"04:36\"},"
              "{\"country_code\":\"BRA\",\"country_region_id\":0,\"local_time_offset_polarity\":1,"
              "\"local_time_offset\":\"03:00\",\"time_of_change\":\"2016-10-16 00:00:00\","
              "\"next_time_offset\":\"02:00\"}]");

    EXPECT_FALSE(d->remove("URY"));
    EXPECT_TRUE(d->remove("ARG"));
    EXPECT_EQ(d->size(), 1);
    EXPECT_EQ(d->get("ARG"), nullptr);
    delete d;

    // Single-digit minutes count in full; the rendering keeps hours only.
    Bytes minutes = offsetDescriptor({offsetItem("URY", 0x05, 0x01, 0x07, 0x0000, 0x00, 0x09)});
    d = TLocalTimeOffsetDescriptor::parse(minutes.data(), length(minutes), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->get("URY")->getCountryRegionID(), 1);
    EXPECT_EQ(d->get("URY")->getLocalTimeOffsetPolarity(), 1);
    EXPECT_EQ(d->get("URY")->getLocalTimeOffset(), 4020);
    EXPECT_EQ(d->get("URY")->getNextTimeOffset(), 540);
    EXPECT_NE(d->toJSON().find("\"local_time_offset\":\"01:00\""), std::string::npos);
    EXPECT_NE(d->toJSON().find("\"next_time_offset\":\"00:00\""), std::string::npos);
    delete d;

    // A repeated country code: the later entry stays (the earlier is freed).
    Bytes twice = offsetDescriptor({offsetItem("BRA", 0x03, 0x03, 0x00, 0xE14D, 0x02, 0x00),
                                    offsetItem("BRA", 0x03, 0x02, 0x00, 0xE0A8, 0x03, 0x00)});
    d = TLocalTimeOffsetDescriptor::parse(twice.data(), length(twice), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->size(), 1);
    EXPECT_EQ(d->get("BRA")->getLocalTimeOffset(), 7200);
    delete d;
    EXPECT_TRUE(log.lines().empty());

    // Eleven body bytes pass the header check but hold no whole entry; a
    // whole entry followed by a partial one fails just the same.
    Bytes eleven = {0x58, 0x0B, 'B', 'R', 'A', 0x03, 0x03, 0x00, 0xE1, 0x4D, 0x00, 0x00, 0x00};
    EXPECT_EQ(TLocalTimeOffsetDescriptor::parse(eleven.data(), length(eleven), &read, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    Bytes partial = offsetDescriptor(
        {offsetItem("BRA", 0x03, 0x03, 0x00, 0xE14D, 0x02, 0x00), Bytes{'A', 'R', 'G'}});
    EXPECT_EQ(TLocalTimeOffsetDescriptor::parse(partial.data(), length(partial), &read, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TLocalTimeOffsetDescriptorItem::parse: Descriptor length not valid: 11. "
                     "Aborting!"),
            warnLine("TLocalTimeOffsetDescriptor::parse: Descriptor length not valid: 13. "
                     "Aborting!"),
            warnLine("TLocalTimeOffsetDescriptorItem::parse: Descriptor length not valid: 3. "
                     "Aborting!"),
            warnLine("TLocalTimeOffsetDescriptor::parse: Descriptor length not valid: 18. "
                     "Aborting!")}));
}

TEST(TSInformation, NameLayersServicesAndFailures) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    // Remote key 5, name "SARN", two transmission types: layer A (one-seg)
    // with service 0xC858, layer B with 0xC840 and 0xC841.
    Bytes b = {0xCD, 0x11, 0x05, 0x12, 'S',  'A',  'R',  'N',  0x0F, 0x01,
               0xC8, 0x58, 0xAF, 0x02, 0xC8, 0x40, 0xC8, 0x41, 0xFF};
    TTSInformationDescriptor* d =
        TTSInformationDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 18u);  // the trailing byte belongs to no transmission type
    EXPECT_EQ(d->getTxInformation(), 2);
    EXPECT_EQ(d->getTransportStreamName(), "SARN");
    EXPECT_EQ(d->getTransmissionType(1)->getTransmissionTypeInfo(), 0xAF);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"tsInformationDescriptor\",\"remoteControlKeyId\":5,\"tsName\":\"SARN\","
              "\"loop\":[{\"transmissionLayer\":0,\"modulationSystem\":0,\"serviceId\":[51288]},"
              "{\"transmissionLayer\":2,\"modulationSystem\":2,\"serviceId\":[51264,51265]}]");
    EXPECT_EQ(d->getTransmissionType(2), nullptr);
    EXPECT_FALSE(d->removeTransmissionType(2));
    EXPECT_TRUE(d->removeTransmissionType(0));
    EXPECT_EQ(d->getTransmissionTypeCount(), 1);
    d->addTransmissionType(nullptr);
    EXPECT_EQ(d->getTransmissionTypeCount(), 1);
    TTSInformationDescriptorItem* added = new TTSInformationDescriptorItem();
    d->addTransmissionType(added);
    EXPECT_EQ(d->getTransmissionType(1), added);
    delete d;

    // Three services announced, one present: all three render, the missing as 0.
    Bytes few = {0xCD, 0x06, 0x01, 0x01, 0x0F, 0x03, 0xC8, 0x58};
    d = TTSInformationDescriptor::parse(few.data(), length(few), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getTransmissionType(0)->getNumberOfServices(), 3);
    EXPECT_NE(d->toJSON().find("\"serviceId\":[51288,0,0]"), std::string::npos);
    delete d;
    EXPECT_TRUE(log.lines().empty());

    Bytes longName = {0xCD, 0x03, 0x01, 0x10, 'S'};
    EXPECT_EQ(TTSInformationDescriptor::parse(longName.data(), length(longName), &read, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    Bytes shortItem = {0xCD, 0x03, 0x01, 0x01, 0x0F};
    EXPECT_EQ(TTSInformationDescriptor::parse(shortItem.data(), length(shortItem), &read, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data "
                     "length: 4 > 1. Aborting!"),
            warnLine("TTSInformationDescriptor:: parse: ERROR: parsing TS Name. Aborting!"),
            warnLine("TTSInformationDescriptorItem::parse: Item length not valid: 1. Aborting!"),
            warnLine("TTSInformationDescriptor::parse: Invalid item. Aborting!")}));
}
