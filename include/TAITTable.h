#ifndef SARN_TAITTABLE_H
#define SARN_TAITTABLE_H

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "TApplication.h"
#include "TISDBTVersionedTable.h"

namespace Sarn {

/**
 * Application information table (table_id 0x74): the common descriptors
 * that apply to every application of the section, then the applications,
 * keyed by their hash ID. The application_type is the table_id_extension.
 * Descriptors and applications point into the bytes handed to parse(): the
 * caller keeps them alive while it uses the table.
 */
class TAITTable : public TISDBTVersionedTable {
  public:
    /** The CRC is checked when checkCrc is 1; the first integer is not used. */
    static TAITTable* parse(unsigned char* data, unsigned int len, int, int checkCrc,
                            unsigned short* err, TAITTable* previous);

    TAITTable(unsigned char* data, unsigned int len);
    TAITTable(const TAITTable&) = delete;
    TAITTable& operator=(const TAITTable&) = delete;
    ~TAITTable() override;

    std::string toJSON() const override;

    unsigned short getApplicationType() const { return tableIdExtension; }

    // The common descriptor of each kind, or null.
    TApplicationDescriptor* getApplicationDescriptor() const;
    TApplicationNameDescriptor* getApplicationNameDescriptor() const;
    TApplicationIconDescriptor* getApplicationIconDescriptor() const;
    TExternalApplicationAuthorizationDescriptor* getExternalApplicationAuthorizationDescriptor()
        const;
    TTransportProtocolDescriptor* getTransportProtocolDescriptor() const;
    TIPSignalingDescriptor* getIPSignalingDescriptor() const;
    TPrefetchDescriptor* getPrefetchDescriptor() const;
    TDIILocationDescriptor* getDIILocationDescriptor() const;
    TGingaApplicationDescriptor* getGingaApplicationDescriptor() const;
    TGingaApplicationLocationDescriptor* getGingaApplicationLocationDescriptor() const;

    /**
     * The common descriptor with that tag, or null. Tag 0x0F looks in the
     * Ginga application slot, so an HTML5 location descriptor is not found.
     */
    TISDBTDescriptor* getDescriptor(unsigned char tag) const;
    /** The tags of the common descriptors, in slot order. */
    std::list<unsigned char> getDescriptorTags() const;

    int getApplicationsCount() const { return static_cast<int>(applications.size()); }
    /** The application with that hash ID, or null. */
    TApplication* getApplication(std::string hashId) const;
    /** The hash IDs in ascending order. */
    std::list<std::string> getApplicationsIDs() const;
    /**
     * Stores application under its hash ID. An application already stored
     * under that key is replaced, not deleted: a caller that holds it owns it.
     */
    void addApplication(TApplication* application);
    /** Erases and deletes the application; false when there is none. */
    bool removeApplication(std::string hashId);

  private:
    friend class TApplication;

    // Owned, in the same slot order as an application's.
    TISDBTDescriptor* descriptors[10];
    std::vector<std::pair<std::string, TApplication*>> applications;
};

}  // namespace Sarn

#endif
