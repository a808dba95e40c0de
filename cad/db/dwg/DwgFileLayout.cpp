// Reading the frame of an R13 to R2000 DWG file: the fixed file header with its section
// locators, the class section and the object map.
#include "cad/db/dwg/DwgFileLayout.h"

#include <array>
#include <cstring>

#include "cad/db/dwg/BitReader.h"
#include "cad/db/dwg/DwgCrc.h"

namespace cad::db::dwg {
namespace {

constexpr std::size_t kLocatorStart = 0x19;
constexpr unsigned char kClassesSentinel[16] = {0x8D, 0xA1, 0xC4, 0xB8, 0xC4, 0xA9, 0xF8, 0xC5,
                                                0xC0, 0xDC, 0xF4, 0x5F, 0xE7, 0xCF, 0xB6, 0x8A};
constexpr unsigned char kHeaderSentinel[16] = {0xCF, 0x7B, 0x1F, 0x23, 0xFD, 0xDE, 0x38, 0xA9,
                                               0x5F, 0x7C, 0x68, 0xB8, 0x4E, 0x6D, 0x33, 0x5F};

std::uint32_t littleLong(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = (value << 8) | static_cast<std::uint8_t>(bytes[at + i]);
    return value;
}

std::uint16_t littleShort(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(bytes[at]) |
                                      (static_cast<std::uint8_t>(bytes[at + 1]) << 8));
}

bool hasSentinel(std::string_view bytes, std::size_t at, const unsigned char (&sentinel)[16]) {
    return at <= bytes.size() && bytes.size() - at >= 16 &&
           std::memcmp(bytes.data() + at, sentinel, 16) == 0;
}

std::string versionName(std::string_view acadVer) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 12> kNames{{
        {"AC1018", "DWG 2004"}, {"AC1021", "DWG 2007"}, {"AC1024", "DWG 2010"},
        {"AC1027", "DWG 2013"}, {"AC1032", "DWG 2018"}, {"AC1009", "DWG R11/R12"},
        {"AC1006", "DWG R10"},  {"AC1004", "DWG R9"},   {"AC1003", "DWG R2.6"},
        {"AC1002", "DWG R2.5"}, {"AC1001", "DWG R2.2"}, {"AC1012", "DWG R13"},
    }};
    for (const auto& [code, name] : kNames) {
        if (code == acadVer) return std::string(name) + " (" + std::string(acadVer) + ")";
    }
    return "DWG " + std::string(acadVer);
}

std::optional<DwgError> readClasses(std::string_view bytes, std::int64_t at, std::int64_t size,
                                    DwgFileLayout& layout) {
    const auto start = static_cast<std::size_t>(at);
    if (at < 0 || !hasSentinel(bytes, start, kClassesSentinel)) {
        return dwgError(start, "expected the start marker of the class section");
    }
    if (bytes.size() - start < 20) return dwgError(start + 16, "expected the class section's size");
    const std::uint32_t dataSize = littleLong(bytes, start + 16);
    const std::size_t dataStart = start + 20;
    if (dataSize > bytes.size() - dataStart || static_cast<std::int64_t>(dataSize) > size) {
        return dwgError(start + 16, "the class section's size runs past the end of the file");
    }
    if (bytes.size() - dataStart - dataSize >= 2) {
        const std::uint16_t stored = littleShort(bytes, dataStart + dataSize);
        if (dwgCrc16(bytes.substr(start + 16, dataSize + 4), 0xC0C1) != stored) {
            layout.warnings.push_back("the class section's check value does not match");
        }
    }
    BitReader reader(bytes.substr(dataStart, dataSize));
    // The class list ends where the section's data does; a last few bits of padding hold no
    // class.
    while (reader.bitPosition() + 8 * 8 < reader.sizeInBits()) {
        DwgClass cls;
        cls.number = static_cast<std::uint16_t>(reader.bitShort());
        cls.proxyFlags = static_cast<std::uint16_t>(reader.bitShort());
        cls.appName = reader.text();
        cls.cppName = reader.text();
        cls.dxfName = reader.text();
        cls.wasZombie = reader.bit();
        const int itemClass = static_cast<std::uint16_t>(reader.bitShort());
        if (reader.failed()) {
            return dwgError(dataStart + reader.failedAt() / 8,
                            "expected a complete class record in the class section");
        }
        if (itemClass != 0x1F2 && itemClass != 0x1F3) {
            return dwgError(dataStart + reader.byteOffset(),
                            "expected a class marked as entity or object");
        }
        cls.isEntity = itemClass == 0x1F2;
        layout.classes.push_back(std::move(cls));
    }
    return std::nullopt;
}

