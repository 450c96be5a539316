// Uploads the keyboard confirms by the sum in its reply to the closing 0x02:
// a wrong sum sends the whole upload again, a second one leaves it marked and
// says so, and a keyboard that answers 0 is not asked again.
#include "HIDDevice/UnfinishedUploads.h"
#include "support/TraceFrames.h"
#include "support/VirtualSession.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace testing_support;
using Frames = std::vector<std::string>;

namespace {

Frames sendKeyTable(VirtualSession& s)
{
    const auto from = lastFrameTime(*s.keyboard);
    s.controller->setKeyMacroData(3);
    EXPECT_TRUE(s.controller->transport().waitForIdle(std::chrono::seconds(5)));
    return framesSince(*s.keyboard, from);
}

Frames twice(const Frames& f)
{
    Frames out = f;
    out.insert(out.end(), f.begin(), f.end());
    return out;
}

}  // namespace

TEST(UploadConfirmation, AWrongSumSendsTheUploadAgainAndASecondOneLeavesItMarkedAndSaysSo)
{
    Frames healthy;
    FirmwareModel::Block table;
    {
        VirtualSession s;
        ASSERT_TRUE(s.connected());
        healthy = sendKeyTable(s);
        table = s.keyboard->firmware().keyTable(3);
    }
    ASSERT_EQ(healthy.size(), 12u);  // 0x18, the header, 9 data reports, 0x02
    ASSERT_FALSE(table.empty());

    struct Case {
        const char* what;
        std::function<void(VirtualKeyboard&)> fault;
        Frames expected;
        bool markedAndSaid;
    };
    const Case cases[] = {
        {"wrong sum once", [](VirtualKeyboard& k) { k.answerWrongSums(1); }, twice(healthy), false},
        {"report garbled", [](VirtualKeyboard& k) { k.corruptNextDataReport(); }, twice(healthy), false},
        {"wrong sum twice", [](VirtualKeyboard& k) { k.answerWrongSums(2); }, twice(healthy), true},
        {"no sums", [](VirtualKeyboard& k) { k.setSumsCounted(false); }, healthy, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        VirtualSession s;
        ASSERT_TRUE(s.connected());
        c.fault(*s.keyboard);
        EXPECT_EQ(sendKeyTable(s), c.expected);
        const auto marks = UnfinishedUploads(QDir(s.data.path()).filePath("db/") + UnfinishedUploads::kFileName)
                               .marked("orvane_61k_device.sqlite3");
        EXPECT_EQ(marks.size(), c.markedAndSaid ? 1u : 0u);
        const QString said = s.controller->label_problem->text();
        EXPECT_EQ(said.contains("The keyboard did not confirm the key settings of Profile C"), c.markedAndSaid)
            << said.toStdString();
        EXPECT_EQ(s.keyboard->firmware().keyTable(3), table);
        EXPECT_TRUE(s.keyboard->protocolErrors().isEmpty());
    }
}

TEST(UploadConfirmation, AKeyboardThatAnswersNoSumIsNotAskedAgainOnThatConnection)
{
    VirtualSession s;
    ASSERT_TRUE(s.connected());
    s.keyboard->setSumsCounted(false);
    const Frames first = sendKeyTable(s);
    s.keyboard->setSumsCounted(true);
    s.keyboard->answerWrongSums(2);
    EXPECT_EQ(sendKeyTable(s), first);
    EXPECT_FALSE(s.controller->label_problem->text().contains("did not confirm"));
}
