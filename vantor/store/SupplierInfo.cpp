// The supplier record and its logo chunks.
#include "vantor/store/SupplierInfo.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <memory>
#include <variant>
#include <vector>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::BinaryChunk;
using cad::db::Dictionary;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::db::ResBuf;
using cad::db::ResBufChain;

namespace {

constexpr int kSizeCode = 90;
constexpr int kChunkCode = 310;
constexpr int kTextCode = 1;
constexpr std::string_view kSaveErrorTitle = "저장 에러";

std::optional<std::int64_t> integerOf(const ResBuf& value) {
    if (auto v = std::get_if<std::int16_t>(&value.value)) return *v;
    if (auto v = std::get_if<std::int32_t>(&value.value)) return *v;
    if (auto v = std::get_if<std::int64_t>(&value.value)) return *v;
    return std::nullopt;
}

// The 119 chunks from position 1 on; `next` ends after the last value they took. A DXF file
// holds at most 127 bytes per binary value, so a drawing read from one brings each chunk back
// as pieces of 127 bytes and a rest; the lengths the stored size implies put them together
// again (a chunk of exactly 127 bytes is one piece, which no other rule could tell).
std::optional<std::vector<std::string>> logoChunks(const ResBufChain& chain, std::int64_t size,
                                                   std::size_t& next) {
    constexpr std::size_t kDxfPiece = 127;
    std::size_t pieces = 0;
    while (1 + pieces < chain.size() &&
           std::holds_alternative<BinaryChunk>(chain[1 + pieces].value))
        ++pieces;
    auto piece = [&](std::size_t i) -> const std::string& {
        return std::get<BinaryChunk>(chain[1 + i].value).bytes;
    };
    std::vector<std::string> chunks;
    if (pieces == SupplierInfo::kChunkCount) {
        for (std::size_t i = 0; i < pieces; ++i) chunks.push_back(piece(i));
        next = 1 + pieces;
        return chunks;
    }
    if (size < 0 || static_cast<std::uint64_t>(size) > SupplierInfo::kMaxLogoBytes)
        return std::nullopt;
    std::size_t taken = 0;
    for (std::size_t i = 0; i < SupplierInfo::kChunkCount; ++i) {
        const std::size_t start = i * SupplierInfo::kChunkSize;
        const std::size_t length =
            start < static_cast<std::size_t>(size)
                ? std::min(SupplierInfo::kChunkSize, static_cast<std::size_t>(size) - start)
                : 1;
        std::string joined;
        do {
            if (taken == pieces) return std::nullopt;
            joined += piece(taken++);
        } while (joined.size() < length && joined.size() % kDxfPiece == 0);
        if (joined.size() != length) return std::nullopt;
        chunks.push_back(std::move(joined));
    }
    if (taken != pieces) return std::nullopt;
    next = 1 + pieces;
    return chunks;
}

bool readLogoFile(const std::string& path, std::string& bytes, cad::app::UserDialogs& dialogs) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        dialogs.messageBox(
            "BMP 화일이 없거나 경로가 잘못 설정되어 있습니다.\n다시 확인하여 주십시오.",
            kSaveErrorTitle, cad::app::MB_OK | cad::app::MB_ICONERROR);
        return false;
    }
    const std::streamoff size = file.tellg();
    // Refused before anything is read: the record has room for 119 chunks only.
    if (size < 0 || static_cast<std::uint64_t>(size) > SupplierInfo::kMaxLogoBytes) {
        dialogs.messageBox(
            "BMP 화일이 너무 큽니다. 30,226 바이트 이하의 화일만 저장할 수 있습니다.\n"
            "150 X 40 픽셀 사이즈의 BMP 이미지를 등록하여 주십시오.",
            kSaveErrorTitle, cad::app::MB_OK | cad::app::MB_ICONERROR);
        return false;
    }
    bytes.assign(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    return static_cast<bool>(file.read(bytes.data(), size));
}

}  // namespace

