// Reading and writing the management-window list files.
#include "vantor/registry/ListFile.h"

#include <array>

#include "cad/sys/CaretText.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/CountedText.h"

namespace vantor {

namespace {

// Control characters go in their caret form: text mode would store a 0x0A as two bytes beside
// a length that counts one, and a 0x1A ends the data for every reader of the file.
std::string onDisk(std::string_view text) {
    return cad::sys::utf8ToCp949(cad::sys::toCaretForm(text));
}

}  // namespace

bool ListFile::open(const std::string& path) {
    close();
    if (file_.open(path, "r") != cad::ErrorStatus::eOk) return false;
    if (!file_.readInt32(count_)) count_ = 0;
    return true;
}

ListFile::Entry ListFile::next(std::string& text) {
    if (!file_.isOpen() || read_ >= count_) return Entry::End;
    ++read_;
    std::int32_t flag = 0;
    std::int32_t stored = 0;
    if (!file_.readInt32(flag) || !file_.readInt32(stored)) return Entry::End;
    // The flag stands for the 26th byte that the stored length leaves out.
    const std::int64_t length = std::int64_t{stored} + (flag != 0 ? 1 : 0);
    if (length < 1) return Entry::Skipped;
    // A longer length is damage, not a text: stop before taking memory for it.
    if (length > static_cast<std::int64_t>(kMaxTextBytes)) return Entry::End;

    std::array<char, kMaxTextBytes> bytes;
    const auto size = static_cast<std::size_t>(length);
    if (file_.read(bytes.data(), size) != size) return Entry::End;
    text = cad::sys::fromCaretForm(cad::sys::cp949ToUtf8(std::string_view(bytes.data(), size)));
    return Entry::Text;
}

void ListFile::close() {
    if (file_.isOpen()) file_.close();
    count_ = 0;
    read_ = 0;
}

std::optional<std::vector<std::string>> ListFile::readAll(const std::string& path) {
    ListFile file;
    if (!file.open(path)) return std::nullopt;
    std::vector<std::string> texts;
    std::string text;
    for (Entry entry; (entry = file.next(text)) != Entry::End;) {
        if (entry == Entry::Text) texts.push_back(text);
    }
    return texts;
}

bool ListFile::write(const std::string& path, const std::vector<std::string>& texts) {
    cad::sys::CrtFile file;
    if (file.openReplacing(path, "w") != cad::ErrorStatus::eOk) return false;
    bool written = file.writeInt32(static_cast<std::int32_t>(texts.size()));
    for (const std::string& text : texts) {
        written = written && cad::sys::writeCountedText(file, onDisk(text));
    }
    return file.close() == cad::ErrorStatus::eOk && written;
}

bool ListFile::fits(std::string_view text) {
    return onDisk(text).size() <= kMaxTextBytes;
}

}  // namespace vantor
