// Every descriptor class on bytes built by hand: one row per descriptor, with
// what parse() gives back (byte count, error code, exact JSON) and the exact
// lines it logs, and the getters that the JSON does not show; then the
// objects as their constructors leave them, and copies.
#include <gtest/gtest.h>

#include <sstream>
#include <type_traits>

#include "DescriptorParse.h"
#include "SarnISDBTUtils.h"

using namespace Sarn;

namespace {

// Hexadecimal bytes with 'quoted' ASCII runs; blanks are ignored.
Bytes wire(const std::string& text) {
    Bytes out;
    std::string hex;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\'') {
            hex += text[i];
            continue;
        }
        const Bytes digits = fromHex(hex);
        out.insert(out.end(), digits.begin(), digits.end());
        hex.clear();
        for (++i; i < text.size() && text[i] != '\''; ++i)
            out.push_back(static_cast<unsigned char>(text[i]));
    }
    return out + fromHex(hex);
}

// The values one after another, each after a blank; characters as numbers.
template <typename... A>
std::string cat(const A&... values) {
    std::ostringstream o;
    auto put = [&o](const auto& v) {
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(v)>>)
            o << ' ' << +v;
        else
            o << ' ' << v;
    };
    (put(values), ...);
    return o.str();
}

// A byte array as its size and its bytes in hexadecimal ("null" for none).
std::string hexOf(const unsigned char* p, unsigned int n) {
    if (p == nullptr)
        return cat(n) + " null";
    std::string s = cat(n) + " 0x";
    for (unsigned int i = 0; i < n; ++i) {
        static const char digits[] = "0123456789abcdef";
        s += digits[p[i] >> 4];
        s += digits[p[i] & 0x0F];
    }
    return s;
}

// What the JSON leaves out, after " |".
std::string extras(const TISDBTDescriptor&) {
    return "";
}
std::string extras(const TApplicationDescriptor& d) {
    return cat(d.isVisibileForUsers(), d.isVisibileForApplications()) +
           hexOf(d.getTransportProtocols(), d.getTransportProtocolsCount());
}
std::string extras(const TApplicationIconDescriptor& d) {
    return cat(d.getIconLocator(), d.getIconFlags());
}
std::string extras(const TDIILocationDescriptor& d) {
    std::string s = cat(d.getTransportProtocolLabel(), d.size());
    for (unsigned int i = 0; i < d.size(); ++i)
        s += cat(d.get(i)->getDIIIdentification(), d.get(i)->getAssociationTag());
    return s;
}
std::string extras(const TExternalApplicationAuthorizationDescriptor& d) {
    std::string s = cat(d.size());
    for (const std::string& id : d.getApplicationIdentifierHashIDs()) {
        const TExternalApplicationAuthorizationDescriptorItem* i = d.get(id);
        s += cat(id, i->getApplicationIdentifier()->getOrganizationID(),
                 i->getApplicationIdentifier()->getApplicationID(), i->getPriority());
    }
    return s;
}
std::string extras(const THierarchicalTransmissionDescriptor& d) {
    return cat(d.getQualityLevel(), d.getReferencePID());
}
std::string extras(const TIPSignalingDescriptor& d) {
    return cat(d.getPlatformID());
}
std::string extras(const TLCMDescriptor& d) {
    return cat(d.getMessageId(), d.getMessageLength(), d.getResolution(), d.getDictionaryVersion(),
               d.getDph(), d.getDpv(), d.getDfw(), d.getDfh(), d.getLibrasContentType(),
               d.getNetworkId(), d.getTransportStreamId(), d.getServiceId());
}
std::string extras(const TLDMDescriptor& d) {
    std::string s = cat(d.getMessageId());
    for (const std::string& g : d.getGlosas())
        s += cat(g);
    return s;
}
std::string extras(const TNPTEndpointDescriptor& d) {
    return cat(d.getNPTStartH(), d.getNPTStartL(), d.getNPTStopH(), d.getNPTStopL());
}
std::string extras(const TNPTReferenceDescriptor& d) {
    return cat(d.isPostDiscontinuity(), d.getDSMCCContentID(), d.getSTCReferenceH(),
               d.getSTCReferenceL(), d.getNPTReferenceH(), d.getNPTReferenceL(),
               d.getScaleNumerator(), d.getScaleDenominator());
}
std::string extras(const TPrefetchDescriptor& d) {
    std::string s = cat(d.getTransportProtocolLabel(), d.size());
    for (unsigned int i = 0; i < d.size(); ++i)
        s += cat(d.get(i)->getLabel(), d.get(i)->getPriority());
    return s;
}
std::string extras(const TStreamEventDescriptor& d) {
    return cat(d.getEventID(), d.getEventNPTH(), d.getEventNPTL()) +
           hexOf(d.getPrivateData(), d.getPrivateDataSize());
}
std::string extras(const TStreamModeDescriptor& d) {
    return cat(d.getStreamMode());
}
std::string extras(const TTimeShiftedServiceDescriptor& d) {
    return cat(d.getReferenceServiceID());
}
std::string extras(const TTransportProtocolDescriptor& d) {
    std::string s =
        cat(static_cast<int>(d.getType()), d.getProtocolID(), d.getTransportProtocolLabel());
    if (auto* c = dynamic_cast<const TCarouselSelector*>(&d))
        s += cat(c->isRemoteConnection(), c->getOriginalNetworkID(), c->getTransportStreamID(),
                 c->getServiceID(), c->getComponentTag());
    if (auto* ip = dynamic_cast<const TTransportProtocolDescriptorIP*>(&d)) {
        s += cat(ip->isRemoteConnection(), ip->getOriginalNetworkID(), ip->getTransportStreamID(),
                 ip->getServiceID(), ip->isAligned(), ip->getURLCount());
        for (unsigned char i = 0; i < ip->getURLCount(); ++i)
            s += " '" + ip->getURL(i) + "'";
    }
    return s;
}
std::string extras(const TDownloadContentDescriptor& d) {
    std::string s =
        cat(d.getReboot(), d.getAddOn(), d.getCompatibilityFlag(), d.getModuleInfoFlag(),
            d.getTextInfoFlag(), d.getComponentSize(), d.getDownloadID(), d.getTimeOutValueDII(),
            d.getLeakRate(), d.getComponentTag());
    if (const TCompatibilityDescriptor* c = d.getCompatibilityDescriptor()) {
        s += " compatibility";
        for (int i = 0; i < c->getCompatibilityDescriptorItemSize(); ++i) {
            const TCompatibilityDescriptorItem* e =
                c->getCompatibilityDescriptorItem(static_cast<unsigned char>(i));
            s += cat(e->getDescriptorType(), e->getSpecifierType(), e->getSpecifierData(),
                     e->getModel(), e->getVersion());
            for (int j = 0; j < e->getCompatibilityDescriptorSubItemSize(); ++j) {
                const TCompatibilityDescriptorSubItem* sub =
                    e->getCompatibilityDescriptorSubItem(static_cast<unsigned char>(j));
                s += cat(sub->getSubDescriptorType()) +
                     hexOf(sub->getAdditionalInformation(), sub->getAdditionalInformationLength());
            }
        }
    }
    s += " modules";
    for (int i = 0; i < d.getDownloadContentDescriptorItemSize(); ++i) {
        const TDownloadContentDescriptorItem* m =
            d.getDownloadContentDescriptorItem(static_cast<unsigned char>(i));
        s += cat(m->getModuleID(), m->getModuleSize()) +
             hexOf(m->getModuleInfo(), m->getModuleInfoLength());
    }
    return s + hexOf(d.getPrivateData(), d.getPrivateDataLength()) +
           cat(d.getLanguageCode(), d.getText());
}
std::string extras(const TTSInformationDescriptor& d) {
    std::string s = cat(d.getTxInformation(), d.getTransmissionTypeCount());
    for (int i = 0; i < d.getTransmissionTypeCount(); ++i) {
        const TTSInformationDescriptorItem* t =
            d.getTransmissionType(static_cast<unsigned char>(i));
        s += cat(t->getTransmissionTypeInfo(), t->getTransmissionParameterType());
    }
    return s;
}
std::string extras(const TLocalTimeOffsetDescriptor& d) {
    std::string s;
    for (const std::string& country : d.getCountryCodes()) {
        const TLocalTimeOffsetDescriptorItem* i = d.get(country);
        s += cat(i->getCountryCode(), i->getCountryRegionID(), i->getLocalTimeOffsetPolarity(),
                 i->getLocalTimeOffset(), i->getTimeOfChange(), i->getNextTimeOffset());
    }
    return s;
}
std::string extras(const TParentalRatingDescriptor& d) {
    std::string s = cat(d.size());
    for (int i = 0; i < d.size(); ++i)
        s += cat(d.get(static_cast<unsigned char>(i))->getRating(),
                 d.get(static_cast<unsigned char>(i))->getRatingContent());
    return s;
}
std::string extras(const TComponentDescriptor& d) {
    return cat(d.getStreamContentComponentType());
}
std::string extras(const TConditionalPlaybackDescriptor& d) {
    return hexOf(d.getPrivateData(), d.getPrivateDataSize());
}
std::string extras(const TDataComponentDescriptor& d) {
    return hexOf(d.getAdditionalData(), d.getAdditionalDataSize());
}
std::string extras(const TAACDescriptor& d) {
    return cat(d.getAACType(), d.getAdditionalInfoSize());
}
std::string extras(const TAVCTimingAndHRDDescriptor& d) {
    return cat(d.isPictureTimingInfoPresent(), d.is90kHzFlag());
}
std::string extras(const TCarouselIdentifierDescriptor& d) {
    return cat(d.getFormatID(), d.getModuleVersion(), d.getModuleID(), d.getBlockSize(),
               d.getModuleSize(), d.getCompressionMethod(), d.getOriginalSize(), d.getTimeOut()) +
           hexOf(d.getObjectKeyData(), d.getObjectKeyLength()) +
           hexOf(d.getPrivateData(), d.getPrivateDataSize());
}

// What the JSON leaves out, after " |": the tag where the JSON has none,
// and the extras of the class.
template <typename T>
std::string hidden(const T& d, const std::string& shown) {
    std::string more = extras(d);
    if (shown.find("\"descriptor_tag\":") == std::string::npos)
        more = cat(d.getDescriptorTag()) + more;
    return more.empty() ? "" : " |" + more;
}

// describe() of DescriptorParse.h and what the JSON leaves out, then each
// line logged as "<priority> <text>" on a line of its own.
template <typename T>
std::string run(Bytes b) {
    LogCapture log;
    ParsedDescriptor<T> p(std::move(b));
    std::string s = describe(p);
    if (p.d != nullptr)
        s += hidden(*p.d, s);
    const std::string tag = "SarnISDBTUtils: ";
    for (const LogLine& line : log.lines())
        s +=
            "\n" + std::to_string(line.priority) + " " +
            (line.text.compare(0, tag.size(), tag) == 0 ? line.text.substr(tag.size()) : line.text);
    return s;
}

