// cadtool end to end: the built program run on the sample drawings and on small damaged ones;
// what convert writes is read back by ezdxf (skipped where ezdxf is not installed).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace {

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

// Checks with Python's own parser that a file holds valid UTF-8 JSON with every object's keys
// in order; prints "ok" or what is wrong.
std::string checkJson(const std::string& path) {
    return runCommand("/usr/bin/python3 -c " +
                      shellQuoted("import sys, json\n"
                                  "def walk(v):\n"
                                  "    if isinstance(v, dict):\n"
                                  "        assert list(v) == sorted(v), list(v)\n"
                                  "        for x in v.values(): walk(x)\n"
                                  "    elif isinstance(v, list):\n"
                                  "        for x in v: walk(x)\n"
                                  "walk(json.loads(open(sys.argv[1], 'rb').read().decode()))\n"
                                  "print('ok')\n") +
                      " " + shellQuoted(path))
        .output;
}

// What ezdxf makes of a file: the version it was written in (ezdxf upgrades R14 to R2000 as
// it loads), the errors of its audit, and the entities of every block and layout counted as
// cadtool counts them (attributes and polyline vertices included).
std::string ezdxfView(const std::string& path) {
    return runEzdxf(
               "import sys, json, collections, ezdxf\n"
               "doc = ezdxf.readfile(sys.argv[1])\n"
               "counts = collections.Counter()\n"
               "for block in doc.blocks:\n"
               "    for e in block:\n"
               "        counts[e.dxftype()] += 1\n"
               "        if e.dxftype() == 'INSERT': counts['ATTRIB'] += len(e.attribs)\n"
               "        if e.dxftype() == 'POLYLINE': counts['VERTEX'] += len(e.vertices)\n"
               "auditor = doc.audit()\n"
               "for e in auditor.errors: print('error', e.code, e.message, file=sys.stderr)\n"
               "print(json.dumps({'version': doc.loaded_dxfversion, 'errors': "
               "len(auditor.errors),\n"
               "    'entities': {k: v for k, v in counts.items() if v}},\n"
               "    sort_keys=True, separators=(',', ':')))\n",
               path)
        .output;
}

struct Outcome {
    int exitCode = -1;
    std::string out;
    std::string err;
};

class Cadtool : public ::testing::Test {
protected:
    // Runs cadtool with `args`, words quoted by the caller where they need it.
    Outcome cadtool(const std::string& args) {
        const std::string out = folder.file("stdout.txt");
        const std::string err = folder.file("stderr.txt");
        Outcome run;
        run.exitCode = runCommand("(" + shellQuoted(CADTOOL) + " " + args + " >" +
                                  shellQuoted(out) + " 2>" + shellQuoted(err) + ")")
                           .exitCode;
        run.out = folder.readBytes("stdout.txt");
        run.err = folder.readBytes("stderr.txt");
        return run;
    }

    // A drawing in the temporary folder from "code value" lines, one tag per line.
    std::string drawing(const std::string& name, const std::string& tags) {
        std::string text;
        std::size_t at = 0;
        while (at < tags.size()) {
            std::size_t end = tags.find('\n', at);
            if (end == std::string::npos) end = tags.size();
            const std::string line = tags.substr(at, end - at);
            const std::size_t blank = line.find(' ');
            text += line.substr(0, blank) + "\n" +
                    (blank == std::string::npos ? "" : line.substr(blank + 1)) + "\n";
            at = end + 1;
        }
        folder.writeBytes(name, text);
        return folder.file(name);
    }

    cad::sys::TestTempFolder folder;
};

TEST_F(Cadtool, HelpDocumentsEachCommandAndTheJsonShapes) {
    const Outcome run = cadtool("--help");
    EXPECT_EQ(run.exitCode, 0);
    for (const char* text :
         {"cadtool info FILE [--json]", "cadtool convert IN OUT [--r14]",
          "cadtool audit FILE [--json] [--fix OUT]", "\"codepage\": \"ANSI_949\"",
          "\"named_objects\": [", "\"load_issues\": [ISSUE", "\"errors\": 1",
          "{\"code\": 105, \"fixed\": true, \"handle\": \"1F\", \"message\": \"...\", "
          "\"source\": \"audit\"}",
          "Exit codes: 0"}) {
        EXPECT_NE(run.out.find(text), std::string::npos) << text;
    }
}

struct UsageCase {
    const char* name;
    const char* args;
};

class CadtoolUsage : public Cadtool, public ::testing::WithParamInterface<UsageCase> {};

TEST_P(CadtoolUsage, IsRefusedWithExitCode2) {
    const Outcome run = cadtool(GetParam().args);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("Try 'cadtool --help'."), std::string::npos) << run.err;
}

