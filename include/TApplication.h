#ifndef SARN_TAPPLICATION_H
#define SARN_TAPPLICATION_H

#include <list>
#include <string>

#include "TApplicationDescriptor.h"
#include "TApplicationIconDescriptor.h"
#include "TApplicationIdentifier.h"
#include "TApplicationNameDescriptor.h"
#include "TDIILocationDescriptor.h"
#include "TExternalApplicationAuthorizationDescriptor.h"
#include "TGingaApplicationDescriptor.h"
#include "TGingaApplicationLocationDescriptor.h"
#include "TIPSignalingDescriptor.h"
#include "TISDBTDataHolder.h"
#include "TPrefetchDescriptor.h"
#include "TTransportProtocolDescriptor.h"

namespace Sarn {

class TAITTable;

/**
 * One application of the AIT application loop: its identifier, control
 * code, and the AIT descriptors it carries, one slot per descriptor kind.
 * Kinds the application lacks may be inherited from the common loop of its
 * table (the descriptor getters' inherit argument). Points into the bytes
 * the table was parsed from.
 */
class TApplication : public TISDBTDataHolder {
  public:
    /**
     * Parses one application (identifier, control code, descriptor loop) from
     * len available bytes; *bytesRead receives the application's size.
     */
    static TApplication* parse(unsigned char* data, unsigned int len, int, unsigned int* bytesRead,
                               unsigned short* err);

    TApplication(unsigned char* data, unsigned int len);
    /**
     * Deep copy of src without a parent table. With inherit non-zero, the
     * kinds src lacks are copied from the common loop of src's table.
     */
    TApplication(TApplication* src, int inherit);
    TApplication(const TApplication&) = delete;
    TApplication& operator=(const TApplication&) = delete;
    ~TApplication() override;

    TApplicationIdentifier* getApplicationIdentifier() const { return applicationIdentifier; }
    std::string getHashID() const { return hashId; }
    unsigned char getControlCode() const { return controlCode; }
    unsigned char getRecommendedResolution() const { return recommendedResolution; }
    unsigned short getApplicationType() const { return applicationType; }
    void setApplicationType(unsigned short type) { applicationType = type; }
    /** The table whose common descriptors this application may inherit (not owned). */
    void setParentAITTable(TAITTable* table) { parent = table; }

    // Each getter returns the application's own descriptor of that kind. With
    // inherit non-zero and no own descriptor, it returns the parent table's,
    // and then stores 1 in *fromTable when that is non-null and found.
    TApplicationDescriptor* getApplicationDescriptor(int inherit = 0,
                                                     int* fromTable = nullptr) const;
    TApplicationNameDescriptor* getApplicationNameDescriptor(int inherit = 0,
                                                             int* fromTable = nullptr) const;
    TApplicationIconDescriptor* getApplicationIconDescriptor(int inherit = 0,
                                                             int* fromTable = nullptr) const;
    TExternalApplicationAuthorizationDescriptor* getExternalApplicationAuthorizationDescriptor(
        int inherit = 0, int* fromTable = nullptr) const;
    TTransportProtocolDescriptor* getTransportProtocolDescriptor(int inherit = 0,
                                                                 int* fromTable = nullptr) const;
    TIPSignalingDescriptor* getIPSignalingDescriptor(int inherit = 0,
                                                     int* fromTable = nullptr) const;
    TPrefetchDescriptor* getPrefetchDescriptor(int inherit = 0, int* fromTable = nullptr) const;
    TDIILocationDescriptor* getDIILocationDescriptor(int inherit = 0,
                                                     int* fromTable = nullptr) const;
    TGingaApplicationDescriptor* getGingaApplicationDescriptor(int inherit = 0,
                                                               int* fromTable = nullptr) const;
    TGingaApplicationLocationDescriptor* getGingaApplicationLocationDescriptor(
        int inherit = 0, int* fromTable = nullptr) const;

    /**
     * The own descriptor with that tag, or null. Tags 0x0E and 0x0F both
     * answer with the location slot when it holds an HTML5 location (0x0F).
     */
    TISDBTDescriptor* getDescriptor(unsigned char tag) const;
    /** The tags of the own descriptors, in slot order. */
    std::list<unsigned char> getDescriptorTags() const;

  private:
    SARN_ENTRY_BUILD(TApplication)
    friend class TAITTable;
    TISDBTDescriptor* slot(int index, int inherit, int* fromTable) const;

    TAITTable* parent;
    std::string hashId;
    unsigned char controlCode;
    unsigned char recommendedResolution;
    unsigned short applicationType;
    TApplicationIdentifier* applicationIdentifier;
    // Owned, one per kind, in the order of getDescriptorTags(): application,
    // name, icon, external authorization, transport protocol, IP signalling,
    // prefetch, DII location, Ginga application, Ginga application location.
    TISDBTDescriptor* descriptors[10];
};

}  // namespace Sarn

#endif