// An object made by its constructor over the bytes, before any parsing.
template <typename T>
std::string made(Bytes b) {
    T d(b.data(), length(b));
    const std::string s = d.toJSON();
    return s + hidden(d, s);
}

struct Case {
    std::string (*parse)(Bytes);
    const char* bytes;
    const char* expected;
};

void expectCases(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        EXPECT_EQ(c.parse(wire(c.bytes)), c.expected);
    }
}

}  // namespace

TEST(DescriptorCases, ApplicationInformation) {
    expectCases({
        // Two profiles out of order (2 v1.3.0, 1 v1.0.0), service bound,
        // visibility 3, priority 200, transport protocol labels 1 and 10.
        {run<TApplicationDescriptor>, "00 0F 0A 0002 010300 0001 010000 FF C8 01 0A",
         R"(read=15 "errors":0,"descriptor_tag":0,"descriptor_length":15,"profile_loop":[{"application_profile":1,"version.major":1,"version.minor":0,"version.micro":0},{"application_profile":2,"version.major":1,"version.minor":3,"version.micro":0}],"service_bound_flag":1,"visibility":3,"application_priority":200,"transport_protocol_label":"0x010a" | 1 1 2 0x010a)"},
        // No profiles, visible to applications only, no labels; then to users only.
        {run<TApplicationDescriptor>, "00 03 00 A0 05",
         R"(read=3 "errors":0,"descriptor_tag":0,"descriptor_length":3,"profile_loop":[],"service_bound_flag":1,"visibility":1,"application_priority":5,"transport_protocol_label":"" | 0 1 0 null)"},
        {run<TApplicationDescriptor>, "00 04 00 40 05 03",
         R"(read=4 "errors":0,"descriptor_tag":0,"descriptor_length":4,"profile_loop":[],"service_bound_flag":0,"visibility":2,"application_priority":5,"transport_protocol_label":"0x03" | 1 0 1 0x03)"},
        // Profiles longer than the body; a cut profile; no room for the
        // flags and priority; room for the flags only.
        {run<TApplicationDescriptor>, "00 05 09 0001 80 05", R"(null code=2563
5 TApplicationDescriptor:: parse: Application Profiles Length exceeds Descriptor Length: 9 > 4. Aborting!)"},
        {run<TApplicationDescriptor>, "00 0A 07 0001 010000 0002 80 05", R"(null code=2563
5 TApplicationDescriptorProfile::parse: Item length not valid: 2. Aborting!)"},
        {run<TApplicationDescriptor>, "00 06 05 0001 010000", R"(null code=2563
5 TApplicationDescriptor:: parse: Section length exceeded. Aborting!)"},
        {run<TApplicationDescriptor>, "00 07 05 0001 010000 80", R"(null code=2563
5 TApplicationDescriptor:: parse: Section length exceeded. Aborting!)"},
        // "por" twice (the later wins) and "eng", rendered in code order; a
        // control byte leaves the name.
        {run<TApplicationNameDescriptor>,
         "01 18 'por' 03 'App' 'eng' 04 'News' 'por' 05 'Not' 0E 'x'",
         R"(read=24 "errors":0,"descriptor_tag":1,"descriptor_length":24,"name_loop":[{"ISO_639_language_code":"eng","application_name":"News"},{"ISO_639_language_code":"por","application_name":"Notx"}])"},
        // A name past the descriptor; five bytes after an item hold no other.
        {run<TApplicationNameDescriptor>, "01 06 'por' 09 'AB'", R"(null code=2568
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 9 > 2. Aborting!
5 TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!
5 TApplicationNameDescriptor::parse: Invalid item. Aborting!)"},
        {run<TApplicationNameDescriptor>, "01 07 'por' 01 'A' 'en'", R"(null code=2568
5 TApplicationNameDescriptorItem::parse: Item length not valid: 2. Aborting!
5 TApplicationNameDescriptor::parse: Invalid item. Aborting!)"},
        {run<TApplicationIconDescriptor>, "0B 07 04 'ico/' 0006",
         R"(read=9 "errors":0,"descriptor_tag":11,"descriptor_length":7,"descriptor_content":"0x0469636f2f0006" | ico/ 6)"},
        {run<TApplicationIconDescriptor>, "0B 04 00 'x' 8001",
         R"(read=6 "errors":0,"descriptor_tag":11,"descriptor_length":4,"descriptor_content":"0x00788001" |  30848)"},
        {run<TApplicationIconDescriptor>, "0B 03 02 'ab'", R"(null code=2563
5 TApplicationIconDescriptor:: parse: Item length not valid: 0. Aborting!)"},
        {run<TApplicationIconDescriptor>, "0B 02 05 'a'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > 1. Aborting!
5 TApplicationIconDescriptor:: parse: ERROR: parsing Icon Locator. Aborting!)"},
        // Parameters: ESC is a control byte and is dropped.
        {run<TGingaNCLApplicationDescriptor>, "06 08 03 'a=1' 00 02 'x' 1B",
         R"(read=8 "errors":0,"descriptor_tag":6,"descriptor_length":8,"parameter_loop":["a=1","","x"])"},
        {run<TGingaNCLApplicationDescriptor>, "06 00",
         R"(read=0 "errors":0,"descriptor_tag":6,"descriptor_length":0,"parameter_loop":[])"},
        {run<TGingaNCLApplicationDescriptor>, "06 03 01 'a' 04", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 4 > 0. Aborting!
5 TGingaApplicationDescriptor:: parse: ERROR: parsing Parameter. Aborting!)"},
        {run<TGingaNCLApplicationDescriptor>, "03 00", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x03, instead of 0x06. Aborting!)"},
        {run<TGingaJavaApplicationDescriptor>, "03 02 01 'j'",
         R"(read=2 "errors":0,"descriptor_tag":3,"descriptor_length":2,"parameter_loop":["j"])"},
        {run<TGingaHtml5ApplicationDescriptor>, "0E 02 01 'h'",
         R"(read=2 "errors":0,"descriptor_tag":14,"descriptor_length":2,"parameter_loop":["h"])"},
        // Base directory, class path (empty here) and initial class; the
        // byte count is the class path length.
        {run<TGingaNCLApplicationLocationDescriptor>, "07 0B 01 '/' 00 'main.ncl'",
         R"(read=1 "errors":0,"descriptor_tag":7,"descriptor_length":11,"base_directory":"/","entitypath_extension":"","initial_entity":"main.ncl")"},
        {run<TGingaJavaApplicationLocationDescriptor>, "04 0A 02 'ab' 02 'cp' 'Xlet'",
         R"(read=6 "errors":0,"descriptor_tag":4,"descriptor_length":10,"base_directory":"ab","entitypath_extension":"cp","initial_entity":"Xlet")"},
        {run<TGingaHtml5ApplicationLocationDescriptor>, "0F 05 00 00 'a.h'",
         R"(read=0 "errors":0,"descriptor_tag":15,"descriptor_length":5,"base_directory":"","entitypath_extension":"","initial_entity":"a.h")"},
        {run<TGingaHtml5ApplicationLocationDescriptor>, "0F 04 00 03 'a.h'", R"(null code=2568
5 TGingaApplicationLocationDescriptor::parse: Longer data length is required: 2 < 3. Aborting!)"},
        // Base directory past the body; no class path length byte; class
        // path past what is left.
        {run<TGingaNCLApplicationLocationDescriptor>, "07 04 05 'abc'", R"(null code=2568
5 TGingaApplicationLocationDescriptor::parse: Longer data length is required: 3 < 5. Aborting!)"},
        {run<TGingaNCLApplicationLocationDescriptor>, "07 04 03 'abc'", R"(null code=2568
5 TGingaApplicationLocationDescriptor::parse: Longer data length is required: 0 < 1. Aborting!)"},
        {run<TGingaNCLApplicationLocationDescriptor>, "07 04 01 'a' 03 'b'", R"(null code=2568
5 TGingaApplicationLocationDescriptor::parse: Longer data length is required: 1 < 3. Aborting!)"},
        {run<TGingaJavaApplicationLocationDescriptor>, "04 05 01 'a' 02 'cp'",
         R"(read=3 "errors":0,"descriptor_tag":4,"descriptor_length":5,"base_directory":"a","entitypath_extension":"cp","initial_entity":"")"},
        {run<TGingaJavaApplicationLocationDescriptor>, "07 04 01 'a' 00 'b'", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x07, instead of 0x04. Aborting!)"},
        // Items by hash id: 0x0A/2 priority 5, 0x0A/1 priority 1, then 0x0A/2
        // again with priority 9 (the later wins); the byte count is the last item's.
        {run<TExternalApplicationAuthorizationDescriptor>,
         "05 15 0000000A 0002 05 0000000A 0001 01 0000000A 0002 09",
         R"(read=7 "errors":0,"descriptor_tag":5,"descriptor_length":21,"descriptor_content":"0x0000000a0002050000000a0001010000000a000209" | 2 0000000A0001 10 1 1 0000000A0002 10 2 9)"},
        {run<TExternalApplicationAuthorizationDescriptor>, "05 00",
         R"(read=0 "errors":0,"descriptor_tag":5,"descriptor_length":0 | 0)"},
        {run<TExternalApplicationAuthorizationDescriptor>, "05 0A 0000000A 0002 05 010203",
         R"(null code=2568
5 TExternalApplicationAuthorizationDescriptorItem::parse: Item length not valid: 3. Aborting!
5 TExternalApplicationAuthorizationDescriptor::parse: Invalid item. Aborting!)"},
        // Transport label 1; "main" priority 100, "img" priority 1. The
        // shortest item is an empty label and its priority.
        {run<TPrefetchDescriptor>, "0C 0C 01 04 'main' 64 03 'img' 01",
         R"(read=5 "errors":0,"descriptor_tag":12,"descriptor_length":12,"descriptor_content":"0x01046d61696e6403696d6701" | 1 2 main 100 img 1)"},
        {run<TPrefetchDescriptor>, "0C 05 01 00 07 00 00",
         R"(read=2 "errors":0,"descriptor_tag":12,"descriptor_length":5,"descriptor_content":"0x0100070000" | 1 2  7  0)"},
        {run<TPrefetchDescriptor>, "0C 04 01 00 07 03", R"(null code=2568
5 TPrefetchDescriptorItem::parse: Item length not valid: 1. Aborting!
5 TPrefetchDescriptor::parse: Invalid item. Aborting!)"},
        {run<TPrefetchDescriptor>, "0C 03 01 01 'a'", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 5 < 6. Aborting!)"},
        {run<TPrefetchDescriptor>, "0C 04 01 02 'ab'", R"(null code=2568
5 TPrefetchDescriptorItem::parse: Item length not valid: 0. Aborting!
5 TPrefetchDescriptor::parse: Invalid item. Aborting!)"},
        {run<TPrefetchDescriptor>, "0C 04 01 07 'ab'", R"(null code=2568
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 7 > 2. Aborting!
5 TPrefetchDescriptorItem:: parse: ERROR: parsing Label. Aborting!
5 TPrefetchDescriptor::parse: Invalid item. Aborting!)"},
        // The reserved bit of the DII identification is dropped.
        {run<TDIILocationDescriptor>, "0D 09 02 8001 0014 7FFF 0015",
         R"(read=4 "errors":0,"descriptor_tag":13,"descriptor_length":9,"descriptor_content":"0x02800100147fff0015" | 2 2 1 20 32767 21)"},
        {run<TDIILocationDescriptor>, "0D 07 02 0001 0014 0002", R"(null code=2568
5 TDIILocationDescriptorItem::parse: Item length not valid: 2. Aborting!
5 TDIILocationDescriptor::parse: Invalid item. Aborting!)"},
        {run<TDIILocationDescriptor>, "0D 04 02 0001 00", R"(null code=2568
5 TDIILocationDescriptorItem::parse: Item length not valid: 3. Aborting!
5 TDIILocationDescriptor::parse: Invalid item. Aborting!)"},
        {run<TIPSignalingDescriptor>, "11 03 456789",
         R"(read=3 "errors":0,"descriptor_tag":17,"descriptor_length":3,"descriptor_content":"0x456789" | 4548489)"},
        {run<TIPSignalingDescriptor>, "11 02 4567", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 4 < 5. Aborting!)"},
    });
}

