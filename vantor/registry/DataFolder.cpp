// Paths of the data folder and its list files.
#include "vantor/registry/DataFolder.h"

#include "cad/sys/FileSystem.h"
#include "cad/sys/SplitPath.h"

namespace vantor {

// The module folder already ends in a separator, so "\DATA" doubles it; the file system reads
// the pair as one, and nativePath does the same here.
DataFolder::DataFolder(std::string_view moduleFolder)
    : systemPath_(std::string(moduleFolder) + "\\DATA"), path_(cad::sys::nativePath(systemPath_)) {}

std::string DataFolder::native(std::string_view fileName) const {
    return cad::sys::nativePath(systemPath_ + std::string(fileName));
}

std::string DataFolder::tabListFile() const {
    return native("\\UBTabList.dat");
}

std::string DataFolder::listFile(int position) const {
    return native("\\UBList" + std::to_string(position) + ".dat");
}

void DataFolder::create() const {
    cad::sys::makeDirectory(path_);
}

}  // namespace vantor
