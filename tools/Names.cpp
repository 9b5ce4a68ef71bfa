#include "Names.h"

#include <cstdio>

namespace sarntool {
namespace names {

namespace {

template <unsigned int N>
const char* pick(const char* const (&list)[N], unsigned int index) {
    return index < N && list[index] != nullptr ? list[index] : "";
}

}  // namespace

const char* table(unsigned int id) {
    if (id >= 0x50 && id <= 0x5F)
        return "EIT schedule actual";
    if (id >= 0x60 && id <= 0x6F)
        return "EIT schedule other";
    switch (id) {
        case 0x00:
            return "PAT";
        case 0x01:
            return "CAT";
        case 0x02:
            return "PMT";
        case 0x3A:
        case 0x3E:
        case 0x3F:
            return "DSM-CC";
        case 0x3B:
            return "DSM-CC DSI/DII";
        case 0x3C:
            return "DSM-CC DDB";
        case 0x3D:
            return "DSM-CC stream events";
        case 0x40:
            return "NIT actual";
        case 0x41:
            return "NIT other";
        case 0x42:
            return "SDT actual";
        case 0x46:
            return "SDT other";
        case 0x4A:
            return "BAT";
        case 0x4E:
            return "EIT p/f actual";
        case 0x4F:
            return "EIT p/f other";
        case 0x70:
            return "TDT";
        case 0x73:
            return "TOT";
        case 0x74:
            return "AIT";
        case 0x99:
            return "datacaster carousel";
        case 0xC3:
            return "SDTT";
        case 0xC4:
            return "BIT";
        case 0xC8:
            return "CDT";
        case 0xFF:
            return "stuffing";
        default:
            return "";
    }
}

const char* streamType(unsigned int type) {
    switch (type) {
        case 0x01:
            return "MPEG-1 video";
        case 0x02:
            return "MPEG-2 video";
        case 0x03:
            return "MPEG-1 audio";
        case 0x04:
            return "MPEG-2 audio";
        case 0x05:
            return "private sections (AIT)";
        case 0x06:
            return "PES private data (captions, superimpose)";
        case 0x0B:
            return "DSM-CC data carousel";
        case 0x0C:
            return "DSM-CC stream descriptors";
        case 0x0D:
            return "DSM-CC sections";
        case 0x0F:
            return "AAC audio (ADTS)";
        case 0x11:
            return "HE-AAC audio (LATM)";
        case 0x1B:
            return "H.264/AVC video";
        case 0x24:
            return "HEVC video";
        default:
            return "";
    }
}

const char* serviceType(unsigned int type) {
    switch (type) {
        case 0x01:
            return "digital TV";
        case 0x02:
            return "digital audio";
        case 0xA1:
            return "special video";
        case 0xA2:
            return "special audio";
        case 0xA3:
            return "special data";
        case 0xA4:
            return "engineering";
        case 0xA5:
            return "promotion video";
        case 0xA6:
            return "promotion audio";
        case 0xA7:
            return "promotion data";
        case 0xA8:
            return "pre-storage data";
        case 0xA9:
            return "exclusive data";
        case 0xAA:
            return "bookmark list data";
        case 0xC0:
            return "data service";
        default:
            return "";
    }
}

const char* runningStatus(unsigned int status) {
    static const char* const kNames[] = {"undefined", "not running", "starts in seconds",
                                         "pausing",   "running",     "off air"};
    return pick(kNames, status);
}

const char* guardInterval(unsigned int value) {
    static const char* const kNames[] = {"1/32", "1/16", "1/8", "1/4"};
    return pick(kNames, value);
}

const char* transmissionMode(unsigned int value) {
    static const char* const kNames[] = {"mode 1 (2k)", "mode 2 (4k)", "mode 3 (8k)", "undefined"};
    return pick(kNames, value);
}

// ABNT NBR 15603-2, annex C: the genres of Brazilian broadcasting.
const char* genre(unsigned int level1) {
    static const char* const kNames[] = {"Jornalismo",
                                         "Esporte",
                                         "Educativo",
                                         "Novela",
                                         "Minissérie",
                                         "Série/seriado",
                                         "Variedade",
                                         "Reality show",
                                         "Informação",
                                         "Humorístico",
                                         "Infantil",
                                         "Erótico",
                                         "Filme",
                                         "Sorteio, televendas, premiação",
                                         "Debate/entrevista",
                                         "Outros"};
    return pick(kNames, level1);
}

const char* subgenre(unsigned int level1, unsigned int level2) {
    static const char* const kNews[] = {"Telejornais", "Reportagem", "Documentário", "Biografia"};
    static const char* const kVariety[] = {"Auditório", "Show",     "Musical",
                                           "Making of", "Feminino", "Game show"};
    static const char* const kInformation[] = {"Culinária", "Moda", "Rural", "Saúde", "Turismo"};
    static const char* const kDraws[] = {"Sorteio", "Vendas", "Premiação"};
    static const char* const kTalk[] = {"Debate", "Entrevista"};
    static const char* const kOther[] = {"Desenho adulto", "Interativo", "Política", "Religião",
                                         nullptr,          nullptr,      nullptr,    nullptr,
                                         nullptr,          nullptr,      nullptr,    nullptr,
                                         nullptr,          nullptr,      nullptr,    "Outros"};
    switch (level1) {
        case 0x0:
            return pick(kNews, level2);
        case 0x6:
            return pick(kVariety, level2);
        case 0x8:
            return pick(kInformation, level2);
        case 0xD:
            return pick(kDraws, level2);
        case 0xE:
            return pick(kTalk, level2);
        case 0xF:
            return pick(kOther, level2);
        default:
            // The other genres have one entry, level 2 = 0, named as the genre.
            return level2 == 0 ? genre(level1) : "";
    }
}

const char* distinctSubgenre(unsigned int level1, unsigned int level2) {
    const char* sub = subgenre(level1, level2);
    return std::string(sub) == genre(level1) ? "" : sub;
}

std::string genreText(unsigned int level1, unsigned int level2) {
    const std::string name = genre(level1), sub = distinctSubgenre(level1, level2);
    return name.empty() || sub.empty() ? name : name + " / " + sub;
}

// ABNT NBR 15603-2: the age nibble of the parental rating (ClassInd).
const char* ageRating(unsigned int age) {
    static const char* const kNames[] = {nullptr, "L", "10", "12", "14", "16", "18"};
    return pick(kNames, age);
}

std::string contentWarnings(unsigned int content) {
    std::string out;
    static const char* const kNames[] = {"drugs", "violence", "sex"};
    for (unsigned int bit = 0; bit < 3; ++bit) {
        if (content & (1u << bit)) {
            if (!out.empty())
                out += ',';
            out += kNames[bit];
        }
    }
    return out;
}

const char* applicationType(unsigned int type) {
    switch (type) {
        case 0x0001:
            return "Ginga-J";
        case 0x0009:
            return "Ginga-NCL";
        case 0x000B:
            return "Ginga HTML5";
        default:
            return "";
    }
}

const char* controlCode(unsigned int code) {
    static const char* const kNames[] = {nullptr,   "AUTOSTART", "PRESENT",
                                         "DESTROY", "KILL",      "PREFETCH",
                                         "REMOTE",  "DISABLED",  "PLAYBACK_AUTOSTART"};
    return pick(kNames, code);
}

std::string videoComponent(unsigned int componentType) {
    // Upper nibble: the scan format; lower nibble: the aspect ratio.
    const char* format = "";
    switch (componentType >> 4) {
        case 0x0:
            format = "480i";
            break;
        case 0xA:
            format = "480p";
            break;
        case 0xB:
            format = "1080i";
            break;
        case 0xC:
            format = "720p";
            break;
        case 0xD:
            format = "240p";
            break;
        case 0xE:
            format = "1080p";
            break;
        default:
            return "";
    }
    static const char* const kAspects[] = {nullptr, "4:3", "16:9 with pan vectors", "16:9",
                                           "wider than 16:9"};
    const char* aspect = pick(kAspects, componentType & 0x0F);
    if (*aspect == '\0')
        return "";
    return std::string(format) + " " + aspect;
}

const char* audioComponent(unsigned int componentType) {
    switch (componentType) {
        case 0x01:
            return "mono (1/0)";
        case 0x02:
            return "dual mono (1/0+1/0)";
        case 0x03:
            return "stereo (2/0)";
        case 0x04:
            return "2/1";
        case 0x05:
            return "3/0";
        case 0x06:
            return "2/2";
        case 0x07:
            return "3/1";
        case 0x08:
            return "3/2";
        case 0x09:
            return "5.1 (3/2+LFE)";
        default:
            return "";
    }
}

const char* samplingRate(unsigned int value) {
    static const char* const kNames[] = {nullptr, "16 kHz", "22.05 kHz", "24 kHz",
                                         nullptr, "32 kHz", "44.1 kHz",  "48 kHz"};
    return pick(kNames, value);
}

std::string hex(unsigned int value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%0*X", digits, value);
    return text;
}

}  // namespace names
}  // namespace sarntool
