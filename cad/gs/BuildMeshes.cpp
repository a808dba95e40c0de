// Meshes drawn as their edges, seen from above: a polygon mesh is a grid of M by N vertices
// (closed in M by flag 1, in N by flag 32), a polyface mesh a list of vertices and faces of
// up to four corners whose edges can be hidden one by one.
#include <cmath>
#include <cstdlib>

#include "cad/db/ObjectPtr.h"
#include "cad/db/Polyline3d.h"
#include "cad/db/Vertex3d.h"
#include "cad/gs/DisplayList.h"
#include "cad/gs/DisplayListBuilder.h"

namespace cad::gs {

namespace {

constexpr std::int16_t kClosedInN = 32;

bool finite(const ge::Point3d& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

}  // namespace

void DisplayListBuilder::addMesh(const db::Polyline3d& mesh, std::uint32_t look, db::ObjectId owner) {
    std::vector<ge::Point3d> positions;
    std::vector<std::array<std::int16_t, 4>> faces;
    for (db::ObjectId id : mesh.vertexIds()) {
        db::ObjectPtr<db::Vertex3d> vertex(id, db::OpenMode::ForRead);
        if (!vertex) continue;
        if (vertex->isFaceRecord())
            faces.push_back({vertex->faceIndex(0), vertex->faceIndex(1), vertex->faceIndex(2), vertex->faceIndex(3)});
        else
            positions.push_back(vertex->position());
    }
    scratch_.clear();
    auto edge = [&](const ge::Point3d& a, const ge::Point3d& b) {
        if (!finite(a) || !finite(b)) return;
        scratch_.push_back({a.x, a.y});
        scratch_.push_back({b.x, b.y});
    };
    if (mesh.isPolyfaceMesh()) {
        for (const auto& face : faces) {
            int corners = 0;
            while (corners < 4 && face[static_cast<std::size_t>(corners)] != 0) ++corners;
            for (int c = 0; c < corners; ++c) {
                const int from = face[static_cast<std::size_t>(c)];
                const int to = std::abs(face[static_cast<std::size_t>((c + 1) % corners)]);
                // A negative index hides the edge that starts at that corner.
                if (from < 0 || to == 0) continue;
                if (static_cast<std::size_t>(from) > positions.size() || static_cast<std::size_t>(to) > positions.size())
                    continue;
                edge(positions[static_cast<std::size_t>(from - 1)], positions[static_cast<std::size_t>(to - 1)]);
            }
        }
    } else {
        const int m = mesh.mSize(), n = mesh.nSize();
        if (m <= 0 || n <= 0 || static_cast<std::size_t>(m) * static_cast<std::size_t>(n) > positions.size()) return;
        auto at = [&](int i, int j) { return positions[static_cast<std::size_t>(i * n + j)]; };
        const bool closedM = mesh.isClosed(), closedN = (mesh.flags() & kClosedInN) != 0;
        for (int i = 0; i < m; ++i)
            for (int j = 0; j < n; ++j) {
                if (j + 1 < n || closedN) edge(at(i, j), at(i, (j + 1) % n));
                if (i + 1 < m || closedM) edge(at(i, j), at((i + 1) % m, j));
            }
    }
    if (!scratch_.empty()) list_.addSegments(owner, look, scratch_.data(), scratch_.size());
}

}  // namespace cad::gs
