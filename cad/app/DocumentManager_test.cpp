// Documents: the reactors' order on open, activation and close, single-document replacement,
// read-only opens and failures, locks, quiescence and application context.
#include "cad/app/DocumentManager.h"

#include <gtest/gtest.h>

#include "cad/app/Application.h"
#include "cad/app/DocumentManagerReactor.h"
#include "cad/db/Database.h"
#include "cad/sys/TestTempFolder.h"

namespace cad::app {
namespace {

struct Recorder : DocumentManagerReactor {
    std::vector<std::string> events;
    void add(const char* what, Document* d) {
        events.push_back(std::string(what) + " " + d->docTitle());
    }
    void documentCreateStarted(Document* d) override { add("createStarted", d); }
    void documentCreated(Document* d) override { add("created", d); }
    void documentToBeDestroyed(Document* d) override { add("toBeDestroyed", d); }
    void documentDestroyed(const std::string& fileName) override {
        events.push_back("destroyed " + fileName.substr(fileName.find_last_of('/') + 1));
    }
    void documentBecameCurrent(Document* d) override { add("becameCurrent", d); }
    void documentToBeActivated(Document* d) override { add("toBeActivated", d); }
    void documentToBeDeactivated(Document* d) override { add("toBeDeactivated", d); }
    void documentActivated(Document* d) override { add("activated", d); }
    std::vector<std::string> take() { return std::exchange(events, {}); }
};

class DocumentTest : public testing::Test {
protected:
    DocumentTest() {
        for (const char* name : {"a.dxf", "b.dxf"}) {
            db::Database drawing;
            EXPECT_EQ(drawing.saveAs(folder_.file(name)), ErrorStatus::eOk);
        }
        docs().addReactor(&recorder_);
    }
    ~DocumentTest() override { docs().removeReactor(&recorder_); }
    DocumentManager& docs() { return app_.documentManager(); }
    Document* open(const char* name) {
        EXPECT_EQ(docs().appContextOpenDocument(folder_.file(name)), ErrorStatus::eOk);
        return docs().curDocument();
    }

