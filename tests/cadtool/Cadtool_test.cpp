// cadtool end to end: the built program run on the sample drawings and on small damaged ones;
// what convert writes is read back by ezdxf (skipped where ezdxf is not installed).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using vantor::test::ezdxfAvailable;
using vantor::test::runCommand;
using vantor::test::runEzdxf;
using vantor::test::shellQuoted;

std::string corpus(const std::string& name) {
    return (std::filesystem::path(VANTOR_SOURCE_DIR) / "testdata" / "corpus" / name).string();
}

// The object under `key` in one line of JSON whose values under it hold no nested objects.
std::string flatObject(const std::string& json, const std::string& key) {
    const std::string start = "\"" + key + "\":{";
    const std::size_t at = json.find(start);
    if (at == std::string::npos) return "(no " + key + ")";
    return json.substr(at + start.size() - 1, json.find('}', at) - at - start.size() + 2);
}

// What ezdxf makes of a file: the version it was written in (ezdxf upgrades R14 to R2000 as
// it loads), the errors of its audit, and the entities of every block and layout counted as
// cadtool counts them (attributes and polyline vertices included).
std::string ezdxfView(const std::string& path) {
    return runEzdxf(R"PY(import sys, json, collections, ezdxf
doc = ezdxf.readfile(sys.argv[1])
counts = collections.Counter()
for block in doc.blocks:
    for e in block:
        counts[e.dxftype()] += 1
        if e.dxftype() == 'INSERT': counts['ATTRIB'] += len(e.attribs)
        if e.dxftype() == 'POLYLINE': counts['VERTEX'] += len(e.vertices)
auditor = doc.audit()
for e in auditor.errors: print('error', e.code, e.message, file=sys.stderr)
print(json.dumps({'version': doc.loaded_dxfversion, 'errors': len(auditor.errors),
    'entities': {k: v for k, v in counts.items() if v}}, sort_keys=True, separators=(',', ':')))
)PY",
                    path)
        .output;
}

constexpr const char* kR2000Header = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC\n";

struct Outcome {
    int exitCode = -1;
    std::string out;
    std::string err;
};

class Cadtool : public ::testing::Test {
protected:
    // Runs cadtool with the words as its arguments.
    Outcome cadtool(const std::vector<std::string>& words) {
        std::string command = shellQuoted(CADTOOL);
        for (const std::string& word : words) command += " " + shellQuoted(word);
        Outcome run;
        run.exitCode = runCommand("(" + command + " >" + shellQuoted(folder.file("stdout.txt")) +
                                  " 2>" + shellQuoted(folder.file("stderr.txt")) + ")")
                           .exitCode;
        run.out = folder.readBytes("stdout.txt");
        run.err = folder.readBytes("stderr.txt");
        return run;
    }

    // A drawing in the temporary folder from "code value" tags, each ended by '|' or a newline.
    std::string drawing(const std::string& name, const std::string& tags) {
        std::string text;
        for (std::size_t at = 0; at < tags.size();) {
            const std::size_t end = std::min(tags.find_first_of("|\n", at), tags.size());
            const std::string tag = tags.substr(at, end - at);
            const std::size_t blank = std::min(tag.find(' '), tag.size());
            text +=
                tag.substr(0, blank) + "\n" + tag.substr(std::min(blank + 1, tag.size())) + "\n";
            at = end + 1;
        }
        folder.writeBytes(name, text);
        return folder.file(name);
    }

    // Python's own parser on `json`: "ok\n" when it is valid UTF-8 JSON with every object's keys
    // in order, otherwise what is wrong.
    std::string checkJson(const std::string& json) {
        folder.writeBytes("check.json", json);
        const char* script = R"PY(import sys, json
def keys(pairs):
    assert [k for k, _ in pairs] == sorted(k for k, _ in pairs), pairs
json.loads(open(sys.argv[1], 'rb').read().decode(), object_pairs_hook=keys)
print('ok')
)PY";
        return runCommand("/usr/bin/python3 -c " + shellQuoted(script) + " " +
                          shellQuoted(folder.file("check.json")))
            .output;
    }

    cad::sys::TestTempFolder folder;
};

