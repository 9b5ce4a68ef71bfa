// Descriptor header checks, base rendering and the generic loop walk.
#include <gtest/gtest.h>

#include <typeinfo>

#include "DescriptorLoop.h"
#include "DescriptorParse.h"
#include "SarnISDBTUtils.h"

using namespace Sarn;

namespace {
bool header(Bytes b, unsigned char min, unsigned short tag, unsigned short* code) {
    return TISDBTDescriptor::parseCommonHeader(b.empty() ? nullptr : b.data(),
                                               static_cast<unsigned int>(b.size()), code, min, tag);
}
}  // namespace

TEST(DescriptorHeader, FiveChecksInOrder) {
    LogCapture log;
    unsigned short code = 0;
    EXPECT_FALSE(header({}, 1, 0x52, &code));
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    EXPECT_FALSE(header({0x52, 0x01}, 1, 0x52, &code));
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_FALSE(header({0x48, 0x01, 0x00}, 1, 0x52, &code));
    EXPECT_EQ(code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
    EXPECT_FALSE(header({0x52, 0x05, 0x00}, 1, 0x52, &code));
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_FALSE(header({0x52, 0x00, 0x00}, 1, 0x52, &code));
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_TRUE(header({0x52, 0x01, 0x07}, 1, 0x52, &code));
    EXPECT_EQ(code, ERROR_NONE);
    // A minimum of 254 wraps the required size to 0: only the header must be there.
    EXPECT_TRUE(header({0x52, 0xFE, 0x00}, 254, 0x52, &code) == false);
    EXPECT_TRUE(TISDBTDescriptor::parseCommonHeader(nullptr, 0, nullptr, 1, 0x52) == false);

    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TISDBTDescriptor::parseCommonHeader: (1) Invalid data. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 2 < "
                     "3. Aborting!"),
            warnLine(
                "TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x48, "
                "instead of 0x52. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (4) Longer data length is required: 7 < "
                     "3. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (5) Longer descriptor length is "
                     "required: 0 < 1. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (4) Longer data length is required: 256 "
                     "< 3. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (1) Invalid data. Aborting!"),
        }));
}

namespace {
// What one descriptor class demands of its header: the tag and the minimum
// descriptor_length. run() parses the bytes and returns the error code and
// the tag of the object built (-1 for none).
struct HeaderRule {
    const char* name;
    unsigned char tag;
    unsigned char minimum;
    std::pair<unsigned short, int> (*run)(const Bytes&);
};

template <typename T>
HeaderRule kind(unsigned char tag, unsigned char minimum) {
    return {typeid(T).name(), tag, minimum, [](const Bytes& b) {
                ParsedDescriptor<T> p(b);
                return std::make_pair(p.code, p.d ? static_cast<int>(p.d->getDescriptorTag()) : -1);
            }};
}
}  // namespace

