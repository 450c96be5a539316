#pragma once
// The right-hand pages (light, system, and later keys) share one frame with
// its origin at (920, 98) in the window, and one panel look.

#include <QString>

class QWidget;

namespace PageFrame {

inline constexpr int kPageX = 920;
inline constexpr int kPageY = 98;
inline constexpr int kPageWidth = 224;
inline constexpr int kPageHeight = 540;

// A white, rounded panel named `objectName`, placed at the page frame.
QWidget* makePageView(QWidget* parent, const QString& objectName);

}  // namespace PageFrame
