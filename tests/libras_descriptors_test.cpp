// Libras control and data messages: lenient parsers with a mixed loop bound.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TLCMDescriptor.h"
#include "TLDMDescriptor.h"

using namespace Sarn;

namespace {
template <typename T>
T* parse(Bytes& b, unsigned int* read, unsigned short* code) {
    return T::parse(b.data(), static_cast<unsigned int>(b.size()), read, code);
}
}  // namespace

TEST(LCMDescriptor, WindowGeometryAndLengthRules) {
    Bytes lcm = {0x7C, 0x0D, 0x05, 0x00, 0x10, 0xF3, 0x00, 0x40,
                 0x00, 0x30, 0x01, 0xE0, 0x01, 0x0E, 0x02};
    unsigned int read = 77;
    unsigned short code = 0xBEEF;
    TLCMDescriptor* d = parse<TLCMDescriptor>(lcm, &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getMessageId(), 5);
    EXPECT_EQ(d->getMessageLength(), 16);
    EXPECT_EQ(d->getResolution(), 3);
    EXPECT_EQ(d->getDph(), 64);
    EXPECT_EQ(d->getDpv(), 48);
    EXPECT_EQ(d->getDfw(), 480);
    EXPECT_EQ(d->getDfh(), 270);
    EXPECT_EQ(d->getLibrasContentType(), 2);
    EXPECT_EQ(d->getServiceId(), 0);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":124,\"descriptor_length\":13,"
              "\"descriptor_content\":\"0x050010f30040003001e0010e02\"");
    delete d;
    // Neither the byte count nor the error code is ever written.
    EXPECT_EQ(read, 77u);
    EXPECT_EQ(code, 0xBEEF);

    lcm.pop_back();
    EXPECT_EQ(parse<TLCMDescriptor>(lcm, &read, &code), nullptr);
    EXPECT_EQ(code, 0xBEEF);

    // One byte is an empty message, not a refusal.
    Bytes tag = {0x7C};
    d = parse<TLCMDescriptor>(tag, &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getMessageLength(), 0);
    EXPECT_EQ(d->toJSON(), "\"errors\":0,\"descriptor_tag\":124,\"descriptor_length\":0");
    delete d;
}

TEST(LDMDescriptor, GlossesUnderTheMixedBound) {
    LogCapture log;
    // Declared count 3: the first gloss (2 bytes) leaves count 1 after one
    // entry, so the second gloss is not read. The bytes handed in, not
    // descriptor_length, bound the walk.
    Bytes ldm = {0x7C, 0x0A, 0x01, 0x00, 0x00, 0x03, 0x02, 0x4F, 0x49, 0x03, 0x54, 0x55, 0x44};
    TLDMDescriptor* d = parse<TLDMDescriptor>(ldm, nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getMessageId(), 1);
    EXPECT_EQ(d->getGlosas(), std::list<std::string>{"OI"});
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":124,\"descriptor_length\":10,"
              "\"descriptor_content\":\"0x01000003024f49035455\"");
    delete d;

    // Empty entries add nothing but count; control bytes leave the gloss.
    Bytes spaced = {0x7C, 0x0C, 0x02, 0x00, 0x00, 0x07, 0x00,
                    0x00, 0x03, 0x54, 0x0E, 0x55, 0x01, 0x41};
    d = parse<TLDMDescriptor>(spaced, nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getGlosas(), (std::list<std::string>{"TU", "A"}));
    delete d;

    // Without the count, and with entries declared past the end, the walk
    // stops at the end of the bytes.
    Bytes header = {0x7C, 0x03, 0x09, 0x00, 0x00};
    d = parse<TLDMDescriptor>(header, nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getMessageId(), 9);
    EXPECT_TRUE(d->getGlosas().empty());
    delete d;
    Bytes many = {0x7C, 0x06, 0x01, 0x00, 0x00, 0x09, 0x01, 0x41};
    d = parse<TLDMDescriptor>(many, nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getGlosas(), std::list<std::string>{"A"});
    delete d;
    EXPECT_TRUE(log.lines().empty());

    // A gloss longer than the bytes left fails the descriptor.
    Bytes cut = {0x7C, 0x07, 0x01, 0x00, 0x00, 0x01, 0x05, 0x41, 0x42};
    EXPECT_EQ(parse<TLDMDescriptor>(cut, nullptr, nullptr), nullptr);
    EXPECT_EQ(log.texts(), std::vector<std::string>{
                               "5 SarnISDBTUtils: ParserUtils::parseStr: ERROR: String length "
                               "exceeds available data length: 5 > 2. Aborting!"});
}