TEST(DescriptorCases, TransportProtocol) {
    expectCases({
        // Object carousel, local, then remote on 0x0641/0x0641/0xC840.
        {run<TTransportProtocolDescriptor>, "02 05 0001 05 00 07",
         R"(read=5 "errors":0,"descriptor_tag":2,"descriptor_length":5,"protocol_id":1,"transport_protocol_label":5 | 1 1 5 0 0 0 0 7)"},
        {run<TTransportProtocolDescriptor>, "02 0B 0001 01 80 0641 0642 C840 41",
         R"(read=11 "errors":0,"descriptor_tag":2,"descriptor_length":11,"protocol_id":1,"transport_protocol_label":1 | 1 1 1 1 1601 1602 51264 65)"},
        {run<TTransportProtocolDescriptor>, "02 0A 0001 05 80 010203040506", R"(null code=2563
5 TTransportProtocolDescriptorOC::parse: Item length not valid: 6. Aborting!)"},
        // Protocol 5 is read as an object carousel and keeps its protocol_id.
        {run<TTransportProtocolDescriptor>, "02 05 0005 03 00 09",
         R"(read=5 "errors":0,"descriptor_tag":2,"descriptor_length":5,"protocol_id":5,"transport_protocol_label":3 | 1 5 3 0 0 0 0 9)"},
        {run<TTransportProtocolDescriptor>, "02 05 0004 02 00 0C",
         R"(read=5 "errors":0,"descriptor_tag":2,"descriptor_length":5,"protocol_id":4,"transport_protocol_label":2 | 4 4 2 0 0 0 0 12)"},
        {run<TTransportProtocolDescriptor>, "02 04 0004 01 00", R"(null code=2563
5 TTransportProtocolDescriptorDC::parse: Item length not valid: 4. Aborting!)"},
        // Interaction channel: refused silently, the header check's 0 stays.
        {run<TTransportProtocolDescriptor>, "02 05 0003 01 00 00", "null code=0"},
        {run<TTransportProtocolDescriptor>, "02 05 0006 01 00 00", R"(null code=0
5 TTransportProtocolDescriptor::parse: Unknown protocol ID: 0x0006. Aborting!)"},
        {run<TTransportProtocolDescriptor>, "02 02 0001", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 4 < 5. Aborting!)"},
        // IP: not remote, aligned, one empty URL; remote, not aligned, two URLs.
        {run<TTransportProtocolDescriptor>, "02 06 0002 07 00 80 00",
         R"(read=6 "errors":0,"descriptor_tag":2,"descriptor_length":6,"protocol_id":2,"transport_protocol_label":7 | 2 2 7 0 0 0 0 1 1 '')"},
        {run<TTransportProtocolDescriptor>, "02 10 0002 01 80 0001 0002 0003 00 02 'ab' 01 'c'",
         R"(read=16 "errors":0,"descriptor_tag":2,"descriptor_length":16,"protocol_id":2,"transport_protocol_label":1 | 2 2 1 1 1 2 3 0 2 'ab' 'c')"},
        {run<TTransportProtocolDescriptor>, "02 06 0002 07 00 80 04", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 4 > 0. Aborting!
5 TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!)"},
        {run<TTransportProtocolDescriptor>, "02 08 0002 07 80 0001 0002", R"(null code=2563
5 TTransportProtocolDescriptorIP::parse: Item length not valid: 4. Aborting!)"},
        {run<TTransportProtocolDescriptor>, "02 0B 0002 07 80 0001 0002 0003 80",
         R"(read=11 "errors":0,"descriptor_tag":2,"descriptor_length":11,"protocol_id":2,"transport_protocol_label":7 | 2 2 7 1 1 2 3 1 0)"},
        {run<TTransportProtocolDescriptor>, "02 0A 0002 07 80 0001 0002 0003", R"(null code=2563
5 TTransportProtocolDescriptorIP::parse: Item length not valid: 6. Aborting!)"},
    });
}

