// The PMT, NIT, SDT and TOT: their loops, lookups and failures.
#include <gtest/gtest.h>

#include <memory>

#include "ISDBTUtils.h"
#include "SectionParse.h"
#include "TNITTable.h"
#include "TPMTTable.h"
#include "TSDTTable.h"
#include "TServiceDescriptor.h"
#include "TTOTTable.h"

using namespace Sarn;

namespace {

// One stream entry: stream_type, PID, ES_info_length and its descriptors.
Bytes stream(unsigned char type, unsigned short pid, const Bytes& descriptors) {
    return Bytes{type} + be16(0xE000 | pid) + loop12(descriptors);
}

// Program 0x5C20 of an ISDB-Tb service: PCR on 0x0111, a program info loop
// with descriptors that no class of the loop decodes (0x53 accepted, 0x09
// not), then video, audio, captions, AIT, carousel and a data stream.
Bytes serviceBody() {
    return Bytes{0xE1, 0x11, 0xF0, 0x07, 0x09, 0x02, 0x00, 0x05, 0x53, 0x01, 0xFF} +
           stream(0x1B, 0x0111, {0x52, 0x01, 0x00}) +
           stream(0x0F, 0x0112, {0x0A, 0x04, 'p', 'o', 'r', 0x00, 0x52, 0x01, 0x10}) +
           stream(0x06, 0x0113, {0x52, 0x01, 0x30, 0xFD, 0x03, 0x00, 0x08, 0x3D}) +
           stream(0x05, 0x01F4, {0xFD, 0x02, 0x00, 0xA3}) +
           stream(0x0B, 0x0384,
                  {0x13, 0x04, 0x00, 0x00, 0x00, 0x01, 0x52, 0x01, 0x40, 0xFD, 0x02, 0x01, 0x00}) +
           stream(0x06, 0x0115, {});
}

Bytes pmt(const Bytes& body) {
    return longSection(0x02, 0x0001, 3, body);
}

Bytes tsEntry(unsigned short tsid, unsigned short onid, const Bytes& descriptors) {
    return be16(tsid) + be16(onid) + loop12(descriptors);
}

Bytes nit(const Bytes& body) {
    return longSection(0x40, 0x0001, 0, body);
}

// service_id, EIT flags, running_status and free_CA_mode, descriptors.
Bytes service(unsigned short id, unsigned char eitFlags, unsigned char statusAndCa,
              const Bytes& descriptors) {
    const size_t n = descriptors.size();
    return be16(id) +
           Bytes{static_cast<unsigned char>(0xFC | eitFlags),
                 static_cast<unsigned char>((statusAndCa << 4) | (n >> 8)),
                 static_cast<unsigned char>(n)} +
           descriptors;
}

Bytes serviceDescriptor(unsigned char type, const std::string& provider, const std::string& name) {
    return Bytes{0x48, static_cast<unsigned char>(3 + provider.size() + name.size()), type,
                 static_cast<unsigned char>(provider.size())} +
           Bytes(provider.begin(), provider.end()) +
           Bytes{static_cast<unsigned char>(name.size())} + Bytes(name.begin(), name.end());
}

// TS 1 of original network 2 around the services.
Bytes sdt(const Bytes& services) {
    return longSection(0x42, 0x0001, 0, Bytes{0x00, 0x02, 0xFF} + services);
}

// MJD and BCD time, then a descriptor loop.
Bytes tot(unsigned short mjd, unsigned char h, unsigned char m, unsigned char s,
          const Bytes& descriptors) {
    return shortSection(0x73, be16(mjd) + Bytes{h, m, s} + loop12(descriptors));
}

// Brazil, three hours behind UTC, moving to two hours on 2016-10-16 00:00.
const Bytes kBrazilOffset = {0x58, 0x0D, 'B',  'R',  'A',  0x03, 0x03, 0x00,
                             0xE1, 0x4D, 0x00, 0x00, 0x00, 0x02, 0x00};

}  // namespace

