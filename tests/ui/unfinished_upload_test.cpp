// An upload cut short (cable pulled, keyboard not answering) stays marked
// across a restart and goes out again, whole, at the next connection, after
// the profile's light and settings.
#include "HIDDevice/UnfinishedUploads.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "support/TraceFrames.h"
#include "support/VirtualSession.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace testing_support;
using Frames = std::vector<std::string>;

namespace {

struct Upload {
    UploadMark::Kind kind;
    std::function<void(MainController&)> send;
    std::size_t markedFrames = SIZE_MAX;  // the leading frames of `send` that make the marked sequence
};

const Upload kUploads[] = {
    {UploadMark::Kind::KeyTable, [](MainController& c) { c.setKeyMacroData(3); }},
    {UploadMark::Kind::UserLightSlot,
     [](MainController& c) {  // a new light with one coloured key, saved to slot 4
         c.action_userlightmode_tab();
         c.MenuItemMouseUpAction(QVariantMap{{"menuid", 166}});
         c.deviceDB->insertKeyRGB({0, c.currentUserLightMode, 1, G_KB_SuperKeyCodeMap.begin()->first, 0x12AB34});
         c.currentKBUserLightMode = 4;
         c.setHFDUserLightData();  // the slot's colours, then the mode that shows it
     },
     13},
    {UploadMark::Kind::MacroStore, [](MainController& c) { c.SaveMacroToKeyboard(); }},
};

std::vector<UploadMark> marks(VirtualSession& s)
{
    return UnfinishedUploads(QDir(s.data.path()).filePath("db/") + UnfinishedUploads::kFileName)
        .marked("orvane_61k_device.sqlite3");
}

// Sends the upload; the frames it sent, whole.
Frames send(VirtualSession& s, const Upload& upload)
{
    EXPECT_TRUE(s.connected());
    const auto from = lastFrameTime(*s.keyboard);
    upload.send(*s.controller);
    EXPECT_TRUE(s.controller->transport().waitForIdle(std::chrono::seconds(5)));
    return framesSince(*s.keyboard, from);
}

// Unplugs, starts the app again and plugs back; what that connection sent.
Frames restartAndReplug(VirtualSession& s)
{
    s.bus->unplug(s.keyboard);
    EXPECT_TRUE(waitUntil([&] { return !s.controller->connectedDevice() && !s.controller->hidcomm_busy(); }));
    s.restart();
    s.keyboard->setRepeatForever(false);
    const auto from = lastFrameTime(*s.keyboard);
    s.bus->plug(s.keyboard);
    EXPECT_TRUE(s.connected());
    return framesSince(*s.keyboard, from);
}

}  // namespace

TEST(UnfinishedUpload, ACutUploadIsSentAgainWholeAfterTheConnectionsOwnUploadsEvenAfterARestart)
{
    for (const Upload& upload : kUploads) {
        SCOPED_TRACE(int(upload.kind));
        Frames expected;
        {
            VirtualSession healthy;
            Frames sent = send(healthy, upload);
            EXPECT_TRUE(marks(healthy).empty()) << "a finished upload leaves no mark";
            sent.resize(std::min(sent.size(), upload.markedFrames));
            expected = restartAndReplug(healthy);
            expected.insert(expected.end(), sent.begin(), sent.end());
        }
        // Cut after its first data report by a pulled cable, or from the
        // start by a keyboard that asks for every frame again.
        for (const bool pulled : {true, false}) {
            SCOPED_TRACE(pulled ? "cable pulled" : "not answering");
            VirtualSession cut;
            ASSERT_TRUE(cut.connected());
            pulled ? cut.keyboard->unplugDuringUpload(1) : cut.keyboard->setRepeatForever(true);
            send(cut, upload);
            ASSERT_EQ(marks(cut).size(), 1u);
            EXPECT_EQ(marks(cut)[0].kind, upload.kind);
            EXPECT_EQ(restartAndReplug(cut), expected);
            EXPECT_TRUE(marks(cut).empty());
        }
    }
}
