#include "View/control/AppFont.h"

#include <QByteArray>
#include <QFontDatabase>
#include <QResource>

#include <fontconfig/fontconfig.h>

namespace {
const QString kAppFamily = QStringLiteral("Orvane Sans CJK SC");
const QString kInstalledFamily = QStringLiteral("Noto Sans CJK SC");
}  // namespace

void AppFont::registerFaces()
{
    static bool registered = false;
    if (registered)
        return;
    registered = true;
    for (const QString& style : {QStringLiteral("Regular"), QStringLiteral("Bold")}) {
        const QResource face(QStringLiteral(":/fonts/OrvaneSansCJKSC-%1.otf").arg(style));
        // The resource is stored uncompressed, so the face is read where it
        // lies in the binary instead of being copied onto the heap.
        if (!face.isValid() || face.compressionAlgorithm() != QResource::NoCompression)
            continue;
        QFontDatabase::addApplicationFontFromData(
            QByteArray::fromRawData(reinterpret_cast<const char*>(face.data()), face.size()));
    }
}

QStringList AppFont::families() { return {kAppFamily, kInstalledFamily}; }

bool AppFont::desktopSansIsInstalledFace()
{
    FcPattern* pattern = FcNameParse(reinterpret_cast<const FcChar8*>("sans-serif"));
    if (!pattern)
        return false;
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    FcChar8* family = nullptr;
    const bool installed = match && FcPatternGetString(match, FC_FAMILY, 0, &family) == FcResultMatch &&
                           QString::fromUtf8(reinterpret_cast<const char*>(family)) == kInstalledFamily;
    if (match)
        FcPatternDestroy(match);
    FcPatternDestroy(pattern);
    return installed;
}