TEST(PMT, StreamsDescriptorsAndLookups) {
    Bytes b = longSection(0x02, 0x5C20, 1, serviceBody());
    EXPECT_EQ(sectionOutcome(b),
              "{\"programNumber\":23584,\"pcrPid\":273,\"programInfoDescriptors\":[],"
              "\"elementaryStreams\":["
              "{\"streamType\":27,\"elementaryPid\":273,\"esInfoDescriptors\":["
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":0}]},"
              "{\"streamType\":15,\"elementaryPid\":274,\"esInfoDescriptors\":["
              "{\"errors\":0,\"descriptor_tag\":10,\"descriptor_length\":4,\"language_loop\":["
              "{\"language_code\":\"por\",\"audio_type\":0}]},"
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":16}]},"
              "{\"streamType\":6,\"elementaryPid\":275,\"esInfoDescriptors\":["
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":48},"
              "{\"name\":\"dataComponentDescriptor\",\"dataComponentId\":8,"
              "\"additionalDataComponentInfo\":\"=\"}]},"
              "{\"streamType\":5,\"elementaryPid\":500,\"esInfoDescriptors\":["
              "{\"name\":\"dataComponentDescriptor\",\"dataComponentId\":163,"
              "\"additionalDataComponentInfo\":\"\"}]},"
              "{\"streamType\":11,\"elementaryPid\":900,\"esInfoDescriptors\":["
              "{\"name\":\"carouselIdentifierDescriptor\",\"carouselId\":1},"
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":64},"
              "{\"name\":\"dataComponentDescriptor\",\"dataComponentId\":256,"
              "\"additionalDataComponentInfo\":\"\"}]},"
              "{\"streamType\":6,\"elementaryPid\":277,\"esInfoDescriptors\":[]}]}");

    unsigned short code = 0;
    TPMTTable* t = TPMTTable::parse(b.data(), length(b), 0, 1, &code, nullptr);
    ASSERT_NE(t, nullptr);
    // The descriptors point into the caller's bytes, not into a copy.
    EXPECT_EQ(t->getProgramMap(1)->getDescriptor(0x0A)->getData(), b.data() + 32);
    EXPECT_EQ(t->getProgramMap(6), nullptr);
    auto pids = [](const std::list<TProgramMap*>& maps) {
        std::vector<unsigned short> v;
        for (TProgramMap* m : maps)
            v.push_back(m->getElementaryPID());
        return v;
    };
    using Pids = std::vector<unsigned short>;
    EXPECT_EQ(pids(t->getProgramMapByStreamType(0x06)), (Pids{0x0113, 0x0115}));
    EXPECT_EQ(pids(t->getProgramMapsByStreamType(0x06)), (Pids{0x0113, 0x0115}));
    EXPECT_EQ(pids(t->getProgramMapByComponentTag(0x30)), (Pids{0x0113}));
    EXPECT_EQ(pids(t->getProgramMapByComponentTag(0x00)), (Pids{0x0111}));
    EXPECT_TRUE(t->getProgramMapByComponentTag(0x31).empty());
    EXPECT_EQ(pids(t->getProgramMap(0x05, 0xA3)), (Pids{0x01F4}));
    EXPECT_TRUE(t->getProgramMap(0x06, 0xA3).empty());
    // Data component id 0x0100 cannot be asked for with an 8-bit argument.
    EXPECT_TRUE(t->getProgramMap(0x0B, 0x00).empty());
    std::vector<std::vector<int>> rows;
    for (const ProgramData& d : t->getAllPrograms())
        rows.push_back({d.elementaryPid, d.streamType, d.componentTag});
    // The AIT and the last stream carry no component tag.
    EXPECT_EQ(rows, (std::vector<std::vector<int>>{{0x0111, 0x1B, 0x00},
                                                   {0x0112, 0x0F, 0x10},
                                                   {0x0113, 0x06, 0x30},
                                                   {0x0384, 0x0B, 0x40}}));

    EXPECT_FALSE(t->removeProgramMap(6));
    EXPECT_TRUE(t->removeProgramMap(0));
    EXPECT_EQ(t->size(), 5);
    EXPECT_EQ(t->getProgramMap(0)->getElementaryPID(), 0x0112);
    unsigned int read = 0;
    Bytes entry = stream(0x02, 0x0200, {0x52, 0x01, 0x77});
    TProgramMap* extra = TProgramMap::parse(entry.data(), 8, 1, &read, &code);
    ASSERT_NE(extra, nullptr);
    EXPECT_EQ(read, 8u);
    t->addProgramMap(extra);
    EXPECT_EQ(pids(t->getProgramMapByComponentTag(0x77)), (Pids{0x0200}));
    delete t;
}

