// The texts and link targets of the library window's supplier panel, formed from a supplier
// record.
#pragma once

#include <string>

#include "vantor/store/SupplierInfo.h"

namespace vantor {

struct SupplierPanel {
    std::string companyName;  // as it stands
    std::string address;      // as it stands
    std::string phone;        // "TEL: " + phone
    std::string fax;          // "FAX: " + fax
    // The address upper-cased with "HTTP://" taken out, and the link "HTTP://" + that, so a
    // bare host name and one typed with the scheme in any case lead to the same place.
    std::string internet;
    std::string internetLink;
    std::string mail;      // "E-Mail: " + address
    std::string mailLink;  // "mailto:" + address + "?subject=제품문의:"
    std::string remark;    // as it stands

    // An empty internet or mail address gives an empty link: there is nothing to open.
    static SupplierPanel from(const SupplierInfo& info);
};

}  // namespace vantor
