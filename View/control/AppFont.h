#pragma once
// The families every text of the window is drawn with: the app's own cut of
// Noto Sans CJK SC (the characters of its texts, built in as a resource),
// then the whole installed face for any other character. Both draw a
// character alike; the cut keeps the whole face, whose tables cost megabytes
// once opened, closed until a text needs a character the cut lacks.

#include <QStringList>

namespace AppFont {
// Registers the cut with the font database; later calls do nothing. Until
// it is called, or in a build without the cut, the families name the
// installed face alone in effect.
void registerFaces();
QStringList families();
// Whether the desktop's own sans-serif face, which widgets built before the
// window's font is set keep, is the installed face behind the cut (as under
// a Chinese locale). Asked of fontconfig, so that no face is opened.
bool desktopSansIsInstalledFace();
}  // namespace AppFont
