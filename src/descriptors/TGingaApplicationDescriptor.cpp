#include "TGingaApplicationDescriptor.h"

#include <memory>

#include "Arena.h"
#include "BodyParse.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"
#include "TGingaHtml5ApplicationDescriptor.h"
#include "TGingaJavaApplicationDescriptor.h"
#include "TGingaNCLApplicationDescriptor.h"

namespace Sarn {

namespace {
template <class T>
T* parseGingaApplication(memory::Arena* arena, unsigned char* data, unsigned int len,
                         unsigned int* bytesRead, unsigned short* err) {
    // An application without parameters has an empty body.
    if (!TISDBTDescriptor::parseCommonHeader(data, len, err, 0, T::DESCRIPTOR_TAG))
        return nullptr;
    std::unique_ptr<T> d(memory::make<T>(arena, data, len));
    return parseBody(d, data, bytesRead, err);
}
}  // namespace

TGingaApplicationDescriptor::TGingaApplicationDescriptor(unsigned char tag, unsigned char* bytes,
                                                         unsigned int len)
    : TISDBTDescriptor(tag, bytes, len) {}

TGingaApplicationDescriptor::TGingaApplicationDescriptor(const TGingaApplicationDescriptor* src)
    : TISDBTDescriptor(*src), parameters(src->parameters) {}

TGingaApplicationDescriptor::~TGingaApplicationDescriptor() {}

int TGingaApplicationDescriptor::parseData(unsigned char* data, unsigned int len,
                                           unsigned int* bytesRead, unsigned short* err) {
    // Length-prefixed parameters up to the end of the descriptor.
    bytes::Reader r(data, len);
    std::string parameter;
    while (!r.atEnd()) {
        if (r.string(parameter, 0) < 0) {
            SARN_LOGW(
                "%s: TGingaApplicationDescriptor:: parse: ERROR: parsing Parameter. Aborting!");
            return parse::refuse(err, ERROR_FIELD_PARSE);
        }
        parameters.push_back(parameter);
    }
    return bodyDone(err, bytesRead, r.position());
}

std::string TGingaApplicationDescriptor::get(unsigned int index) const {
    return index < parameters.size() ? parameters[index] : std::string();
}

bool TGingaApplicationDescriptor::remove(unsigned int index) {
    if (index >= parameters.size())
        return false;
    parameters.erase(parameters.begin() + index);
    return true;
}

void TGingaApplicationDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"parameter_loop\":[";
    for (size_t i = 0; i < parameters.size(); ++i) {
        if (i != 0)
            o << ',';
        o << '"' << parameters[i] << '"';
    }
    o << ']';
}

std::string TGingaApplicationDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

SARN_DESCRIPTOR_PARSE(TGingaJavaApplicationDescriptor, arena, data, len, bytesRead, err) {
    return parseGingaApplication<TGingaJavaApplicationDescriptor>(arena, data, len, bytesRead, err);
}

SARN_DESCRIPTOR_PARSE(TGingaNCLApplicationDescriptor, arena, data, len, bytesRead, err) {
    return parseGingaApplication<TGingaNCLApplicationDescriptor>(arena, data, len, bytesRead, err);
}

SARN_DESCRIPTOR_PARSE(TGingaHtml5ApplicationDescriptor, arena, data, len, bytesRead, err) {
    return parseGingaApplication<TGingaHtml5ApplicationDescriptor>(arena, data, len, bytesRead,
                                                                   err);
}

}  // namespace Sarn
