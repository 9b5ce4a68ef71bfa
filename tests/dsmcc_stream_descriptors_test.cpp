// DSM-CC stream descriptors: NPT reference, NPT endpoint, stream mode, stream event.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TNPTEndpointDescriptor.h"
#include "TNPTReferenceDescriptor.h"
#include "TStreamEventDescriptor.h"
#include "TStreamModeDescriptor.h"

using namespace Sarn;

namespace {
unsigned int size(const Bytes& b) {
    return static_cast<unsigned int>(b.size());
}
}  // namespace

TEST(DsmccStreamDescriptors, NptReferenceAndEndpointSplit33BitClocks) {
    LogCapture log;
    // post_discontinuity 1 and content_id 5; STC bit 32 set under seven
    // reserved ones; NPT bit 32 clear; rate 1/2.
    Bytes ref = {0x01, 0x12, 0x85, 0xFF, 0x12, 0x34, 0x56, 0x78, 0xFF, 0xFF,
                 0xFF, 0xFE, 0x00, 0x00, 0x10, 0x00, 0x00, 0x01, 0x00, 0x02};
    unsigned short code = 0xFFFF;
    unsigned int read = 1234;
    TNPTReferenceDescriptor* r =
        TNPTReferenceDescriptor::parse(ref.data(), size(ref), &read, &code);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 1234u);  // only the stream event descriptor reports its size
    EXPECT_TRUE(r->isPostDiscontinuity());
    EXPECT_EQ(r->getDSMCCContentID(), 5);
    EXPECT_EQ(r->getSTCReferenceH(), 1);
    EXPECT_EQ(r->getSTCReferenceL(), 0x12345678u);
    EXPECT_EQ(r->getNPTReferenceH(), 0);
    EXPECT_EQ(r->getNPTReferenceL(), 4096u);
    EXPECT_EQ(r->getScaleNumerator(), 1);
    EXPECT_EQ(r->getScaleDenominator(), 2);
    EXPECT_EQ(r->toJSON(),
              "\"errors\":0,\"descriptor_tag\":1,\"descriptor_length\":18,\"descriptor_content\":"
              "\"0x85ff12345678fffffffe0000100000010002\"");
    delete r;

    Bytes end = {0x02, 0x0E, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x64,
                 0xFF, 0xFF, 0xFF, 0xFE, 0x00, 0x00, 0x03, 0xE8};
    TNPTEndpointDescriptor* e =
        TNPTEndpointDescriptor::parse(end.data(), size(end), nullptr, &code);
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->getNPTStartH(), 1);
    EXPECT_EQ(e->getNPTStartL(), 100u);
    EXPECT_EQ(e->getNPTStopH(), 0);
    EXPECT_EQ(e->getNPTStopL(), 1000u);
    delete e;
    EXPECT_TRUE(log.lines().empty());

    // descriptor_length 13 is one short of the endpoint's fixed part.
    Bytes shortEnd = end;
    shortEnd[1] = 0x0D;
    EXPECT_EQ(TNPTEndpointDescriptor::parse(shortEnd.data(), size(shortEnd), nullptr, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "5 SarnISDBTUtils: TISDBTDescriptor::parseCommonHeader: (5) Longer "
                               "descriptor length is required: 13 < 14. Aborting!"}));
}

TEST(DsmccStreamDescriptors, StreamEventPrivateDataAndStreamMode) {
    LogCapture log;
    // event_id 42 at NPT 0x1_000186A0, then four bytes of private data.
    Bytes ev = {0x04, 0x0E, 0x00, 0x2A, 0xFF, 0xFF, 0xFF, 0xFF,
                0x00, 0x01, 0x86, 0xA0, 'a',  'b',  'c',  'd'};
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    TStreamEventDescriptor* d = TStreamEventDescriptor::parse(ev.data(), size(ev), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 14u);
    EXPECT_EQ(d->getEventID(), 42);
    EXPECT_EQ(d->getEventNPTH(), 1);
    EXPECT_EQ(d->getEventNPTL(), 100000u);
    ASSERT_EQ(d->getPrivateDataSize(), 4);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(d->getPrivateData()), 4), "abcd");
    EXPECT_NE(d->getPrivateData(), ev.data() + 12);  // a copy of its own
    delete d;

    // Without private data: no array.
    Bytes bare(ev.begin(), ev.begin() + 12);
    bare[1] = 0x0A;
    d = TStreamEventDescriptor::parse(bare.data(), size(bare), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 10u);
    EXPECT_EQ(d->getPrivateDataSize(), 0);
    EXPECT_EQ(d->getPrivateData(), nullptr);
    delete d;

    Bytes mode = {0x03, 0x02, 0x07, 0xFF};
    TStreamModeDescriptor* m =
        TStreamModeDescriptor::parse(mode.data(), size(mode), nullptr, &code);
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->getStreamMode(), 7);
    EXPECT_EQ(m->toJSON(),
              "\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":2,\"descriptor_content\":"
              "\"0x07ff\"");
    delete m;
    EXPECT_TRUE(log.lines().empty());

    // The classes take only their own small tags: 0x1A is the section table's to map.
    ev[0] = 0x1A;
    EXPECT_EQ(TStreamEventDescriptor::parse(ev.data(), size(ev), &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
    EXPECT_EQ(TStreamModeDescriptor::parse(nullptr, 4, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    EXPECT_EQ(log.lines().size(), 2u);
}
