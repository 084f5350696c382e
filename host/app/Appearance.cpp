#include "host/app/Appearance.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QToolTip>

namespace host {

namespace {

constexpr int kFontPixels = 11;

QPalette darkPalette()
{
    const QColor window(62, 62, 62), text(225, 225, 225), greyed(140, 140, 140);
    // Far enough below the window: the style draws a field or an empty radio button as nothing but this.
    const QColor base(24, 24, 24);
    QPalette palette(window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(36, 36, 36));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, greyed);
    palette.setColor(QPalette::Link, QColor(80, 160, 220));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 180));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, greyed);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(80, 80, 80));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, greyed);
    return palette;
}

} // namespace

void applyStyle()
{
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QFont font("WenQuanYi Micro Hei");
    font.setPixelSize(kFontPixels);
    QApplication::setFont(font);
}

void applyColours(Colours colours)
{
    QApplication::setPalette(colours == Colours::Dark ? darkPalette()
                                                      : QApplication::style()->standardPalette());
    QToolTip::setPalette(QApplication::palette());
}

} // namespace host
