// The editor's selection: picking an entity, windows, and selection sets over model space.
#include "cad/ed/Editor.h"

#include <algorithm>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/HitTester.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/SelectionSet.h"
#include "cad/ed/TypedInput.h"
#include "cad/sys/AsciiCase.h"

namespace cad::ed {

namespace {

using Kind = InputRequest::Kind;

// An entity of model space with its extents, as selection looks at it.
struct Candidate {
    db::ObjectId id;
    db::Extents3d extents;
};

// Whether the entity is one of `types` (any, when there are none).
bool ofTypes(db::ObjectId id, const std::vector<std::string>& types) {
    if (types.empty()) return true;
    auto entity = db::open<db::Entity>(id, db::OpenMode::ForRead);
    return entity && std::any_of(types.begin(), types.end(),
                                 [&](const std::string& t) { return sys::equalNoCase(t, entity->dxfName()); });
}

// Every entity of model space (of the given types), in drawing order. Entities that cannot be
// opened for read just now (open for write elsewhere) cannot be selected either.
std::vector<Candidate> modelSpaceEntities(db::Database* database,
                                          const std::vector<std::string>& types) {
    std::vector<Candidate> out;
    if (database == nullptr) return out;
    std::vector<db::ObjectId> ids;
    if (auto space =
            db::open<db::BlockTableRecord>(database->modelSpaceId(), db::OpenMode::ForRead))
        ids = space->entityIds();
    for (db::ObjectId id : ids) {
        auto entity = db::open<db::Entity>(id, db::OpenMode::ForRead);
        if (!entity) continue;
        if (!types.empty() && std::none_of(types.begin(), types.end(), [&](const std::string& t) {
                return sys::equalNoCase(t, entity->dxfName());
            }))
            continue;
        Candidate candidate{id, {}};
        if (entity->getGeomExtents(candidate.extents) != ErrorStatus::eOk) continue;
        out.push_back(candidate);
    }
    return out;
}

double area(const db::Extents3d& e) {
    return (e.maxPoint.x - e.minPoint.x) * (e.maxPoint.y - e.minPoint.y);
}

}  // namespace

int Editor::entSel(std::string_view prompt, EntityName& entity, ge::Point3d& picked) {
    db::ObjectId found;
    ge::Point3d at;
    std::string text = prompt.empty() ? std::string("\nSelect object: ") : std::string(prompt);
    int code = ask({Kind::EntitySelect, text}, [&](const InputEvent& input) -> Answer {
        if (auto p = pointOf(input)) {
            at = *p;
            found = entityAt(*p, {});
        } else if (db::Handle::fromHex(input.text)) {
            found = entityByHandle(input.text, {});
            for (const Candidate& c : modelSpaceEntities(database_, {}))
                if (c.id == found)
                    at = ge::Point3d((c.extents.minPoint.x + c.extents.maxPoint.x) / 2,
                                     (c.extents.minPoint.y + c.extents.maxPoint.y) / 2,
                                     (c.extents.minPoint.z + c.extents.maxPoint.z) / 2);
        } else {
            return {0, "\n*Invalid selection*"};
        }
        return {found.isNull() ? RTERROR : RTNORM, {}};
    });
    if (code == RTNORM) {
        entity = EntityName{found};
        picked = at;
    }
    return code;
}

// ---- Selection sets ----

db::ObjectId Editor::entityAt(const ge::Point3d& point,
                              const std::vector<std::string>& types) const {
    if (hitTester_ != nullptr) {
        for (db::ObjectId id : hitTester_->entitiesAt(point))
            if (ofTypes(id, types)) return id;
        return db::ObjectId::kNull;
    }
    // Without a view to hit-test in, an entity is hit when the point lies in its extents
    // widened by a pick box; of several, the smallest (then the newest) is taken, which is the
    // one a user aiming at it means.
    SysVarValue size;
    double radius = getVar("VIEWSIZE", size) == RTNORM ? std::get<double>(size) * 0.005 : 1.0;
    const Candidate* best = nullptr;
    std::vector<Candidate> candidates = modelSpaceEntities(database_, types);
    for (const Candidate& c : candidates) {
        if (point.x < c.extents.minPoint.x - radius || point.x > c.extents.maxPoint.x + radius ||
            point.y < c.extents.minPoint.y - radius || point.y > c.extents.maxPoint.y + radius)
            continue;
        if (best == nullptr || area(c.extents) <= area(best->extents)) best = &c;
    }
    return best ? best->id : db::ObjectId::kNull;
}

db::ObjectId Editor::entityByHandle(std::string_view text,
                                    const std::vector<std::string>& types) const {
    auto handle = db::Handle::fromHex(text);
    if (!handle) return db::ObjectId::kNull;
    for (const Candidate& c : modelSpaceEntities(database_, types))
        if (c.id.handle() == *handle) return c.id;
    return db::ObjectId::kNull;
}

std::vector<db::ObjectId> Editor::entitiesIn(const ge::Point3d& corner1, const ge::Point3d& corner2,
                                             const std::vector<std::string>& types, bool crossing) const {
    std::vector<db::ObjectId> out;
    if (hitTester_ != nullptr) {
        for (db::ObjectId id : hitTester_->entitiesIn(corner1, corner2, crossing))
            if (ofTypes(id, types)) out.push_back(id);
        return out;
    }
    double minX = std::min(corner1.x, corner2.x), maxX = std::max(corner1.x, corner2.x);
    double minY = std::min(corner1.y, corner2.y), maxY = std::max(corner1.y, corner2.y);
    for (const Candidate& c : modelSpaceEntities(database_, types)) {
        const bool inside = c.extents.minPoint.x >= minX && c.extents.maxPoint.x <= maxX &&
                            c.extents.minPoint.y >= minY && c.extents.maxPoint.y <= maxY;
        const bool meets = c.extents.minPoint.x <= maxX && c.extents.maxPoint.x >= minX &&
                           c.extents.minPoint.y <= maxY && c.extents.maxPoint.y >= minY;
        if (crossing ? meets : inside) out.push_back(c.id);
    }
    return out;
}

std::optional<std::vector<db::ObjectId>> Editor::windowFrom(const ge::Point3d& first, std::optional<bool> crossing,
                                                            const std::vector<std::string>& types, int& code) {
    ge::Point3d second;
    code = getCorner("\nSpecify opposite corner: ", first, second);
    if (code != RTNORM) return std::nullopt;
    // Dragged to the left, a window crosses; to the right it encloses.
    return entitiesIn(first, second, types, crossing.value_or(second.x < first.x));
}

int Editor::promptSelection(SelectionSet& result, const std::vector<std::string>& types) {
    const KeywordList keywords("Window Crossing ALL");
    InputRequest request{Kind::Selection, "\nSelect objects: "};
    request.keywords = keywords.text();
    print(request.prompt);
    for (;;) {
        InputEvent input = nextInput(request);
        if (input.kind == InputEvent::Kind::Cancel || input.kind == InputEvent::Kind::End) {
            print("*Cancel*");
            result.free();
            return RTCAN;
        }
        if (input.kind == InputEvent::Kind::Move || input.kind == InputEvent::Kind::Key) continue;
        if (input.kind == InputEvent::Kind::Text && input.text.empty())
            return result.length() > 0 ? RTNORM : RTERROR;

        std::optional<std::vector<db::ObjectId>> found;
        auto keyword =
            input.kind == InputEvent::Kind::Text ? keywords.match(input.text) : std::nullopt;
        int code = RTNORM;
        if (keyword == 0u || keyword == 1u) {
            ge::Point3d first;
            code = getPoint("\nFirst corner: ", first);
            if (code == RTNORM) found = windowFrom(first, keyword == 1u, types, code);
        } else if (keyword == 2u) {
            found = entitiesIn({-1e300, -1e300, 0}, {1e300, 1e300, 0}, types);
        } else if (auto point = pointOf(input)) {
            found.emplace();
            if (db::ObjectId id = entityAt(*point, types); !id.isNull())
                found->push_back(id);
            else
                found = windowFrom(*point, std::nullopt, types, code);
        } else if (db::Handle::fromHex(input.text)) {
            found.emplace();
            if (db::ObjectId id = entityByHandle(input.text, types); !id.isNull())
                found->push_back(id);
        }
        if (code == RTCAN) {
            result.free();
            return RTCAN;
        }
        if (found) {
            printf("\n%zu found", found->size());
            for (db::ObjectId id : *found) result.add(EntityName{id});
        } else {
            print("\n*Invalid selection*");
        }
        print(request.prompt);
    }
}

int Editor::ssget(SelectMode mode, SelectionSet& result, const ge::Point3d& p1,
                  const ge::Point3d& p2, const std::vector<std::string>& types) {
    result.free();
    switch (mode) {
        case SelectMode::Prompt:
            return promptSelection(result, types);
        case SelectMode::Point:
            result.add(EntityName{entityAt(p1, types)});
            break;
        case SelectMode::Window:
            for (db::ObjectId id : entitiesIn(p1, p2, types)) result.add(EntityName{id});
            break;
        case SelectMode::All:
            for (const Candidate& c : modelSpaceEntities(database_, types))
                result.add(EntityName{c.id});
            break;
        case SelectMode::Implied: {
            std::vector<Candidate> candidates = modelSpaceEntities(database_, types);
            for (db::ObjectId id : pickfirst_)
                if (std::any_of(candidates.begin(), candidates.end(),
                                [&](const Candidate& c) { return c.id == id; }))
                    result.add(EntityName{id});
            break;
        }
    }
    return result.length() > 0 ? RTNORM : RTERROR;
}

}  // namespace cad::ed