    sys::TestTempFolder folder_;
    Application app_;
    Recorder recorder_;
};

using Events = std::vector<std::string>;

TEST_F(DocumentTest, ReactorsInTheHostsOrder) {
    Document* a = open("a.dxf");
    EXPECT_EQ(recorder_.take(),
              (Events{"createStarted a.dxf", "created a.dxf", "toBeActivated a.dxf",
                      "becameCurrent a.dxf", "activated a.dxf"}));
    Document* b = open("b.dxf");
    EXPECT_EQ(recorder_.take(),
              (Events{"createStarted b.dxf", "created b.dxf", "toBeDeactivated a.dxf",
                      "toBeActivated b.dxf", "becameCurrent b.dxf", "activated b.dxf"}));
    EXPECT_EQ(docs().activateDocument(a), ErrorStatus::eOk);
    EXPECT_EQ(docs().activateDocument(a), ErrorStatus::eOk);  // already active: no news
    EXPECT_EQ(recorder_.take(), (Events{"toBeDeactivated b.dxf", "toBeActivated a.dxf",
                                        "becameCurrent a.dxf", "activated a.dxf"}));
    EXPECT_EQ(docs().closeDocument(a), ErrorStatus::eOk);
    EXPECT_EQ(recorder_.take(),
              (Events{"toBeDestroyed a.dxf", "toBeDeactivated a.dxf", "destroyed a.dxf",
                      "toBeActivated b.dxf", "becameCurrent b.dxf", "activated b.dxf"}));
    EXPECT_EQ(docs().mdiActiveDocument(), b);
    EXPECT_EQ(app_.editor().database(), b->database());
    EXPECT_EQ(docs().closeDocument(b), ErrorStatus::eOk);
    EXPECT_EQ(recorder_.take(),
              (Events{"toBeDestroyed b.dxf", "toBeDeactivated b.dxf", "destroyed b.dxf"}));
    EXPECT_EQ(docs().documentCount(), 0);
    EXPECT_EQ(docs().curDocument(), nullptr);
    EXPECT_EQ(app_.editor().database(), nullptr);
}

TEST_F(DocumentTest, SingleDocumentModeReplacesTheDocument) {
    app_.editor().setVar("SDI", 1);
    open("a.dxf");
    recorder_.take();
    Document* b = open("b.dxf");
    EXPECT_EQ(docs().documentCount(), 1);
    EXPECT_EQ(docs().documents().front(), b);
    EXPECT_EQ(recorder_.take(),
              (Events{"toBeDestroyed a.dxf", "toBeDeactivated a.dxf", "destroyed a.dxf",
                      "createStarted b.dxf", "created b.dxf", "toBeActivated b.dxf",
                      "becameCurrent b.dxf", "activated b.dxf"}));
}

TEST_F(DocumentTest, FailedOpensChangeNothingAndSayWhy) {
    Document* a = open("a.dxf");
    recorder_.take();
    folder_.writeBytes("bad.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n");
    EXPECT_EQ(docs().appContextOpenDocument(folder_.file("none.dxf")), ErrorStatus::eFileNotFound);
    EXPECT_EQ(docs().appContextOpenDocument(folder_.file("bad.dxf")), ErrorStatus::eBadDwgFile);
    EXPECT_TRUE(recorder_.take().empty());
    EXPECT_EQ(docs().curDocument(), a);
    const std::string shown = app_.editor().commandLine().text();
    EXPECT_NE(shown.find("\nCannot open \"" + folder_.file("none.dxf") + "\": eFileNotFound"),
              std::string::npos);
    EXPECT_NE(shown.find("bad.dxf\": eBadDwgFile"), std::string::npos);
}

TEST_F(DocumentTest, ADrawingOpenTwiceIsReadOnlyTheSecondTimeAndLocksNest) {
    Document* doc = open("a.dxf");
    Document* second = open("a.dxf");
    EXPECT_FALSE(doc->isReadOnly());
    EXPECT_TRUE(second->isReadOnly());
    EXPECT_EQ(docs().documentCount(), 2);

    // Locks nest, but a write lock excludes every other write lock.
    EXPECT_EQ(doc->lockMode(), LockMode::NotLocked);
    EXPECT_EQ(docs().lockDocument(doc, LockMode::Write), ErrorStatus::eOk);
    for (LockMode mode : {LockMode::Write, LockMode::ProtectedAutoWrite, LockMode::XWrite})
        EXPECT_EQ(docs().lockDocument(doc, mode), ErrorStatus::eLockViolation);
    EXPECT_EQ(docs().lockDocument(doc, LockMode::Read), ErrorStatus::eOk);
    EXPECT_EQ(doc->lockMode(), LockMode::Read);
    EXPECT_EQ(docs().unlockDocument(doc), ErrorStatus::eOk);
    EXPECT_EQ(doc->lockMode(), LockMode::Write);
    EXPECT_EQ(docs().unlockDocument(doc), ErrorStatus::eOk);
    EXPECT_EQ(docs().unlockDocument(doc), ErrorStatus::eNotApplicable);
    EXPECT_EQ(docs().lockDocument(doc, LockMode::XWrite), ErrorStatus::eOk);
    EXPECT_EQ(docs().lockDocument(doc, LockMode::Read), ErrorStatus::eLockViolation);
    EXPECT_EQ(docs().lockDocument(doc, LockMode::NotLocked), ErrorStatus::eInvalidInput);
}

TEST_F(DocumentTest, QuiescenceAndApplicationContextFollowCommands) {
    Document* doc = open("a.dxf");
    DocumentManager& manager = docs();
    struct Seen {
        DocumentManager* manager;
        bool quiescent, appContext, appContextInside;
    } seen{&manager, false, false, false};
    app_.commandStack().addCommand("T", "PROBE", "PROBE", 0, [&] {
        seen.quiescent = manager.isQuiescent(manager.curDocument());
        seen.appContext = manager.isApplicationContext();
        manager.executeInApplicationContext(
            [](void* data) {
                auto* inside = static_cast<Seen*>(data);
                inside->appContextInside = inside->manager->isApplicationContext();
            },
            &seen);
    });
    EXPECT_TRUE(docs().isQuiescent(doc));
    EXPECT_TRUE(docs().isApplicationContext());
    EXPECT_EQ(docs().sendStringToExecute(doc, "_PROBE\n"), ErrorStatus::eOk);
    EXPECT_EQ(doc->queuedStringCount(), 1u);
    app_.commandProcessor().runPending();
    EXPECT_EQ(doc->queuedStringCount(), 0u);
    EXPECT_FALSE(seen.quiescent);
    EXPECT_FALSE(seen.appContext);
    EXPECT_TRUE(seen.appContextInside);
    EXPECT_TRUE(docs().isQuiescent(doc));
    // Opening is for application context only.
    app_.commandStack().addCommand("T", "OPENINSIDE", "OPENINSIDE", 0, [&] {
        EXPECT_EQ(manager.appContextOpenDocument(folder_.file("b.dxf")),
                  ErrorStatus::eNotApplicable);
    });
    app_.commandProcessor().execute("OPENINSIDE");
    EXPECT_EQ(docs().documentCount(), 1);
}

TEST_F(DocumentTest, SyncOpenInsideACommandKeepsItsDocumentUntilTheCommandEnds) {
    app_.editor().setVar("SDI", 1);
    Document* a = open("a.dxf");
    std::string title;
    app_.commandStack().addCommand("T", "REPLACE", "REPLACE", 0, [&] {
        EXPECT_EQ(docs().syncFileOpen(folder_.file("b.dxf")), ErrorStatus::eOk);
        title = a->docTitle();  // still alive: the command runs in it
    });
    app_.commandProcessor().execute("REPLACE");
    EXPECT_EQ(title, "a.dxf");
    EXPECT_EQ(docs().documentCount(), 1);
    EXPECT_EQ(docs().curDocument()->docTitle(), "b.dxf");
}

TEST_F(DocumentTest, NewDrawingsAreNumbered) {
    EXPECT_EQ(docs().appContextNewDocument(), ErrorStatus::eOk);
    EXPECT_EQ(docs().appContextNewDocument(), ErrorStatus::eOk);
    EXPECT_EQ(docs().curDocument()->fileName(), "Drawing2.dwg");
    ed::SysVarValue name;
    app_.editor().getVar("DWGNAME", name);
    EXPECT_EQ(std::get<std::string>(name), "Drawing2.dwg");
    EXPECT_NE(docs().curDocument()->database()->modelSpaceId(), db::ObjectId::kNull);
}

}  // namespace
}  // namespace cad::app