TEST(DescriptorCases, ServiceInformation) {
    expectCases({
        // Plain 8-bit Latin with a shift code in the middle.
        {run<TNetworkNameDescriptor>, "40 0E 'TV ' 0E 'INTEGRA' C7 C3 'O'",
         "read=14 \"name\":\"networkNameDescriptor\",\"networkName\":\"TV INTEGRA\xC7\xC3O\" | 64"},
        {run<TNetworkNameDescriptor>, "40 00",
         R"(read=0 "name":"networkNameDescriptor","networkName":"" | 64)"},
        {run<TNetworkNameDescriptor>, "41 00", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x41, instead of 0x40. Aborting!)"},
        // The byte count is the two names with their length bytes.
        {run<TServiceDescriptor>, "48 0E 01 04 'SARN' 07 'SARN HD'",
         R"(read=13 "name":"serviceDescriptor","serviceType":1,"serviceProvider":"SARN","serviceName":"SARN HD" | 72)"},
        {run<TServiceDescriptor>, "48 0A 01 00 07 'SARN HD'",
         R"(read=9 "name":"serviceDescriptor","serviceType":1,"serviceProvider":"","serviceName":"SARN HD" | 72)"},
        {run<TServiceDescriptor>, "48 05 01 03 'ABC'", R"(null code=2568
5 TServiceDescriptor::parse: Longer data length is required: 0 < 1. Aborting!)"},
        {run<TServiceDescriptor>, "48 04 01 05 'AB'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > 2. Aborting!
5 TServiceDescriptor:: parse: ERROR: parsing Service Provider Name. Aborting!)"},
        {run<TServiceDescriptor>, "48 05 01 00 03 'AB'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 3 > 2. Aborting!
5 TServiceDescriptor:: parse: ERROR: parsing Service Name. Aborting!)"},
        // Name: shift code dropped, quote escaped; description: backslash
        // escaped, LF and A1 kept, A0 dropped.
        {run<TShortEventDescriptor>, "4D 11 'por' 06 0E 'News' 22 06 'a' 5C 'b' 0A A0 A1",
         "read=19 "
         "\"errors\":0,\"descriptor_tag\":77,\"descriptor_length\":17,\"ISO_639_language_code\":"
         "\"por\",\"event_name\":\"News\\\"\",\"event_description\":\"a\\\\b\n\xA1\""},
        {run<TShortEventDescriptor>, "4D 05 'jpn' 00 00",
         R"(read=7 "errors":0,"descriptor_tag":77,"descriptor_length":5,"ISO_639_language_code":"jpn","event_name":"","event_description":"")"},
        {run<TShortEventDescriptor>, "4D 08 'por' 09 'abcd'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 9 > 4. Aborting!
5 TShortEventDescriptor:: parse: ERROR: parsing Event name. Aborting! l_iStrLength: -1 event_name_lentgth: 9)"},
        {run<TShortEventDescriptor>, "4D 07 'por' 00 03 'xy'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 3 > 2. Aborting!
5 TShortEventDescriptor:: parse: ERROR: parsing Event description. Aborting! l_iStrLength: -1 event_descr_length: 3)"},
        {run<TShortEventDescriptor>, "4D 04 'por' 00", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 6 < 7. Aborting!)"},
        // Items and text; the byte count is two less than the bytes on the wire.
        {run<TExtendedEventDescriptor>,
         "4E 21 12 'por' 17 07 'Diretor' 03 'Ana' 06 'Elenco' 03 'B' 22 'C' 04 'Fim.'",
         R"(read=33 "errors":0,"descriptor_tag":78,"descriptor_length":33,"descriptor_number":1,"last_descriptor_number":2,"ISO_639_language_code":"por","items":["Diretor : Ana","Elenco : B\"C"],"text":"Fim.")"},
        // A control byte in a language code leaves it short.
        {run<TExtendedEventDescriptor>, "4E 06 00 'p' 0E 'r' 00 00",
         R"(read=6 "errors":0,"descriptor_tag":78,"descriptor_length":6,"descriptor_number":0,"last_descriptor_number":0,"ISO_639_language_code":"pr","items":[],"text":"")"},
        {run<TShortEventDescriptor>, "4D 05 'p' 0E 'r' 00 00",
         R"(read=7 "errors":0,"descriptor_tag":77,"descriptor_length":5,"ISO_639_language_code":"pr","event_name":"","event_description":"")"},
        {run<TComponentDescriptor>, "50 06 01 03 01 'j' 0E 'n'",
         R"(read=3 "name":"componentDescriptor","streamContent":1,"componentType":3,"componentTag":1,"iso639LanguageCode":"jn","text":"" | 80 259)"},
        {run<TExtendedEventDescriptor>, "4E 06 00 'por' 00 00",
         R"(read=6 "errors":0,"descriptor_tag":78,"descriptor_length":6,"descriptor_number":0,"last_descriptor_number":0,"ISO_639_language_code":"por","items":[],"text":"")"},
        // No text length byte; items past the bytes; a description past the
        // bytes; no item text length; text past the descriptor.
        {run<TExtendedEventDescriptor>, "4E 09 00 'por' 04 01 'a' 01 'b'", R"(null code=2563
5 TExtendedEventDescriptor::parse Missing bytes to read the text length field.)"},
        {run<TExtendedEventDescriptor>, "4E 07 00 'por' 09 00 00", R"(null code=2562
5 TExtendedEventDescriptor::parse Declared items length is larger than the buffer size (9 > 2))"},
        {run<TExtendedEventDescriptor>, "4E 08 00 'por' 03 05 'a' 00", R"(null code=2562
5 TExtendedEventDescriptorItem::parse Declared description length is larger than the buffer size (5 > 2))"},
        {run<TExtendedEventDescriptor>, "4E 07 00 'por' 02 01 'a'", R"(null code=2563
5 TExtendedEventDescriptorItem::parse Missing bytes to read the text length)"},
        {run<TExtendedEventDescriptor>, "4E 07 00 'por' 00 05 'a'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > 1. Aborting!
5 TExtendedEventDescriptor::parse error parsing text. Aborting!)"},
        // A control byte in an item name shortens the step to the next item
        // by one: 'B' (66) is then read as a length.
        {run<TExtendedEventDescriptor>, "4E 0B 00 'por' 05 02 0E 'A' 01 'B' 00", R"(null code=2562
5 TExtendedEventDescriptorItem::parse Declared description length is larger than the buffer size (66 > 1))"},
        // Video 1080i with a text written unescaped.
        {run<TComponentDescriptor>, "50 0C F1 B3 00 'por' 0E 22 'HD' 22 E9",
         "read=9 "
         "\"name\":\"componentDescriptor\",\"streamContent\":1,\"componentType\":179,"
         "\"componentTag\":0,\"iso639LanguageCode\":\"por\",\"text\":\"\"HD\"\xE9\" | 80 435"},
        {run<TComponentDescriptor>, "50 06 01 03 01 'jpn'",
         R"(read=3 "name":"componentDescriptor","streamContent":1,"componentType":3,"componentTag":1,"iso639LanguageCode":"jpn","text":"" | 80 259)"},
        {run<TComponentDescriptor>, "50 05 01 03 01 'jp'", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 7 < 8. Aborting!)"},
        // The text keeps every byte; bilingual with both codes; bilingual
        // without room for the second code.
        {run<TAudioComponentDescriptor>, "C4 0D F2 03 10 11 FF 5F 'por' 'E' 0E 22 'o'",
         "read=57005 "
         "\"errors\":0,\"descriptor_tag\":196,\"descriptor_length\":13,\"stream_content\":2,"
         "\"component_type\":3,\"component_tag\":16,\"stream_type\":17,\"simulcast_group_tag\":255,"
         "\"ES_multi_lingual_flag\":0,\"main_component_flag\":1,\"quality_indicator\":1,\"sampling_"
         "rate\":7,\"ISO_639_language_code\":\"por\",\"text\":\"E\x0E\"o\""},
        {run<TAudioComponentDescriptor>, "C4 0D 02 02 10 11 00 FF 'jpneng' '!'",
         R"(read=57005 "errors":0,"descriptor_tag":196,"descriptor_length":13,"stream_content":2,"component_type":2,"component_tag":16,"stream_type":17,"simulcast_group_tag":0,"ES_multi_lingual_flag":1,"main_component_flag":1,"quality_indicator":3,"sampling_rate":7,"ISO_639_language_code":"jpn","ISO_639_language_code_2":"eng","text":"!")"},
        {run<TAudioComponentDescriptor>, "C4 0A 02 02 10 11 00 80 'jpn' 'e'",
         R"(read=57005 "errors":0,"descriptor_tag":196,"descriptor_length":10,"stream_content":2,"component_type":2,"component_tag":16,"stream_type":17,"simulcast_group_tag":0,"ES_multi_lingual_flag":1,"main_component_flag":0,"quality_indicator":0,"sampling_rate":0,"ISO_639_language_code":"jpn","ISO_639_language_code_2":"","text":"")"},
        {run<TAudioComponentDescriptor>, "C4 08 02 02 10 11 00 80 'jp'", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 10 < 11. Aborting!)"},
        // The first genre counts; any tag and length are taken; neither the
        // byte count nor the code is written on success.
        {run<TContentDescriptor>, "54 04 1A AB 30 00",
         R"(code=48879 read=57005 "errors":0,"descriptor_tag":84,"descriptor_length":4,"content_nibble_level_1":1,"content_nibble_level_2":10,"user_nibble":171)"},
        {run<TContentDescriptor>, "4D 09 F0 01",
         R"(code=48879 read=57005 "errors":0,"descriptor_tag":84,"descriptor_length":9,"content_nibble_level_1":15,"content_nibble_level_2":0,"user_nibble":1)"},
        {run<TContentDescriptor>, "4D 09 F0", R"(null code=2563
5 TContentDescriptor::parse: Item length not valid: 3. Aborting!)"},
        {run<TParentalRatingDescriptor>, "55 08 'BRA' 2A 'ARG' 01",
         R"(read=8 "name:":"parentalRatingDescriptor","parentalRatings:":[{"countryCode":"BRA","rating":2},{"countryCode":"ARG","rating":0}] | 85 2 10 2 1 0)"},
        {run<TParentalRatingDescriptor>, "55 00",
         R"(read=0 "name:":"parentalRatingDescriptor","parentalRatings:":[] | 85 0)"},
        {run<TParentalRatingDescriptor>, "55 07 'BRA' 02 'ARG'", R"(null code=2568
5 TParentalRatingDescriptorItem::parse: Descriptor length not valid: 3. Aborting!
5 TParentalRatingDescriptor::parse: Invalid item. Aborting!)"},
        {run<TParentalRatingDescriptor>, "54 00", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x54, instead of 0x55. Aborting!
5 TParentalRatingDescriptor::parse: parseCommonHeader: Invalid item. Aborting!)"},
        // Brazil three hours behind, two from 2016-10-16 (MJD 0xE14D); a
        // region of Argentina ahead with minutes; Uruguay with odd minutes.
        {run<TLocalTimeOffsetDescriptor>,
         "58 27 'BRA' 03 0300 E14D 000000 0200 'ARG' 0A 0330 0000 123456 1030"
         " 'URY' 05 0907 E14D 235959 0009",
         R"(read=13 "errors":0,"descriptor_tag":88,"descriptor_length":39,"loop":[{"country_code":"ARG","country_region_id":2,"local_time_offset_polarity":0,"local_time_offset":"11:00","time_of_change":"1970-01-01 12:34:56","next_time_offset":"04:36"},{"country_code":"BRA","country_region_id":0,"local_time_offset_polarity":1,"local_time_offset":"03:00","time_of_change":"2016-10-16 00:00:00","next_time_offset":"02:00"},{"country_code":"URY","country_region_id":1,"local_time_offset_polarity":1,"local_time_offset":"09:00","time_of_change":"2016-10-16 23:59:59","next_time_offset":"00:00"}] | ARG 2 0 39600 45296 14976 BRA 0 1 10800 1476576000 7200 URY 1 1 32820 1476662399 540)"},
        // A repeated country keeps the later entry.
        {run<TLocalTimeOffsetDescriptor>,
         "58 1A 'BRA' 03 0300 E14D 000000 0200 'BRA' 03 0200 E0A8 000000 0300",
         R"(read=13 "errors":0,"descriptor_tag":88,"descriptor_length":26,"loop":[{"country_code":"BRA","country_region_id":0,"local_time_offset_polarity":1,"local_time_offset":"02:00","time_of_change":"2016-05-04 00:00:00","next_time_offset":"03:00"}] | BRA 0 1 7200 1462320000 10800)"},
        // Region 63, and a first hour byte over 0x7F.
        {run<TLocalTimeOffsetDescriptor>, "58 0D 'CHL' FE 8000 0000 000000 0000",
         R"(read=13 "errors":0,"descriptor_tag":88,"descriptor_length":13,"loop":[{"country_code":"CHL","country_region_id":63,"local_time_offset_polarity":0,"local_time_offset":"05:20","time_of_change":"1970-01-01 00:00:00","next_time_offset":"00:00"}] | CHL 63 0 20480 0 0)"},
        // Eleven bytes hold no entry; an entry and a partial one.
        {run<TLocalTimeOffsetDescriptor>, "58 0B 'BRA' 03 0300 E14D 000000", R"(null code=2568
5 TLocalTimeOffsetDescriptorItem::parse: Descriptor length not valid: 11. Aborting!
5 TLocalTimeOffsetDescriptor::parse: Descriptor length not valid: 13. Aborting!)"},
        {run<TLocalTimeOffsetDescriptor>, "58 10 'BRA' 03 0300 E14D 000000 0200 'ARG'",
         R"(null code=2568
5 TLocalTimeOffsetDescriptorItem::parse: Descriptor length not valid: 3. Aborting!
5 TLocalTimeOffsetDescriptor::parse: Descriptor length not valid: 18. Aborting!)"},
        // Remote key 5, "SARN", layer A (one-seg) with one service, layer B
        // with two; the trailing byte belongs to no transmission type.
        {run<TTSInformationDescriptor>, "CD 11 05 12 'SARN' 0F 01 C858 AF 02 C840 C841 FF",
         R"(read=18 "name":"tsInformationDescriptor","remoteControlKeyId":5,"tsName":"SARN","loop":[{"transmissionLayer":0,"modulationSystem":0,"serviceId":[51288]},{"transmissionLayer":2,"modulationSystem":2,"serviceId":[51264,51265]}] | 205 2 2 15 0 175 2)"},
        // Three services announced, one there: the missing render as 0.
        {run<TTSInformationDescriptor>, "CD 06 01 01 0F 03 C858",
         R"(read=8 "name":"tsInformationDescriptor","remoteControlKeyId":1,"tsName":"","loop":[{"transmissionLayer":0,"modulationSystem":0,"serviceId":[51288,0,0]}] | 205 1 1 15 0)"},
        {run<TTSInformationDescriptor>, "CD 05 07 05 'A' 5F 00",
         R"(read=7 "name":"tsInformationDescriptor","remoteControlKeyId":7,"tsName":"A","loop":[{"transmissionLayer":1,"modulationSystem":1,"serviceId":[]}] | 205 1 1 95 1)"},
        {run<TTSInformationDescriptor>, "CD 08 01 03 0F 00 AF 00 5F 00",
         R"(read=10 "name":"tsInformationDescriptor","remoteControlKeyId":1,"tsName":"","loop":[{"transmissionLayer":0,"modulationSystem":0,"serviceId":[]},{"transmissionLayer":2,"modulationSystem":2,"serviceId":[]},{"transmissionLayer":1,"modulationSystem":1,"serviceId":[]}] | 205 3 3 15 0 175 2 95 1)"},
        {run<TTSInformationDescriptor>, "CD 02 01 00",
         R"(read=4 "name":"tsInformationDescriptor","remoteControlKeyId":1,"tsName":"","loop":[] | 205 0 0)"},
        {run<TTSInformationDescriptor>, "CD 03 01 10 'S'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 4 > 1. Aborting!
5 TTSInformationDescriptor:: parse: ERROR: parsing TS Name. Aborting!)"},
        {run<TTSInformationDescriptor>, "CD 03 01 01 0F", R"(null code=2568
5 TTSInformationDescriptorItem::parse: Item length not valid: 1. Aborting!
5 TTSInformationDescriptor::parse: Invalid item. Aborting!)"},
        // Copy freely (APS bits without a copy control type are ignored);
        // then one generation, bitrate 50 and a component of its own.
        {run<TDigitalCopyControlDescriptor>, "C1 01 03",
         R"(read=1 "name":"digitalCopyControlDescriptor","digitalRecordingControlData":0,"maximumBitrateFlag":0,"componentControlFlag":0,"copyControlType":0,"apsControlData":0,"maximumBitrate":0,"loop":[] | 193)"},
        {run<TDigitalCopyControlDescriptor>, "C1 06 BD 32 03 10 A6 28", R"(read=6 "name":"digitalCopyControlDescriptor","digitalRecordingControlData":2,"maximumBitrateFlag":1,"componentControlFlag":1,"copyControlType":3,"apsControlData":1,"maximumBitrate":50,"loop":[{"digitalRecordingControlData":2,"maximumBitrateFlag":1,"copyControlType":1,"apsControlData":2,"maximumBitrate":40,"reservedFutureUse":[]}] | 193)"},
        {run<TDigitalCopyControlDescriptor>, "C1 08 BD 32 05 10 A6 28 11 C0",
         R"(read=8 "name":"digitalCopyControlDescriptor","digitalRecordingControlData":2,"maximumBitrateFlag":1,"componentControlFlag":1,"copyControlType":3,"apsControlData":1,"maximumBitrate":50,"loop":[{"digitalRecordingControlData":2,"maximumBitrateFlag":1,"copyControlType":1,"apsControlData":2,"maximumBitrate":40,"reservedFutureUse":[]},{"digitalRecordingControlData":3,"maximumBitrateFlag":0,"copyControlType":0,"apsControlData":0,"maximumBitrate":0,"reservedFutureUse":[]}] | 193)"},
        {run<TDigitalCopyControlDescriptor>, "C1 01 20", R"(null code=2568
5 TDigitalCopyControlDescriptor::parse: Longer data length is required: 0 < 1. Aborting!)"},
        {run<TDigitalCopyControlDescriptor>, "C1 01 10", R"(null code=2568
5 TDigitalCopyControlDescriptor::parse: Longer data length is required: 0 < 1. Aborting!)"},
        {run<TDigitalCopyControlDescriptor>, "C1 04 10 05 01 00", R"(null code=2568
5 TDigitalCopyControlDescriptor::parse: Longer data length is required: 2 < 1. Aborting!)"},
        // Two bytes declared, the item reads three: the counter wraps.
        {run<TDigitalCopyControlDescriptor>, "C1 05 10 02 01 20 10", R"(null code=2568
5 TDigitalCopyControlDescriptorItem::parse: Item length not valid: 0. Aborting!
5 TDigitalCopyControlDescriptor::parse: Invalid item. Aborting!)"},
        {run<TDigitalCopyControlDescriptor>, "C1 04 10 02 01 20", R"(null code=2568
5 TDigitalCopyControlDescriptorItem::parse: Longer data length is required: 0 < 1. Aborting!
5 TDigitalCopyControlDescriptor::parse: Invalid item. Aborting!)"},
        // The info text stops at the first zero byte or at the end.
        {run<TDataComponentDescriptor>, "FD 02 000C",
         R"(read=2 "name":"dataComponentDescriptor","dataComponentId":12,"additionalDataComponentInfo":"" | 253 0 null)"},
        {run<TDataComponentDescriptor>, "FD 06 00A3 'AI' 00 'T'",
         R"(read=6 "name":"dataComponentDescriptor","dataComponentId":163,"additionalDataComponentInfo":"AI" | 253 4 0x41490054)"},
        {run<TDataComponentDescriptor>, "FD 04 0100 3D 2F",
         R"(read=4 "name":"dataComponentDescriptor","dataComponentId":256,"additionalDataComponentInfo":"=/" | 253 2 0x3d2f)"},
        // Two trailing bytes short of an entry are ignored.
        {run<TISO639LanguageDescriptor>, "0A 0A 'por' 00 'eng' 03 AA BB",
         R"(read=57005 "errors":0,"descriptor_tag":10,"descriptor_length":10,"language_loop":[{"language_code":"por","audio_type":0},{"language_code":"eng","audio_type":3}])"},
        {run<TISO639LanguageDescriptor>, "0A 00",
         R"(read=57005 "errors":0,"descriptor_tag":10,"descriptor_length":0,"language_loop":[])"},
        {run<TISO639LanguageDescriptor>, "0A 03 'eng'",
         R"(read=57005 "errors":0,"descriptor_tag":10,"descriptor_length":3,"language_loop":[])"},
        {run<TStreamIdentifierDescriptor>, "52 01 07",
         R"(read=1 "name":"streamIdentifierDescriptor","component_tag":7 | 82)"},
        {run<TStreamIdentifierDescriptor>, "13 01 05", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x13, instead of 0x52. Aborting!)"},
        // A format specifier after carousel_id is kept undecoded.
        {run<TCarouselIdentifierDescriptor>, "13 04 00000005",
         R"(read=4 "name":"carouselIdentifierDescriptor","carouselId":5 | 19 0 0 0 0 0 0 0 0 0 null 0 null)"},
        {run<TCarouselIdentifierDescriptor>, "13 07 12345678 010203",
         R"(read=7 "name":"carouselIdentifierDescriptor","carouselId":305419896 | 19 0 0 0 0 0 0 0 0 0 null 3 0x010203)"},
        {run<TCarouselIdentifierDescriptor>, "13 03 000001", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 5 < 6. Aborting!)"},
    });
}

