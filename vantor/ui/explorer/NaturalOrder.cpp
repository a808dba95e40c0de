// Natural, case-insensitive comparison of file names.
#include "vantor/ui/explorer/NaturalOrder.h"

namespace vantor {

namespace {

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

int sign(int value) { return (value > 0) - (value < 0); }

}  // namespace

int naturalCompare(QStringView a, QStringView b) {
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            // Compare the runs by value without converting them, so a run of any length
            // (a date stamp, a serial number) compares right: fewer significant digits is
            // smaller, then digit by digit.
            qsizetype ai = i;
            qsizetype bj = j;
            while (ai < a.size() && a[ai] == u'0') ++ai;
            while (bj < b.size() && b[bj] == u'0') ++bj;
            qsizetype aEnd = ai;
            qsizetype bEnd = bj;
            while (aEnd < a.size() && isDigit(a[aEnd])) ++aEnd;
            while (bEnd < b.size() && isDigit(b[bEnd])) ++bEnd;
            if (aEnd - ai != bEnd - bj) return sign(int(aEnd - ai) - int(bEnd - bj));
            for (; ai < aEnd; ++ai, ++bj) {
                if (a[ai] != b[bj]) return a[ai] < b[bj] ? -1 : 1;
            }
            i = aEnd;
            j = bEnd;
            continue;
        }
        const char16_t ca = a[i].toCaseFolded().unicode();
        const char16_t cb = b[j].toCaseFolded().unicode();
        if (ca != cb) return ca < cb ? -1 : 1;
        ++i;
        ++j;
    }
    if (i < a.size() || j < b.size()) return i < a.size() ? 1 : -1;
    // Equal but for case or leading zeros: fall back to the exact text.
    return sign(a.compare(b, Qt::CaseSensitive));
}

}  // namespace vantor
