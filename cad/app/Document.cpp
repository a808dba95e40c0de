// Document state.
#include "cad/app/Document.h"

#include <filesystem>

#include "cad/db/Database.h"

namespace cad::app {

Document::Document(std::unique_ptr<db::Database> database, std::string fileName, bool readOnly)
    : database_(std::move(database)), fileName_(std::move(fileName)), readOnly_(readOnly) {
    std::filesystem::path path(fileName_);
    variables_.set("DWGNAME", path.filename().string());
    std::string prefix = path.has_parent_path() ? path.parent_path().string() + "/" : std::string();
    variables_.set("DWGPREFIX", prefix);
}

Document::~Document() = default;

std::string Document::docTitle() const {
    return std::filesystem::path(fileName_).filename().string();
}

LockMode Document::lockMode() const {
    return locks_.empty() ? LockMode::NotLocked : locks_.back().mode;
}

}  // namespace cad::app
