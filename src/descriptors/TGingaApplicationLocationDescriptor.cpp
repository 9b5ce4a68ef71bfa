#include "TGingaApplicationLocationDescriptor.h"

#include <memory>

#include "Arena.h"
#include "BodyParse.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"
#include "TGingaHtml5ApplicationLocationDescriptor.h"
#include "TGingaJavaApplicationLocationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"

namespace Sarn {

namespace {
template <class T>
T* parseGingaLocation(memory::Arena* arena, unsigned char* data, unsigned int len,
                      unsigned int* bytesRead, unsigned short* err) {
    if (!TISDBTDescriptor::parseCommonHeader(data, len, err, 4, T::DESCRIPTOR_TAG))
        return nullptr;
    std::unique_ptr<T> d(memory::make<T>(arena, data, len));
    return parseBody(d, data, bytesRead, err);
}

void logShort(unsigned int available, unsigned int needed) {
    SARN_LOGW(
        "%s: TGingaApplicationLocationDescriptor::parse: Longer data length is required: %u < "
        "%u. Aborting!",
        available, needed);
}
}  // namespace

TGingaApplicationLocationDescriptor::TGingaApplicationLocationDescriptor(unsigned char tag,
                                                                         unsigned char* bytes,
                                                                         unsigned int len)
    : TISDBTDescriptor(tag, bytes, len) {}

TGingaApplicationLocationDescriptor::TGingaApplicationLocationDescriptor(
    const TGingaApplicationLocationDescriptor* src)
    : TISDBTDescriptor(*src),
      baseDirectory(src->baseDirectory),
      classpathExtension(src->classpathExtension),
      initialClass(src->initialClass) {}

TGingaApplicationLocationDescriptor::~TGingaApplicationLocationDescriptor() {}

int TGingaApplicationLocationDescriptor::parseData(unsigned char* data, unsigned int len,
                                                   unsigned int* bytesRead, unsigned short* err) {
    // base_directory_length, base_directory, classpath_extension_length,
    // classpath_extension, initial class up to the end of the descriptor
    if (data == nullptr || len < 2) {
        SARN_LOGW(
            "%s: TGingaApplicationLocationDescriptor::parse: Item length not valid: %u. Aborting!",
            len);
        return parse::refuse(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    const unsigned int baseLength = r.u8();
    if (r.remaining() < baseLength) {
        logShort(r.remaining(), baseLength);
        return parse::refuse(err, ERROR_DESCRIPTOR_LENGTH);
    }
    if (baseLength != 0 && r.string(baseDirectory, baseLength) != static_cast<int>(baseLength)) {
        SARN_LOGW(
            "%s: TGingaApplicationLocationDescriptor:: parse: ERROR: parsing Base Directory. "
            "Aborting!");
        return parse::refuse(err, ERROR_FIELD_PARSE);
    }

    // The class path length byte itself must still be inside the descriptor.
    if (!r.has(1)) {
        logShort(r.remaining(), 1);
        return parse::refuse(err, ERROR_DESCRIPTOR_LENGTH);
    }
    const unsigned int classpathLength = r.u8();
    if (r.remaining() < classpathLength) {
        logShort(r.remaining(), classpathLength);
        return parse::refuse(err, ERROR_DESCRIPTOR_LENGTH);
    }
    if (classpathLength != 0 &&
        r.string(classpathExtension, classpathLength) != static_cast<int>(classpathLength)) {
        SARN_LOGW(
            "%s: TGingaApplicationLocationDescriptor:: parse: ERROR: parsing Classpath Extension. "
            "Aborting!");
        return parse::refuse(err, ERROR_FIELD_PARSE);
    }
    unsigned int count = baseLength + classpathLength;

    const unsigned int rest = r.remaining();
    if (rest != 0) {
        if (r.string(initialClass, rest) != static_cast<int>(rest)) {
            SARN_LOGW(
                "%s: TGingaApplicationLocationDescriptor:: parse: ERROR: parsing Initial Class. "
                "Aborting!");
            return parse::refuse(err, ERROR_FIELD_PARSE);
        }
        // The reported byte count grows by the class path length a second
        // time rather than by the initial class length; the figure is kept
        // as the library has always reported it.
        count += classpathLength;
    }
    return bodyDone(err, bytesRead, count);
}

void TGingaApplicationLocationDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out(out) << ",\"base_directory\":\"" << baseDirectory << "\",\"entitypath_extension\":\""
                   << classpathExtension << "\",\"initial_entity\":\"" << initialClass << '"';
}

std::string TGingaApplicationLocationDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

SARN_DESCRIPTOR_PARSE(TGingaJavaApplicationLocationDescriptor, arena, data, len, bytesRead, err) {
    return parseGingaLocation<TGingaJavaApplicationLocationDescriptor>(arena, data, len, bytesRead,
                                                                       err);
}

SARN_DESCRIPTOR_PARSE(TGingaNCLApplicationLocationDescriptor, arena, data, len, bytesRead, err) {
    return parseGingaLocation<TGingaNCLApplicationLocationDescriptor>(arena, data, len, bytesRead,
                                                                      err);
}

SARN_DESCRIPTOR_PARSE(TGingaHtml5ApplicationLocationDescriptor, arena, data, len, bytesRead, err) {
    return parseGingaLocation<TGingaHtml5ApplicationLocationDescriptor>(arena, data, len, bytesRead,
                                                                        err);
}

}  // namespace Sarn