TEST(DescriptorCases, StreamAndNetwork) {
    expectCases(
        {
            // No room for the AAC type; a type; no type, the rest is additional info.
            {run<TAACDescriptor>, "7C 02 10 80", R"(null code=2568
5 TAACDescriptor::parse: Longer data length is required: 0 < 1. Aborting!)"},
            {run<TAACDescriptor>, "7C 03 10 80 05",
             R"(read=3 "errors":0,"descriptor_tag":124,"descriptor_length":3,"profile_and_level":16,"AAC_type_flag":1,"AAC_type":5 | 5 0)"},
            {run<TAACDescriptor>, "7C 04 58 7F 0A B1",
             R"(read=4 "errors":0,"descriptor_tag":124,"descriptor_length":4,"profile_and_level":88,"AAC_type_flag":0,"additional_info":"0x0ab1" | 0 2)"},
            {run<TAVCVideoDescriptor>, "28 04 64 E3 28 80",
             R"(read=4 "name":"avcVideoDescriptor","profileIdc":100,"constraintSet0Flag":1,"constraintSet1Flag":1,"constraintSet2Flag":1,"avcCompatibleFlags":3,"levelIdc":40,"avcStillPresent":1,"avc24HourPictureFlag":0 | 40)"},
            {run<TAVCVideoDescriptor>, "28 04 4D 1C 1E 7F",
             R"(read=4 "name":"avcVideoDescriptor","profileIdc":77,"constraintSet0Flag":0,"constraintSet1Flag":0,"constraintSet2Flag":0,"avcCompatibleFlags":28,"levelIdc":30,"avcStillPresent":0,"avc24HourPictureFlag":1 | 40)"},
            // No timing information; timing without 90 kHz (the flags are the top
            // bits of num_units_in_tick); 90 kHz with N and K.
            {run<TAVCTimingAndHRDDescriptor>, "2A 02 80 00",
             R"(read=2 "name":"avcTimingAndHrdDescriptor","hrdManagementValidFlag":1,"fixedFrameRateFlag":0,"temporalPocFlag":0,"pictureToDisplayConversionFlag":0,"flag90kHz":0,"n":0,"k":0,"numUnitsInTick":0 | 42 0 0)"},
            {run<TAVCTimingAndHRDDescriptor>, "2A 07 01 7F E0 0003E9 00",
             R"(read=3 "name":"avcTimingAndHrdDescriptor","hrdManagementValidFlag":0,"fixedFrameRateFlag":1,"temporalPocFlag":1,"pictureToDisplayConversionFlag":1,"flag90kHz":0,"n":0,"k":0,"numUnitsInTick":-536869911 | 42 1 0)"},
            {run<TAVCTimingAndHRDDescriptor>, "2A 0F 81 80 00000001 0000012C 400005DD 00",
             R"(read=11 "name":"avcTimingAndHrdDescriptor","hrdManagementValidFlag":1,"fixedFrameRateFlag":0,"temporalPocFlag":1,"pictureToDisplayConversionFlag":0,"flag90kHz":1,"n":1,"k":300,"numUnitsInTick":1073743325 | 42 1 1)"},
            {run<TAVCTimingAndHRDDescriptor>, "2A 02 01 80", R"(null code=2568
5 TAVCTimingAndHRDDescriptor::parse: Longer data length is required: 1 < 6. Aborting!)"},
            {run<TAVCTimingAndHRDDescriptor>, "2A 0E 81 80 00000001 0000012C 400005DD",
             R"(null code=2568
5 TAVCTimingAndHRDDescriptor::parse: Longer data length is required: 12 < 13. Aborting!)"},
            // An odd trailing byte is ignored.
            {run<TCAIdentifierDescriptor>, "53 05 0001 0002 07",
             R"(read=5 "name":"caIdentifierDescriptor","caSystemId":[1,2] | 83)"},
            {run<TConditionalPlaybackDescriptor>, "F8 06 0005 E123 4142",
             R"(read=6 "name:":"conditionalPlaybackDescriptor","caSystemId":5,"caPid":291,"privateData":"AB" | 248 2 0x4142)"},
            {run<TConditionalPlaybackDescriptor>, "F8 07 0005 E123 41 00 42",
             R"(read=7 "name:":"conditionalPlaybackDescriptor","caSystemId":5,"caPid":291,"privateData":"A" | 248 3 0x410042)"},
            {run<TConditionalPlaybackDescriptor>, "F8 04 4A60 FFFF",
             R"(read=4 "name:":"conditionalPlaybackDescriptor","caSystemId":19040,"caPid":8191,"privateData":"" | 248 0 null)"},
            {run<TCopyrightDescriptor>, "0D 06 FFFFFFFE 4849",
             R"(read=6 "name:":"copyrightDescriptor","copyrightId":-2,"copyrightAdditionalInfo":"HI" | 13)"},
            {run<TCopyrightDescriptor>, "0D 04 43554549",
             R"(read=4 "name:":"copyrightDescriptor","copyrightId":1129661769,"copyrightAdditionalInfo":"" | 13)"},
            {run<TCopyrightDescriptor>, "0E 04 43554549", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x0E, instead of 0x0D. Aborting!)"},
            {run<TCarouselCompatibleCompositeDescriptor>, "F7 04 00000000",
             R"(read=6 "errors":0,"descriptor_tag":247,"descriptor_length":4,"descriptor_content":"0x00000000"
5 TCarouselCompatibleCompositeDescriptor::parse: TODO: Descriptor not implemented yet. If you really need this descriptor, please contact support.)"},
            {run<THierarchicalTransmissionDescriptor>, "C0 03 FF E0 64",
             R"(read=3 "errors":0,"descriptor_tag":192,"descriptor_length":3,"descriptor_content":"0xffe064" | 1 100)"},
            {run<THierarchicalTransmissionDescriptor>, "C0 03 FE 1F FF",
             R"(read=3 "errors":0,"descriptor_tag":192,"descriptor_length":3,"descriptor_content":"0xfe1fff" | 0 8191)"},
            // 0x3C under the 0x2C mask gives 11, not 15.
            {run<TVideoDecodeControlDescriptor>, "C8 01 BC",
             R"(read=1 "name:":"videoDecodeControlDescriptor","stillPictureFlag":1,"sequenceEndCodeFlag":0,"videoEncodeFormat":11 | 200)"},
            {run<TVideoDecodeControlDescriptor>, "C8 01 42",
             R"(read=1 "name:":"videoDecodeControlDescriptor","stillPictureFlag":0,"sequenceEndCodeFlag":1,"videoEncodeFormat":0 | 200)"},
            // Entries by service_id (a repeated one keeps the later); two bytes
            // left over refuse the descriptor.
            {run<TServiceListDescriptor>, "41 06 5C38 C0 5C20 01",
             R"(read=3 "name":"serviceListDescriptor",,"loop":[{"serviceId":23584,"serviceType":1},{"serviceId":23608,"serviceType":192}] | 65)"},
            {run<TServiceListDescriptor>, "41 06 0001 01 0001 02",
             R"(read=3 "name":"serviceListDescriptor",,"loop":[{"serviceId":1,"serviceType":2}] | 65)"},
            {run<TServiceListDescriptor>, "41 05 0001 01 0002", R"(null code=2568
5 TServiceListDescriptorItem::parse: Descriptor length not valid: 2. Aborting!
5 TServiceListDescriptor::parse: Invalid item. Aborting!)"},
            {run<TServiceListDescriptor>, "41 02 0001", R"(null code=2568
5 TServiceListDescriptorItem::parse: Descriptor length not valid: 2. Aborting!
5 TServiceListDescriptor::parse: Invalid item. Aborting!)"},
            // At least one frequency; an odd trailing byte is not half of one.
            {run<TTerrestrialDeliverySystemDescriptor>, "FA 02 8916", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 4 < 6. Aborting!)"},
            {run<TTerrestrialDeliverySystemDescriptor>, "FA 06 891F 0F90 0FA4",
             R"(read=6 "name":"terrestrialDeliverySystemDescriptor","areaCode":2193,"guardInterval":3,"transmissionMode":3,"frequency":[3984,4004] | 250)"},
            {run<TTerrestrialDeliverySystemDescriptor>, "FA 05 8910 0F90 07",
             R"(read=5 "name":"terrestrialDeliverySystemDescriptor","areaCode":2193,"guardInterval":0,"transmissionMode":0,"frequency":[3984] | 250)"},
            {run<TPartialReceptionDescriptor>, "FB 04 5C38 5C39",
             R"(read=4 "errors":0,"descriptor_tag":251,"descriptor_length":4,"name":"partialReceptionDescriptor","service_id":[23608,23609])"},
            {run<TPartialReceptionDescriptor>, "FB 00",
             R"(read=0 "errors":0,"descriptor_tag":251,"descriptor_length":0,"name":"partialReceptionDescriptor","service_id":[])"},
            {run<TSystemManagementDescriptor>, "FE 03 C501 AB",
             R"(read=3 "name":"systemManagementDescriptor","system_management_id":{,"broadcastingFlag":192,"broadcastingIdentifier":5,"additionalBroadcastingIdentification":1},"additional_identification_info":"0xab" | 254)"},
            {run<TSystemManagementDescriptor>, "FE 02 3A87", R"(read=2 "name":"systemManagementDescriptor","system_management_id":{,"broadcastingFlag":0,"broadcastingIdentifier":58,"additionalBroadcastingIdentification":135} | 254)"},
            {run<TSystemManagementDescriptor>, "FE 02 3A07",
             R"(read=2 "name":"systemManagementDescriptor","system_management_id":{,"broadcastingFlag":0,"broadcastingIdentifier":58,"additionalBroadcastingIdentification":7} | 254)"},
            // Control codes are dropped from the name.
            {run<TBouquetNameDescriptor>, "47 05 47 0E 6C 6F 62",
             R"(read=5 "name":"bouquetNameDescriptor","bouquetName":Glob | 71)"},
            // A trailing partial code is not read.
            {run<TCountryAvailabilityDescriptor>, "49 07 FF 'BRAJPN'",
             R"(read=0 "name":"countryAvailabilityDescriptor","countryAvailabilityFlag":1,"countryCode":[BRA,JPN] | 73)"},
            {run<TCountryAvailabilityDescriptor>, "49 05 7F 'URYA'",
             R"(read=0 "name":"countryAvailabilityDescriptor","countryAvailabilityFlag":0,"countryCode":[URY] | 73)"},
            {run<TCountryAvailabilityDescriptor>, "49 04 80 'BRA'",
             R"(read=0 "name":"countryAvailabilityDescriptor","countryAvailabilityFlag":1,"countryCode":[BRA] | 73)"},
            // A warning ending with no area codes, then one starting at level 0
            // for two areas: the byte count is the last item's.
            {run<TEmergencyInformationDescriptor>, "FC 06 0001 C0 02 123F",
             R"(read=6 "name":"emergencyInformationDescriptor","loop":[{"serviceId":1,"start":1,"signalLevel":1,"areaCodes":[291]}] | 252)"},
            {run<TEmergencyInformationDescriptor>, "FC 0C 5C38 3F 00 5C20 80 04 A5AF 0FF0",
             R"(read=8 "name":"emergencyInformationDescriptor","loop":[{"serviceId":23608,"start":0,"signalLevel":0,"areaCodes":[]},{"serviceId":23584,"start":1,"signalLevel":0,"areaCodes":[2650,255]}] | 252)"},
            {run<TEmergencyInformationDescriptor>, "FC 04 0001 C0 00", R"(null code=2568
5 TEmergencyInformationDescriptorItem::parse: Item length not valid: 4. Aborting!
5 TEmergencyInformationDescriptor::parse: Invalid item. Aborting!)"},
            {run<TEmergencyInformationDescriptor>, "FC 06 0001 C0 08 123F", R"(null code=2568
5 TEmergencyInformationDescriptorItem::parse: Item length not valid: 6. Aborting!
5 TEmergencyInformationDescriptor::parse: Invalid item. Aborting!)"},
            {run<TEmergencyInformationDescriptor>, "FC 07 0001 C0 03 123456", R"(null code=2568
6 TEmergencyInformationDescriptorItem::parse The area code length is not a multiple of 2 (value: 3)
5 TEmergencyInformationDescriptor::parse: Invalid item. Aborting!)"},
            // The flags are inverted on the wire.
            {run<TContentAvailabilityDescriptor>, "DE 01 3F",
             R"(read=3 "name":"contentAvailabilityDescriptor","imageConstraintToken":0,"retentionMode":0,"retentionState":7,"encryptionMode":0 | 222)"},
            {run<TContentAvailabilityDescriptor>, "DE 01 C0",
             R"(read=3 "name":"contentAvailabilityDescriptor","imageConstraintToken":1,"retentionMode":1,"retentionState":0,"encryptionMode":1 | 222)"},
            {run<TContentAvailabilityDescriptor>, "DE 01 E7",
             R"(read=3 "name":"contentAvailabilityDescriptor","imageConstraintToken":0,"retentionMode":1,"retentionState":3,"encryptionMode":0 | 222)"},
            {run<TContentAvailabilityDescriptor>, "DE 01 DB",
             R"(read=3 "name":"contentAvailabilityDescriptor","imageConstraintToken":1,"retentionMode":0,"retentionState":5,"encryptionMode":0 | 222)"},
            {run<TTimeShiftedServiceDescriptor>, "4C 02 04D2",
             R"(read=2 "errors":0,"descriptor_tag":76,"descriptor_length":2,"descriptor_content":"0x04d2" | 1234)"},
            {run<TTimeShiftedServiceDescriptor>, "4C 01 04", R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 3 < 4. Aborting!)"},
            // Libras: lenient parsers that write neither byte count nor code.
            {run<TLCMDescriptor>, "7C 0D 05 0010 F3 0040 0030 01E0 010E 02",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":13,"descriptor_content":"0x050010f30040003001e0010e02" | 5 16 3 0 64 48 480 270 2 0 0 0)"},
            {run<TLCMDescriptor>, "7C 13 05 0016 A3 0040 0030 01E0 010E 01 0641 0642 C840",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":19,"descriptor_content":"0x050016a30040003001e0010e0106410642c840" | 5 22 3 0 64 48 480 270 1 0 0 0)"},
            {run<TLCMDescriptor>, "7C 0D 05 0010 F3 0040 0030 01E0 010E", "null code=48879"},
            {run<TLCMDescriptor>, "7C 00", "null code=48879"},
            {run<TLCMDescriptor>, "7C 0D 06 0000 FB 0000 0000 0000 0000 00",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":13,"descriptor_content":"0x060000fb000000000000000000" | 6 0 11 0 0 0 0 0 0 0 0 0)"},
            {run<TLCMDescriptor>, "7C",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":0 | 0 0 0 0 0 0 0 0 0 0 0 0)"},
            // Declared count 3: the first gloss (two bytes) leaves a count of 1
            // after one entry, so the second is not read.
            {run<TLDMDescriptor>, "7C 0A 01 0000 03 02 'OI' 03 'TUD'",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":10,"descriptor_content":"0x01000003024f49035455" | 1 OI)"},
            // Empty entries add nothing but count; control bytes leave the gloss.
            {run<TLDMDescriptor>, "7C 0C 02 0000 07 00 00 03 54 0E 55 01 41",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":12,"descriptor_content":"0x02000007000003540e550141" | 2 TU A)"},
            {run<TLDMDescriptor>, "7C 01 09",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":1,"descriptor_content":"0x09" | 9)"},
            {run<TLDMDescriptor>, "7C 03 09 0000",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":3,"descriptor_content":"0x090000" | 9)"},
            {run<TLDMDescriptor>, "7C 06 01 0000 09 01 41",
             R"(code=48879 read=57005 "errors":0,"descriptor_tag":124,"descriptor_length":6,"descriptor_content":"0x010000090141" | 1 A)"},
            {run<TLDMDescriptor>, "7C 07 01 0000 01 05 4142", R"(null code=48879
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > 2. Aborting!)"},
        });
}