INSTANTIATE_TEST_SUITE_P(Words, CadtoolUsage,
                         ::testing::Values(UsageCase{"NoCommand", ""},
                                           UsageCase{"UnknownCommand", "draw a.dxf"},
                                           UsageCase{"UnknownOption", "info a.dxf --yaml"},
                                           UsageCase{"InfoOfTwoFiles", "info a.dxf b.dxf"},
                                           UsageCase{"ConvertWithoutOut", "convert a.dxf"},
                                           UsageCase{"FixWithoutOut", "audit a.dxf --fix"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Cadtool, FilesThatCannotBeReadAreNamedWithTheReason) {
    const std::string dwg = corpus("acadsharp__sample_AC1014.dwg");
    Outcome run = cadtool("info " + shellQuoted(dwg));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.rfind("cadtool: " + dwg + ": not a DXF file (", 0), 0u) << run.err;
    EXPECT_NE(run.err.find("DWG"), std::string::npos) << run.err;

    const std::string missing = folder.file("missing.dxf");
    run = cadtool("convert " + shellQuoted(missing) + " " + shellQuoted(folder.file("out.dxf")));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.rfind("cadtool: " + missing + ": file not found", 0), 0u) << run.err;
    EXPECT_FALSE(std::filesystem::exists(folder.file("out.dxf")));

    const std::string damaged = drawing("damaged.dxf", "0 SECTION\n2 ENTITIES\n0 LINE\n0 EOF");
    run = cadtool("audit " + shellQuoted(damaged));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.rfind("cadtool: " + damaged + ": damaged file (line ", 0), 0u) << run.err;
}

TEST_F(Cadtool, InfoCountsWhatTheDrawingHolds) {
    const std::string file = corpus("ezdxf-made__korean_catalogue_r2000_cp949.dxf");
    Outcome run = cadtool("info --json " + shellQuoted(file));
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out.rfind("{\"codepage\":\"ANSI_949\",\"entities\":{\"ARC\":1,", 0), 0u)
        << run.out;
    for (const char* text :
         {"\"ATTRIB\":4,", "\"VERTEX\":3", "\"XRECORD\":3", "\"LAYER\":3", "\"PARTLIB_CATALOG\"]",
          "\"load_issues\":[]", "\"version\":\"AC1015\"}\n"}) {
        EXPECT_NE(run.out.find(text), std::string::npos) << text;
    }
    EXPECT_EQ(run.out.find("SEQEND"), std::string::npos);
    folder.writeBytes("info.json", run.out);
    EXPECT_EQ(checkJson(folder.file("info.json")), "ok\n");

    run = cadtool("info " + shellQuoted(file));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out.rfind("version: AC1015\ncode page: ANSI_949\nentities: 26\n", 0), 0u)
        << run.out;
}

class CadtoolConvert : public Cadtool, public ::testing::WithParamInterface<const char*> {};

TEST_P(CadtoolConvert, OutputReadsInEzdxfWithTheSameEntities) {
    if (!ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    const std::string in = corpus(GetParam());
    const Outcome info = cadtool("info --json " + shellQuoted(in));
    ASSERT_EQ(info.exitCode, 0) << info.err;
    const std::string entities = flatObject(info.out, "entities");

    const std::string out = folder.file("out.dxf");
    Outcome run = cadtool("convert " + shellQuoted(in) + " " + shellQuoted(out));
    ASSERT_EQ(run.exitCode, 0) << run.err;
    std::string view = ezdxfView(out);
    EXPECT_NE(view.find("\"errors\":0"), std::string::npos) << view;
    EXPECT_NE(view.find("\"version\":\"AC1015\""), std::string::npos) << view;
    EXPECT_EQ(flatObject(view, "entities"), entities);

    const std::string r14 = folder.file("r14.dxf");
    run = cadtool(shellQuoted(in) + " " + shellQuoted(r14) + " --r14");  // no command word
    EXPECT_EQ(run.exitCode, 2);
    run = cadtool("convert " + shellQuoted(in) + " " + shellQuoted(r14) + " --r14");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    view = ezdxfView(r14);
    EXPECT_NE(view.find("\"errors\":0"), std::string::npos) << view;
    EXPECT_NE(view.find("\"version\":\"AC1014\""), std::string::npos) << view;
}

INSTANTIATE_TEST_SUITE_P(Corpus, CadtoolConvert,
                         ::testing::Values("ezdxf-made__korean_catalogue_r2000_cp949.dxf",
                                           "acadsharp__sample_AC1009_ascii.dxf",
                                           "dxfparser__blocks.dxf", "ezdxf__custom_blocks.dxf",
                                           "ezdxf__bin_dxf_r2000.dxf", "ezdxf__groups.dxf",
                                           "ezdxf__hatches_1.dxf", "ezdxf__text.dxf",
                                           "netdxf__sample.dxf"),
                         [](const auto& row) {
                             std::string name = row.param;
                             name = name.substr(0, name.size() - 4);
                             for (char& c : name) {
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             }
                             return name;
                         });

TEST_F(Cadtool, ConvertToR14WarnsOfNamesR14CannotHold) {
    const std::string in = drawing("long.dxf", R"(0 SECTION
2 HEADER
9 $ACADVER
1 AC1015
0 ENDSEC
0 SECTION
2 TABLES
0 TABLE
2 LAYER
5 2
330 0
100 AcDbSymbolTable
70 1
0 LAYER
5 50
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 PIPING_SUPPORTS_AND_HANGERS_LEVEL_2
70 0
62 7
6 CONTINUOUS
0 ENDTAB
0 ENDSEC
0 SECTION
2 ENTITIES
0 LINE
5 51
100 AcDbEntity
8 PIPING_SUPPORTS_AND_HANGERS_LEVEL_2
100 AcDbLine
10 0
20 0
30 0
11 1
21 1
31 0
0 ENDSEC
0 EOF)");
    const std::string out = folder.file("r14.dxf");
    const Outcome run = cadtool("convert " + shellQuoted(in) + " " + shellQuoted(out) + " --r14");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err.rfind("cadtool: warning: " + out + ": ", 0), 0u) << run.err;
    EXPECT_NE(run.err.find("PIPING_SUPPORTS_AND_HANGERS_LEVEL_2"), std::string::npos) << run.err;
    EXPECT_TRUE(std::filesystem::exists(out));
}

