// The folder DATA below the module's folder, which holds the management-window list files.
#pragma once

#include <string>
#include <string_view>

namespace vantor {

class DataFolder {
public:
    explicit DataFolder(std::string_view moduleFolder);

    const std::string& path() const { return path_; }
    std::string tabListFile() const;           // UBTabList.dat
    std::string listFile(int position) const;  // UBList<position>.dat
    // Creates the folder; that it exists already is no failure.
    void create() const;

private:
    std::string native(std::string_view fileName) const;

    std::string systemPath_;  // as the module builds it, separators doubled where they meet
    std::string path_;        // the same folder as the file system names it
};

}  // namespace vantor