TEST(DescriptorCases, DownloadAndCarouselStreams) {
    expectCases({
        // Reboot, compatibility, module and text info; a compatibility length
        // of 0x0111 of which the low byte counts; two modules (IDs least
        // significant byte first), the first without module info.
        {run<TDownloadContentDescriptor>,
         "C9 43 B8 00100000 0000002A 00007530 048D17 40"
         " 0111 0001 01 0D 01 00000F 0102 0301 01 02 02 AABB"
         " 0002 3412 00001000 00 0100 00000020 02 CAFE 03 010203 'por' 05 'Hello'",
         R"(read=67 "errors":0,"descriptor_tag":201,"descriptor_length":67,"descriptor_content":"0xb8001000000000002a00007530048d174001110001010d0100000f01020301010202aabb00023412000010000001000000002002cafe03010203706f720548656c6c6f" | 1 0 1 1 1 1048576 42 30000 74565 64 compatibility 1 1 15 4 6 2 2 0xaabb modules 4660 4096 0 null 1 32 2 0xcafe 3 0x010203 por Hello
5 ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!
5 ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!
5 ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!)"},
        {run<TDownloadContentDescriptor>, "C9 12 00 00000000 00000000 00000000 000000 00 00",
         R"(read=18 "errors":0,"descriptor_tag":201,"descriptor_length":18,"descriptor_content":"0x000000000000000000000000000000000000" | 0 0 0 0 0 0 0 0 0 0 modules 0 null  )"},
        // The compatibility length 0x0105 counts as 5: three bytes more are
        // stepped over; a zero text length at the very end.
        {run<TDownloadContentDescriptor>,
         "C9 19 20 00000000 00000000 00000000 000000 00 0105 0000 EEEEEE 00",
         R"(read=25 "errors":0,"descriptor_tag":201,"descriptor_length":25,"descriptor_content":"0x200000000000000000000000000000000001050000eeeeee00" | 0 0 1 0 0 0 0 0 0 0 compatibility modules 0 null  )"},
        {run<TDownloadContentDescriptor>,
         "C9 16 08 00000000 00000000 00000000 000000 00 00 'eng' 00",
         R"(read=22 "errors":0,"descriptor_tag":201,"descriptor_length":22,"descriptor_content":"0x080000000000000000000000000000000000656e6700" | 0 0 0 0 1 0 0 0 0 0 modules 0 null eng )"},
        {run<TDownloadContentDescriptor>, "C9 11 00 00000000 00000000 00000000 000000 00",
         R"(null code=2568
5 TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 19 < 20. Aborting!)"},
        // A byte after a zero text length is read as the length; the language
        // past the end; private data, modules, module info and a
        // compatibility entry that do not fit; no room for the
        // compatibility length.
        {run<TDownloadContentDescriptor>,
         "C9 17 08 00000000 00000000 00000000 000000 00 00 'eng' 00 'X'", R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 88 > 0. Aborting!
5 TComponentDescriptor:: parse: ERROR: parsing Text. Aborting!)"},
        {run<TDownloadContentDescriptor>, "C9 14 08 00000000 00000000 00000000 000000 00 00 'en'",
         R"(null code=2569
5 ParserUtils::parseStr: ERROR: String length exceeds available data length: 3 > 2. Aborting!
5 TDownloadContentDescriptor:: parse: ERROR: parsing Language Code. Aborting!)"},
        {run<TDownloadContentDescriptor>, "C9 12 00 00000000 00000000 00000000 000000 00 05",
         R"(null code=2569
5 TDownloadContentDescriptor:: parse: ERROR: parsing Private Data. Aborting!)"},
        {run<TDownloadContentDescriptor>,
         "C9 1A 10 00000000 00000000 00000000 000000 00 0002 3412 00001000 00", R"(null code=2570
5 TDownloadContentDescriptorItem::parse: Item length not valid: 0. Aborting!
5 TDownloadContentDescriptor::parse: Invalid item. Aborting!)"},
        {run<TDownloadContentDescriptor>,
         "C9 1C 10 00000000 00000000 00000000 000000 00 0001 3412 00001000 09 0102",
         R"(null code=2570
5 TDownloadContentDescriptorItem::parse: Item length not valid: 9. Aborting!
5 TDownloadContentDescriptor::parse: Invalid item. Aborting!)"},
        {run<TDownloadContentDescriptor>,
         "C9 25 20 00000000 00000000 00000000 000000 00"
         " 0011 0001 01 0D 01 00000F 0102 0301 01 02 10 AABB 00",
         R"(null code=2570
5 TCompatibilityDescriptorSubItem::parse: Item length not valid: 4. Aborting!
5 TCompatibilityDescriptorItem::parse: Invalid sub item. Aborting!
5 TCompatibilityDescriptor::parse: Invalid item. Aborting!)"},
        {run<TDownloadContentDescriptor>, "C9 12 20 00000000 00000000 00000000 000000 00 00",
         R"(null code=2563
5 TCompatibilityDescriptor::parse: Item length not valid: 1. Aborting!)"},
        // post_discontinuity and content_id share a byte; the 33-bit
        // references keep one bit of their first byte.
        {run<TNPTReferenceDescriptor>, "01 12 FF FF 12345678 FFFFFF FE 9ABCDEF0 0003 0004",
         R"(read=57005 "errors":0,"descriptor_tag":1,"descriptor_length":18,"descriptor_content":"0xffff12345678fffffffe9abcdef000030004" | 1 127 1 305419896 0 2596069104 3 4)"},
        {run<TNPTReferenceDescriptor>, "01 12 05 00 00000001 000000 01 00000002 FFFF 0001",
         R"(read=57005 "errors":0,"descriptor_tag":1,"descriptor_length":18,"descriptor_content":"0x0500000000010000000100000002ffff0001" | 0 5 0 1 1 2 65535 1)"},
        {run<TNPTEndpointDescriptor>, "02 0E FF FF 12345678 FFFFFF FE 9ABCDEF0",
         R"(read=57005 "errors":0,"descriptor_tag":2,"descriptor_length":14,"descriptor_content":"0xffff12345678fffffffe9abcdef0" | 1 305419896 0 2596069104)"},
        {run<TNPTEndpointDescriptor>, "02 0E 00 00 00000001 000000 01 00000002",
         R"(read=57005 "errors":0,"descriptor_tag":2,"descriptor_length":14,"descriptor_content":"0x0000000000010000000100000002" | 0 1 1 2)"},
        {run<TStreamEventDescriptor>, "04 0A 002A FFFFFFFE 00000010",
         R"(read=10 "errors":0,"descriptor_tag":4,"descriptor_length":10,"descriptor_content":"0x002afffffffe00000010" | 42 0 16 0 null)"},
        {run<TStreamEventDescriptor>, "04 0C 002A 00000001 00000010 ABCD",
         R"(read=12 "errors":0,"descriptor_tag":4,"descriptor_length":12,"descriptor_content":"0x002a0000000100000010abcd" | 42 1 16 2 0xabcd)"},
        {run<TStreamEventDescriptor>, "1A 0A 002A FFFFFFFE 00000010", R"(null code=2567
5 TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x1A, instead of 0x04. Aborting!)"},
        {run<TStreamModeDescriptor>, "03 02 07 FF",
         R"(read=57005 "errors":0,"descriptor_tag":3,"descriptor_length":2,"descriptor_content":"0x07ff" | 7)"},
    });
}

