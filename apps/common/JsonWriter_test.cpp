// Tests of the JSON writer: commas and nesting, escapes, and text that is not valid UTF-8.
#include "apps/common/JsonWriter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace apps {
namespace {

std::string asJson(std::string_view text) {
    std::ostringstream out;
    JsonWriter(out).value(text);
    return out.str();
}

TEST(JsonWriter, PlacesCommasBetweenMembersAndElementsOnly) {
    std::ostringstream out;
    JsonWriter json(out);
    json.beginObject().member("a", 1).key("b").beginArray();
    json.value("x").beginObject().endObject().value(true).endArray();
    json.key("c").beginArray().endArray().member("d", 0.5).member("e", -1e300 * 1e300);
    json.endObject();
    EXPECT_EQ(out.str(), R"({"a":1,"b":["x",{},true],"c":[],"d":0.5,"e":null})");
}

TEST(JsonWriter, StringsAreEscapedAndAlwaysValidUtf8) {
    const std::pair<std::string, std::string> rows[] = {
        {"a\"b\\c", R"("a\"b\\c")"},
        {std::string("\n\r\t\x01\x1f", 5), R"("\n\r\t\u0001\u001f")"},
        {std::string("a\0b", 3), R"("a\u0000b")"},
        {"\xEB\xB0\xB8\xEB\xB8\x8C", "\"\xEB\xB0\xB8\xEB\xB8\x8C\""},  // Korean kept as it is
        {"\xF0\x9F\x94\xA7", "\"\xF0\x9F\x94\xA7\""},                  // a four-byte sequence
        // Not UTF-8: CP949 bytes, a truncated sequence, an overlong '/', a surrogate.
        {"\xB9\xEB", "\"\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"a\xEB\xB0", "\"a\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"\xC0\xAF", "\"\xEF\xBF\xBD\xEF\xBF\xBD\""},
        {"\xED\xA0\x80", "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
    };
    for (const auto& [text, json] : rows) EXPECT_EQ(asJson(text), json) << json;
}

}  // namespace
}  // namespace apps