TEST(PMT, LoopsThatDoNotFit) {
    const std::string invalid = kWarn + "TPMTTable::parse: Invalid item. Aborting!";
    // program_info_length one byte past the CRC offset.
    Bytes info = pmt({0xE1, 0x00, 0xF0, 0x03, 0x52, 0x01, 0x00});
    info = withCrc(Bytes(info.begin(), info.end() - 4));
    EXPECT_EQ(sectionOutcome(withCrc(with(Bytes(info.begin(), info.end() - 4), 11, 0x04))),
              "null code=2568" + kWarn +
                  "TPMTTable::parse: Longer data length is required: (12 + 4) >(7). Aborting!");
    // An empty program with the null PID as PCR.
    EXPECT_EQ(sectionOutcome(pmt({0xFF, 0xFF, 0xF0, 0x00})),
              "{\"programNumber\":1,\"pcrPid\":8191,\"programInfoDescriptors\":[],"
              "\"elementaryStreams\":[]}");
    // A program info descriptor overrunning its loop and an ES descriptor
    // overrunning its ES info only warn; what came before is kept.
    EXPECT_EQ(sectionOutcome(pmt(Bytes{0xE1, 0x00, 0xF0, 0x05, 0x13, 0x04, 0x00, 0x00, 0x00} +
                                 stream(0x06, 0x0120, {0x52, 0x01, 0x05, 0x52, 0x02, 0x06}))),
              "{\"programNumber\":1,\"pcrPid\":256,\"programInfoDescriptors\":[],"
              "\"elementaryStreams\":[{\"streamType\":6,\"elementaryPid\":288,"
              "\"esInfoDescriptors\":[{\"name\":\"streamIdentifierDescriptor\","
              "\"component_tag\":5}]}]}" +
                  kWarn +
                  "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 6 > 5. "
                  "Aborting!" +
                  kWarn + "TPMTTable::parse: readBytes != l_iProgramInfoLength! (0 != 5)" + kWarn +
                  "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 3 + 4 > 6. "
                  "Aborting!" +
                  kWarn +
                  "TProgramMap:parse: read bytes different than network descriptors length (3 != "
                  "6)");
    // ES_info_length running into the CRC.
    EXPECT_EQ(sectionOutcome(
                  pmt({0xE1, 0x00, 0xF0, 0x00, 0x06, 0xE1, 0x20, 0xF0, 0x04, 0x52, 0x01, 0x05})),
              "null code=2570" + kWarn +
                  "TProgramMap::parse: ESInfoLength not valid: 5 + 4 > 8. Aborting!" + invalid);
    // Four bytes before the CRC: less than one stream entry.
    EXPECT_EQ(sectionOutcome(pmt(Bytes{0xE1, 0x00, 0xF0, 0x00} + stream(0x1B, 0x0111, {}) +
                                 Bytes{0x0F, 0xE1, 0x12, 0xF0})),
              "null code=2570" + kWarn + "TProgramMap::parse: Item length not valid: 4. Aborting!" +
                  invalid);
    // A section_length below 4 wraps the body count: the walk stays inside
    // the 16 bytes handed in (the CRC bytes make a short entry).
    EXPECT_EQ(sectionOutcome(Bytes{0x02, 0xB0, 0x00, 0x00, 0x01, 0xC1, 0x00, 0x00, 0xE1, 0x00, 0xF0,
                                   0x00, 0x1B, 0xE1, 0x00, 0xF0},
                             nullptr, 0, 0),
              "null code=2570" + kWarn + "TProgramMap::parse: Item length not valid: 4. Aborting!" +
                  invalid);
}

