// The supplier panel's texts and links.
#include "vantor/store/SupplierPanel.h"

#include "cad/sys/AsciiCase.h"

namespace vantor {

namespace {

constexpr std::string_view kScheme = "HTTP://";

}  // namespace

SupplierPanel SupplierPanel::from(const SupplierInfo& info) {
    const auto& texts = info.texts;
    SupplierPanel panel;
    panel.companyName = texts[SupplierInfo::CompanyName];
    panel.address = texts[SupplierInfo::Address];
    panel.phone = "TEL: " + texts[SupplierInfo::Phone];
    panel.fax = "FAX: " + texts[SupplierInfo::Fax];

    // Only ASCII letters change, as an upper-casing in the Korean code page leaves its
    // double-byte characters alone.
    panel.internet = cad::sys::asciiUpper(texts[SupplierInfo::Internet]);
    if (std::size_t at = panel.internet.find(kScheme); at != std::string::npos)
        panel.internet.erase(at, kScheme.size());
    if (!panel.internet.empty()) panel.internetLink = std::string(kScheme) + panel.internet;

    const std::string& mail = texts[SupplierInfo::Mail];
    panel.mail = "E-Mail: " + mail;
    if (!mail.empty()) panel.mailLink = "mailto:" + mail + "?subject=제품문의:";
    panel.remark = texts[SupplierInfo::Remark];
    return panel;
}

}  // namespace vantor
