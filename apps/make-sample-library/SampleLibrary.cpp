// The sample library's content: standard parts drawn to their catalogue dimensions.
#include "apps/make-sample-library/SampleLibrary.h"

#include <cmath>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

#include "apps/make-sample-library/BlockSketch.h"
#include "apps/make-sample-library/SampleLogo.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/ObjectPtr.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/SupplierInfo.h"

namespace vantor::sample {

using cad::ErrorStatus;
using cad::db::Database;
using cad::db::Dictionary;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::ge::Point3d;

namespace {

enum View { kFront = 0, kSide = 1, kPlan = 2 };

std::string number(double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

ObjectId category(ObjectId parent, const std::string& name) {
    auto dictionary = cad::db::open<Dictionary>(parent, OpenMode::ForWrite);
    ObjectId id;
    if (dictionary->getAt(name, id) != ErrorStatus::eOk)
        dictionary->setAt(name, std::make_unique<Dictionary>(), id);
    return id;
}

// The texts every record of a family shares; the views and the size-specific texts are set by
// the family's drawing function.
PartRecord familyRecord(const std::string& group, const std::string& kname,
                        const std::string& ename, const std::string& material,
                        const std::string& remark, std::vector<std::string> user) {
    PartRecord record;
    record.group = group;
    record.kname = kname;
    record.ename = ename;
    record.material = material;
    record.remark = remark;
    for (std::size_t i = 0; i < user.size() && i < record.user.size(); ++i)
        record.user[i] = std::move(user[i]);
    return record;
}

void setView(PartRecord& record, View view, const BlockSketch& block, Point3d bomPoint) {
    record.viewBlocks[view] = block.name();
    record.viewPoints[view] = bomPoint;
}

// Hex bolt: front view with the head on the insertion point and the shank downwards; plan
// view along the axis.
struct HexBolt {
    double d, s, k, length, weight;
    int price;
};

void addHexBolts(Database& db, ObjectId group) {
    const std::vector<HexBolt> sizes = {
        {6, 10, 4, 25, 0.0078, 50},    {8, 13, 5.3, 30, 0.017, 70}, {10, 16, 6.4, 40, 0.033, 120},
        {12, 18, 7.5, 50, 0.056, 180}, {16, 24, 10, 60, 0.12, 350}, {20, 30, 12.5, 80, 0.25, 720}};
    for (const HexBolt& b : sizes) {
        const std::string spec = "M" + number(b.d) + "x" + number(b.length);
        const std::string stem = "HB-M" + number(b.d) + "X" + number(b.length);
        const double e = b.s * 2 / std::sqrt(3.0);
        const double thread = std::min(b.length, 2 * b.d + 6);

        BlockSketch front(db, stem + "-F", "육각볼트 " + spec + " 정면도");
        front.rect(-e / 2, 0, e / 2, b.k);
        front.line(-e / 4, 0, -e / 4, b.k);
        front.line(e / 4, 0, e / 4, b.k);
        front.sag(-e / 2, -e / 4, b.k, 0.12 * b.k);
        front.sag(-e / 4, e / 4, b.k, 0.2 * b.k);
        front.sag(e / 4, e / 2, b.k, 0.12 * b.k);
        front.rect(-b.d / 2, -b.length, b.d / 2, 0);
        front.line(-0.85 * b.d / 2, -b.length, -0.85 * b.d / 2, -b.length + thread);
        front.line(0.85 * b.d / 2, -b.length, 0.85 * b.d / 2, -b.length + thread);
        front.line(-b.d / 2, -b.length + thread, b.d / 2, -b.length + thread);

        BlockSketch plan(db, stem + "-P", "육각볼트 " + spec + " 평면도");
        plan.hexagon(0, 0, b.s);
        plan.circle(0, 0, 0.95 * b.s / 2);
        plan.circle(0, 0, b.d / 2);

        PartRecord record = familyRecord("육각볼트", "육각볼트", "Hexagon head bolt", "SS400",
                                         "KS B 1002", {"아연도금", "강도 8.8", "", "", "", ""});
        record.spec = spec;
        record.weight = number(b.weight);
        record.price = std::to_string(b.price);
        setView(record, kFront, front, Point3d(e / 2 + 2, b.k / 2, 0));
        setView(record, kPlan, plan, Point3d(b.s / 2 + 2, 0, 0));
        writePartRecord(group, record);
    }
}

struct SocketBolt {
    double d, dk, s, length, weight;
    int price;
};

void addSocketBolts(Database& db, ObjectId group) {
    const std::vector<SocketBolt> sizes = {{6, 10, 5, 20, 0.0068, 90},
                                           {8, 13, 6, 25, 0.015, 130},
                                           {10, 16, 8, 30, 0.028, 190},
                                           {12, 18, 10, 40, 0.049, 260}};
    for (const SocketBolt& b : sizes) {
        const std::string spec = "M" + number(b.d) + "x" + number(b.length);
        const std::string stem = "SB-M" + number(b.d) + "X" + number(b.length);

        BlockSketch front(db, stem + "-F", "렌치볼트 " + spec + " 정면도");
        front.polyline({{-b.dk / 2, 0},
                        {b.dk / 2, 0},
                        {b.dk / 2, b.d - 0.5},
                        {b.dk / 2 - 0.5, b.d},
                        {-b.dk / 2 + 0.5, b.d},
                        {-b.dk / 2, b.d - 0.5}},
                       true);
        front.line(-b.s / 2, b.d, -b.s / 2, b.d / 2);
        front.line(b.s / 2, b.d, b.s / 2, b.d / 2);
        front.line(-b.s / 2, b.d / 2, b.s / 2, b.d / 2);
        front.rect(-b.d / 2, -b.length, b.d / 2, 0);
        front.line(-0.85 * b.d / 2, -b.length, -0.85 * b.d / 2, -b.length + 2 * b.d);
        front.line(0.85 * b.d / 2, -b.length, 0.85 * b.d / 2, -b.length + 2 * b.d);

        BlockSketch plan(db, stem + "-P", "렌치볼트 " + spec + " 평면도");
        plan.circle(0, 0, b.dk / 2);
        plan.circle(0, 0, b.dk / 2 - 0.5);
        plan.hexagon(0, 0, b.s);

        PartRecord record = familyRecord("렌치볼트", "렌치볼트", "Hexagon socket head cap screw",
                                         "SCM435", "KS B 1003", {"흑색 산화피막", "강도 12.9"});
        record.spec = spec;
        record.weight = number(b.weight);
        record.price = std::to_string(b.price);
        setView(record, kFront, front, Point3d(b.dk / 2 + 2, b.d / 2, 0));
        setView(record, kPlan, plan, Point3d(b.dk / 2 + 2, 0, 0));
        writePartRecord(group, record);
    }
}

struct HexNut {
    double d, s, m, weight;
    int price;
};

void addHexNuts(Database& db, ObjectId group) {
    const std::vector<HexNut> sizes = {{6, 10, 5.2, 0.0025, 20},   {8, 13, 6.8, 0.0053, 30},
                                       {10, 16, 8.4, 0.011, 45},   {12, 18, 10.8, 0.016, 60},
                                       {16, 24, 14.8, 0.034, 110}, {20, 30, 18, 0.064, 230}};
    for (const HexNut& n : sizes) {
        const std::string spec = "M" + number(n.d);
        const std::string stem = "HN-M" + number(n.d);
        const double e = n.s * 2 / std::sqrt(3.0);

        BlockSketch front(db, stem + "-F", "육각너트 " + spec + " 정면도");
        front.rect(-e / 2, 0, e / 2, n.m);
        front.line(-e / 4, 0, -e / 4, n.m);
        front.line(e / 4, 0, e / 4, n.m);
        for (double y : {n.m, 0.1 * n.m}) {
            front.sag(-e / 2, -e / 4, y, 0.08 * n.m);
            front.sag(-e / 4, e / 4, y, 0.12 * n.m);
            front.sag(e / 4, e / 2, y, 0.08 * n.m);
        }

        BlockSketch plan(db, stem + "-P", "육각너트 " + spec + " 평면도");
        plan.hexagon(0, 0, n.s);
        plan.circle(0, 0, 0.95 * n.s / 2);
        plan.circle(0, 0, 0.85 * n.d / 2);
        plan.arc(0, 0, n.d / 2, 0, 270);  // the thread's major diameter, drawn three-quarters

        PartRecord record = familyRecord("육각너트", "육각너트", "Hexagon nut", "SS400",
                                         "KS B 1012", {"아연도금", "1종"});
        record.spec = spec;
        record.weight = number(n.weight);
        record.price = std::to_string(n.price);
        setView(record, kFront, front, Point3d(e / 2 + 2, n.m / 2, 0));
        setView(record, kPlan, plan, Point3d(n.s / 2 + 2, 0, 0));
        writePartRecord(group, record);
    }
}

struct Washer {
    double d, inner, outer, h, weight;
    int price;
};

void addWashers(Database& db, ObjectId group) {
    const std::vector<Washer> sizes = {{6, 6.4, 12, 1.6, 0.0011, 10},
                                       {8, 8.4, 16, 1.6, 0.0021, 15},
                                       {10, 10.5, 20, 2, 0.0044, 20},
                                       {12, 13, 24, 2.5, 0.0068, 25}};
    for (const Washer& w : sizes) {
        const std::string spec = "M" + number(w.d) + " (" + number(w.inner) + "x" +
                                 number(w.outer) + "x" + number(w.h) + ")";
        const std::string stem = "PW-M" + number(w.d);

        BlockSketch front(db, stem + "-F", "평와셔 M" + number(w.d) + " 정면도");
        front.rect(-w.outer / 2, 0, w.outer / 2, w.h);
        front.line(-w.inner / 2, 0, -w.inner / 2, w.h);
        front.line(w.inner / 2, 0, w.inner / 2, w.h);

        BlockSketch plan(db, stem + "-P", "평와셔 M" + number(w.d) + " 평면도");
        plan.circle(0, 0, w.outer / 2);
        plan.circle(0, 0, w.inner / 2);

        PartRecord record =
            familyRecord("평와셔", "평와셔", "Plain washer", "SS400", "KS B 1326", {"아연도금"});
        record.spec = spec;
        record.weight = number(w.weight);
        record.price = std::to_string(w.price);
        setView(record, kFront, front, Point3d(w.outer / 2 + 2, w.h / 2, 0));
        setView(record, kPlan, plan, Point3d(w.outer / 2 + 2, 0, 0));
        writePartRecord(group, record);
    }
}

// A 10K flange's outline seen along the pipe: rim, bolt circle, holes and bore.
struct Flange {
    const char* size;
    double outer, boltCircle, hole;
    int holes;
    double thickness, bore, weight;
    int price;
};

const std::vector<Flange> kFlanges = {{"25A", 125, 90, 19, 4, 14, 34.5, 1.2, 9000},
                                      {"50A", 155, 120, 19, 4, 16, 61.1, 2.0, 14000},
                                      {"80A", 185, 150, 19, 8, 18, 90.0, 2.7, 21000},
                                      {"100A", 210, 175, 19, 8, 18, 115.4, 3.2, 26000},
                                      {"150A", 280, 240, 23, 8, 22, 166.6, 6.3, 48000}};

void drawFlangeFace(BlockSketch& sketch, const Flange& f, double hub) {
    sketch.circle(0, 0, f.outer / 2);
    sketch.circle(0, 0, hub / 2);
    sketch.circle(0, 0, f.bore / 2);
    for (int i = 0; i < f.holes; ++i) {
        const double angle = (45.0 / (f.holes / 4) + 360.0 * i / f.holes) * std::numbers::pi / 180;
        sketch.circle(f.boltCircle / 2 * std::cos(angle), f.boltCircle / 2 * std::sin(angle),
                      f.hole / 2);
    }
}

void addFlanges(Database& db, ObjectId group) {
    for (const Flange& f : kFlanges) {
        const std::string stem = std::string("FL-10K-") + f.size;
        const double hub = f.bore + 12;

        BlockSketch front(db, stem + "-F", std::string("슬립온 플랜지 10K ") + f.size + " 정면도");
        front.polyline({{-f.outer / 2, 0},
                        {f.outer / 2, 0},
                        {f.outer / 2, f.thickness},
                        {hub / 2, f.thickness},
                        {hub / 2, 1.6 * f.thickness},
                        {-hub / 2, 1.6 * f.thickness},
                        {-hub / 2, f.thickness},
                        {-f.outer / 2, f.thickness}},
                       true);
        front.line(-f.bore / 2, 0, -f.bore / 2, 1.6 * f.thickness);
        front.line(f.bore / 2, 0, f.bore / 2, 1.6 * f.thickness);
        for (double side : {-1.0, 1.0}) {
            front.line(side * f.boltCircle / 2 - f.hole / 2, 0,
                       side * f.boltCircle / 2 - f.hole / 2, f.thickness);
            front.line(side * f.boltCircle / 2 + f.hole / 2, 0,
                       side * f.boltCircle / 2 + f.hole / 2, f.thickness);
        }

        BlockSketch plan(db, stem + "-P", std::string("슬립온 플랜지 10K ") + f.size + " 평면도");
        drawFlangeFace(plan, f, hub);

        PartRecord record = familyRecord("Slip-on 10K", "슬립온 플랜지", "Slip-on flange", "SS400",
                                         "KS B 1503", {"10K", "RF", "", "", "", "납기 2주"});
        record.spec = std::string("JIS 10K ") + f.size;
        record.weight = number(f.weight);
        record.price = std::to_string(f.price);
        setView(record, kFront, front, Point3d(f.outer / 2 + 5, f.thickness / 2, 0));
        setView(record, kPlan, plan, Point3d(f.outer / 2 + 5, 0, 0));
        writePartRecord(group, record);
    }
}

// Flanged valves: front view with the pipe axis horizontal through the insertion point, side
// view along the pipe, plan view from above.
struct GateValve {
    std::size_t flange;  // into kFlanges
    double length, height, wheel, weight;
    int price;
};

void addGateValves(Database& db, ObjectId group) {
    const std::vector<GateValve> sizes = {{1, 178, 300, 160, 14, 185000},
                                          {2, 203, 380, 200, 24, 260000},
                                          {3, 229, 450, 224, 33, 330000},
                                          {4, 267, 600, 280, 62, 560000}};
    for (const GateValve& v : sizes) {
        const Flange& f = kFlanges[v.flange];
        const std::string stem = std::string("GV-10K-") + f.size;
        const double half = v.length / 2;
        const double body = f.outer * 0.42;

        BlockSketch front(db, stem + "-F", std::string("게이트 밸브 10K ") + f.size + " 정면도");
        front.rect(-half, -f.outer / 2, -half + f.thickness, f.outer / 2);
        front.rect(half - f.thickness, -f.outer / 2, half, f.outer / 2);
        front.polyline({{-half + f.thickness, -body},
                        {half - f.thickness, -body},
                        {half - f.thickness, body},
                        {-half + f.thickness, body}},
                       true, {0.25, 0, 0.25, 0});
        front.rect(-body * 0.6, body, body * 0.6, v.height * 0.55);
        front.line(0, v.height * 0.55, 0, v.height);
        front.rect(-v.wheel / 2, v.height - 12, v.wheel / 2, v.height - 2);

        BlockSketch side(db, stem + "-S", std::string("게이트 밸브 10K ") + f.size + " 측면도");
        drawFlangeFace(side, f, f.bore + 12);
        side.rect(-body * 0.6, f.outer / 2, body * 0.6, v.height * 0.55);
        side.line(0, v.height * 0.55, 0, v.height);
        side.rect(-v.wheel / 2, v.height - 12, v.wheel / 2, v.height - 2);

        BlockSketch plan(db, stem + "-P", std::string("게이트 밸브 10K ") + f.size + " 평면도");
        plan.circle(0, 0, v.wheel / 2);
        plan.circle(0, 0, v.wheel / 2 - 10);
        plan.circle(0, 0, 12);
        for (int spoke = 0; spoke < 3; ++spoke) {
            const double a = (90 + 120 * spoke) * std::numbers::pi / 180;
            plan.line(12 * std::cos(a), 12 * std::sin(a), (v.wheel / 2 - 10) * std::cos(a),
                      (v.wheel / 2 - 10) * std::sin(a));
        }
        plan.rect(-half, -f.outer / 2, half, f.outer / 2);

        PartRecord record = familyRecord("게이트 밸브", "게이트 밸브", "Gate valve", "FC200",
                                         "KS B 2361", {"10K", "FLANGED", "핸들식", "", "", ""});
        record.spec = std::string("10K ") + f.size;
        record.weight = number(v.weight);
        record.price = std::to_string(v.price);
        setView(record, kFront, front, Point3d(half + 10, f.outer / 2, 0));
        setView(record, kSide, side, Point3d(f.outer / 2 + 10, 0, 0));
        setView(record, kPlan, plan, Point3d(v.wheel / 2 + 10, 0, 0));
        writePartRecord(group, record);
    }
}

struct BallValve {
    std::size_t flange;
    double length, lever, weight;
    int price;
};

void addBallValves(Database& db, ObjectId group) {
    const std::vector<BallValve> sizes = {
        {0, 127, 160, 4.1, 98000}, {1, 178, 230, 9.5, 165000}, {2, 203, 300, 16, 250000}};
    for (const BallValve& v : sizes) {
        const Flange& f = kFlanges[v.flange];
        const std::string stem = std::string("BV-10K-") + f.size;
        const double half = v.length / 2;
        const double ball = f.outer * 0.45;

        BlockSketch front(db, stem + "-F", std::string("볼 밸브 10K ") + f.size + " 정면도");
        front.rect(-half, -f.outer / 2, -half + f.thickness, f.outer / 2);
        front.rect(half - f.thickness, -f.outer / 2, half, f.outer / 2);
        front.circle(0, 0, ball);
        front.line(-half + f.thickness, -ball * 0.7, -ball * 0.7, -ball * 0.7);
        front.line(half - f.thickness, -ball * 0.7, ball * 0.7, -ball * 0.7);
        front.rect(-8, ball, 8, ball + 30);
        front.rect(-12, ball + 30, v.lever - 12, ball + 40);

        BlockSketch side(db, stem + "-S", std::string("볼 밸브 10K ") + f.size + " 측면도");
        drawFlangeFace(side, f, f.bore + 12);
        side.rect(-8, f.outer / 2, 8, ball + 30);
        side.rect(-10, ball + 30, 10, ball + 40);

        BlockSketch plan(db, stem + "-P", std::string("볼 밸브 10K ") + f.size + " 평면도");
        plan.rect(-half, -f.outer / 2, half, f.outer / 2);
        plan.circle(0, 0, 14);
        plan.polyline({{0, -10}, {v.lever - 12, -6}, {v.lever - 12, 6}, {0, 10}}, true,
                      {0, 1, 0, 0});

        PartRecord record = familyRecord("볼 밸브", "볼 밸브", "Ball valve", "SCS13", "KS B 2308",
                                         {"10K", "FLANGED", "레버식", "풀보어", "", ""});
        record.spec = std::string("10K ") + f.size;
        record.weight = number(v.weight);
        record.price = std::to_string(v.price);
        setView(record, kFront, front, Point3d(half + 10, f.outer / 2, 0));
        setView(record, kSide, side, Point3d(f.outer / 2 + 10, 0, 0));
        setView(record, kPlan, plan, Point3d(v.lever, 0, 0));
        writePartRecord(group, record);
    }
}

}  // namespace

ErrorStatus writeSampleLibrary(const std::string& folder) {
    const std::string logoPath = folder + "/" + std::string(kSampleLogoName);
    {
        const std::string logo = sampleLogoBmp();
        std::ofstream out(logoPath, std::ios::binary);
        if (!out.write(logo.data(), static_cast<std::streamsize>(logo.size())))
            return ErrorStatus::eFileWriteError;
    }

    Database db;
    const ObjectId user = libraryDictionaryId(db, LibraryKind::User, true);
    const ObjectId bolts = category(user, "볼트");
    addHexBolts(db, category(bolts, "육각볼트"));
    addSocketBolts(db, category(bolts, "렌치볼트"));
    addHexNuts(db, category(category(user, "너트"), "육각너트"));
    addWashers(db, category(category(user, "Washers"), "평와셔"));

    const ObjectId supplier = libraryDictionaryId(db, LibraryKind::Supplier, true);
    const ObjectId valves = category(supplier, "밸브");
    addGateValves(db, category(valves, "게이트 밸브"));
    addBallValves(db, category(valves, "볼 밸브"));
    addFlanges(db, category(category(supplier, "Flanges"), "Slip-on 10K"));

    SupplierInfo info;
    info.texts = {"(주)한빛밸브",
                  "경기도 안산시 단원구 산단로 123",
                  "031-490-1234",
                  "031-490-1235",
                  "www.hanbit-valve.co.kr",
                  "sales@hanbit-valve.co.kr",
                  "KS 인증 밸브 및 플랜지 전문 제조"};
    info.logoPath = logoPath;
    cad::app::ScriptedDialogs dialogs;
    if (ErrorStatus es = info.writeTo(db, dialogs); es != ErrorStatus::eOk) return es;

    return db.saveAs(folder + "/" + std::string(kSampleDrawingName));
}

}  // namespace vantor::sample