TEST(DescriptorHeader, EachClassChecksItsTagAndMinimumLength) {
    const std::vector<HeaderRule> rules = {
        kind<TAACDescriptor>(0x7C, 2),
        kind<TAVCTimingAndHRDDescriptor>(0x2A, 2),
        kind<TAVCVideoDescriptor>(0x28, 4),
        kind<TBouquetNameDescriptor>(0x47, 1),
        kind<TCAIdentifierDescriptor>(0x53, 2),
        kind<TCarouselCompatibleCompositeDescriptor>(0xF7, 4),
        kind<TCarouselIdentifierDescriptor>(0x13, 4),
        kind<TConditionalPlaybackDescriptor>(0xF8, 4),
        kind<TContentAvailabilityDescriptor>(0xDE, 1),
        kind<TCopyrightDescriptor>(0x0D, 4),
        kind<TCountryAvailabilityDescriptor>(0x49, 4),
        kind<TDataComponentDescriptor>(0xFD, 2),
        kind<TDownloadContentDescriptor>(TDownloadContentDescriptor::DESCRIPTOR_TAG, 18),
        kind<TEmergencyInformationDescriptor>(0xFC, 4),
        kind<THierarchicalTransmissionDescriptor>(0xC0, 3),
        kind<TISO639LanguageDescriptor>(0x0A, 0),
        kind<TLocalTimeOffsetDescriptor>(0x58, 11),
        kind<TNPTEndpointDescriptor>(TNPTEndpointDescriptor::DESCRIPTOR_TAG, 14),
        kind<TNPTReferenceDescriptor>(TNPTReferenceDescriptor::DESCRIPTOR_TAG, 18),
        kind<TNetworkNameDescriptor>(0x40, 0),
        kind<TPartialReceptionDescriptor>(0xFB, 0),
        kind<TServiceDescriptor>(0x48, 3),
        kind<TServiceListDescriptor>(0x41, 2),
        kind<TStreamEventDescriptor>(TStreamEventDescriptor::DESCRIPTOR_TAG, 10),
        kind<TStreamIdentifierDescriptor>(0x52, 1),
        kind<TStreamModeDescriptor>(TStreamModeDescriptor::DESCRIPTOR_TAG, 2),
        kind<TSystemManagementDescriptor>(0xFE, 2),
        kind<TTSInformationDescriptor>(0xCD, 2),
        kind<TTerrestrialDeliverySystemDescriptor>(0xFA, 4),
        kind<TTimeShiftedServiceDescriptor>(0x4C, 2),
        kind<TVideoDecodeControlDescriptor>(0xC8, 1),
        kind<TApplicationDescriptor>(0x00, 3),
        kind<TApplicationIconDescriptor>(0x0B, 2),
        kind<TApplicationNameDescriptor>(0x01, 4),
        kind<TAudioComponentDescriptor>(0xC4, 9),
        kind<TComponentDescriptor>(0x50, 6),
        kind<TDIILocationDescriptor>(0x0D, 4),
        kind<TDigitalCopyControlDescriptor>(0xC1, 1),
        kind<TExtendedEventDescriptor>(0x4E, 6),
        kind<TExternalApplicationAuthorizationDescriptor>(0x05, 0),
        kind<TGingaJavaApplicationDescriptor>(0x03, 0),
        kind<TGingaNCLApplicationDescriptor>(0x06, 0),
        kind<TGingaHtml5ApplicationDescriptor>(0x0E, 0),
        kind<TGingaJavaApplicationLocationDescriptor>(0x04, 4),
        kind<TGingaNCLApplicationLocationDescriptor>(0x07, 4),
        kind<TGingaHtml5ApplicationLocationDescriptor>(0x0F, 4),
        kind<TIPSignalingDescriptor>(0x11, 3),
        kind<TParentalRatingDescriptor>(0x55, 0),
        kind<TPrefetchDescriptor>(0x0C, 4),
        kind<TShortEventDescriptor>(0x4D, 5),
        kind<TTransportProtocolDescriptor>(0x02, 3),
    };
    for (const HeaderRule& r : rules) {
        SCOPED_TRACE(r.name);
        LogCapture log;
        // Another tag, with room for everything.
        Bytes b(r.minimum + 2u, 0x00);
        b[0] = static_cast<unsigned char>(r.tag + 1);
        b[1] = r.minimum;
        EXPECT_EQ(r.run(b), std::make_pair(ERROR_UNEXPECTED_DESCRIPTOR_TAG, -1));
        // One byte below the minimum descriptor_length.
        b[0] = r.tag;
        if (r.minimum > 0) {
            b[1] = static_cast<unsigned char>(r.minimum - 1);
            EXPECT_EQ(r.run(b), std::make_pair(ERROR_DESCRIPTOR_LENGTH, -1));
            EXPECT_EQ(log.texts().back(),
                      warnLine("TISDBTDescriptor::parseCommonHeader: (5) Longer descriptor length "
                               "is required: " +
                               std::to_string(r.minimum - 1) + " < " + std::to_string(r.minimum) +
                               ". Aborting!"));
        }
        // Exactly the minimum passes the header (the body may still fail);
        // an object built carries the tag.
        b[1] = r.minimum;
        log.clear();
        const int built = r.run(b).second;
        EXPECT_TRUE(built == -1 || built == r.tag) << built;
        for (const std::string& line : log.texts())
            EXPECT_EQ(line.find("parseCommonHeader"), std::string::npos) << line;
    }
}

namespace {
// An owner accepting tags of which no class exists (0x52 is not accepted),
// so every descriptor is stepped over.
constexpr DescriptorTagSet kEverything = {0x09, 0x53, 0x05, 0x7F};
class Owner : public DescriptorLoop {
  public:
    Owner() : DescriptorLoop(kEverything) {}
    std::string json() const {
        std::string s;
        appendDescriptorsJSON(s);
        return s;
    }
};
}  // namespace

TEST(DescriptorLoop, WalksWholeDescriptorsAndStopsOnOverrun) {
    LogCapture log;
    Owner owner;
    Bytes ok = {0x09, 0x04, 1, 2, 3, 4, 0x7F, 0x00, 0x53, 0x01, 0xFF};
    EXPECT_EQ(owner.parseDescriptorsLoop(ok.data(), 11), 11u);
    // A single trailing byte is ignored silently.
    ok.push_back(0x52);
    EXPECT_EQ(owner.parseDescriptorsLoop(ok.data(), 12), 11u);
    EXPECT_TRUE(log.lines().empty());

    Bytes overrun = {0x52, 0x05, 0x01};
    EXPECT_EQ(owner.parseDescriptorsLoop(overrun.data(), 3), 0u);
    Bytes second = {0x52, 0x01, 0x07, 0x0A, 0x04, 0x65};
    EXPECT_EQ(owner.parseDescriptorsLoop(second.data(), 6), 3u);
    EXPECT_EQ(owner.parseDescriptorsLoop(nullptr, 6), 0u);
    EXPECT_EQ(owner.parseDescriptorsLoop(second.data(), 0), 0u);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 7 > 3. "
                     "Aborting!"),
            warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 3 + 6 > 6. "
                     "Aborting!")}));

    EXPECT_TRUE(owner.getDescriptorList().empty());
    EXPECT_EQ(owner.getDescriptor(0x52), nullptr);
    EXPECT_TRUE(owner.getDescriptors(0x52).empty());
    EXPECT_EQ(owner.json(), "[]");

    // An owner without an accepted set takes nothing.
    DescriptorLoop bare;
    bare.parseDescriptor(ok.data(), 6);
    EXPECT_TRUE(bare.getDescriptorList().empty());
}
