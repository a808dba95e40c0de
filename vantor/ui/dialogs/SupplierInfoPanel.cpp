// The supplier panel.
#include "vantor/ui/dialogs/SupplierInfoPanel.h"

#include <QDesktopServices>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QScrollArea>
#include <QUrl>
#include <QVBoxLayout>

#include "vantor/store/SupplierPanel.h"

namespace vantor {

namespace {

// The size the company information dialog asks for; a larger picture is shrunk to it.
constexpr int kLogoWidth = 150;
constexpr int kLogoHeight = 40;

QLabel* line(QWidget* parent, bool wrap) {
    auto* label = new QLabel(parent);
    label->setWordWrap(wrap);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

}  // namespace

SupplierInfoPanel::SupplierInfoPanel(QWidget* parent)
    : QWidget(parent), open_([](const QUrl& url) { QDesktopServices::openUrl(url); }) {
    // A narrow pane still shows every line: what does not fit scrolls instead of being cut.
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* content = new QWidget(scroll);
    scroll->setWidget(content);

    logo_ = new QLabel(content);
    logo_->setFixedHeight(kLogoHeight);
    logo_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    company_ = line(content, true);
    QFont bold = company_->font();
    bold.setBold(true);
    company_->setFont(bold);
    address_ = line(content, true);
    phone_ = line(content, false);
    fax_ = line(content, false);
    internet_ = line(content, false);
    mail_ = line(content, false);
    remark_ = line(content, true);
    for (QLabel* link : {internet_, mail_}) {
        link->setTextFormat(Qt::RichText);
        link->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
        link->setOpenExternalLinks(false);
        connect(link, &QLabel::linkActivated, this,
                [this](const QString& target) { open_(QUrl(target)); });
    }

    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(1);
    layout->addWidget(logo_);
    layout->addSpacing(3);
    for (QLabel* label : {company_, address_, phone_, fax_, internet_, mail_, remark_})
        layout->addWidget(label);
    layout->addStretch(1);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);
    showSupplier(std::nullopt);
}

void SupplierInfoPanel::showSupplier(const std::optional<SupplierInfo>& info) {
    if (!info) {
        showLogo({});
        for (QLabel* label : {company_, address_, phone_, fax_, internet_, mail_, remark_})
            setText(label, {});
        return;
    }
    const SupplierPanel panel = SupplierPanel::from(*info);
    showLogo(info->logo);
    setText(company_, panel.companyName);
    setText(address_, panel.address);
    setText(phone_, panel.phone);
    setText(fax_, panel.fax);
    setLink(internet_, panel.internet, panel.internetLink);
    setLink(mail_, panel.mail, panel.mailLink);
    setText(remark_, panel.remark);
}

bool SupplierInfoPanel::showsLogo() const {
    return !logo_->pixmap().isNull();
}

void SupplierInfoPanel::showLogo(const std::string& bytes) {
    logo_->clear();
    logo_->setAccessibleName({});
    logo_->setVisible(!bytes.empty());
    if (bytes.empty()) return;
    QImage image;
    // The bytes are a whole BMP file; the reader may have left part of its tail zero, which
    // only blackens some pixels of the last rows.
    if (!image.loadFromData(reinterpret_cast<const uchar*>(bytes.data()),
                            static_cast<int>(bytes.size()), "BMP")) {
        logo_->setText(QString::fromUtf8("로고 그림을 읽을 수 없습니다."));
        logo_->setAccessibleName(logo_->text());
        return;
    }
    if (image.width() > kLogoWidth || image.height() > kLogoHeight)
        image = image.scaled(kLogoWidth, kLogoHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    logo_->setPixmap(QPixmap::fromImage(image));
    logo_->setAccessibleName(QString::fromUtf8("회사 로고"));
}

void SupplierInfoPanel::setText(QLabel* label, const std::string& text) {
    label->setText(QString::fromStdString(text));
    label->setAccessibleName(label->text());
}

void SupplierInfoPanel::setLink(QLabel* label, const std::string& text,
                                const std::string& target) {
    const QString shown = QString::fromStdString(text);
    // An empty address opens nothing, so it is shown as plain text.
    label->setText(target.empty() ? shown.toHtmlEscaped()
                                  : QStringLiteral("<a href=\"%1\">%2</a>")
                                        .arg(QString::fromStdString(target).toHtmlEscaped(),
                                             shown.toHtmlEscaped()));
    label->setAccessibleName(shown);
}

}  // namespace vantor
