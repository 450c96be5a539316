#pragma once
// The slide of a view between two frames: 0.68 s, on the event loop
// (nothing waits for it), fading the view in on its way unless told not to.

#include <QRect>

#include <functional>

class QAbstractAnimation;
class QWidget;

inline constexpr int kViewAnimationMs = 680;

// Moves `view` from `startFrame` to `endFrame` (parent coordinates) and runs
// `onEnd` when it arrives. Equal frames start nothing and give nullptr. The
// animation belongs to the view and deletes itself when it stops; stopping
// it early skips `onEnd`.
QAbstractAnimation* startAnimation(QWidget* view, const QRect& startFrame, const QRect& endFrame,
                                   std::function<void()> onEnd = {}, bool fadeIn = true);
