// The document manager: the open documents, which one is current and active, their locks, the
// command strings queued to them, application context, and opening, making and closing
// documents with the reactors told in the host's order. With the system variable "SDI" not 0
// there is at most one document: opening a drawing replaces it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cad/app/Document.h"
#include "cad/app/LockMode.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::db {
class Database;
}
namespace cad::ed {
class Editor;
}

namespace cad::app {

class DocumentManagerReactor;
class ModuleLoader;

class DocumentManager {
public:
    explicit DocumentManager(ed::Editor& editor);
    // Closes what is still open (reactors and modules are told).
    ~DocumentManager();
    DocumentManager(const DocumentManager&) = delete;
    DocumentManager& operator=(const DocumentManager&) = delete;

    // Modules get kLoadDwgMsg and kUnloadDwgMsg through it (none: no module is told).
    void setModuleLoader(ModuleLoader* loader) { loader_ = loader; }

    int documentCount() const { return static_cast<int>(documents_.size()); }
    std::vector<Document*> documents() const;
    // The document whose context code runs in; the active document of the window unless
    // setCurDocument chose another.
    Document* curDocument() const { return current_; }
    Document* mdiActiveDocument() const { return active_; }
    Document* document(const db::Database* database) const;

    ErrorStatus activateDocument(Document* document);
    ErrorStatus setCurDocument(Document* document);

    // Locks nest. A write lock (Write, AutoWrite, ProtectedAutoWrite) is refused with
    // eLockViolation while another write lock is held, XWrite while any lock is held, and Read
    // while an XWrite lock is held.
    ErrorStatus lockDocument(Document* document, LockMode mode, std::string_view globalCmdName = {},
                             std::string_view localCmdName = {}, bool prompt = true);
    // Releases the lock taken last; eNotApplicable when none is held.
    ErrorStatus unlockDocument(Document* document);
    // False while a command runs in the document.
    bool isQuiescent(const Document* document) const;

    // Queues text to be executed in the document as if typed ("_UBLI\n"); the host runs it when
    // the document is active and at its command prompt. `activate` makes the document active.
    // wrapUpInactiveDoc is taken for the host's signature only: a document left while one of
    // its commands waits keeps that command, whose input then comes when it is active again.
    ErrorStatus sendStringToExecute(Document* document, std::string_view text, bool activate = true,
                                    bool wrapUpInactiveDoc = false, bool echoString = true);
    // Told whenever a string is queued, so the host can come back to run it.
    void setStringQueuedHandler(std::function<void(Document*)> handler) {
        stringQueued_ = std::move(handler);
    }

    // Runs `function` in application context (outside any document's command) and returns
    // when it is done.
    void executeInApplicationContext(void (*function)(void*), void* data);
    // True outside commands (the host's own loop, its dialogs) and inside
    // executeInApplicationContext; false while a command runs in the current document.
    bool isApplicationContext() const;

    // Open and make drawings, in application context only (eNotApplicable otherwise). The new
    // document becomes active. eFileNotFound, eBadDwgFile, ... when the drawing cannot be read;
    // a drawing another document (or program) holds is opened read-only.
    ErrorStatus appContextOpenDocument(const std::string& path);
    ErrorStatus appContextNewDocument(const std::string& templatePath = {});
    // The synchronous open of single-document mode: replaces the current document, also from
    // inside a command (whose document is then destroyed once the command ends).
    ErrorStatus syncFileOpen(const std::string& path);
    ErrorStatus closeDocument(Document* document);
    // Closes every document, the last opened first (the host quitting).
    void closeAllDocuments();

    void addReactor(DocumentManagerReactor* reactor);
    void removeReactor(DocumentManagerReactor* reactor);

    // ---- For the command processor ----
    void commandStarted(Document* document);
    void commandFinished(Document* document);
    bool popQueuedString(std::string& text, bool& echo);

private:
    bool singleDocumentMode() const;
    ErrorStatus readDrawing(const std::string& path, std::unique_ptr<db::Database>& database,
                            bool& readOnly);
    Document* addDocument(std::unique_ptr<db::Database> database, std::string fileName,
                          bool readOnly);
    void destroyDocument(Document* document);
    void makeActive(Document* document);
    void setEditorContext();
    template <class F>
    void notify(F&& call);

    ed::Editor& editor_;
    ModuleLoader* loader_ = nullptr;
    std::vector<std::unique_ptr<Document>> documents_;
    // Documents closed while a command still ran in them, freed when it ends.
    std::vector<std::unique_ptr<Document>> retired_;
    Document* current_ = nullptr;
    Document* active_ = nullptr;
    int applicationContextDepth_ = 0;
    int untitledCount_ = 0;
    std::vector<DocumentManagerReactor*> reactors_;
    std::function<void(Document*)> stringQueued_;
};

}  // namespace cad::app
