#include "app/Appearance.h"

#include <QApplication>
#include <QColor>
#include <QPalette>
#include <QStyleFactory>

void applyAppearance()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));

    QPalette palette(QColor(0xee, 0xf0, 0xf2), QColor(0xf4, 0xf5, 0xf7));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xf4, 0xf6, 0xf8));
    palette.setColor(QPalette::ToolTipBase, QColor(0xff, 0xff, 0xe8));
    palette.setColor(QPalette::PlaceholderText, QColor(0x6b, 0x74, 0x7d));
    palette.setColor(QPalette::Highlight, QColor(0x1f, 0x6f, 0xb2));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x1f, 0x6f, 0xb2));
    const QPalette::ColorRole texts[] = {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                         QPalette::ToolTipText};
    for (const QPalette::ColorRole role : texts) {
        palette.setColor(role, QColor(0x1b, 0x21, 0x27));
        palette.setColor(QPalette::Disabled, role, QColor(0x8d, 0x95, 0x9d));
    }
    QApplication::setPalette(palette);
}