namespace {
// A copy made from a parsed descriptor, then the original deleted: the copy
// must render and answer as the original did.
template <typename T>
void expectCopy(const char* bytes) {
    SCOPED_TRACE(bytes);
    ParsedDescriptor<T> p(wire(bytes));
    ASSERT_NE(p.d, nullptr);
    const std::string original = p.d->toJSON() + extras(*p.d);
    T* copy = new T(p.d);
    delete p.d;
    p.d = nullptr;
    EXPECT_EQ(copy->toJSON() + extras(*copy), original);
    delete copy;
}
}  // namespace

TEST(DescriptorCopies, OwnTheirItemsAndKeepEveryField) {
    expectCopy<TApplicationDescriptor>("00 0F 0A 0002 010300 0001 010000 FF C8 01 0A");
    expectCopy<TApplicationNameDescriptor>("01 0F 'por' 03 'App' 'eng' 04 'News'");
    expectCopy<TApplicationIconDescriptor>("0B 07 04 'ico/' 0006");
    expectCopy<TGingaNCLApplicationDescriptor>("06 08 03 'a=1' 00 02 'xy'");
    expectCopy<TGingaJavaApplicationLocationDescriptor>("04 0A 02 'ab' 02 'cp' 'Xlet'");
    expectCopy<TGingaNCLApplicationLocationDescriptor>("07 0B 01 '/' 00 'main.ncl'");
    expectCopy<TExternalApplicationAuthorizationDescriptor>(
        "05 0E 0000000A 0002 05 0000000B 0001 01");
    expectCopy<TPrefetchDescriptor>("0C 0C 01 04 'main' 64 03 'img' 01");
    expectCopy<TDIILocationDescriptor>("0D 09 02 8001 0014 7FFF 0015");
    expectCopy<TIPSignalingDescriptor>("11 03 456789");
    for (const char* bytes : {"02 0B 0001 01 80 0641 0642 C840 41", "02 05 0004 02 00 0C",
                              "02 10 0002 01 80 0001 0002 0003 80 02 'ab' 01 'c'"}) {
        SCOPED_TRACE(bytes);
        ParsedDescriptor<TTransportProtocolDescriptor> p(wire(bytes));
        ASSERT_NE(p.d, nullptr);
        const std::string original = p.d->toJSON() + extras(*p.d);
        TTransportProtocolDescriptor* copy = TTransportProtocolDescriptor::clone(p.d);
        delete p.d;
        p.d = nullptr;
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->toJSON() + extras(*copy), original);
        delete copy;
    }
    EXPECT_EQ(TTransportProtocolDescriptor::clone(nullptr), nullptr);
}

