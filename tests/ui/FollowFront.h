#pragma once
// The end-to-end check the focus tests share, whatever the desktop: with
// rules for "alpha" (Profile B) and "BETA" (Profile C), bringing the windows
// alpha, beta, alpha to the front through the desktop's own means (`front`)
// makes the virtual keyboard receive, in order, exactly the frames the
// profile menu sends for those profiles.
#include <QElapsedTimer>
#include "FocusWatch/FocusSource.h"
#include "support/TraceFrames.h"
#include "support/VirtualSession.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

namespace testing_support {

inline void expectProfilesFollowTheFront(VirtualSession& session, const std::function<void(const char* app)>& front)
{
    MainController& controller = *session.controller;
    ASSERT_TRUE(controller.focusSource->available());
    // On a loaded machine a desktop can miss a request to bring a window to
    // the front (a window still opening, a busy window manager), so it is
    // asked again until `reached` holds; asking for the window already in
    // front changes nothing there.
    auto bringToFront = [&](const char* app, const std::function<bool()>& reached) {
        QElapsedTimer asked;
        return waitUntil([&] {
            if (reached())
                return true;
            if (!asked.isValid() || asked.elapsed() > 500) {
                front(app);
                asked.start();
            }
            return false;
        }, 15000);
    };
    // Both windows are known in front before any rule exists: what the
    // desktop reports late of their opening can't switch anything.
    for (const char* app : {"alpha", "beta"}) {
        ASSERT_TRUE(bringToFront(app, [&] {
            const QStringList& seen = controller.profileFollower.seenApplications();
            return !seen.isEmpty() && seen[0].compare(app, Qt::CaseInsensitive) == 0;
        })) << "the desktop did not report " << app << " in front";
    }
    auto settle = [&] { ASSERT_TRUE(controller.transport().waitForIdle(std::chrono::seconds(10))); };
    auto menuFrames = [&](int profile) {
        settle();
        const auto from = lastFrameTime(*session.keyboard);
        controller.MenuItemMouseUpAction(QVariantMap{{"menuid", profile}});
        settle();
        return framesSince(*session.keyboard, from);
    };
    const auto menuTo2 = menuFrames(2);
    const auto menuTo3 = menuFrames(3);
    menuFrames(1);
    controller.setAppRules({{{"alpha", 2}, {"BETA", 3}}, kLeaveProfile});
    controller.setFollowingApplications(true);
    settle();
    const auto from = lastFrameTime(*session.keyboard);
    std::vector<std::string> expected;
    for (const auto& [app, profile, frames] :
         {std::tuple("alpha", 2, menuTo2), std::tuple("beta", 3, menuTo3), std::tuple("alpha", 2, menuTo2)}) {
        ASSERT_TRUE(bringToFront(app, [&] { return controller.currentProfile == profile && !controller.hidcomm_busy(); }))
            << "profile " << profile << " after bringing " << app << " to the front";
        expected.insert(expected.end(), frames.begin(), frames.end());
    }
    settle();
    EXPECT_EQ(framesSince(*session.keyboard, from), expected);
}

}  // namespace testing_support