ResBufChain SupplierInfo::toChain() const {
    ResBufChain chain;
    chain.reserve(kChainLength);
    chain.push_back({kSizeCode, static_cast<std::int32_t>(logo.size())});
    for (std::size_t i = 0; i < kChunkCount; ++i) {
        const std::size_t start = i * kChunkSize;
        std::string bytes =
            start < logo.size() ? logo.substr(start, kChunkSize) : std::string(1, '\0');
        chain.push_back({kChunkCode, BinaryChunk{std::move(bytes)}});
    }
    for (const std::string& text : texts) chain.push_back({kTextCode, text});
    return chain;
}

std::optional<SupplierInfo> SupplierInfo::fromChain(const ResBufChain& chain) {
    if (chain.empty()) return std::nullopt;
    std::optional<std::int64_t> stored = integerOf(chain[0]);
    if (!stored) return std::nullopt;
    std::size_t next = 1;
    std::optional<std::vector<std::string>> chunks = logoChunks(chain, *stored, next);
    if (!chunks || chain.size() < next + kTextCount) return std::nullopt;
    for (std::size_t i = next; i < next + kTextCount; ++i) {
        if (chain[i].text() == nullptr) return std::nullopt;
    }

    const int size = static_cast<std::int16_t>(static_cast<std::uint16_t>(*stored & 0xFFFF));
    const int tail = size % static_cast<int>(kChunkSize);  // negative for a negative size
    // One byte more than a logo can have, so the closing zero of the largest one fits.
    std::string buffer(kMaxLogoBytes + 1, '\0');
    std::size_t offset = 0;
    for (const std::string& bytes : *chunks) {
        if (bytes.size() == kChunkSize)
            std::copy(bytes.begin(), bytes.end(),
                      buffer.begin() + static_cast<std::ptrdiff_t>(offset));
        else if (static_cast<int>(bytes.size()) == tail)
            std::copy(bytes.begin(), bytes.end(),
                      buffer.begin() + static_cast<std::ptrdiff_t>(bytes.size()));
        offset += kChunkSize;
    }
    if (size >= 0 && static_cast<std::size_t>(size) < buffer.size())
        buffer[static_cast<std::size_t>(size)] = '\0';

    SupplierInfo info;
    info.logo = buffer.substr(0, std::min<std::size_t>(std::max(size, 0), kMaxLogoBytes));
    for (std::size_t i = 0; i < kTextCount; ++i) info.texts[i] = *chain[next + i].text();
    return info;
}

ErrorStatus SupplierInfo::writeTo(cad::db::Database& db, cad::app::UserDialogs& dialogs) {
    if (!readLogoFile(logoPath, logo, dialogs)) return ErrorStatus::eFileReadError;

    ObjectId informId;
    {
        auto named = cad::db::open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForWrite);
        if (!named) return named.openStatus();
        if (named->getAt(kSupplierDictionaryKey, informId) != ErrorStatus::eOk) {
            ErrorStatus es =
                named->setAt(kSupplierDictionaryKey, std::make_unique<Dictionary>(), informId);
            if (es != ErrorStatus::eOk) return es;
        }
    }
    auto inform = cad::db::open<Dictionary>(informId, OpenMode::ForWrite);
    if (!inform) return inform.openStatus();
    auto record = std::make_unique<cad::db::Xrecord>();
    record->setFromRbChain(toChain());
    ObjectId recordId;
    // Setting the key again replaces the record that was there.
    if (ErrorStatus es = inform->setAt(kSupplierRecordKey, std::move(record), recordId);
        es != ErrorStatus::eOk)
        return es;
    return inform.close();
}

std::optional<SupplierInfo> SupplierInfo::readFrom(cad::db::Database& db) {
    ObjectId informId;
    ObjectId recordId;
    {
        auto named = cad::db::open<Dictionary>(db.namedObjectsDictionaryId(), OpenMode::ForRead);
        if (!named || named->getAt(kSupplierDictionaryKey, informId) != ErrorStatus::eOk)
            return std::nullopt;
    }
    {
        auto inform = cad::db::open<Dictionary>(informId, OpenMode::ForRead);
        if (!inform || inform->getAt(kSupplierRecordKey, recordId) != ErrorStatus::eOk)
            return std::nullopt;
    }
    auto record = cad::db::open<cad::db::Xrecord>(recordId, OpenMode::ForRead);
    if (!record) return std::nullopt;
    return fromChain(record->rbChain());
}

}  // namespace vantor
