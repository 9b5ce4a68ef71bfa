#ifndef SARN_TTRANSPORTPROTOCOLDESCRIPTOR_H
#define SARN_TTRANSPORTPROTOCOLDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Transport protocol descriptor (AIT tag 0x02): over which transport an
 * application is delivered. The body starts with protocol_id and
 * transport_protocol_label; the selector bytes that follow depend on the
 * protocol and are read by the subclass that parse() picks.
 */
class TTransportProtocolDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x02;

    /** Kind of selector; clone() copies by it. */
    enum Type { TYPE_OC = 1, TYPE_IP = 2, TYPE_IC = 3, TYPE_DC = 4, TYPE_PC = 5 };

    /**
     * Reads protocol_id and returns the matching subclass with its selector
     * parsed, or null. Protocol 3 (interaction channel) and unknown protocols
     * give null without touching the code left by the header check.
     */
    static TTransportProtocolDescriptor* parse(unsigned char* data, unsigned int len,
                                               unsigned int* bytesRead, unsigned short* err);
    /** A copy of src of the same class, or null for classes that cannot be copied by type. */
    static TTransportProtocolDescriptor* clone(TTransportProtocolDescriptor* src);

    TTransportProtocolDescriptor(Type type, unsigned short protocolId, unsigned char* data,
                                 unsigned int len);
    ~TTransportProtocolDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;
    /**
     * Reads the selector from the body (data at protocol_id, len bytes).
     * Returns 1 on success, 0 on failure (code set through err).
     */
    virtual int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                          unsigned short* err) = 0;

    Type getType() const { return type; }
    unsigned short getProtocolID() const { return protocolId; }
    unsigned char getTransportProtocolLabel() const { return transportProtocolLabel; }

  protected:
    TTransportProtocolDescriptor(const TTransportProtocolDescriptor&) = default;

    Type type;
    unsigned short protocolId;
    unsigned char transportProtocolLabel = 0;

  private:
    SARN_DESCRIPTOR_BUILD(TTransportProtocolDescriptor)
};

}  // namespace Sarn

#endif
