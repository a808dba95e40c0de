// Names of the two library kinds.
#include "vantor/store/LibraryKind.h"

namespace vantor {

std::string_view libraryKey(LibraryKind kind) {
    return kind == LibraryKind::Supplier ? kSupplierLibraryKey : kUserLibraryKey;
}

std::string_view libraryRootName(LibraryKind kind) {
    return kind == LibraryKind::Supplier ? "AD-LIBRARY" : "USR-LIBRARY";
}

std::string_view librarySuffix(LibraryKind kind) {
    return kind == LibraryKind::Supplier ? " [AD-LIB]" : " [USR-LIB]";
}

LibraryKind libraryKindOfKey(std::string_view key) {
    return key == kSupplierLibraryKey ? LibraryKind::Supplier : LibraryKind::User;
}

}  // namespace vantor