TEST(NIT, NetworkTransportStreamsAndLoopsThatDoNotFit) {
    // Network 0x0641 "SARN TV" with a system management descriptor (accepted,
    // not decoded); transport stream 0x0641 with a service list and a
    // terrestrial delivery descriptor (accepted, not decoded) and TS
    // information; transport stream 0x0500 without descriptors.
    const Bytes tsInfo = {0xCD, 0x0A, 0x05, 0x12, 'S', 'A', 'R', 'N', 0x0F, 0x01, 0xC8, 0x58};
    Bytes b = longSection(
        0x40, 0x0641, 3,
        loop12({0x40, 0x07, 'S', 'A', 'R', 'N', ' ', 'T', 'V', 0xFE, 0x02, 0x03, 0x01}) +
            loop12(tsEntry(0x0641, 0x0641,
                           Bytes{0x41, 0x03, 0xC8, 0x58, 0xC0, 0xFA, 0x04, 0xC0, 0x02, 0x15, 0x32} +
                               tsInfo) +
                   tsEntry(0x0500, 0x0641, {})));
    EXPECT_EQ(sectionOutcome(b),
              "{\"networkId\":1601,\"networkDescriptors\":["
              "{\"name\":\"networkNameDescriptor\",\"networkName\":\"SARN TV\"}],"
              "\"transportStreams\":["
              "{\"transportStreamId\":1280,\"originalNetworkId\":1601,\"transportDescriptors\":[]},"
              "{\"transportStreamId\":1601,\"originalNetworkId\":1601,\"transportDescriptors\":["
              "{\"name\":\"tsInformationDescriptor\",\"remoteControlKeyId\":5,\"tsName\":\"SARN\","
              "\"loop\":[{\"transmissionLayer\":0,\"modulationSystem\":0,\"serviceId\":[51288]}]}"
              "]}]}");
    unsigned short code = 0;
    std::unique_ptr<TNITTable> t(TNITTable::parse(b.data(), length(b), 1, 0, &code, nullptr));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getTransportStreamIDs(), (std::list<unsigned short>{0x0500, 0x0641}));
    // Descriptors point into the caller's bytes.
    EXPECT_EQ(t->getTransportStreamInfo(0x0641)->getDescriptor(0xCD)->getData(), b.data() + 42);
    EXPECT_EQ(t->getTransportStreamInfo(0x0001), nullptr);

    const Bytes none = loop12({});
    const std::string invalid = kWarn + "TNITTable::parse: Invalid item. Aborting!";
    const std::string empty = "{\"networkId\":1,\"networkDescriptors\":[],\"transportStreams\":[]}";
    const std::vector<std::pair<Bytes, std::string>> cases = {
        {none + none, empty},
        // network_descriptors_length reaching two bytes before the CRC (they
        // are then read as transport_stream_loop_length); one byte more.
        {{0xF0, 0x02, 0x53, 0x00, 0xF0, 0x00}, empty},
        {{0xF0, 0x03, 0x53, 0x00, 0xF0, 0x00},
         "null code=2563" + kWarn + "TNITTable::parse: NetDescLen not valid: 13 > 12. Aborting!"},
        {none + Bytes{0xF0, 0x07} + tsEntry(0x0001, 0x0001, {}),
         "null code=2563" + kWarn + "TNITTable::parse: Item length not valid: 7 > 10. Aborting!"},
        // A network descriptor overrunning its loop only warns.
        {loop12({0x40, 0x05, 'A'}) + none,
         empty + kWarn +
             "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 7 > 3. Aborting!" +
             kWarn +
             "TNITTable::parse: read bytes different than network descriptors length (0 != 3)"},
        // Five bytes left for an entry: the entry fails, then the table.
        {none + loop12({0x00, 0x01, 0x00, 0x01, 0xF0}),
         "null code=2570" + kWarn +
             "TNITTransportStreamInfo::parse: Item length not valid: 5. Aborting!" + invalid},
        {none + loop12({0x00, 0x01, 0x00, 0x01, 0xF0, 0x0B, 0xCD, 0x02, 0x00, 0x00}),
         "null code=2570" + kWarn +
             "TNITTransportStreamInfo::parse: Item length not valid: 11 > 10. Aborting!" + invalid},
        // transport_descriptors_length longer than the entry's bytes but not
        // than the whole rest: clamped to the loop, and the entry takes every
        // byte left.
        {none + loop12({0x00, 0x01, 0x00, 0x01, 0xF0, 0x08, 0xCD, 0x02, 0x07, 0x00}),
         "{\"networkId\":1,\"networkDescriptors\":[],\"transportStreams\":[{\"transportStreamId\":"
         "1,\"originalNetworkId\":1,\"transportDescriptors\":[{\"name\":"
         "\"tsInformationDescriptor\",\"remoteControlKeyId\":7,\"tsName\":\"\",\"loop\":[]}]}]}" +
             kWarn +
             "TNITTransportStreamInfo::parse: TS descriptor length bigger than data length! (8 > "
             "4)"},
        // A repeated transport_stream_id: the later entry stays.
        {none + loop12(tsEntry(0x0002, 0x0010, {}) + tsEntry(0x0002, 0x0020, {})),
         "{\"networkId\":1,\"networkDescriptors\":[],\"transportStreams\":[{\"transportStreamId\":"
         "2,\"originalNetworkId\":32,\"transportDescriptors\":[]}]}"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sectionOutcome(nit(c.first)), c.second);
}

