// The two libraries a library drawing can hold side by side: their keys in the named-objects
// dictionary, the names of their roots in the tree and the suffixes behind a drawing's name.
#pragma once

#include <string_view>

namespace vantor {

enum class LibraryKind {
    Supplier,  // "Adv data list", the only one with supplier information
    User,      // "User data list"
};

inline constexpr std::string_view kSupplierLibraryKey = "Adv data list";
inline constexpr std::string_view kUserLibraryKey = "User data list";

std::string_view libraryKey(LibraryKind kind);
std::string_view libraryRootName(LibraryKind kind);  // "AD-LIBRARY", "USR-LIBRARY"
std::string_view librarySuffix(LibraryKind kind);    // " [AD-LIB]", " [USR-LIB]"

// The key is compared byte for byte with the supplier library's key; whatever else a cache
// file or another program wrote there is taken as the user library.
LibraryKind libraryKindOfKey(std::string_view key);

}  // namespace vantor
