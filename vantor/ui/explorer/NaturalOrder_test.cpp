// The listing order of names: digit runs by value, letter case folded, and still a total order.
#include "vantor/ui/explorer/NaturalOrder.h"

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include <algorithm>

namespace vantor {
namespace {

TEST(NaturalOrder, SortsNamesAsAPersonReadsThem) {
    const struct {
        const char* name;
        QStringList sorted;
    } rows[] = {
        {"digit runs by value", {"부품2.dxf", "부품10.dxf", "부품100.dxf"}},
        {"letter case folded", {"alpha.dxf", "Beta.dxf", "gamma.DXF"}},
        {"runs longer than any integer",
         {"x99999999999999999999.dxf", "x100000000000000000000.dxf"}},
        {"leading zeros do not count", {"v002", "v3", "v0010"}},
        {"digits before letters", {"1a", "a1"}},
        {"a prefix first", {"abc", "abc1", "abcd"}},
        {"Hangul in syllable order", {"가공품", "나사", "볼트"}},
        {"several runs", {"a1b2", "a1b10", "a2b1"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QStringList shuffled = row.sorted;
        std::reverse(shuffled.begin(), shuffled.end());
        std::sort(shuffled.begin(), shuffled.end(),
                  [](const QString& a, const QString& b) { return naturalLess(a, b); });
        EXPECT_EQ(shuffled, row.sorted);
    }
}

TEST(NaturalOrder, NamesEqualButForCaseOrZerosStillHaveOneOrder) {
    for (auto [a, b] : {std::pair{u"Part.dxf", u"part.dxf"}, {u"a01", u"a1"}}) {
        SCOPED_TRACE(QString::fromUtf16(a).toStdString());
        EXPECT_NE(naturalCompare(a, b), 0);
        EXPECT_EQ(naturalCompare(a, b), -naturalCompare(b, a));
    }
    EXPECT_EQ(naturalCompare(u"same", u"same"), 0);
}

}  // namespace
}  // namespace vantor