TEST(SDT, ServicesFlagsAndBrokenEntries) {
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
    EXPECT_EQ(sectionOutcome(b),
              "{\"transportStreamId\":1601,\"originalNetworkId\":1601,\"services\":["
              "{\"serviceId\":51264,\"eitScheduleFlag\":1,\"eitPresentFollowingFlag\":1,"
              "\"runningStatus\":4,\"freeCaMode\":1,\"serviceDescriptors\":["
              "{\"name\":\"serviceDescriptor\",\"serviceType\":1,\"serviceProvider\":\"SARN\","
              "\"serviceName\":\"SARN HD\"}]},"
              "{\"serviceId\":51288,\"eitScheduleFlag\":0,\"eitPresentFollowingFlag\":1,"
              "\"runningStatus\":4,\"freeCaMode\":0,\"serviceDescriptors\":["
              "{\"name\":\"serviceDescriptor\",\"serviceType\":192,\"serviceProvider\":\"SARN\","
              "\"serviceName\":\"SARN 1SEG\"}]}]}");
    unsigned short code = 0;
    std::unique_ptr<TSDTTable> t(TSDTTable::parse(b.data(), length(b), 0, 1, &code, nullptr));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getServiceIDs(), (std::list<unsigned short>{0xC840, 0xC858}));
    const TServiceDescription* oneSeg = t->getServiceDescription(0xC858);
    // Descriptors point into the caller's bytes.
    EXPECT_EQ(oneSeg->getDescriptor(0x48)->getData(), b.data() + 16);
    EXPECT_EQ(t->getServiceDescription(0x0001), nullptr);

    const std::string invalid = kWarn + "TSDTTable::parse: Invalid item. Aborting!";
    const std::vector<std::pair<Bytes, std::string>> cases = {
        {sdt({}), "{\"transportStreamId\":1,\"originalNetworkId\":2,\"services\":[]}"},
        // A repeated service_id: the later entry stays, descriptors and all.
        {sdt(service(0x0101, 0x00, 0x02, serviceDescriptor(0x01, "A", "B")) +
             service(0x0101, 0x02, 0x04, serviceDescriptor(0xC0, "C", "D"))),
         "{\"transportStreamId\":1,\"originalNetworkId\":2,\"services\":[{\"serviceId\":257,"
         "\"eitScheduleFlag\":1,\"eitPresentFollowingFlag\":0,\"runningStatus\":2,"
         "\"freeCaMode\":0,\"serviceDescriptors\":[{\"name\":\"serviceDescriptor\","
         "\"serviceType\":192,\"serviceProvider\":\"C\",\"serviceName\":\"D\"}]}]}"},
        // A service descriptor overrunning its loop only warns.
        {sdt(service(0x0101, 0x00, 0x08, {0x48, 0x09, 0x01, 0x00})),
         "{\"transportStreamId\":1,\"originalNetworkId\":2,\"services\":[{\"serviceId\":257,"
         "\"eitScheduleFlag\":0,\"eitPresentFollowingFlag\":0,\"runningStatus\":4,"
         "\"freeCaMode\":0,\"serviceDescriptors\":[]}]}" +
             kWarn +
             "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 11 > 4. Aborting!" +
             kWarn + "TServiceDescription::parse: readbytes != desc loop length (0 != 4)"},
        // descriptors_loop_length past the section; then a four-byte tail.
        {sdt({0x01, 0x01, 0xFC, 0x80, 0x03, 0x48}),
         "null code=2570" + kWarn +
             "TServiceDescription::parse: Item length not valid: 3 > 1. Aborting!" + invalid},
        {sdt(service(0x0101, 0x00, 0x08, {}) + Bytes{0x01, 0x02, 0xFC, 0x80}),
         "null code=2570" + kWarn +
             "TServiceDescription::parse: Item length not valid: 4. Aborting!" + invalid},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sectionOutcome(c.first), c.second);
    // A section_length of 9 leaves no room for original_network_id: the
    // wrapped loop count stays inside the 16 bytes handed in.
    EXPECT_EQ(sectionOutcome(Bytes{0x42, 0xB0, 0x09, 0x00, 0x01, 0xC1, 0x00, 0x00, 0x00, 0x02, 0xFF,
                                   0x01, 0x01, 0xFC, 0x80, 0x01},
                             nullptr, 0, 0),
              "null code=2570" + kWarn +
                  "TServiceDescription::parse: Item length not valid: 1 > 0. Aborting!" + invalid);

    // Names are kept in the table's block, control codes dropped and NUL
    // kept; a copy of the descriptor holds its own and outlives the table.
    const std::string name(
        "Canal \x0e"
        "de Teste\0 HD \x89"
        "Brasil",
        26);
    Bytes named = sdt(service(0x0101, 0x00, 0x1F, serviceDescriptor(0x01, "", name)));
    std::unique_ptr<TSDTTable> n(
        TSDTTable::parse(named.data(), length(named), 0, 1, &code, nullptr));
    ASSERT_NE(n, nullptr);
    std::unique_ptr<TServiceDescriptor> copy(new TServiceDescriptor(
        *static_cast<TServiceDescriptor*>(n->getServiceDescription(0x0101)->getDescriptor(0x48))));
    n.reset();
    EXPECT_EQ(copy->getServiceName(), std::string("Canal de Teste\0 HD Brasil", 24));
    EXPECT_EQ(copy->getServiceProviderName(), "");
    EXPECT_EQ(TServiceDescriptor(*copy).toJSON(),
              "\"name\":\"serviceDescriptor\",\"serviceType\":1,\"serviceProvider\":\"\","
              "\"serviceName\":\"" +
                  copy->getServiceName() + '"');
}