// Model space and one sheet, with the layout the paper space record names (340) given.
std::string layoutsNamedBy(const std::string& paperSpaceLayout) {
    return R"(0 SECTION
2 HEADER
9 $ACADVER
1 AC1015
0 ENDSEC
0 SECTION
2 TABLES
0 TABLE
2 BLOCK_RECORD
5 1
330 0
100 AcDbSymbolTable
70 2
0 BLOCK_RECORD
5 1F
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Model_Space
340 22
0 BLOCK_RECORD
5 1E
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 *Paper_Space
340 )" + paperSpaceLayout +
           R"(
0 ENDTAB
0 ENDSEC
0 SECTION
2 OBJECTS
0 DICTIONARY
5 C
330 0
100 AcDbDictionary
3 ACAD_GROUP
350 D
3 ACAD_LAYOUT
350 1A
0 DICTIONARY
5 D
330 C
100 AcDbDictionary
0 DICTIONARY
5 1A
330 C
100 AcDbDictionary
3 Layout1
350 23
3 Model
350 22
0 LAYOUT
5 22
330 1A
100 AcDbPlotSettings
100 AcDbLayout
1 Model
70 1
71 0
330 1F
0 LAYOUT
5 23
330 1A
100 AcDbPlotSettings
100 AcDbLayout
1 Layout1
70 1
71 1
330 1E
0 ENDSEC
0 EOF)";
}

TEST_F(Cadtool, AuditExitsWith1WhileProblemsAreLeft) {
    const std::string clean = corpus("ezdxf-made__korean_catalogue_r2000_cp949.dxf");
    Outcome run = cadtool("audit " + shellQuoted(clean));
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "no problems\n");

    // The paper space record names the layout dictionary: the layout tells what it should name.
    const std::string astray = drawing("astray.dxf", layoutsNamedBy("1A"));
    run = cadtool("audit " + shellQuoted(astray));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.out.find("\n117 23 LAYOUT 23 names block record BLOCK_RECORD 1E, which names "
                           "DICTIONARY 1A\n"),
              std::string::npos)
        << run.out;
    const std::string repaired = folder.file("repaired.dxf");
    run = cadtool("audit " + shellQuoted(astray) + " --fix " + shellQuoted(repaired));
    EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
    run = cadtool("audit " + shellQuoted(repaired));
    EXPECT_EQ(run.exitCode, 0) << run.out;

    // The paper space record names the model layout: which side is wrong cannot be told.
    const std::string crossed = drawing("crossed.dxf", layoutsNamedBy("22"));
    run = cadtool("audit " + shellQuoted(crossed));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.out.find(" repaired, 2 left\n"), std::string::npos) << run.out;
    const std::string fixed = folder.file("fixed.dxf");
    run = cadtool("audit --json " + shellQuoted(crossed) + " --fix " + shellQuoted(fixed));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out.rfind("{\"errors\":2,\"issues\":[{\"code\":108,\"fixed\":true,", 0), 0u)
        << run.out;
    EXPECT_NE(run.out.find("\"handle\":\"1E\",\"message\":\"BLOCK_RECORD 1E names LAYOUT 22, "
                           "which belongs to BLOCK_RECORD 1F\",\"source\":\"audit\"}]}\n"),
              std::string::npos)
        << run.out;
    folder.writeBytes("audit.json", run.out);
    EXPECT_EQ(checkJson(folder.file("audit.json")), "ok\n");
    EXPECT_EQ(cadtool("info " + shellQuoted(fixed)).exitCode, 0);
}

TEST_F(Cadtool, AuditOfDuplicateHandlesListsTheLoadRepairsAndPasses) {
    const Outcome run =
        cadtool("audit --json " + shellQuoted(corpus("ezdxf__duplicate_handles.dxf")));
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_NE(run.out.find("{\"code\":101,\"fixed\":true,"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\"source\":\"load\""), std::string::npos);
    EXPECT_EQ(run.out.find("\"source\":\"audit\""), std::string::npos) << run.out;
}

}  // namespace
