// The supplier panel: texts and live links from a record, the opener given the link's target,
// a logo that is no bitmap, and the empty panel of a drawing without a supplier.
#include "vantor/ui/dialogs/SupplierInfoPanel.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QUrl>
#include <QUrlQuery>

#include "cad/gui/TestApplication.h"

namespace vantor {
namespace {

std::string bmpOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "BMP");
    return bytes.toStdString();
}

SupplierInfo supplier() {
    SupplierInfo info;
    info.texts = {"(주)반토정밀", "경기도 안산시", "031-123-4567", "031-123-4568",
                  "http://www.vantor.co.kr", "sales@vantor.co.kr", "납기 2주"};
    QImage logo(150, 40, QImage::Format_RGB888);
    logo.fill(Qt::red);
    info.logo = bmpOf(logo);
    return info;
}

class Panel : public ::testing::Test {
protected:
    void SetUp() override {
        cad::gui::testApplication();
        panel.setLinkOpener([this](const QUrl& url) { opened.push_back(url); });
        panel.resize(260, 200);
        panel.show();
    }
    // Clicks the link at the start of the label's text, as the user would.
    void click(QLabel* label) {
        QTest::mouseClick(label, Qt::LeftButton, {},
                          QPoint(label->contentsRect().left() + 4, label->height() / 2));
    }

    SupplierInfoPanel panel;
    std::vector<QUrl> opened;
};

TEST_F(Panel, ShowsTheRecordWithLiveLinks) {
    panel.showSupplier(supplier());
    EXPECT_TRUE(panel.showsLogo());
    EXPECT_EQ(panel.companyLabel()->text(), QString::fromUtf8("(주)반토정밀"));
    EXPECT_EQ(panel.addressLabel()->text(), QString::fromUtf8("경기도 안산시"));
    EXPECT_EQ(panel.phoneLabel()->text(), QStringLiteral("TEL: 031-123-4567"));
    EXPECT_EQ(panel.faxLabel()->text(), QStringLiteral("FAX: 031-123-4568"));
    EXPECT_EQ(panel.remarkLabel()->text(), QString::fromUtf8("납기 2주"));
    EXPECT_EQ(panel.internetLabel()->accessibleName(), QStringLiteral("WWW.VANTOR.CO.KR"));
    EXPECT_EQ(panel.mailLabel()->accessibleName(), QStringLiteral("E-Mail: sales@vantor.co.kr"));

    click(panel.internetLabel());
    click(panel.mailLabel());
    ASSERT_EQ(opened.size(), 2u);
    EXPECT_EQ(opened[0].scheme(), QStringLiteral("http"));
    EXPECT_EQ(opened[0].host(), QStringLiteral("www.vantor.co.kr"));
    EXPECT_EQ(opened[1].scheme(), QStringLiteral("mailto"));
    EXPECT_EQ(opened[1].path(), QStringLiteral("sales@vantor.co.kr"));
    EXPECT_EQ(QUrlQuery(opened[1]).queryItemValue(QStringLiteral("subject"), QUrl::FullyDecoded),
              QString::fromUtf8("제품문의:"));
}

TEST_F(Panel, ALogoThatIsNoBitmapIsSaidAndTheRestStillWorks) {
    SupplierInfo info = supplier();
    info.logo = "this is no bitmap";
    panel.showSupplier(info);
    EXPECT_FALSE(panel.showsLogo());
    EXPECT_TRUE(panel.logoLabel()->isVisibleTo(&panel));
    EXPECT_FALSE(panel.logoLabel()->text().isEmpty());
    EXPECT_EQ(panel.companyLabel()->text(), QString::fromUtf8("(주)반토정밀"));
    click(panel.internetLabel());
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(Panel, NoSupplierEmptiesThePanelAndAddressesLeftEmptyOpenNothing) {
    panel.showSupplier(supplier());
    panel.showSupplier(std::nullopt);
    EXPECT_FALSE(panel.showsLogo());
    for (QLabel* label : {panel.companyLabel(), panel.addressLabel(), panel.phoneLabel(),
                          panel.faxLabel(), panel.internetLabel(), panel.mailLabel(),
                          panel.remarkLabel()})
        EXPECT_TRUE(label->text().isEmpty()) << label->text().toStdString();

    SupplierInfo info = supplier();
    info.texts[SupplierInfo::Internet].clear();
    info.texts[SupplierInfo::Mail].clear();
    panel.showSupplier(info);
    click(panel.internetLabel());
    click(panel.mailLabel());
    EXPECT_TRUE(opened.empty());
}

}  // namespace
}  // namespace vantor
