#include "form_style.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionComboBox>

#include <algorithm>
#include <cmath>

namespace window {

namespace {

QColor Mixed(const QColor& front, const QColor& back, double share) {
    const auto mix = [share](int one, int other) {
        return static_cast<int>(std::lround(one * share + other * (1 - share)));
    };
    return {mix(front.red(), back.red()), mix(front.green(), back.green()), mix(front.blue(), back.blue())};
}

double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double Contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool Is_Dark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QPalette Readable(QPalette palette) {
    constexpr double Wanted = 5.5; // 4.5 can be read, but thin strokes never take on their full colour
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> roles[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button},
    };
    for (const auto& [text, behind] : roles) {
        const QColor full = palette.color(QPalette::Active, text);
        QColor back = palette.color(QPalette::Disabled, behind);
        if (behind == QPalette::Button && Is_Dark(palette))
            back = back.lighter(140); // as the style does
        double share = 0.5;
        while (share < 1 && Contrast(Mixed(full, back, share), back) < Wanted)
            share += 0.02;
        palette.setColor(QPalette::Disabled, text, Mixed(full, back, std::min(share, 1.0)));
    }
    return palette;
}

QColor Line_Color(const QPalette& palette) {
    return Mixed(palette.color(QPalette::Active, QPalette::WindowText), palette.color(QPalette::Window),
                 0.35);
}

int Form_Style::Scaled(int pixels) const {
    return static_cast<int>(std::lround(pixels * Scale));
}

int Form_Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* result) const {
    // A list below its field, which scrolls; the other kind measures all of its entries.
    if (hint == SH_ComboBox_Popup)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
}

int Form_Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    // An option button may be as low as a line of text.
    if (metric == PM_ExclusiveIndicatorWidth || metric == PM_ExclusiveIndicatorHeight)
        return Scaled(13);
    if (metric == PM_DefaultFrameWidth && Scale < 1 && qobject_cast<const QLineEdit*>(widget))
        return 1;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QRect Form_Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                 const QWidget* widget) const {
    const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control != CC_ComboBox || !combo || combo->editable)
        return QProxyStyle::subControlRect(control, option, part, widget);
    return List_Only_Part(*combo, part, widget);
}

// Narrow margins, because the design's combo boxes are just as wide as their texts.
QRect Form_Style::List_Only_Part(const QStyleOptionComboBox& combo, SubControl part,
                                 const QWidget* widget) const {
    const int margin = Scaled(3);
    const int arrow = Scaled(15);
    const QRect box = combo.rect;
    if (part == SC_ComboBoxEditField)
        return visualRect(combo.direction, box, box.adjusted(margin, margin, -arrow, -margin));
    if (part == SC_ComboBoxArrow)
        return visualRect(combo.direction, box, box.adjusted(box.width() - arrow, 0, -1, 0));
    return QProxyStyle::subControlRect(CC_ComboBox, &combo, part, widget);
}

namespace {

// The style's own outline has a colour that says more.
bool Is_Marked(const QStyleOption& option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return (option.state & QStyle::State_HasFocus) ||
           (button && (button->features & QStyleOptionButton::DefaultButton));
}

void Draw_Line(QPainter& painter, const QRectF& place, double radius, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(place, radius, radius);
    painter.restore();
}

// The style outlines everything darker than the window, which on a dark one nobody sees.
void Outline(const QStyleOption& option, QPainter& painter, bool round) {
    const QRectF place = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    Draw_Line(painter, place, round ? place.width() / 2 : 2, Line_Color(option.palette));
}

// The style outlines the default button and the one with the focus alike.
bool Is_Seen_To_Have_Focus(const QStyleOption& option) {
    constexpr auto By_Keys = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    return (option.state & By_Keys) == By_Keys;
}

void Mark_Focus(const QStyleOption& option, QPainter& painter) {
    Draw_Line(painter, QRectF(option.rect).adjusted(2.5, 2.5, -2.5, -2.5), 2,
              option.palette.color(QPalette::Highlight));
}

} // namespace

void Form_Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool round = element == PE_IndicatorRadioButton;
    const bool outlined = round || element == PE_FrameLineEdit || element == PE_PanelButtonCommand;
    if (element == PE_Frame || (outlined && Is_Dark(option->palette) && !Is_Marked(*option)))
        Outline(*option, *painter, round);
    const bool is_button = qobject_cast<const QAbstractButton*>(widget); // and not the arrow of a combo box
    if (element == PE_PanelButtonCommand && is_button && Is_Seen_To_Have_Focus(*option))
        Mark_Focus(*option, *painter);
}

void Form_Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox && Is_Dark(option->palette) && !Is_Marked(*option))
        Outline(*option, *painter, false);
}

} // namespace window
