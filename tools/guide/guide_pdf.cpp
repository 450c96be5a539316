// Builds a user guide PDF from the shared HTML template, filled in with the
// facts of one keyboard model. It runs at build time, off screen, so the
// guides always show the layouts and the udev rule of this very tree.
//
//   guide_pdf 61k|68k TEMPLATE.html STYLE.css UDEV.rules OUT.pdf

#include "View/KeyboardLayout/KeyboardLayouts.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QTextDocument>
#include <QUrl>

#include <cstdio>

namespace {

constexpr int kDiagramScale = 4;  // pixels per point: sharp when printed

struct GuideModel {
    QString title;          // the guide's name, also the PDF's title
    QString modelsEn, modelsZh;
    std::vector<const KeyboardModelLayout*> layouts;
    QStringList layoutNames;  // the caption under each layout picture
    const KeyNameMap* names = nullptr;
    QString coloursEn, coloursZh;
};

GuideModel guideModel(const QString& which)
{
    if (which == QLatin1String("68k"))
        return {QStringLiteral("Orvane 68k User guide"), QStringLiteral("Orvane 68k (ORVANE K68)"),
                QStringLiteral("Orvane 68 键（ORVANE K68）"), {&keyboardModel68k()}, {QStringLiteral("Orvane 68k")}, &Orvane68K_SuperKeyNameMap(),
                QStringLiteral("white and black"), QStringLiteral("白色、黑色")};
    return {QStringLiteral("Orvane 61k User guide"),
            QStringLiteral("Orvane 61k (ORVANE M61 and W61) and Orvane 61k CNC"),
            QStringLiteral("Orvane 61 键（ORVANE M61、W61）与 Orvane 61 键 CNC"),
            {&keyboardModel61k(), &keyboardModelCnc()}, {QStringLiteral("Orvane 61k"), QStringLiteral("Orvane 61k CNC")},
            &Orvane61K_SuperKeyNameMap(),
            QStringLiteral("white and black; the CNC metal case also blue and purple"),
            QStringLiteral("白色、黑色；CNC 金属外壳另有蓝色、紫色")};
}

QString readText(const char* path)
{
    QFile f(QString::fromLocal8Bit(path));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll());
}