TEST(TOT, TimeOffsetsAndTheDescriptorSwitch) {
    // 2016-05-04 13:07:09; a stream identifier (not carried by a TOT) is skipped.
    Bytes b = tot(0xE0A8, 0x13, 0x07, 0x09, kBrazilOffset + Bytes{0x52, 0x01, 0x00});
    const std::string offsets =
        "\"descriptors\":[{\"errors\":0,\"descriptor_tag\":88,\"descriptor_length\":13,"
        "\"loop\":[{\"country_code\":\"BRA\",\"country_region_id\":0,"
        "\"local_time_offset_polarity\":1,\"local_time_offset\":\"03:00\","
        "\"time_of_change\":\"2016-10-16 00:00:00\",\"next_time_offset\":\"02:00\"}]}]}";
    EXPECT_EQ(sectionOutcome(b),
              "{\"table_id\":115,\"section_length\":29,\"UTC-3_time\":"
              "\"2016-05-04 13:07:09\"," +
                  offsets);
    // The time is a signed 32-bit count: the last MJD wraps to 1902 on every
    // platform.
    EXPECT_EQ(sectionOutcome(tot(0xFFFF, 0x23, 0x59, 0x59, {})),
              "{\"table_id\":115,\"section_length\":11,\"UTC-3_time\":\"1902-03-17 17:31:43\","
              "\"descriptors\":[]}");
    // A loop length running past the input: read up to the end of the
    // input, CRC bytes included, after a warning; the offsets before are kept.
    Bytes over = tot(0xE0A8, 0x13, 0x07, 0x09, kBrazilOffset);
    over = withCrc(with(with(Bytes(over.begin(), over.end() - 4), 8, 0xF0), 9, 0x20));
    EXPECT_EQ(sectionOutcome(over),
              "{\"table_id\":115,\"section_length\":26,\"UTC-3_time\":\"2016-05-04 13:07:09\"," +
                  offsets + kWarn +
                  "TTOTTable::parse: descriptor length bigger than data length! (32 > 19)" + kWarn +
                  "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 15 + 254 > 19. "
                  "Aborting!");

    LogCapture log;
    unsigned short code = 0xFFFF;
    TTOTTable* t = TTOTTable::parse(b.data(), length(b), 1, 1, &code, nullptr);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getUnixTime(), 1462367229);
    // The descriptors point into the table's own copy: the caller's bytes
    // may go away.
    EXPECT_EQ(t->getDescriptor(0x58)->getData(), t->getData() + 10);
    std::fill(b.begin(), b.end(), 0);
    EXPECT_NE(t->toJSON().find(offsets), std::string::npos);
    // The table itself as "previous" is ignored: a TOT is never unchanged.
    Bytes again = tot(0xE0A8, 0x13, 0x07, 0x09, kBrazilOffset);
    TTOTTable* t2 = TTOTTable::parse(again.data(), length(again), 1, 1, &code, t);
    ASSERT_NE(t2, nullptr);
    delete t2;
    delete t;
    // Before MJD 40588 the date is day 0; with the loop switched off the
    // descriptors are not read, and the code is still 0. The CRC switch is
    // the first integer.
    Bytes early = tot(0x0001, 0x23, 0x59, 0x58, kBrazilOffset);
    early.back() ^= 0x01;
    t = TTOTTable::parse(early.data(), length(early), 0, 0, &code, nullptr);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->toJSON(),
              "{\"table_id\":115,\"section_length\":26,\"UTC-3_time\":\"1970-01-01 23:59:58\","
              "\"descriptors\":[]}");
    delete t;
    EXPECT_EQ(TTOTTable::parse(early.data(), length(early), 1, 0, &code, nullptr), nullptr);
    EXPECT_EQ(code, ERROR_CRC32);
    Bytes wrongId = with(early, 0, 0x70);
    EXPECT_EQ(TTOTTable::parse(wrongId.data(), length(wrongId), 0, 1, &code, nullptr), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_TABLE_ID);
    EXPECT_EQ(log.lines().size(), 2u);
}