TEST_F(Cadtool, HelpDocumentsEachCommandAndTheJsonShapes) {
    const Outcome run = cadtool({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    for (const char* text :
         {"cadtool info FILE [--json]", "cadtool convert IN OUT [--r14]",
          "cadtool audit FILE [--json] [--fix OUT]", "\"codepage\": \"ANSI_949\"",
          "\"named_objects\": [", "\"load_issues\": [ISSUE", "\"errors\": 1",
          "{\"code\": 105, \"fixed\": true, \"handle\": \"1F\", \"message\": \"...\", "
          "\"source\": \"audit\"}",
          "Exit codes: 0"}) {
        EXPECT_THAT(run.out, HasSubstr(text));
    }
}

TEST_F(Cadtool, WrongWordsAreRefusedWithExitCode2) {
    // clang-format off
    const std::vector<std::string> rows[] = {
        {}, {"draw", "a.dxf"}, {"info", "a.dxf", "--yaml"}, {"info", "a.dxf", "b.dxf"},
        {"convert", "a.dxf"}, {"audit", "a.dxf", "--fix"}};
    // clang-format on
    for (const std::vector<std::string>& words : rows) {
        SCOPED_TRACE(testing::PrintToString(words));
        const Outcome run = cadtool(words);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, HasSubstr("Try 'cadtool --help'."));
    }
}

TEST_F(Cadtool, FilesThatCannotBeReadAreNamedWithTheReason) {
    folder.writeBytes("newer.dwg", "AC1018" + std::string(200, '\0'));
    const std::string dwg = folder.file("newer.dwg");
    Outcome run = cadtool({"info", dwg});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, StartsWith("cadtool: " + dwg + ": DWG file not read (offset 0: "));
    EXPECT_THAT(run.err, HasSubstr("DWG 2004 (AC1018)"));

    const std::string missing = folder.file("missing.dxf");
    run = cadtool({"convert", missing, folder.file("out.dxf")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, StartsWith("cadtool: " + missing + ": file not found"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("out.dxf")));

    const std::string damaged = drawing("damaged.dxf", "0 SECTION|2 ENTITIES|0 LINE|0 EOF");
    run = cadtool({"audit", damaged});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, StartsWith("cadtool: " + damaged + ": damaged file (line "));
}

TEST_F(Cadtool, InfoCountsWhatTheDrawingHolds) {
    const std::string file = corpus("ezdxf-made__korean_catalogue_r2000_cp949.dxf");
    Outcome run = cadtool({"info", "--json", file});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("{\"codepage\":\"ANSI_949\",\"entities\":{\"ARC\":1,"));
    for (const char* text :
         {"\"ATTRIB\":4,", "\"VERTEX\":3", "\"XRECORD\":3", "\"LAYER\":3", "\"PARTLIB_CATALOG\"]",
          "\"load_issues\":[]", "\"version\":\"AC1015\"}\n"}) {
        EXPECT_THAT(run.out, HasSubstr(text));
    }
    EXPECT_THAT(run.out, Not(HasSubstr("SEQEND")));
    EXPECT_EQ(checkJson(run.out), "ok\n");

    run = cadtool({"info", file});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.out, StartsWith("version: AC1015\ncode page: ANSI_949\nentities: 26\n"));
}

class CadtoolConvert : public Cadtool, public ::testing::WithParamInterface<const char*> {};

