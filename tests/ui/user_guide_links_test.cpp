// The guide button, the web links and the shop button: which guide opens,
// where it is copied, and which addresses are handed to the desktop.
#include "Common/Globals.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "support/StoreTestSupport.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A window with no keyboard bus, whose cache folder is a temporary one and
// whose opened addresses are recorded instead of launched.
class GuideAndLinks : public testing::Test {
protected:
    void SetUp() override
    {
        oldCache_ = qgetenv("XDG_CACHE_HOME");  // the cache folder follows it
        qputenv("XDG_CACHE_HOME", cache_.path().toLocal8Bit());
        oldDeviceType_ = g_device_type.load();
        controller_.viewDidLoad();
        controller_.urlOpener = [this](const QUrl& url) { opened_.append(url); return opens_; };
    }
    void TearDown() override
    {
        g_device_type = oldDeviceType_;
        qputenv("XDG_CACHE_HOME", oldCache_);
    }

    testing_support::TempDataFolder data_;
    QTemporaryDir cache_;
    QByteArray oldCache_;
    int oldDeviceType_ = 1;
    MainController controller_{MainController::Environment{[] { return std::unique_ptr<HidManager>(); }, {}}};
    QList<QUrl> opened_;
    bool opens_ = true;
};

}  // namespace

TEST_F(GuideAndLinks, TheGuideOfTheConnectedModelOpensWhateverLayoutIsOnShow)
{
    ASSERT_EQ(controller_.keyboardType, 1);  // the 61-key picture is on show
    g_device_type = 2;
    QTest::mouseClick(controller_.imgbtn_doc, Qt::LeftButton);
    g_device_type = 0;  // the CNC model shares the 61-key guide
    controller_.action_doc();

    ASSERT_EQ(opened_.size(), 2);
    int i = 0;
    for (const char* name : {"Orvane 68k User guide.pdf", "Orvane 61k User guide.pdf"}) {
        const QString path = opened_[i++].toLocalFile();
        EXPECT_TRUE(path.startsWith(cache_.path()) && QFileInfo(path).fileName() == name) << path.toStdString();
        const QByteArray pdf = readAll(":/guides/" + QString::fromUtf8(name));
        EXPECT_TRUE(pdf.startsWith("%PDF-") && pdf.contains("NotoSansCJKsc")) << name;  // Chinese glyphs embedded
        EXPECT_EQ(readAll(path), pdf);
    }
}

TEST_F(GuideAndLinks, TheCachedGuideIsWrittenOnceAndReplacedOnlyWhenItDiffers)
{
    g_device_type = 1;
    controller_.action_doc();
    ASSERT_EQ(opened_.size(), 1);
    const QString path = opened_[0].toLocalFile();
    const QDateTime past = QDateTime::currentDateTime().addDays(-3);
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::ReadWrite));
        ASSERT_TRUE(f.setFileTime(past, QFileDevice::FileModificationTime));
    }
    controller_.action_doc();
    EXPECT_EQ(QFileInfo(path).lastModified().toSecsSinceEpoch(), past.toSecsSinceEpoch());

    {  // an older app's guide
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write("%PDF-1.4 an older guide");
    }
    controller_.action_doc();
    EXPECT_EQ(readAll(path), readAll(":/guides/Orvane 61k User guide.pdf"));
    EXPECT_EQ(opened_.size(), 3);
}

TEST_F(GuideAndLinks, TheLinksOpenTheProductsAddressesAndTheShopKeepsThePage)
{
    const int page = controller_.viewType;
    QTest::mouseClick(controller_.imgbtn_home, Qt::LeftButton);
    QTest::mouseClick(controller_.imgbtn_facebook, Qt::LeftButton);
    QTest::mouseClick(controller_.imgbtn_chat, Qt::LeftButton);
    controller_.action_func_store();

    const QList<QUrl> expected{QUrl("https://orvane.com"), QUrl("https://www.facebook.com/orvanekeyboards"),
                               QUrl("https://forum.orvane.com"), QUrl("http://forum.orvane.com")};
    EXPECT_EQ(opened_, expected);
    EXPECT_EQ(controller_.viewType, page);

    opens_ = false;  // no browser on this desktop: each link says so, once
    controller_.action_homewebsite();
    controller_.action_chatwebsite();
    controller_.action_homewebsite();
    const QString said = controller_.label_problem->text();
    EXPECT_EQ(said.count("https://orvane.com"), 1);
    EXPECT_TRUE(said.contains(expected[2].toDisplayString()));
}
