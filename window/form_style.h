// How the widgets of a form are drawn: in the colours of the desktop, light or dark, and with fields that
// hold a line of text in the design's height.
#pragma once

#include <QPalette>
#include <QProxyStyle>

class QStyleOptionComboBox;

namespace window {

// From 1 (the same) to 21 (black on white).
double Contrast(const QColor& one, const QColor& other);

// Whether texts are lighter than what is behind them.
bool Is_Dark(const QPalette& palette);

// The palette with disabled texts that can still be read.
QPalette Readable(QPalette palette);

// Of the lines around frames and fields.
QColor Line_Color(const QPalette& palette);

class Form_Style final : public QProxyStyle {
public:
    Form_Style() : QProxyStyle(QStringLiteral("Fusion")) {}

    double Scale = 1; // of the window

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;

private:
    QRect List_Only_Part(const QStyleOptionComboBox& combo, SubControl part, const QWidget* widget) const;
    int Scaled(int pixels) const;
};

} // namespace window