TEST_P(CadtoolConvert, OutputReadsInEzdxfWithTheSameEntities) {
    if (!ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    const std::string in = corpus(GetParam());
    const Outcome info = cadtool({"info", "--json", in});
    ASSERT_EQ(info.exitCode, 0) << info.err;
    const std::string entities = flatObject(info.out, "entities");

    const std::string out = folder.file("out.dxf");
    Outcome run = cadtool({"convert", in, out});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    std::string view = ezdxfView(out);
    EXPECT_THAT(view, HasSubstr("\"errors\":0"));
    EXPECT_THAT(view, HasSubstr("\"version\":\"AC1015\""));
    EXPECT_EQ(flatObject(view, "entities"), entities);

    const std::string r14 = folder.file("r14.dxf");
    run = cadtool({in, r14, "--r14"});  // no command word
    EXPECT_EQ(run.exitCode, 2);
    run = cadtool({"convert", in, r14, "--r14"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    view = ezdxfView(r14);
    EXPECT_THAT(view, HasSubstr("\"errors\":0"));
    EXPECT_THAT(view, HasSubstr("\"version\":\"AC1014\""));
}

INSTANTIATE_TEST_SUITE_P(Corpus, CadtoolConvert,
                         ::testing::Values("ezdxf-made__korean_catalogue_r2000_cp949.dxf",
                                           "acadsharp__sample_AC1009_ascii.dxf",
                                           "dxfparser__blocks.dxf", "ezdxf__custom_blocks.dxf",
                                           "ezdxf__bin_dxf_r2000.dxf", "ezdxf__groups.dxf",
                                           "ezdxf__hatches_1.dxf", "ezdxf__text.dxf",
                                           "netdxf__sample.dxf", "acadsharp__sample_AC1014.dwg"),
                         [](const auto& row) {
                             std::string name(row.param, std::strlen(row.param) - 4);
                             std::replace_if(name.begin(), name.end(), ::ispunct, '_');
                             return name;
                         });

TEST_F(Cadtool, ConvertToR14WarnsOfNamesR14CannotHold) {
    const std::string layer = "PIPING_SUPPORTS_AND_HANGERS_LEVEL_2";
    const std::string in =
        drawing("long.dxf",
                std::string(kR2000Header) +
                    "0 SECTION|2 TABLES|0 TABLE|2 LAYER|5 2|330 0|100 AcDbSymbolTable|70 1\n" +
                    "0 LAYER|5 50|330 2|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 " +
                    layer + "|70 0|62 7|6 CONTINUOUS|0 ENDTAB|0 ENDSEC\n0 SECTION|2 ENTITIES\n" +
                    "0 LINE|5 51|100 AcDbEntity|8 " + layer +
                    "|100 AcDbLine|10 0|20 0|30 0|11 1|21 1|31 0|0 ENDSEC|0 EOF");
    const std::string out = folder.file("r14.dxf");
    const Outcome run = cadtool({"convert", in, out, "--r14"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.err, StartsWith("cadtool: warning: " + out + ": "));
    EXPECT_THAT(run.err, HasSubstr(layer));
    EXPECT_TRUE(std::filesystem::exists(out));
}

// Model space and one sheet, with the layout the paper space record names (340) given.
std::string layoutsNamedBy(const std::string& paperSpaceLayout) {
    return std::string(kR2000Header) +
           "0 SECTION|2 TABLES|0 TABLE|2 BLOCK_RECORD|5 1|330 0|100 AcDbSymbolTable|70 2\n"
           "0 BLOCK_RECORD|5 1F|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord"
           "|2 *Model_Space|340 22\n"
           "0 BLOCK_RECORD|5 1E|330 1|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord"
           "|2 *Paper_Space|340 " +
           paperSpaceLayout +
           "\n0 ENDTAB|0 ENDSEC|0 SECTION|2 OBJECTS\n"
           "0 DICTIONARY|5 C|330 0|100 AcDbDictionary|3 ACAD_GROUP|350 D|3 ACAD_LAYOUT|350 1A\n"
           "0 DICTIONARY|5 D|330 C|100 AcDbDictionary\n"
           "0 DICTIONARY|5 1A|330 C|100 AcDbDictionary|3 Layout1|350 23|3 Model|350 22\n"
           "0 LAYOUT|5 22|330 1A|100 AcDbPlotSettings|100 AcDbLayout|1 Model|70 1|71 0|330 1F\n"
           "0 LAYOUT|5 23|330 1A|100 AcDbPlotSettings|100 AcDbLayout|1 Layout1|70 1|71 1|330 1E\n"
           "0 ENDSEC|0 EOF";
}

TEST_F(Cadtool, AuditExitsWith1WhileProblemsAreLeft) {
    const std::string clean = corpus("ezdxf-made__korean_catalogue_r2000_cp949.dxf");
    Outcome run = cadtool({"audit", clean});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "no problems\n");

    // The paper space record names the layout dictionary: the layout tells what it should name.
    const std::string astray = drawing("astray.dxf", layoutsNamedBy("1A"));
    run = cadtool({"audit", astray});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out,
                HasSubstr("\n117 23 LAYOUT 23 names block record BLOCK_RECORD 1E, which names "
                          "DICTIONARY 1A\n"));
    const std::string repaired = folder.file("repaired.dxf");
    run = cadtool({"audit", astray, "--fix", repaired});
    EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
    run = cadtool({"audit", repaired});
    EXPECT_EQ(run.exitCode, 0) << run.out;

    // The paper space record names the model layout: which side is wrong cannot be told.
    const std::string crossed = drawing("crossed.dxf", layoutsNamedBy("22"));
    run = cadtool({"audit", crossed});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out, HasSubstr(" repaired, 2 left\n"));
    const std::string fixed = folder.file("fixed.dxf");
    run = cadtool({"audit", "--json", crossed, "--fix", fixed});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out, StartsWith("{\"errors\":2,\"issues\":[{\"code\":108,\"fixed\":true,"));
    EXPECT_THAT(run.out,
                HasSubstr("\"handle\":\"1E\",\"message\":\"BLOCK_RECORD 1E names LAYOUT 22, "
                          "which belongs to BLOCK_RECORD 1F\",\"source\":\"audit\"}]}\n"));
    EXPECT_EQ(checkJson(run.out), "ok\n");
    EXPECT_EQ(cadtool({"info", fixed}).exitCode, 0);
}

