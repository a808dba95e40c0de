// A small JSON writer for the command line's --json output: objects, arrays, strings (UTF-8,
// escaped), integers and booleans, with the commas placed for the caller.
#pragma once

#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

namespace vantor::cli {

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
    JsonWriter& value(bool flag);
    // The shortest text that reads back as the same double; null for infinities and NaN,
    // which JSON cannot hold.
    JsonWriter& value(double number);

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

}  // namespace vantor::cli
