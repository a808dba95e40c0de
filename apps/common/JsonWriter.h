// A small JSON writer for the command-line programs' --json output: objects, arrays, strings
// (UTF-8, escaped), numbers and booleans, with the commas placed for the caller. Members are
// written in the order given; callers that promise sorted keys write them sorted.
#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

namespace apps {

class JsonWriter {
public:
    explicit JsonWriter(std::ostream& out) : out_(out) {}

    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    // The name of the next member of the open object.
    JsonWriter& key(std::string_view name);

    JsonWriter& value(std::string_view text);
    JsonWriter& value(const char* text) { return value(std::string_view(text)); }
    JsonWriter& value(std::int64_t number);
    JsonWriter& value(int number) { return value(std::int64_t{number}); }
    JsonWriter& value(std::size_t number) { return value(static_cast<std::int64_t>(number)); }
    JsonWriter& value(double number);  // shortest round-trip form; null when not finite
    JsonWriter& value(bool flag);

    // A member: key and value together.
    template <typename T>
    JsonWriter& member(std::string_view name, const T& v) {
        return key(name).value(v);
    }

private:
    void separate();  // the comma before a value or key that is not the first of its level
    void writeString(std::string_view text);

    std::ostream& out_;
    std::vector<bool> first_;  // per open level: nothing written in it yet
    bool afterKey_ = false;
};

}  // namespace apps
