// Small shared pieces: notifications, HID properties, the command line.
#include "Common/AppOptions.h"
#include "Common/NotificationCenter.h"
#include "Common/StandardStreams.h"
#include "HIDDevice/HIDDevice.h"
#include "support/RecordingHidDevice.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>
#include <tuple>

TEST(NotificationCenter, DeliversSynchronouslyOnThePostingThreadInOrderAndLetsAHandlerLeave)
{
    NotificationCenter center;
    std::vector<std::string> calls;
    std::thread::id seenOn;
    int owner = 0;
    center.addObserver("ping", [&](const QVariant& o) { calls.push_back("a" + o.toString().toStdString()); }, &owner);
    NotificationCenter::Token token = 0;
    token = center.addObserver("ping", [&](const QVariant&) {
        calls.push_back("b");
        seenOn = std::this_thread::get_id();
        center.removeObserver(token);  // while it is being called
    });
    center.addObserver("other", [&](const QVariant&) { calls.push_back("x"); });
    std::thread([&] { center.post("ping", QStringLiteral("1")); }).join();
    EXPECT_EQ(calls, (std::vector<std::string>{"a1", "b"}));
    EXPECT_NE(seenOn, std::this_thread::get_id());

    center.removeObservers(&owner);
    center.post("ping");
    EXPECT_EQ(calls.size(), 2u);
}

TEST(HIDDeviceProperties, MissingOrMistypedPropertiesReadAsZeroOrEmpty)
{
    auto handle = std::make_shared<testing_support::RecordingHidDevice>();
    handle->properties = {{"VendorID", 3141}, {"ProductID", QStringLiteral("32885")}, {"MaxFeatureReportSize", 64},
                          {"Product", 42}, {"LocationID", qlonglong(0x14100000)}};
    const HIDDevice device(handle);
    // A string is not a number, a number is not a name.
    EXPECT_EQ(std::tuple(device.vendorId, device.productId, device.featureSize, device.reportSize, device.id),
              std::tuple(3141, 0, 64, 0, 0x14100000));
    EXPECT_EQ(device.name, QString());

    HIDDevice out;
    EXPECT_FALSE(deviceFromNotificationObject(QVariantMap{{"device", 1}}, out));
    EXPECT_FALSE(deviceFromNotificationObject(QStringLiteral("device"), out));
    EXPECT_TRUE(deviceFromNotificationObject(makeDeviceNotificationObject(device), out));
    EXPECT_TRUE(out.isSameDevice(device));
}

TEST(AppOptionsParsing, AcceptsTheDocumentedOptionsAndRefusesWhatCannotBeMeant)
{
    QString error;
    const QTemporaryDir folder;
    const QString tracePath = folder.path() + "/t.jsonl";
    const auto ok = parseAppOptions({"orvane", "--demo", "K68", "--trace", tracePath, "--data-dir", "d",
                                     "--quit-after", "86400", "--screenshot", "s.png"}, error);
    ASSERT_TRUE(ok) << error.toStdString();
    EXPECT_EQ(QStringList({ok->demoModel, ok->traceFile, ok->dataDir, ok->screenshotFile, ok->helpText}),
              QStringList({"k68", tracePath, "d", "s.png", ""}));
    EXPECT_EQ(ok->quitAfterSeconds, 86400);

    const auto help = parseAppOptions({"orvane", "--help"}, error);
    ASSERT_TRUE(help) << "help is an answer, not an error";
    EXPECT_TRUE(help->helpText.contains("--quit-after")) << help->helpText.toStdString();
    // Read before the application object exists, so Qt's own options are left to it.
    const auto version = parseAppOptions({"orvane", "-platform", "offscreen", "--style=Fusion", "-reverse", "--version"}, error);
    ASSERT_TRUE(version) << error.toStdString();
    EXPECT_EQ(version->helpText, "Orvane Keyboard Studio 0.1.0\n");
    const auto minimized = parseAppOptions({"orvane", "--minimized", "--platform", "xcb"}, error);
    ASSERT_TRUE(minimized) << error.toStdString();
    EXPECT_TRUE(minimized->minimized);

    const std::vector<std::pair<QStringList, const char*>> refused{
        {{"--demo", "x99"}, "m61, w61 or k68"}, {{"--data-dir", ""}, "--data-dir needs a folder"},
        {{"--quit-after", "soon"}, "soon"},     {{"--quit-after", "inf"}, "inf"},
        {{"--quit-after", "nan"}, "nan"},       {{"--quit-after", "-1"}, "-1"},
        {{"--quit-after", "86401"}, "86401"},   {{"--bogus"}, "bogus"},
        {{"--trace", folder.path() + "/no/such/folder"}, "--trace: cannot write to"}};
    for (const auto& [arguments, said] : refused) {
        error.clear();
        EXPECT_FALSE(parseAppOptions(QStringList{"orvane"} + arguments, error)) << arguments.join(' ').toStdString();
        EXPECT_TRUE(error.contains(said)) << error.toStdString();
    }
}

TEST(StandardStreams, ClosedOutputAndErrorAreOpenedOnDevNullBeforeAnyFileCanTakeTheirNumbers)
{
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        openClosedStandardStreams();
        // The next file opened must not become standard output.
        const int next = open("/dev/zero", O_RDONLY);
        char target[64] = {};
        const bool onNull = readlink("/proc/self/fd/1", target, sizeof target - 1) > 0 && std::string(target) == "/dev/null";
        _exit(next > STDERR_FILENO && onNull && fcntl(STDERR_FILENO, F_GETFD) != -1 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}