// Every field that a getter or the JSON shows starts from a known value, so
// an object whose flags leave fields unread shows those values.
TEST(DescriptorCases, ObjectsBeforeParsing) {
    expectCases({
        {made<TAACDescriptor>, "7C00",
         R"("errors":0,"descriptor_tag":124,"descriptor_length":0,"profile_and_level":0,"AAC_type_flag":0 | 0 0)"},
        {made<TLCMDescriptor>, "7C0000",
         R"("errors":0,"descriptor_tag":124,"descriptor_length":0 | 0 0 0 0 0 0 0 0 0 0 0 0)"},
        {made<TLDMDescriptor>, "7C000000",
         R"("errors":0,"descriptor_tag":124,"descriptor_length":0 | 0)"},
        {made<TAVCTimingAndHRDDescriptor>, "2A00",
         R"("name":"avcTimingAndHrdDescriptor","hrdManagementValidFlag":0,"fixedFrameRateFlag":0,"temporalPocFlag":0,"pictureToDisplayConversionFlag":0,"flag90kHz":0,"n":0,"k":0,"numUnitsInTick":0 | 42 0 0)"},
        {made<TAVCVideoDescriptor>, "2800",
         R"("name":"avcVideoDescriptor","profileIdc":0,"constraintSet0Flag":0,"constraintSet1Flag":0,"constraintSet2Flag":0,"avcCompatibleFlags":0,"levelIdc":0,"avcStillPresent":0,"avc24HourPictureFlag":0 | 40)"},
        {made<TApplicationDescriptor>, "0000",
         R"("errors":0,"descriptor_tag":0,"descriptor_length":0,"profile_loop":[],"service_bound_flag":0,"visibility":0,"application_priority":0,"transport_protocol_label":"" | 0 0 0 null)"},
        {made<TApplicationIconDescriptor>, "0B00",
         R"("errors":0,"descriptor_tag":11,"descriptor_length":0 |  0)"},
        {made<TApplicationNameDescriptor>, "0100",
         R"("errors":0,"descriptor_tag":1,"descriptor_length":0,"name_loop":[])"},
        {made<TAudioComponentDescriptor>, "C400",
         R"("errors":0,"descriptor_tag":196,"descriptor_length":0,"stream_content":0,"component_type":0,"component_tag":0,"stream_type":0,"simulcast_group_tag":0,"ES_multi_lingual_flag":0,"main_component_flag":0,"quality_indicator":0,"sampling_rate":0,"ISO_639_language_code":"","text":"")"},
        {made<TBouquetNameDescriptor>, "4700",
         R"("name":"bouquetNameDescriptor","bouquetName": | 71)"},
        {made<TCAIdentifierDescriptor>, "5300",
         R"("name":"caIdentifierDescriptor","caSystemId":[] | 83)"},
        {made<TCarouselCompatibleCompositeDescriptor>, "F700",
         R"("errors":0,"descriptor_tag":247,"descriptor_length":0)"},
        {made<TCarouselIdentifierDescriptor>, "1300",
         R"("name":"carouselIdentifierDescriptor","carouselId":0 | 19 0 0 0 0 0 0 0 0 0 null 0 null)"},
        {made<TComponentDescriptor>, "5000",
         R"("name":"componentDescriptor","streamContent":0,"componentType":0,"componentTag":0,"iso639LanguageCode":"","text":"" | 80 0)"},
        {made<TConditionalPlaybackDescriptor>, "F800",
         R"("name:":"conditionalPlaybackDescriptor","caSystemId":0,"caPid":0,"privateData":"" | 248 0 null)"},
        {made<TContentAvailabilityDescriptor>, "DE00",
         R"("name":"contentAvailabilityDescriptor","imageConstraintToken":0,"retentionMode":0,"retentionState":0,"encryptionMode":0 | 222)"},
        {made<TContentDescriptor>, "5400",
         R"("errors":0,"descriptor_tag":84,"descriptor_length":0,"content_nibble_level_1":0,"content_nibble_level_2":0,"user_nibble":0)"},
        {made<TCopyrightDescriptor>, "0D00",
         R"("name:":"copyrightDescriptor","copyrightId":0,"copyrightAdditionalInfo":"" | 13)"},
        {made<TCountryAvailabilityDescriptor>, "4900",
         R"("name":"countryAvailabilityDescriptor","countryAvailabilityFlag":0,"countryCode":[] | 73)"},
        {made<TDIILocationDescriptor>, "0D0000",
         R"("errors":0,"descriptor_tag":13,"descriptor_length":0 | 0 0)"},
        {made<TDataComponentDescriptor>, "FD00",
         R"("name":"dataComponentDescriptor","dataComponentId":0,"additionalDataComponentInfo":"" | 253 0 null)"},
        {made<TDigitalCopyControlDescriptor>, "C100",
         R"("name":"digitalCopyControlDescriptor","digitalRecordingControlData":0,"maximumBitrateFlag":0,"componentControlFlag":0,"copyControlType":0,"apsControlData":0,"maximumBitrate":0,"loop":[] | 193)"},
        {made<TDownloadContentDescriptor>, "C900",
         R"("errors":0,"descriptor_tag":201,"descriptor_length":0 | 0 0 0 0 0 0 0 0 0 0 modules 0 null  )"},
        {made<TEmergencyInformationDescriptor>, "FC00",
         R"("name":"emergencyInformationDescriptor","loop":[] | 252)"},
        {made<TExtendedEventDescriptor>, "4E00",
         R"("errors":0,"descriptor_tag":78,"descriptor_length":0,"descriptor_number":0,"last_descriptor_number":0,"ISO_639_language_code":"","items":[],"text":"")"},
        {made<TExternalApplicationAuthorizationDescriptor>, "0500",
         R"("errors":0,"descriptor_tag":5,"descriptor_length":0 | 0)"},
        {made<TGingaJavaApplicationDescriptor>, "0300",
         R"("errors":0,"descriptor_tag":3,"descriptor_length":0,"parameter_loop":[])"},
        {made<TGingaJavaApplicationLocationDescriptor>, "0400",
         R"("errors":0,"descriptor_tag":4,"descriptor_length":0,"base_directory":"","entitypath_extension":"","initial_entity":"")"},
        {made<TGingaNCLApplicationDescriptor>, "0600",
         R"("errors":0,"descriptor_tag":6,"descriptor_length":0,"parameter_loop":[])"},
        {made<TGingaNCLApplicationLocationDescriptor>, "0700",
         R"("errors":0,"descriptor_tag":7,"descriptor_length":0,"base_directory":"","entitypath_extension":"","initial_entity":"")"},
        {made<TGingaHtml5ApplicationDescriptor>, "0E00",
         R"("errors":0,"descriptor_tag":14,"descriptor_length":0,"parameter_loop":[])"},
        {made<TGingaHtml5ApplicationLocationDescriptor>, "0F00",
         R"("errors":0,"descriptor_tag":15,"descriptor_length":0,"base_directory":"","entitypath_extension":"","initial_entity":"")"},
        {made<THierarchicalTransmissionDescriptor>, "C000",
         R"("errors":0,"descriptor_tag":192,"descriptor_length":0 | 0 0)"},
        {made<TIPSignalingDescriptor>, "1100",
         R"("errors":0,"descriptor_tag":17,"descriptor_length":0 | 0)"},
        {made<TISO639LanguageDescriptor>, "0A00",
         R"("errors":0,"descriptor_tag":10,"descriptor_length":0,"language_loop":[])"},
        {made<TLocalTimeOffsetDescriptor>, "5800",
         R"("errors":0,"descriptor_tag":88,"descriptor_length":0,"loop":[])"},
        {made<TNPTEndpointDescriptor>, "0200FF",
         R"("errors":0,"descriptor_tag":2,"descriptor_length":0 | 0 0 0 0)"},
        {made<TNPTReferenceDescriptor>, "0100FF",
         R"("errors":0,"descriptor_tag":1,"descriptor_length":0 | 0 0 0 0 0 0 0 0)"},
        {made<TNetworkNameDescriptor>, "4000",
         R"("name":"networkNameDescriptor","networkName":"" | 64)"},
        {made<TParentalRatingDescriptor>, "5500",
         R"("name:":"parentalRatingDescriptor","parentalRatings:":[] | 85 0)"},
        {made<TPartialReceptionDescriptor>, "FB00",
         R"("errors":0,"descriptor_tag":251,"descriptor_length":0,"name":"partialReceptionDescriptor","service_id":[])"},
        {made<TPrefetchDescriptor>, "0C00",
         R"("errors":0,"descriptor_tag":12,"descriptor_length":0 | 0 0)"},
        {made<TServiceDescriptor>, "4800",
         R"("name":"serviceDescriptor","serviceType":0,"serviceProvider":"","serviceName":"" | 72)"},
        {made<TServiceListDescriptor>, "4100", R"("name":"serviceListDescriptor",,"loop":[] | 65)"},
        {made<TShortEventDescriptor>, "4D00",
         R"("errors":0,"descriptor_tag":77,"descriptor_length":0,"ISO_639_language_code":"","event_name":"","event_description":"")"},
        {made<TStreamEventDescriptor>, "0400FF",
         R"("errors":0,"descriptor_tag":4,"descriptor_length":0 | 0 0 0 0 null)"},
        {made<TStreamIdentifierDescriptor>, "5200",
         R"("name":"streamIdentifierDescriptor","component_tag":0 | 82)"},
        {made<TStreamModeDescriptor>, "0300FF",
         R"("errors":0,"descriptor_tag":3,"descriptor_length":0 | 0)"},
        {made<TSystemManagementDescriptor>, "FE00",
         R"("name":"systemManagementDescriptor","system_management_id":{,"broadcastingFlag":0,"broadcastingIdentifier":0,"additionalBroadcastingIdentification":0} | 254)"},
        {made<TTSInformationDescriptor>, "CD00",
         R"("name":"tsInformationDescriptor","remoteControlKeyId":0,"tsName":"","loop":[] | 205 0 0)"},
        {made<TTerrestrialDeliverySystemDescriptor>, "FA00",
         R"("name":"terrestrialDeliverySystemDescriptor","areaCode":0,"guardInterval":0,"transmissionMode":0 | 250)"},
        {made<TTimeShiftedServiceDescriptor>, "4C00",
         R"("errors":0,"descriptor_tag":76,"descriptor_length":0 | 0)"},
        {made<TVideoDecodeControlDescriptor>, "C800",
         R"("name:":"videoDecodeControlDescriptor","stillPictureFlag":0,"sequenceEndCodeFlag":0,"videoEncodeFormat":0 | 200)"},
        {made<TTransportProtocolDescriptorOC>, "0200",
         R"("errors":0,"descriptor_tag":2,"descriptor_length":0,"protocol_id":1,"transport_protocol_label":0 | 1 1 0 0 0 0 0 0)"},
        {made<TTransportProtocolDescriptorIP>, "020000",
         R"("errors":0,"descriptor_tag":2,"descriptor_length":0,"protocol_id":2,"transport_protocol_label":0 | 2 2 0 0 0 0 0 0 0)"},
        {made<TTransportProtocolDescriptorDC>, "02000000",
         R"("errors":0,"descriptor_tag":2,"descriptor_length":0,"protocol_id":4,"transport_protocol_label":0 | 4 4 0 0 0 0 0 0)"},
        {made<TTransportProtocolDescriptorIC>, "0200000000",
         R"("errors":0,"descriptor_tag":2,"descriptor_length":0,"protocol_id":4,"transport_protocol_label":0 | 4 4 0)"},
        {made<TTransportProtocolDescriptorPC>, "020000000000",
         R"("errors":0,"descriptor_tag":2,"descriptor_length":0,"protocol_id":5,"transport_protocol_label":0 | 1 5 0 0 0 0 0 0)"},
    });
}