std::optional<DwgError> readObjectMap(std::string_view bytes, std::int64_t at, std::int64_t size,
                                      DwgFileLayout& layout) {
    if (at < 0 || static_cast<std::uint64_t>(at) > bytes.size()) {
        return dwgError(static_cast<std::uint64_t>(at), "expected the object map inside the file");
    }
    std::size_t pos = static_cast<std::size_t>(at);
    const std::size_t end = size > 0 && static_cast<std::uint64_t>(size) <= bytes.size() - pos
                                ? pos + static_cast<std::size_t>(size)
                                : bytes.size();
    for (;;) {
        if (end - pos < 2) return dwgError(pos, "expected the size of an object map page");
        // Page sizes are stored most significant byte first, unlike everything else.
        const std::size_t pageSize = (static_cast<std::uint8_t>(bytes[pos]) << 8) |
                                     static_cast<std::uint8_t>(bytes[pos + 1]);
        if (pageSize == 2) break;
        if (pageSize < 2 || end - pos < pageSize + 2) {
            return dwgError(pos, "expected an object map page inside the map (size " +
                                     std::to_string(pageSize) + ")");
        }
        const std::uint16_t stored = static_cast<std::uint16_t>(
            (static_cast<std::uint8_t>(bytes[pos + pageSize]) << 8) |
            static_cast<std::uint8_t>(bytes[pos + pageSize + 1]));
        if (dwgCrc16(bytes.substr(pos, pageSize), 0xC0C1) != stored) {
            layout.warnings.push_back("object map page at offset " + std::to_string(pos) +
                                      ": its check value does not match");
        }
        BitReader reader(bytes.substr(pos + 2, pageSize - 2));
        std::uint64_t handle = 0;
        std::int64_t offset = 0;
        while (reader.bitPosition() < reader.sizeInBits()) {
            const std::uint64_t step = reader.modularChar();
            const std::int64_t move = reader.signedModularChar();
            if (reader.failed()) {
                return dwgError(pos + 2 + reader.failedAt() / 8,
                                "expected a handle and offset pair in the object map");
            }
            handle += step;
            offset += move;
            if (step != 0) layout.objects.push_back({handle, offset});
        }
        pos += pageSize + 2;
    }
    return std::nullopt;
}

}  // namespace

DwgError dwgError(std::uint64_t offset, std::string_view what) {
    return {offset, "offset " + std::to_string(offset) + ": " + std::string(what)};
}

bool looksLikeDwg(std::string_view bytes) {
    if (bytes.size() < 6 || bytes.substr(0, 3) != "AC1") return false;
    for (std::size_t i = 3; i < 6; ++i) {
        if (bytes[i] < '0' || bytes[i] > '9') return false;
    }
    return true;
}

std::string_view dwgCodePageName(int index) {
    static constexpr std::array<std::string_view, 45> kNames{
        "",          "",          "",          "",          "",          "",
        "",          "",          "",          "",          "",          "DOS437",
        "DOS850",    "DOS852",    "DOS855",    "DOS857",    "DOS860",    "DOS861",
        "DOS863",    "DOS864",    "DOS865",    "DOS869",    "DOS932",    "",
        "ANSI_950",  "ANSI_949",  "",          "DOS866",    "ANSI_1250", "ANSI_1251",
        "ANSI_1252", "ANSI_936",  "ANSI_1253", "ANSI_1254", "ANSI_1255", "ANSI_1256",
        "ANSI_1257", "ANSI_874",  "ANSI_932",  "ANSI_936",  "ANSI_949",  "ANSI_950",
        "ANSI_1361", "",          "ANSI_1258"};
    return index >= 0 && static_cast<std::size_t>(index) < kNames.size() ? kNames[index] : "";
}

std::optional<DwgError> readFileLayout(std::string_view bytes, DwgFileLayout& layout) {
    if (!looksLikeDwg(bytes)) return dwgError(0, "expected a DWG version code such as AC1015");
    layout.acadVer = std::string(bytes.substr(0, 6));
    if (layout.acadVer == "AC1012") {
        layout.version = DwgVersion::R13;
    } else if (layout.acadVer == "AC1014") {
        layout.version = DwgVersion::R14;
    } else if (layout.acadVer == "AC1015") {
        layout.version = DwgVersion::R2000;
    } else {
        return dwgError(0, versionName(layout.acadVer) +
                               " is not read: only DWG R13, R14 and 2000 (AC1012 to AC1015) are");
    }
    if (bytes.size() < kLocatorStart) return dwgError(bytes.size(), "expected the file header");
    layout.codePageIndex = littleShort(bytes, 0x13);
    layout.codePageName = std::string(dwgCodePageName(layout.codePageIndex));
    const std::uint32_t count = littleLong(bytes, 0x15);
    if (count < 3 || count > 16) {
        return dwgError(0x15, "expected 3 to 16 section locators, found " + std::to_string(count));
    }
    const std::size_t crcAt = kLocatorStart + 9 * count;
    if (bytes.size() < crcAt + 2 + 16) {
        return dwgError(bytes.size(), "expected the section locators and their check value");
    }
    std::array<std::int64_t, 16> seeker{}, sizes{};
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t at = kLocatorStart + 9 * i;
        const auto number = static_cast<std::uint8_t>(bytes[at]);
        if (number < 16) {
            seeker[number] = littleLong(bytes, at + 1);
            sizes[number] = littleLong(bytes, at + 5);
        }
    }
    // The header's check value is mixed with a constant that depends on the number of
    // locators.
    std::uint16_t crc = dwgCrc16(bytes.substr(0, crcAt), 0);
    switch (count) {
        case 3: crc ^= 0xA598; break;
        case 4: crc ^= 0x8101; break;
        case 5: crc ^= 0x3CC4; break;
        case 6: crc ^= 0x8461; break;
        default: break;
    }
    if (crc != littleShort(bytes, crcAt)) {
        layout.warnings.push_back("the file header's check value does not match");
    }
    layout.headerOffset = seeker[0];
    layout.headerSize = sizes[0];
    if (!hasSentinel(bytes, static_cast<std::size_t>(seeker[0]), kHeaderSentinel)) {
        return dwgError(static_cast<std::uint64_t>(seeker[0]),
                        "expected the start marker of the header variables");
    }
    if (auto error = readClasses(bytes, seeker[1], sizes[1], layout)) return error;
    if (auto error = readObjectMap(bytes, seeker[2], sizes[2], layout)) return error;
    return std::nullopt;
}

}  // namespace cad::db::dwg
