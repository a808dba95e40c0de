// The library window's supplier panel: the supplier library's logo, company texts and the
// internet and mail entries as links that open the system's browser and mail program.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "vantor/store/SupplierInfo.h"

class QLabel;
class QUrl;

namespace vantor {

class SupplierInfoPanel : public QWidget {
    Q_OBJECT
public:
    // Opens a link target; QDesktopServices::openUrl unless replaced.
    using LinkOpener = std::function<void(const QUrl&)>;

    explicit SupplierInfoPanel(QWidget* parent = nullptr);

    // nullopt: the drawing has no supplier record, and the panel shows nothing.
    void showSupplier(const std::optional<SupplierInfo>& info);
    // Tests put their own here, so that following a link launches nothing.
    void setLinkOpener(LinkOpener opener) { open_ = std::move(opener); }

    // Whether a logo picture is shown (false for no record, no logo or bytes that are no
    // bitmap).
    bool showsLogo() const;

    QLabel* logoLabel() const { return logo_; }
    QLabel* companyLabel() const { return company_; }
    QLabel* addressLabel() const { return address_; }
    QLabel* phoneLabel() const { return phone_; }
    QLabel* faxLabel() const { return fax_; }
    QLabel* internetLabel() const { return internet_; }
    QLabel* mailLabel() const { return mail_; }
    QLabel* remarkLabel() const { return remark_; }

private:
    void showLogo(const std::string& bytes);
    static void setText(QLabel* label, const std::string& text);
    static void setLink(QLabel* label, const std::string& text, const std::string& target);

    QLabel* logo_;
    QLabel* company_;
    QLabel* address_;
    QLabel* phone_;
    QLabel* fax_;
    QLabel* internet_;
    QLabel* mail_;
    QLabel* remark_;
    LinkOpener open_;
};

}  // namespace vantor
