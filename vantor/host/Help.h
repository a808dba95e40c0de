// The module's help: the help file's path as the library window has always built it, and the
// help pages shipped beside the module that the desktop's viewer shows in its place.
#pragma once

#include <string>
#include <string_view>

namespace vantor {

class Help {
public:
    // The page the help command opens inside the help file.
    static constexpr std::string_view kTopic = "::web/index.htm";

    explicit Help(std::string_view moduleFolder) : file_(filePath(moduleFolder)) {}

    // The module folder followed by "Vantor.chm", with every ".HLP" in it made ".chm": the
    // path once named an old-style help file, and folders may still carry that name.
    static std::string filePath(std::string_view moduleFolder);

    const std::string& file() const { return file_; }
    // Where the topic leads on this platform: help/index.html in the help file's folder.
    std::string page() const;

    // Shows the page with the desktop's opener (xdg-open). Without a page or an opener help
    // does nothing: false now and for every later call, as a missing viewer is not looked
    // for again.
    bool open();

private:
    std::string file_;
    bool unavailable_ = false;
};

}  // namespace vantor
