// Documents: creation, activation, locks, queued strings and application context.
#include "cad/app/DocumentManager.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "cad/app/AppMsg.h"
#include "cad/app/DocumentManagerReactor.h"
#include "cad/app/ModuleLoader.h"
#include "cad/db/Database.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"

namespace cad::app {

namespace {

bool isWriteLock(LockMode mode) {
    return mode == LockMode::Write || mode == LockMode::AutoWrite ||
           mode == LockMode::ProtectedAutoWrite || mode == LockMode::XWrite;
}

std::string samePathKey(const std::string& path) {
    std::error_code ec;
    std::filesystem::path canonical = std::filesystem::weakly_canonical(path, ec);
    return ec ? path : canonical.string();
}

}  // namespace

DocumentManager::DocumentManager(ed::Editor& editor) : editor_(editor) {
    editor_.setQueuedTextSource(
        [this](std::string& text, bool& echo) { return popQueuedString(text, echo); });
}

DocumentManager::~DocumentManager() {
    closeAllDocuments();
    editor_.setQueuedTextSource(nullptr);
    editor_.setDocumentContext(nullptr, nullptr);
}

template <class F>
void DocumentManager::notify(F&& call) {
    auto reactors = reactors_;  // a reactor may remove itself while told
    for (DocumentManagerReactor* reactor : reactors) call(*reactor);
}

std::vector<Document*> DocumentManager::documents() const {
    std::vector<Document*> out;
    for (const auto& document : documents_) out.push_back(document.get());
    return out;
}

Document* DocumentManager::document(const db::Database* database) const {
    for (const auto& document : documents_)
        if (document->database() == database) return document.get();
    return nullptr;
}

bool DocumentManager::singleDocumentMode() const {
    ed::SysVarValue sdi;
    return editor_.getVar("SDI", sdi) == ed::RTNORM && std::get<int>(sdi) != 0;
}

// ---- Activation ----

void DocumentManager::setEditorContext() {
    editor_.setDocumentContext(current_ ? current_->database() : nullptr,
                               current_ ? &current_->systemVariables() : nullptr);
}

void DocumentManager::makeActive(Document* document) {
    Document* previous = active_;
    if (previous != nullptr)
        notify([&](DocumentManagerReactor& r) { r.documentToBeDeactivated(previous); });
    notify([&](DocumentManagerReactor& r) { r.documentToBeActivated(document); });
    active_ = current_ = document;
    editor_.setPickfirst({});
    setEditorContext();
    notify([&](DocumentManagerReactor& r) { r.documentBecameCurrent(document); });
    notify([&](DocumentManagerReactor& r) { r.documentActivated(document); });
}

ErrorStatus DocumentManager::activateDocument(Document* document) {
    auto docs = documents();
    if (std::find(docs.begin(), docs.end(), document) == docs.end())
        return ErrorStatus::eInvalidInput;
    if (document != active_) makeActive(document);
    return ErrorStatus::eOk;
}

ErrorStatus DocumentManager::setCurDocument(Document* document) {
    auto docs = documents();
    if (std::find(docs.begin(), docs.end(), document) == docs.end())
        return ErrorStatus::eInvalidInput;
    if (document != current_) {
        current_ = document;
        setEditorContext();
        notify([&](DocumentManagerReactor& r) { r.documentBecameCurrent(document); });
    }
    return ErrorStatus::eOk;
}

// ---- Locks and commands ----

ErrorStatus DocumentManager::lockDocument(Document* document, LockMode mode,
                                          std::string_view globalCmdName,
                                          std::string_view localCmdName, bool /*prompt*/) {
    if (document == nullptr || mode == LockMode::None || mode == LockMode::NotLocked)
        return ErrorStatus::eInvalidInput;
    for (const Document::Lock& held : document->locks_) {
        bool refused = (isWriteLock(mode) && isWriteLock(held.mode)) || mode == LockMode::XWrite ||
                       held.mode == LockMode::XWrite;
        if (refused) return ErrorStatus::eLockViolation;
    }
    LockMode previous = document->lockMode();
    document->locks_.push_back({mode, std::string(globalCmdName), std::string(localCmdName)});
    notify([&](DocumentManagerReactor& r) {
        r.documentLockModeChanged(document, previous, mode, mode, std::string(globalCmdName));
    });
    return ErrorStatus::eOk;
}

ErrorStatus DocumentManager::unlockDocument(Document* document) {
    if (document == nullptr || document->locks_.empty()) return ErrorStatus::eNotApplicable;
    Document::Lock released = document->locks_.back();
    document->locks_.pop_back();
    LockMode now = document->lockMode();
    notify([&](DocumentManagerReactor& r) {
        r.documentLockModeChanged(document, released.mode, now, now, released.globalCommand);
    });
    return ErrorStatus::eOk;
}

bool DocumentManager::isQuiescent(const Document* document) const {
    return document != nullptr && document->commandDepth_ == 0;
}

void DocumentManager::commandStarted(Document* document) {
    if (document != nullptr) ++document->commandDepth_;
}

void DocumentManager::commandFinished(Document* document) {
    if (document != nullptr) --document->commandDepth_;
    std::erase_if(retired_, [](const auto& d) { return d->commandDepth_ <= 0; });
}

// ---- Queued strings and application context ----

ErrorStatus DocumentManager::sendStringToExecute(Document* document, std::string_view text,
                                                 bool activate, bool /*wrapUpInactiveDoc*/,
                                                 bool echoString) {
    auto docs = documents();
    if (std::find(docs.begin(), docs.end(), document) == docs.end())
        return ErrorStatus::eInvalidInput;
    document->queue_.push_back({std::string(text), echoString});
    if (activate && document != active_) makeActive(document);
    if (stringQueued_) stringQueued_(document);
    return ErrorStatus::eOk;
}

bool DocumentManager::popQueuedString(std::string& text, bool& echo) {
    if (current_ == nullptr || current_->queue_.empty()) return false;
    text = std::move(current_->queue_.front().text);
    echo = current_->queue_.front().echo;
    current_->queue_.pop_front();
    return true;
}

void DocumentManager::executeInApplicationContext(void (*function)(void*), void* data) {
    ++applicationContextDepth_;
    function(data);
    --applicationContextDepth_;
}

bool DocumentManager::isApplicationContext() const {
    return applicationContextDepth_ > 0 || current_ == nullptr || current_->commandDepth_ == 0;
}

// ---- Opening, making and closing ----

ErrorStatus DocumentManager::readDrawing(const std::string& path,
                                         std::unique_ptr<db::Database>& database, bool& readOnly) {
    ErrorStatus es = ErrorStatus::eFileNotFound;
    if (std::filesystem::is_regular_file(path)) {
        std::string key = samePathKey(path);
        readOnly = ::access(path.c_str(), W_OK) != 0 ||
                   std::any_of(documents_.begin(), documents_.end(),
                               [&](const auto& d) { return samePathKey(d->fileName()) == key; });
        database = std::make_unique<db::Database>(false);
        es = database->readDwgFile(path,
                                   readOnly ? sys::ShareMode::DenyNone : sys::ShareMode::DenyWrite);
        if (es == ErrorStatus::eFileAccessErr && !readOnly) {
            // Another program holds the drawing: it can still be looked at, not changed.
            readOnly = true;
            database = std::make_unique<db::Database>(false);
            es = database->readDwgFile(path, sys::ShareMode::DenyNone);
        }
    }
    if (es != ErrorStatus::eOk) {
        std::string detail = database ? database->lastErrorMessage() : std::string();
        editor_.printf("\nCannot open \"%s\": %s%s%s", path.c_str(),
                       std::string(errorStatusName(es)).c_str(), detail.empty() ? "" : ", ",
                       detail.c_str());
        database.reset();
    }
    return es;
}

Document* DocumentManager::addDocument(std::unique_ptr<db::Database> database, std::string fileName,
                                       bool readOnly) {
    if (singleDocumentMode() && !documents_.empty()) destroyDocument(documents_.front().get());
    documents_.push_back(std::unique_ptr<Document>(
        new Document(std::move(database), std::move(fileName), readOnly)));
    Document* document = documents_.back().get();
    notify([&](DocumentManagerReactor& r) { r.documentCreateStarted(document); });
    notify([&](DocumentManagerReactor& r) { r.documentCreated(document); });
    makeActive(document);
    if (loader_) loader_->sendMessage(kLoadDwgMsg, document);
    return document;
}

ErrorStatus DocumentManager::appContextOpenDocument(const std::string& path) {
    if (!isApplicationContext()) return ErrorStatus::eNotApplicable;
    return syncFileOpen(path);
}

ErrorStatus DocumentManager::syncFileOpen(const std::string& path) {
    std::unique_ptr<db::Database> database;
    bool readOnly = false;
    // The drawing is read before anything is closed, so a failed open leaves all as it was.
    ErrorStatus es = readDrawing(path, database, readOnly);
    if (es != ErrorStatus::eOk) return es;
    addDocument(std::move(database), path, readOnly);
    return ErrorStatus::eOk;
}

ErrorStatus DocumentManager::appContextNewDocument(const std::string& templatePath) {
    if (!isApplicationContext()) return ErrorStatus::eNotApplicable;
    std::unique_ptr<db::Database> database;
    if (templatePath.empty()) {
        database = std::make_unique<db::Database>(true);
    } else {
        bool readOnly = false;
        ErrorStatus es = readDrawing(templatePath, database, readOnly);
        if (es != ErrorStatus::eOk) return es;
        database->setFileName({});
    }
    addDocument(std::move(database), "Drawing" + std::to_string(++untitledCount_) + ".dwg", false);
    return ErrorStatus::eOk;
}

ErrorStatus DocumentManager::closeDocument(Document* document) {
    auto docs = documents();
    if (std::find(docs.begin(), docs.end(), document) == docs.end())
        return ErrorStatus::eInvalidInput;
    destroyDocument(document);
    return ErrorStatus::eOk;
}

void DocumentManager::closeAllDocuments() {
    while (!documents_.empty()) destroyDocument(documents_.back().get());
}

void DocumentManager::destroyDocument(Document* document) {
    notify([&](DocumentManagerReactor& r) { r.documentToBeDestroyed(document); });
    if (loader_) {
        // Modules handle kUnloadDwgMsg in the context of the document that goes.
        Document* previous = current_;
        current_ = document;
        setEditorContext();
        loader_->sendMessage(kUnloadDwgMsg, document);
        current_ = previous;
        setEditorContext();
    }
    bool wasActive = document == active_;
    if (wasActive) notify([&](DocumentManagerReactor& r) { r.documentToBeDeactivated(document); });

    auto it = std::find_if(documents_.begin(), documents_.end(),
                           [&](const auto& d) { return d.get() == document; });
    std::unique_ptr<Document> owned = std::move(*it);
    documents_.erase(it);
    if (current_ == document) current_ = nullptr;
    if (active_ == document) active_ = nullptr;
    setEditorContext();
    std::string fileName = owned->fileName();
    if (owned->commandDepth_ > 0)
        retired_.push_back(std::move(owned));
    else
        owned.reset();
    notify([&](DocumentManagerReactor& r) { r.documentDestroyed(fileName); });

    if (wasActive && !documents_.empty()) makeActive(documents_.back().get());
}

void DocumentManager::addReactor(DocumentManagerReactor* reactor) {
    if (std::find(reactors_.begin(), reactors_.end(), reactor) == reactors_.end())
        reactors_.push_back(reactor);
}

void DocumentManager::removeReactor(DocumentManagerReactor* reactor) {
    std::erase(reactors_, reactor);
}

}  // namespace cad::app