// The keys of one layout as the app places them, legends included.
QImage layoutDiagram(const KeyboardModelLayout& model, const KeyNameMap& names)
{
    const std::vector<KeyData> keys = layoutKeys(*model.layout, *model.yPos, *model.sizes, names);
    QRectF bounds;
    for (const KeyData& k : keys)
        bounds = bounds.united(k.rect);
    const qreal width = 480.0;  // points on the page
    const qreal s = width / bounds.width();
    QImage image(QSize(int(width), int(bounds.height() * s)) * kDiagramScale, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(kDiagramScale, kDiagramScale);
    QFont font(QStringLiteral("Noto Sans CJK SC"));
    font.setPointSizeF(5.5);
    p.setFont(font);
    for (const KeyData& k : keys) {
        // y grows upward in the layout tables
        const QRectF r((k.rect.x() - bounds.x()) * s, (bounds.bottom() - k.rect.bottom()) * s,
                       k.rect.width() * s, k.rect.height() * s);
        const QRectF key = r.adjusted(1.2, 1.2, -1.2, -1.2);
        p.setPen(QPen(QColor(0x5b, 0x62, 0x70), 0.8));
        p.setBrush(QColor(0xf3, 0xf5, 0xf8));
        p.drawRoundedRect(key, 3, 3);
        const auto it = names.find(k.keyname);
        const QString legend = it != names.end() && !it->second.short_name.isEmpty() ? it->second.short_name : k.keyname;
        p.setPen(QColor(0x2b, 0x30, 0x3a));
        p.drawText(key.adjusted(2, 1, -2, -1), Qt::AlignCenter | Qt::TextWordWrap, legend);
    }
    return image;
}

// The window in outline, with numbered areas the text refers to and the
// model's keyboard where the picture stands.
QImage windowDiagram(const QImage& keyboard)
{
    const QSizeF size(480, 298);  // 1160 by 720, scaled
    const qreal s = size.width() / 1160.0;
    QImage image((size * kDiagramScale).toSize(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(kDiagramScale, kDiagramScale);
    p.setPen(QPen(QColor(0x5b, 0x62, 0x70), 1));
    p.setBrush(QColor(0xf2, 0xf3, 0xf5));
    p.drawRoundedRect(QRectF(QPointF(0.5, 0.5), size - QSizeF(1, 1)), 6, 6);
    p.fillRect(QRectF(1, 1, size.width() - 2, 56 * s), Qt::white);  // the title row
    // Frames in window points, origin top left: title row, model list,
    // keyboard picture, function buttons, page, messages.
    struct Area { QRectF r; const char* n; };
    const Area areas[] = {
        {{560, 8, 590, 40}, "1"},     {{4, 100, 170, 540}, "2"},   {{215, 118, 660, 330}, "3"},
        {{210, 478, 668, 148}, "4"},  {{916, 78, 232, 548}, "5"},  {{24, 650, 1112, 56}, "6"},
    };
    const QRectF picture(225 * s, 185 * s, 640 * s, 640 * s * keyboard.height() / keyboard.width());
    p.drawImage(picture, keyboard);
    // The four function buttons and the three model tabs, in outline.
    p.setPen(QPen(QColor(0xb8, 0xbe, 0xc8), 1));
    p.setBrush(Qt::white);
    for (int i = 0; i < 4; ++i)
        p.drawRoundedRect(QRectF((215 + i * 168) * s, 482 * s, 154 * s, 140 * s), 3, 3);
    for (const QRectF& tab : {QRectF(15, 202, 138, 58), QRectF(0, 324, 166, 76), QRectF(15, 472, 138, 58)})
        p.drawRoundedRect(QRectF(tab.x() * s, tab.y() * s, tab.width() * s, tab.height() * s), 3, 3);
    QFont font(QStringLiteral("Noto Sans CJK SC"));
    font.setPointSizeF(9);
    font.setBold(true);
    p.setFont(font);
    for (const Area& a : areas) {
        const QRectF r(a.r.x() * s, a.r.y() * s, a.r.width() * s, a.r.height() * s);
        p.setPen(QPen(QColor(0x39, 0xa5, 0xff), 1, Qt::DashLine));
        p.setBrush(QColor(0x39, 0xa5, 0xff, 40));
        p.drawRoundedRect(r, 3, 3);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x39, 0xa5, 0xff));
        const QRectF badge(r.x() + 3, r.y() + 3, 13, 13);
        p.drawEllipse(badge);
        p.setPen(Qt::white);
        p.drawText(badge, Qt::AlignCenter, QString::fromLatin1(a.n));
    }
    return image;
}

}  // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc != 6) {
        std::fprintf(stderr, "usage: guide_pdf 61k|68k TEMPLATE.html STYLE.css UDEV.rules OUT.pdf\n");
        return 2;
    }
    const GuideModel model = guideModel(QString::fromLatin1(argv[1]));
    QString html = readText(argv[2]);
    const QString css = readText(argv[3]);
    const QString rule = readText(argv[4]).trimmed();
    if (html.isEmpty() || css.isEmpty() || rule.isEmpty()) {
        std::fprintf(stderr, "guide_pdf: cannot read the template, style or udev rule\n");
        return 1;
    }

    QTextDocument doc;
    QFont font(QStringLiteral("Noto Sans CJK SC"));
    font.setPointSizeF(10);
    doc.setDefaultFont(font);
    doc.setDefaultStyleSheet(css);
    QString layoutsHtml;
    for (size_t i = 0; i < model.layouts.size(); ++i) {
        const QString name = QStringLiteral("layout%1.png").arg(i);
        const QImage image = layoutDiagram(*model.layouts[i], *model.names);
        doc.addResource(QTextDocument::ImageResource, QUrl(name), image);
        if (i == 0)
            doc.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("window.png")), windowDiagram(image));
        layoutsHtml += QStringLiteral("<p class=\"figure\"><img src=\"%1\" width=\"%2\" height=\"%3\"></p>"
                                      "<p class=\"caption\">%4</p>")
                           .arg(name).arg(image.width() / kDiagramScale).arg(image.height() / kDiagramScale)
                           .arg(model.layoutNames.value(int(i)));
    }
    const int keyCount = int(model.layouts.front()->layout->size());
    html.replace(QLatin1String("{{TITLE}}"), model.title)
        .replace(QLatin1String("{{MODELS_EN}}"), model.modelsEn.toHtmlEscaped())
        .replace(QLatin1String("{{MODELS_ZH}}"), model.modelsZh.toHtmlEscaped())
        .replace(QLatin1String("{{KEYS}}"), QString::number(keyCount))
        .replace(QLatin1String("{{COLOURS_EN}}"), model.coloursEn)
        .replace(QLatin1String("{{COLOURS_ZH}}"), model.coloursZh)
        .replace(QLatin1String("{{LAYOUTS}}"), layoutsHtml)
        .replace(QLatin1String("{{UDEV_RULE}}"), rule.toHtmlEscaped());
    doc.setHtml(html);

    QPdfWriter writer(QString::fromLocal8Bit(argv[5]));
    writer.setTitle(model.title);
    writer.setCreator(QStringLiteral("Orvane Keyboard Studio"));
    // No page margins: printing puts a 2 cm margin round the text itself.
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0),
                                     QPageLayout::Millimeter));
    doc.print(&writer);
    return 0;
}
