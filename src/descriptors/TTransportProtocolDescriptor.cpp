#include "TTransportProtocolDescriptor.h"

#include <memory>

#include "Arena.h"
#include "BodyParse.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"
#include "TTransportProtocolDescriptorDC.h"
#include "TTransportProtocolDescriptorIC.h"
#include "TTransportProtocolDescriptorIP.h"
#include "TTransportProtocolDescriptorOC.h"
#include "TTransportProtocolDescriptorPC.h"

namespace Sarn {

// Body layout shared by every protocol (offsets from protocol_id):
//   0-1 protocol_id, 2 transport_protocol_label, 3... selector bytes. Each
// protocol's class reads its selector in a source of its own.

TTransportProtocolDescriptor::TTransportProtocolDescriptor(Type kind, unsigned short protocol,
                                                           unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len), type(kind), protocolId(protocol) {}

TTransportProtocolDescriptor::~TTransportProtocolDescriptor() {}

SARN_DESCRIPTOR_PARSE(TTransportProtocolDescriptor, arena, data, len, bytesRead, err) {
    if (!parseCommonHeader(data, len, err, 3, DESCRIPTOR_TAG))
        return nullptr;
    bytes::Reader r(data, len);
    r.skip(2);
    const unsigned short protocol = r.u16();
    std::unique_ptr<TTransportProtocolDescriptor> d;
    switch (protocol) {
        case 0x0001:
        case 0x0005:  // read with the object carousel selector, keeping protocol_id 5
            d.reset(memory::make<TTransportProtocolDescriptorOC>(arena, data, len));
            break;
        case 0x0002:
            d.reset(memory::make<TTransportProtocolDescriptorIP>(arena, data, len));
            break;
        case 0x0003:
            // Applications over the interaction channel are not taken: no
            // descriptor, no message, and the code of the header check stays.
            return nullptr;
        case 0x0004:
            d.reset(memory::make<TTransportProtocolDescriptorDC>(arena, data, len));
            break;
        default:
            SARN_LOGW(
                "%s: TTransportProtocolDescriptor::parse: Unknown protocol ID: 0x%04X. Aborting!",
                static_cast<unsigned int>(protocol));
            return nullptr;
    }
    d->protocolId = protocol;
    return parseBody(d, data, bytesRead, err);
}

TTransportProtocolDescriptor* TTransportProtocolDescriptor::clone(
    TTransportProtocolDescriptor* src) {
    if (src == nullptr)
        return nullptr;
    // The type says which class to copy as. Interaction channel objects carry
    // the data carousel's type and the protocol 5 class the object
    // carousel's, so the class is confirmed before copying; those two give
    // null.
    TTransportProtocolDescriptor* copy = nullptr;
    switch (src->type) {
        case TYPE_OC:
            if (auto* oc = dynamic_cast<TTransportProtocolDescriptorOC*>(src))
                copy = new TTransportProtocolDescriptorOC(oc);
            break;
        case TYPE_IP:
            if (auto* ip = dynamic_cast<TTransportProtocolDescriptorIP*>(src))
                copy = new TTransportProtocolDescriptorIP(ip);
            break;
        case TYPE_IC:
            if (auto* ic = dynamic_cast<TTransportProtocolDescriptorIC*>(src))
                copy = new TTransportProtocolDescriptorIC(ic);
            break;
        case TYPE_DC:
            if (auto* dc = dynamic_cast<TTransportProtocolDescriptorDC*>(src))
                copy = new TTransportProtocolDescriptorDC(dc);
            break;
        case TYPE_PC:
            if (auto* pc = dynamic_cast<TTransportProtocolDescriptorPC*>(src))
                copy = new TTransportProtocolDescriptorPC(pc);
            break;
        default:
            SARN_LOGW(
                "%s: TTransportProtocolDescriptor::clone: Unknown protocol ID: 0x%04X. Aborting!",
                static_cast<unsigned int>(src->type));
            return nullptr;
    }
    if (copy != nullptr)
        copy->transportProtocolLabel = src->transportProtocolLabel;
    return copy;
}

void TTransportProtocolDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out(out) << ",\"protocol_id\":" << protocolId
                   << ",\"transport_protocol_label\":" << transportProtocolLabel;
}

std::string TTransportProtocolDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
