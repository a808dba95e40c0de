// For tests: library drawings built in memory and saved to a temporary folder, with the
// dictionaries, part records and blocks the store reads.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/Xrecord.h"
#include "vantor/store/PartRecord.h"

namespace vantor::testing_support {

// Adds (or finds) the dictionary `key` under `parent` and answers its id.
inline cad::db::ObjectId addDictionary(cad::db::ObjectId parent, std::string_view key) {
    auto dictionary = cad::db::open<cad::db::Dictionary>(parent, cad::db::OpenMode::ForWrite);
    cad::db::ObjectId id;
    if (dictionary->getAt(key, id) == cad::ErrorStatus::eOk) return id;
    EXPECT_EQ(dictionary->setAt(key, std::make_unique<cad::db::Dictionary>(), id),
              cad::ErrorStatus::eOk);
    return id;
}

inline cad::db::ObjectId addRecord(cad::db::ObjectId group, std::string_view key,
                                   const PartRecord& record) {
    auto dictionary = cad::db::open<cad::db::Dictionary>(group, cad::db::OpenMode::ForWrite);
    auto xrecord = std::make_unique<cad::db::Xrecord>();
    xrecord->setFromRbChain(record.toChain());
    cad::db::ObjectId id;
    EXPECT_EQ(dictionary->setAt(key, std::move(xrecord), id), cad::ErrorStatus::eOk);
    return id;
}

inline cad::db::ObjectId addRecord(cad::db::ObjectId group, std::string_view key, std::string kname,
                                   std::string spec) {
    PartRecord record;
    record.kname = std::move(kname);
    record.spec = std::move(spec);
    return addRecord(group, key, record);
}

// Sets a file's last write time `seconds` away from a fixed whole second an hour ago, so
// tests compare times without sleeping.
inline void setWriteTime(const std::string& path, int seconds) {
    using namespace std::chrono;
    static const auto base =
        time_point_cast<std::chrono::seconds>(std::filesystem::file_time_type::clock::now()) -
        hours(1);
    std::filesystem::last_write_time(path, base + std::chrono::seconds(seconds));
}

}  // namespace vantor::testing_support
