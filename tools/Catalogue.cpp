#include "Catalogue.h"

#include <algorithm>
#include <memory>

namespace sarntool {

namespace {

using namespace Sarn;

template <class D>
const D* descriptor(const DescriptorLoop& loop, unsigned char tag) {
    return dynamic_cast<const D*>(loop.getDescriptor(tag));
}

/** Takes over what a later copy of the same event adds: its fields where it has them. */
void merge(EventEntry& into, const EventEntry& from) {
    into.start = from.start;
    into.duration = from.duration;
    into.runningStatus = from.runningStatus;
    into.presentFollowing |= from.presentFollowing;
    into.schedule |= from.schedule;
    into.oneSegment |= from.oneSegment;
    into.bare += from.bare;
    if (!from.title.empty() || !from.description.empty()) {
        into.language = from.language;
        into.title = from.title;
        into.description = from.description;
    }
    if (!from.items.empty() || !from.extendedText.empty()) {
        into.items = from.items;
        into.extendedText = from.extendedText;
    }
    if (from.genre)
        into.genre = from.genre;
    if (from.rating)
        into.rating = from.rating;
    if (from.video)
        into.video = from.video;
    if (from.audio)
        into.audio = from.audio;
}

/** A 12-bit length at p (low nibble of p[0], then p[1]). */
unsigned int length12(const unsigned char* p) {
    return ((p[0] & 0x0Fu) << 8) | p[1];
}

}  // namespace

void Catalogue::onTable(unsigned int pid, const TISDBTTable& table, const unsigned char* section,
                        unsigned int length) {
    switch (table.getType()) {
        case TISDBTTable::TYPE_PAT:
            onPat(table);
            break;
        case TISDBTTable::TYPE_PMT:
            onPmt(pid, table);
            break;
        case TISDBTTable::TYPE_NIT:
            onNit(table, section, length);
            break;
        case TISDBTTable::TYPE_SDT:
            onSdt(table);
            break;
        case TISDBTTable::TYPE_EIT_12:
        case TISDBTTable::TYPE_EIT_27:
            onEit(pid, table);
            break;
        case TISDBTTable::TYPE_TOT:
            onTot(table);
            break;
        case TISDBTTable::TYPE_AIT:
            onAit(pid, table);
            break;
        default:
            break;
    }
}

void Catalogue::onPat(const TISDBTTable& table) {
    const auto& pat = static_cast<const TPATTable&>(table);
    patTsId = pat.getTransportStreamID();
    for (unsigned short number : pat.getProgramNumbers()) {
        ProgramEntry& p = byProgram[number];
        const unsigned int pid = pat.get(number)->getProgramMapPid();
        if (p.pmtPid != pid)
            p = ProgramEntry();
        p.pmtPid = pid;
    }
}

void Catalogue::onPmt(unsigned int pid, const TISDBTTable& table) {
    const auto& pmt = static_cast<const TPMTTable&>(table);
    ProgramEntry& p = byProgram[pmt.getProgramNumber()];
    p.havePmt = true;
    p.pmtPid = pid;
    p.pcrPid = pmt.getPCRPID();
    p.streams.clear();
    for (int i = 0; i < pmt.size(); ++i) {
        const TProgramMap* map = pmt.getProgramMap(static_cast<unsigned char>(i));
        StreamEntry s;
        s.pid = map->getElementaryPID();
        s.type = map->getStreamType();
        if (const auto* id = descriptor<TStreamIdentifierDescriptor>(*map, 0x52))
            s.componentTag = id->getComponentTag();
        const auto* language = descriptor<TISO639LanguageDescriptor>(*map, 0x0A);
        if (language != nullptr && language->getLoopSize() > 0 &&
            language->getLoopItems() != nullptr)
            s.language = language->getLoopItems()[0].languageCode;
        p.streams.push_back(s);
    }
}

void Catalogue::onNit(const TISDBTTable& table, const unsigned char* section, unsigned int length) {
    const auto& nit = static_cast<const TNITTable&>(table);
    net.seen = true;
    net.networkId = nit.getNetworkID();
    net.name.clear();
    if (const auto* name = descriptor<TNetworkNameDescriptor>(nit, 0x40))
        net.name = name->getNetworkName();
    net.transportStreams.clear();

    // The NIT's loops keep the descriptors of the classes they build; the
    // delivery system, partial reception and service list descriptors are
    // read here with the library's stand-alone classes, from the entry bytes
    // that the library's own entry parse steps over.
    if (length < 16)
        return;
    const unsigned int end = length - 4;  // the CRC
    unsigned int pos = 10 + length12(section + 8);
    if (pos + 2 > end)
        return;
    const unsigned int loopEnd = std::min(end, pos + 2 + length12(section + pos));
    pos += 2;
    while (pos + 6 <= loopEnd) {
        unsigned char* entry = const_cast<unsigned char*>(section + pos);
        unsigned int size = 0;
        unsigned short error = 0;
        std::unique_ptr<TTransportStreamInfo> info(
            TTransportStreamInfo::parse(entry, loopEnd - pos, 0, &size, &error));
        if (info == nullptr || size < 6 || size > loopEnd - pos)
            break;
        TransportStreamEntry ts;
        ts.transportStreamId = info->getTransportStreamID();
        ts.originalNetworkId = info->getOriginalNetworkID();
        const TTransportStreamInfo* kept = nit.getTransportStreamInfo(info->getTransportStreamID());
        if (kept == nullptr)
            kept = info.get();
        if (const auto* tsInfo = descriptor<TTSInformationDescriptor>(*kept, 0xCD)) {
            ts.haveTsInformation = true;
            ts.remoteControlKeyId = tsInfo->getRemoteControlKeyID();
            ts.tsName = tsInfo->getTransportStreamName();
            for (int t = 0; t < tsInfo->getTransmissionTypeCount(); ++t) {
                const TTSInformationDescriptorItem* item =
                    tsInfo->getTransmissionType(static_cast<unsigned char>(t));
                std::vector<unsigned int> ids;
                for (unsigned int k = 0; k < item->getNumberOfServices(); ++k)
                    ids.push_back(item->getServices()[k]);
                ts.transmissionTypes.emplace_back(item->getTransmissionTypeInfo(), ids);
            }
        }
        // The transport descriptors: after ids (4 bytes) and their 12-bit length.
        for (unsigned int d = pos + 6; d + 2 <= pos + size;) {
            const unsigned int n = 2u + section[d + 1];
            if (d + n > pos + size)
                break;
            unsigned char* bytes = const_cast<unsigned char*>(section + d);
            unsigned int read = 0;
            unsigned short err = 0;
            switch (bytes[0]) {
                case 0xFA: {
                    std::unique_ptr<TTerrestrialDeliverySystemDescriptor> t(
                        TTerrestrialDeliverySystemDescriptor::parse(bytes, n, &read, &err));
                    if (t != nullptr) {
                        ts.haveDelivery = true;
                        ts.areaCode = t->getAreaCode();
                        ts.guardInterval = t->getGuardInterval();
                        ts.transmissionMode = t->getTransmissionMode();
                        for (unsigned int f = 0; f < t->getFrequencyCounter(); ++f)
                            ts.frequencies.push_back(t->getFrequencies()[f]);
                    }
                    break;
                }
                case 0xFB: {
                    std::unique_ptr<TPartialReceptionDescriptor> p(
                        TPartialReceptionDescriptor::parse(bytes, n, &read, &err));
                    if (p != nullptr) {
                        ts.havePartialReception = true;
                        for (unsigned int k = 0; k < p->getServiceIDCount(); ++k)
                            ts.partialReception.push_back(p->getServiceIDs()[k]);
                    }
                    break;
                }
                case 0x41: {
                    std::unique_ptr<TServiceListDescriptor> l(
                        TServiceListDescriptor::parse(bytes, n, &read, &err));
                    if (l != nullptr) {
                        for (unsigned short id : l->getServiceIDs())
                            ts.serviceList.emplace_back(id, l->get(id)->getServiceType());
                    }
                    break;
                }
                default:
                    break;
            }
            d += n;
        }
        net.transportStreams.push_back(ts);
        pos += size;
    }
}

void Catalogue::onSdt(const TISDBTTable& table) {
    const auto& sdt = static_cast<const TSDTTable&>(table);
    sdtTsId = sdt.getTransportStreamID();
    sdtOnId = sdt.getOriginalNetworkID();
    for (unsigned short id : sdt.getServiceIDs()) {
        const TServiceDescription* d = sdt.getServiceDescription(id);
        ServiceEntry& s = byService[id];
        s = ServiceEntry();
        s.inSdt = true;
        s.runningStatus = d->getRunningStatus();
        s.freeCaMode = d->getFreeCAMode();
        s.eitSchedule = d->hasEITSchedule();
        s.eitPresentFollowing = d->hasEITPresentFollowing();
        if (const auto* service = descriptor<TServiceDescriptor>(*d, 0x48)) {
            s.name = service->getServiceName();
            s.provider = service->getServiceProviderName();
            s.type = service->getServiceType();
        }
    }
}

void Catalogue::onEit(unsigned int pid, const TISDBTTable& table) {
    const auto& eit = static_cast<const TEITTable&>(table);
    const unsigned int tableId = table.getTableId();
    for (unsigned short id : eit.getEventsIDs()) {
        const TEventItem* item = eit.getEvent(id);
        EventEntry e;
        e.originalNetworkId = eit.getOriginalNetworkId();
        e.transportStreamId = eit.getTransportStreamId();
        e.serviceId = eit.getServiceId();
        e.eventId = id;
        e.start = item->getStartTime();
        e.duration = item->getDuration();
        e.runningStatus = item->getRunningStatus();
        e.presentFollowing = tableId == 0x4E || tableId == 0x4F;
        e.schedule = !e.presentFollowing;
        e.oneSegment = pid != 0x0012;
        if (const auto* s = descriptor<TShortEventDescriptor>(*item, 0x4D)) {
            e.language = s->getLanguageCode();
            e.title = s->getEventName();
            e.description = s->getEventDescription();
        }
        for (const TISDBTDescriptor* d : item->getDescriptors(0x4E)) {
            const auto* x = dynamic_cast<const TExtendedEventDescriptor*>(d);
            if (x == nullptr)
                continue;
            for (int i = 0; i < x->size(); ++i) {
                const TExtendedEventDescriptorItem* it = x->get(static_cast<unsigned char>(i));
                e.items.emplace_back(it->getDescription(), it->getText());
            }
            e.extendedText += x->getText();
        }
        if (const auto* c = descriptor<TContentDescriptor>(*item, 0x54)) {
            e.genre = EventEntry::Genre{c->getContentNibbleLevel1(), c->getContentNibbleLevel2()};
        }
        if (const auto* r = descriptor<TParentalRatingDescriptor>(*item, 0x55)) {
            // The rating of Brazil when the descriptor has one, else its first.
            const TParentalRatingDescriptorItem* chosen = nullptr;
            for (int i = r->size() - 1; i >= 0; --i) {
                const TParentalRatingDescriptorItem* it = r->get(static_cast<unsigned char>(i));
                if (chosen == nullptr || chosen->getCountryCode() != "BRA")
                    chosen = it;
            }
            if (chosen != nullptr) {
                e.rating = EventEntry::Rating{chosen->getRating(), chosen->getRatingContent(),
                                              chosen->getCountryCode()};
            }
        }
        if (const auto* v = descriptor<TComponentDescriptor>(*item, 0x50)) {
            e.video = EventEntry::Video{v->getStreamContent(), v->getComponentType(), v->getText()};
        }
        if (const auto* a = descriptor<TAudioComponentDescriptor>(*item, 0xC4)) {
            e.audio = EventEntry::Audio{a->getComponentType(), a->getSamplingRate(), a->getText()};
        }
        if (item->getDescriptorList().empty())
            e.bare = 1;
        const EventKey key{e.originalNetworkId, e.transportStreamId, e.serviceId, e.eventId};
        auto found = byEvent.find(key);
        if (found == byEvent.end())
            byEvent.emplace(key, e);
        else
            merge(found->second, e);
    }
}

void Catalogue::onTot(const TISDBTTable& table) {
    const auto& tot = static_cast<const TTOTTable&>(table);
    const auto* offsets = descriptor<TLocalTimeOffsetDescriptor>(tot, 0x58);
    if (offsets == nullptr || offsets->size() == 0)
        return;
    const std::list<std::string> countries = offsets->getCountryCodes();
    const std::string country = offsets->get("BRA") != nullptr ? "BRA" : countries.front();
    const TLocalTimeOffsetDescriptorItem* item = offsets->get(country);
    // The offset is decoded from two BCD bytes exactly only up to 9 hours 9
    // minutes; a value beyond any zone of the world is left unused.
    const unsigned int seconds = item->getLocalTimeOffset();
    if (seconds > 14 * 3600) {
        ++badOffsets;
        return;
    }
    totOffsetSeen = true;
    totCountry = country;
    totOffsetSeconds = item->getLocalTimeOffsetPolarity() != 0 ? -static_cast<int>(seconds)
                                                               : static_cast<int>(seconds);
}

void Catalogue::onAit(unsigned int pid, const TISDBTTable& table) {
    const auto& ait = static_cast<const TAITTable&>(table);
    std::vector<ApplicationEntry>& apps = byAitPid[pid];
    apps.clear();
    for (const std::string& hash : ait.getApplicationsIDs()) {
        const TApplication* app = ait.getApplication(hash);
        ApplicationEntry a;
        if (const TApplicationIdentifier* id = app->getApplicationIdentifier()) {
            a.organizationId = id->getOrganizationID();
            a.applicationId = id->getApplicationID();
        }
        a.controlCode = app->getControlCode();
        a.type = ait.getApplicationType();
        const auto* names =
            dynamic_cast<const TApplicationNameDescriptor*>(app->getDescriptor(0x01));
        if (names != nullptr && names->size() > 0) {
            a.nameLanguage = names->getLanguageCodes().front();
            a.name = names->get(a.nameLanguage)->getName();
        }
        apps.push_back(a);
    }
}

int Catalogue::transportStreamId() const {
    return patTsId >= 0 ? patTsId : sdtTsId;
}

int Catalogue::originalNetworkId() const {
    if (sdtOnId >= 0)
        return sdtOnId;
    for (const TransportStreamEntry& ts : net.transportStreams)
        if (static_cast<int>(ts.transportStreamId) == transportStreamId())
            return static_cast<int>(ts.originalNetworkId);
    return -1;
}

std::vector<unsigned int> Catalogue::serviceIds() const {
    std::vector<unsigned int> ids;
    for (const auto& p : byProgram)
        ids.push_back(p.first);
    for (const auto& s : byService)
        ids.push_back(s.first);
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

bool Catalogue::oneSegment(unsigned int serviceId) const {
    for (const TransportStreamEntry& ts : net.transportStreams)
        if (std::find(ts.partialReception.begin(), ts.partialReception.end(), serviceId) !=
            ts.partialReception.end())
            return true;
    return false;
}

std::vector<const EventEntry*> Catalogue::guide() const {
    std::vector<const EventEntry*> all;
    for (const auto& e : byEvent)
        all.push_back(&e.second);
    std::stable_sort(all.begin(), all.end(), [](const EventEntry* a, const EventEntry* b) {
        return std::tie(a->originalNetworkId, a->transportStreamId, a->serviceId, a->start) <
               std::tie(b->originalNetworkId, b->transportStreamId, b->serviceId, b->start);
    });
    return all;
}

}  // namespace sarntool
