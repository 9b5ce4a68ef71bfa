#ifndef SARN_TOOLS_CATALOGUE_H
#define SARN_TOOLS_CATALOGUE_H

// What a receiver learns from a multiplex once it has read its tables: the
// network and its transport streams, the services with their streams and
// Ginga applications, and the programme guide. Built from the library's
// objects as sarn-dump reads the input (the latest version of each table
// wins), and rendered by Views.h.

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "DumpSession.h"

namespace sarntool {

struct StreamEntry {
    unsigned int pid = 0;
    unsigned int type = 0;
    int componentTag = -1;  // stream identifier descriptor, -1 without one
    std::string language;   // ISO 639 language descriptor, "" without one
};

struct ApplicationEntry {
    unsigned int organizationId = 0;
    unsigned int applicationId = 0;
    unsigned int controlCode = 0;
    unsigned int type = 0;  // the AIT's application_type
    std::string name;       // broadcast text, the first name of its name descriptor
    std::string nameLanguage;
};

struct ProgramEntry {
    unsigned int pmtPid = 0;
    bool havePmt = false;
    unsigned int pcrPid = 0;
    std::vector<StreamEntry> streams;
};

struct ServiceEntry {
    bool inSdt = false;
    std::string name, provider;  // broadcast text
    unsigned int type = 0;
    unsigned int runningStatus = 0;
    unsigned int freeCaMode = 0;
    bool eitSchedule = false, eitPresentFollowing = false;
};

struct TransportStreamEntry {
    unsigned int transportStreamId = 0, originalNetworkId = 0;
    bool haveDelivery = false;
    unsigned int areaCode = 0, guardInterval = 0, transmissionMode = 0;
    std::vector<unsigned int> frequencies;  // units of 1/7 MHz
    bool haveTsInformation = false;
    unsigned int remoteControlKeyId = 0;
    std::string tsName;  // broadcast text
    /** Per transmission type: its transmission_type_info byte and service ids. */
    std::vector<std::pair<unsigned int, std::vector<unsigned int>>> transmissionTypes;
    bool havePartialReception = false;
    std::vector<unsigned int> partialReception;                      // one-segment service ids
    std::vector<std::pair<unsigned int, unsigned int>> serviceList;  // id, type
};

struct NetworkEntry {
    bool seen = false;
    unsigned int networkId = 0;
    std::string name;  // broadcast text
    std::vector<TransportStreamEntry> transportStreams;
};

struct EventEntry {
    unsigned int originalNetworkId = 0, transportStreamId = 0, serviceId = 0, eventId = 0;
    unsigned int start = 0;     // the broadcast's local wall-clock time, counted as if UTC
    unsigned int duration = 0;  // seconds
    unsigned int runningStatus = 0;
    bool presentFollowing = false, schedule = false, oneSegment = false;
    std::string language, title, description;                // broadcast text
    std::vector<std::pair<std::string, std::string>> items;  // extended event items
    std::string extendedText;
    struct Genre {
        unsigned int level1 = 0, level2 = 0;
    };
    struct Rating {
        unsigned int age = 0, warnings = 0;
        std::string country;
    };
    struct Video {
        unsigned int content = 0, type = 0;
        std::string text;  // broadcast text
    };
    struct Audio {
        unsigned int type = 0, samplingRate = 0;
        std::string text;  // broadcast text
    };
    std::optional<Genre> genre;    // content descriptor
    std::optional<Rating> rating;  // parental rating descriptor
    std::optional<Video> video;    // component descriptor
    std::optional<Audio> audio;    // audio component descriptor
    /** Sections that gave the event without any descriptor (the library keeps none there). */
    unsigned int bare = 0;
};

class Catalogue : public TableObserver {
  public:
    void onTable(unsigned int pid, const Sarn::TISDBTTable& table, const unsigned char* section,
                 unsigned int length) override;

    /** The transport_stream_id of this multiplex (PAT, else SDT), -1 when neither came. */
    int transportStreamId() const;
    int originalNetworkId() const;

    const NetworkEntry& network() const { return net; }
    const std::map<unsigned int, ProgramEntry>& programs() const { return byProgram; }
    const std::map<unsigned int, ServiceEntry>& services() const { return byService; }
    /** The applications of the AIT on each PID. */
    const std::map<unsigned int, std::vector<ApplicationEntry>>& applications() const {
        return byAitPid;
    }
    /** Every service id met in the PAT, the SDT or the NIT's lists, ascending. */
    std::vector<unsigned int> serviceIds() const;
    /** Whether the NIT's partial reception descriptor lists the service. */
    bool oneSegment(unsigned int serviceId) const;

    /** Events by (original network, transport stream, service, event id). */
    using EventKey = std::tuple<unsigned int, unsigned int, unsigned int, unsigned int>;
    const std::map<EventKey, EventEntry>& events() const { return byEvent; }
    /** The events sorted by service and start. */
    std::vector<const EventEntry*> guide() const;

    /** The TOT's local time offset in seconds east of UTC, when a TOT gave a usable one. */
    bool haveTotOffset() const { return totOffsetSeen; }
    int totOffset() const { return totOffsetSeconds; }
    std::string totOffsetCountry() const { return totCountry; }
    /** A TOT's offset that could not be used (beyond fourteen hours), 0 if none. */
    unsigned int unusableTotOffsets() const { return badOffsets; }

  private:
    void onPat(const Sarn::TISDBTTable& table);
    void onPmt(unsigned int pid, const Sarn::TISDBTTable& table);
    void onNit(const Sarn::TISDBTTable& table, const unsigned char* section, unsigned int length);
    void onSdt(const Sarn::TISDBTTable& table);
    void onEit(unsigned int pid, const Sarn::TISDBTTable& table);
    void onTot(const Sarn::TISDBTTable& table);
    void onAit(unsigned int pid, const Sarn::TISDBTTable& table);

    int patTsId = -1, sdtTsId = -1, sdtOnId = -1;
    NetworkEntry net;
    std::map<unsigned int, ProgramEntry> byProgram;
    std::map<unsigned int, ServiceEntry> byService;
    std::map<unsigned int, std::vector<ApplicationEntry>> byAitPid;
    std::map<EventKey, EventEntry> byEvent;
    bool totOffsetSeen = false;
    int totOffsetSeconds = 0;
    std::string totCountry;
    unsigned int badOffsets = 0;
};

}  // namespace sarntool

#endif
