// Notifications of the document manager. The host's order when a drawing is opened or made:
// documentCreateStarted, documentCreated, documentToBeDeactivated (of the document that was
// active), documentToBeActivated, documentBecameCurrent, documentActivated. When one is
// closed: documentToBeDestroyed, (the modules get kUnloadDwgMsg), documentToBeDeactivated if
// it was active, documentDestroyed, then the activation of the next one. Every function does
// nothing unless overridden.
#pragma once

#include <string>

#include "cad/app/LockMode.h"

namespace cad::app {

class Document;

class DocumentManagerReactor {
public:
    virtual ~DocumentManagerReactor() = default;
    virtual void documentCreateStarted(Document* /*document*/) {}
    virtual void documentCreated(Document* /*document*/) {}
    virtual void documentToBeDestroyed(Document* /*document*/) {}
    // The document is gone; only its file name is left.
    virtual void documentDestroyed(const std::string& /*fileName*/) {}
    virtual void documentLockModeChanged(Document* /*document*/, LockMode /*myPreviousMode*/,
                                         LockMode /*myCurrentMode*/, LockMode /*currentMode*/,
                                         const std::string& /*globalCommandName*/) {}
    virtual void documentBecameCurrent(Document* /*document*/) {}
    virtual void documentToBeActivated(Document* /*document*/) {}
    virtual void documentToBeDeactivated(Document* /*document*/) {}
    virtual void documentActivated(Document* /*document*/) {}
};

}  // namespace cad::app