TEST_F(Cadtool, AuditOfDuplicateHandlesListsTheLoadRepairsAndPasses) {
    const Outcome run = cadtool({"audit", "--json", corpus("ezdxf__duplicate_handles.dxf")});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_THAT(run.out, HasSubstr("{\"code\":101,\"fixed\":true,"));
    EXPECT_THAT(run.out, HasSubstr("\"source\":\"load\""));
    EXPECT_THAT(run.out, Not(HasSubstr("\"source\":\"audit\"")));
}

}  // namespace

namespace {

// The number after `"key":` in one line of JSON, -1 when missing.
int countIn(const std::string& json, const std::string& key) {
    const std::string start = "\"" + key + "\":";
    const std::size_t at = json.find(start);
    return at == std::string::npos ? -1 : std::atoi(json.c_str() + at + start.size());
}

}  // namespace

// The DWG reader against an independent one, LibreDWG's WebAssembly build run by Node
// (installed under build/node by scripts/install-deps.sh where the network allows): every
// entity and table record type it counts is read with the same count, or reported as not
// read with that count.
TEST_F(Cadtool, DwgCountsMatchTheIndependentReader) {
    const auto modules = std::filesystem::path(VANTOR_SOURCE_DIR) / "build" / "node";
    if (!std::filesystem::exists(modules / "node_modules" / "@mlightcad" / "libredwg-web") ||
        runCommand("node --version").exitCode != 0) {
        GTEST_SKIP() << "LibreDWG for Node is not installed";
    }
    const std::string in = corpus("acadsharp__sample_AC1014.dwg");
    const auto census = runCommand(
        "node " +
        shellQuoted(std::string(VANTOR_SOURCE_DIR) + "/tests/cadtool/dwg_census.mjs") + " " +
        shellQuoted(modules.string()) + " " + shellQuoted(in) + " 2>/dev/null");
    ASSERT_EQ(census.exitCode, 0) << census.output;
    const Outcome info = cadtool({"info", "--json", in});
    ASSERT_EQ(info.exitCode, 0) << info.err;
    const Outcome plain = cadtool({"info", in});
    const std::string entities = flatObject(info.out, "entities");
    const std::string records = flatObject(info.out, "tables");
    const auto theirs = [&](std::initializer_list<const char*> names) {
        int sum = 0;
        for (const char* name : names) sum += std::max(0, countIn(census.output, name));
        return sum;
    };
    const struct {
        const char* ours;
        std::initializer_list<const char*> theirs;
        bool record;
    } rows[] = {
        {"LINE", {"LINE"}, false},         {"CIRCLE", {"CIRCLE"}, false},
        {"ARC", {"ARC"}, false},           {"POINT", {"POINT"}, false},
        {"LWPOLYLINE", {"LWPOLYLINE"}, false}, {"TEXT", {"TEXT"}, false},
        {"MTEXT", {"MTEXT"}, false},       {"INSERT", {"INSERT", "MINSERT"}, false},
        {"ATTDEF", {"ATTDEF"}, false},     {"ATTRIB", {"ATTRIB"}, false},
        {"SOLID", {"SOLID"}, false},       {"ELLIPSE", {"ELLIPSE"}, false},
        {"3DFACE", {"3DFACE"}, false},     {"RAY", {"RAY"}, false},
        {"XLINE", {"XLINE"}, false},       {"HATCH", {"HATCH"}, false},
        {"SPLINE", {"SPLINE"}, false},     {"VIEWPORT", {"VIEWPORT"}, false},
        {"LEADER", {"LEADER"}, false},     {"TOLERANCE", {"TOLERANCE"}, false},
        {"MLINE", {"MLINE"}, false},       {"IMAGE", {"IMAGE"}, false},
        {"WIPEOUT", {"WIPEOUT"}, false},
        {"DIMENSION",
         {"DIMENSION_LINEAR", "DIMENSION_ALIGNED", "DIMENSION_ORDINATE", "DIMENSION_ANG3PT",
          "DIMENSION_ANG2LN", "DIMENSION_RADIUS", "DIMENSION_DIAMETER"},
         false},
        {"POLYLINE", {"POLYLINE_2D", "POLYLINE_3D", "POLYLINE_PFACE", "POLYLINE_MESH"}, false},
        {"VERTEX",
         {"VERTEX_2D", "VERTEX_3D", "VERTEX_PFACE", "VERTEX_PFACE_FACE", "VERTEX_MESH"},
         false},
        {"LAYER", {"LAYER"}, true},        {"STYLE", {"STYLE"}, true},
        {"LTYPE", {"LTYPE"}, true},        {"APPID", {"APPID"}, true},
        {"BLOCK_RECORD", {"BLOCK_HEADER"}, true}, {"DIMSTYLE", {"DIMSTYLE"}, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(std::max(0, countIn(row.record ? records : entities, row.ours)),
                  theirs(row.theirs))
            << row.ours;
    }
    for (const char* unread : {"MULTILEADER", "SHAPE", "WIPEOUTVARIABLES"}) {
        const int count = countIn(census.output, unread);
        ASSERT_GT(count, 0) << unread;
        EXPECT_THAT(plain.out, HasSubstr(std::to_string(count) + " " + unread + " object"))
            << unread;
    }
}

// A drawing written as DWG 2000 reads back with the entities it had, in our reader and in the
// independent one.
TEST_F(Cadtool, ConvertToDwgWritesADrawingBothReadersRead) {
    const std::string in = corpus("ezdxf-made__korean_catalogue_r2000_cp949.dxf");
    const std::string out = folder.file("catalogue.dwg");
    Outcome run = cadtool({"convert", in, out});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Outcome source = cadtool({"info", "--json", in});
    const Outcome written = cadtool({"info", "--json", out});
    ASSERT_EQ(written.exitCode, 0) << written.err;
    EXPECT_THAT(written.out, HasSubstr("\"version\":\"AC1015\""));
    EXPECT_EQ(flatObject(written.out, "entities"), flatObject(source.out, "entities"));
    EXPECT_EQ(flatObject(written.out, "tables"), flatObject(source.out, "tables"));

    const auto modules = std::filesystem::path(VANTOR_SOURCE_DIR) / "build" / "node";
    if (!std::filesystem::exists(modules / "node_modules" / "@mlightcad" / "libredwg-web") ||
        runCommand("node --version").exitCode != 0) {
        GTEST_SKIP() << "LibreDWG for Node is not installed";
    }
    const auto census = runCommand(
        "node " +
        shellQuoted(std::string(VANTOR_SOURCE_DIR) + "/tests/cadtool/dwg_census.mjs") + " " +
        shellQuoted(modules.string()) + " " + shellQuoted(out) + " 2>/dev/null");
    ASSERT_EQ(census.exitCode, 0) << census.output;
    EXPECT_THAT(census.output, HasSubstr("\"error\":0"));
    const std::string entities = flatObject(source.out, "entities");
    for (const char* type : {"LINE", "CIRCLE", "ARC", "TEXT", "MTEXT", "INSERT", "ATTRIB",
                             "LWPOLYLINE", "SOLID", "POINT"}) {
        EXPECT_EQ(countIn(census.output, type), countIn(entities, type)) << type;
    }
    EXPECT_EQ(countIn(census.output, "XRECORD"), 3);

    // The same as R14.
    const std::string r14 = folder.file("catalogue-r14.dwg");
    run = cadtool({"convert", in, r14, "--r14"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Outcome writtenR14 = cadtool({"info", "--json", r14});
    EXPECT_THAT(writtenR14.out, HasSubstr("\"version\":\"AC1014\""));
    EXPECT_EQ(flatObject(writtenR14.out, "entities"), flatObject(source.out, "entities"));
    const auto censusR14 = runCommand(
        "node " +
        shellQuoted(std::string(VANTOR_SOURCE_DIR) + "/tests/cadtool/dwg_census.mjs") + " " +
        shellQuoted(modules.string()) + " " + shellQuoted(r14) + " 2>/dev/null");
    ASSERT_EQ(censusR14.exitCode, 0) << censusR14.output;
    for (const char* type : {"LINE", "CIRCLE", "TEXT", "INSERT", "ATTRIB", "LWPOLYLINE"}) {
        EXPECT_EQ(countIn(censusR14.output, type), countIn(entities, type)) << type;
    }
}
