// How the dialog looks: in light and dark, at every scale, in every language. It runs once more at each of
// the screen's own scales.
#include "window_fixture.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>

#include <cmath>

#include "dialog/dlg_gui.h"
#include "resources/resources.h"
#include "shell/string_table.h"

namespace window_test {

namespace {

using dialog::Integer;
using dialog::Long;

double Luminance(QRgb color) {
    const auto linear = [](int part) { return std::pow((part / 255.0 + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

// Between what a place of the widget shows most and what differs most from it.
double Drawn_Contrast(QWidget& widget, const QRect& place) {
    const QImage image = widget.grab(place).toImage();
    std::map<QRgb, int> count;
    for (int row = 0; row < image.height(); ++row)
        for (int column = 0; column < image.width(); ++column)
            ++count[image.pixel(column, row)];
    const auto back = std::max_element(count.begin(), count.end(),
                                       [](auto& one, auto& other) { return one.second < other.second; });
    double highest = 1;
    for (const auto& [color, times] : count) {
        const auto [darker, lighter] = std::minmax({Luminance(color), Luminance(back->first)});
        highest = std::max(highest, (lighter + 0.05) / (darker + 0.05));
    }
    return highest;
}

QPalette Theme(const QColor& window) {
    const bool dark = window.lightness() < 128;
    QPalette palette;
    for (const auto role : {QPalette::Window, QPalette::Button})
        palette.setColor(role, window);
    palette.setColor(QPalette::Base, dark ? window.darker(140) : Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
        palette.setColor(role, dark ? Qt::white : Qt::black);
    return palette;
}

class Look_Test : public Window_Test {
protected:
    ~Look_Test() override {
        QApplication::setPalette(palette);
        QApplication::setFont(font);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }
    const QPalette palette = QApplication::palette();
    const QFont font = QApplication::font();
};

TEST_F(Look_Test, Enabled_Or_Not_Texts_And_Marks_Can_Be_Read_In_Light_And_Dark) {
    form->txtName.Set_Text(u"HEIMIL");
    form->cmbNumber.Set_Text(u"HEIMIL");
    form->cmbPlace.Set_Selected_Index(1);
    const std::pair<const toolkit::Control*, QMargins> places[] = {{&form->lblName, {}},
                                                                   {&form->txtName, {5, 4, 5, 4}},
                                                                   {&form->cmbNumber, {5, 4, 30, 5}},
                                                                   {&form->optOne, {20, 0, 0, 0}},
                                                                   {&form->cmdOK, {5, 5, 5, 5}},
                                                                   {&form->cmdOther, {5, 4, 5, 4}},
                                                                   {&form->fraKind, {8, 0, 230, 60}},
                                                                   {&form->lblPosition, {3, 3, 3, 3}},
                                                                   {&form->cmbPlace, {5, 4, 18, 4}}};
    While_Up([&] {
        for (const QColor window :
             {QColor(192, 192, 192), QColor(239, 239, 239), QColor(49, 54, 59), QColor(20, 20, 20)})
            for (const bool enabled : {true, false}) {
                QApplication::setPalette(Theme(window));
                QCoreApplication::processEvents();
                for (const auto& [control, margins] : places) {
                    QWidget& widget = The(*control);
                    widget.setEnabled(enabled);
                    EXPECT_GE(Drawn_Contrast(widget, widget.rect().marginsRemoved(margins)), 4.5)
                        << automation::To_UTF8(control->Name()) << (enabled ? " on " : " disabled on ")
                        << window.name().toStdString();
                }
                QWidget& frame = The(form->fraKind);
                EXPECT_GE(Drawn_Contrast(frame, {0, 30, 5, 20}), 2) << "the line of a frame";
            }
    });
}

TEST_F(Look_Test, Grows_With_The_Users_Font_As_A_Whole_And_Fits_On_The_Screen) {
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    for (const double points : {9.0, 11.0, 13.75, 16.5, 22.0, 200.0}) {
        QFont larger = font;
        larger.setPointSizeF(points);
        QApplication::setFont(larger);
        const double wanted = std::clamp(points / 11, 1.0, 4.0);
        const double scale = std::min({wanted, (screen.width() - 6) / 312.0, (screen.height() - 29) / 300.0});
        While_Up([&] {
            EXPECT_NEAR(Dialog().width(), 312 * scale, 1) << points;
            EXPECT_NEAR(Dialog().height(), 300 * scale, 1) << points;
            EXPECT_EQ(Dialog().minimumSize(), Dialog().maximumSize());
            EXPECT_TRUE(QRect({}, screen).contains(Dialog().geometry())) << points;
            for (const toolkit::Control* control : form->Controls()) {
                const QRect place = The(*control).geometry();
                EXPECT_NEAR(place.left(), control->Left() * scale / 15, 1) << points;
                EXPECT_NEAR(place.width(), control->Width() * scale / 15, 1) << points;
                EXPECT_NEAR(The(*control).font().pixelSize(), 11 * scale, 3.01) << points;
            }
        });
    }
}

TEST_F(Look_Test, A_Form_Taller_Than_The_Screen_Keeps_Its_Buttons_Within_Reach) {
    form->Move({0, 0, 4770, 30'000});
    form->cmdOK.Set_Top(29'000);
    While_Up([&] {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QWidget& button = The(form->cmdOK);
        EXPECT_TRUE(screen.contains({button.mapToGlobal(QPoint()), button.size()}));
        EXPECT_TRUE(Dialog().rect().contains(button.geometry()));
    });
}

TEST_F(Look_Test, A_Host_That_Writes_From_Right_To_Left_Moves_Nothing) {
    form->lblName.Set_Caption(u"\u05e9\u05dd:");
    QApplication::setLayoutDirection(Qt::RightToLeft);
    While_Up([&] {
        for (const toolkit::Control* control : form->Controls())
            EXPECT_NEAR(The(*control).x(), control->Left() / 15.0, 0.5);
        EXPECT_EQ(The<QLabel>(form->lblName).text().toStdU16String(), u"\u05e9\u05dd:");
        Click(form->optTwo); // on its circle, at the left
        EXPECT_TRUE(form->optTwo.Value());
    });
}

TEST_F(Look_Test, Undo_Is_An_Edit_Like_Any_Other) {
    for (toolkit::Text_Control* field :
         std::initializer_list<toolkit::Text_Control*>{&form->txtName, &form->cmbNumber}) {
        const std::string change = automation::To_UTF8(field->Name()) + "_Change";
        bool may_be_empty = true;
        form->On[change] = [&, field] {
            if (field->Text().find(u'x') != String::npos || (field->Text().empty() && !may_be_empty))
                field->Set_Text(u"45");
        };
        const auto undo = [&](Qt::KeyboardModifiers modifiers, String_View text, const Log& log) {
            form->Take_Log();
            Press(Qt::Key_Z, modifiers);
            EXPECT_EQ(field->Text(), text);
            EXPECT_EQ(Line(*field).text().toStdU16String(), text);
            EXPECT_EQ(form->Take_Log(), log) << automation::To_UTF8(text);
        };
        While_Up([&] {
            toolkit::user_input::Focus(*field);
            QCoreApplication::processEvents();
            Type("45");
            undo(Qt::ControlModifier, u"", {change});
            undo(Qt::ControlModifier | Qt::ShiftModifier, u"45", {change});
            may_be_empty = false;
            undo(Qt::ControlModifier, u"45", {change, change}); // taken back like a key
            undo(Qt::ControlModifier, u"45", {});
            Type("x"); // taken back
            undo(Qt::ControlModifier, u"45", {});
            Type("6");
            field->Set_Text(u"7"); // the program's text is no edit
            QCoreApplication::processEvents();
            undo(Qt::ControlModifier, u"7", {});
        });
        form->On.clear();
    }
}

// The dialog itself

class Texts final : public automation::Object<dialog::Owner> {
public:
    explicit Texts(std::function<String(Long)> text) : text(std::move(text)) {}
    String Language_Text(Long id) override { return text(id); }
    String Node_Type_Name_of(Integer) override { return u"STYLE"; }
    String ErrDescription() const override { return {}; }
    bool SupervisedType_Blind() const override { return false; }
    void Set_SupervisedType_Blind(bool) override {}
    void Load_All_Threshold() override {}
    void Edit_Nth_Node(Integer) override {}
    bool Changes_Verified() override { return true; }
    bool Save_Changes() override { return true; }
    void Handle_Error(String, String_View procedure, Long, String_View text, dialog::Object_Index) override {
        ADD_FAILURE() << automation::To_UTF8(procedure) << ": " << automation::To_UTF8(text);
    }

private:
    const std::function<String(Long)> text;
};

// What a widget has for its text, in pixels: the style's borders and marks are taken off.
int Room_In(const QWidget& widget, double scale) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->contentsRect().width();
    const bool option = qobject_cast<const QRadioButton*>(&widget) != nullptr;
    return widget.width() - static_cast<int>((option ? 13 + 4 : 8) * scale);
}

TEST_F(Look_Test, Clips_No_Text_In_Any_Language_At_Any_Scale) {
    const auto german = shell::String_Table::Load(GERMAN);
    const std::function<String(Long)> languages[] = {resources::Load_String,
                                                     [&](Long id) { return *german.Find(id % 59 + 59); }};
    for (const auto& language : languages)
        for (const double points : {11.0, 13.75, 16.5, 22.0}) {
            QFont larger = font;
            larger.setPointSizeF(points);
            QApplication::setFont(larger);
            const auto editor = std::make_shared<dialog::dlgGUI>();
            editor->Set_Busyness_Rules(automation::Make_Object<Texts>(language));
            editor->Load_Language_Dependant_Parts();
            QTimer::singleShot(0, [&] {
                const double scale = Dialog().height() / 507.0;
                for (const toolkit::Control* control : editor->Controls()) {
                    const QWidget& widget = The(*control);
                    const QFontMetrics metrics(widget.font());
                    const QString text =
                        QString::fromStdU16String(toolkit::Drawn_Caption(control->Caption()));
                    EXPECT_LE(metrics.horizontalAdvance(text), Room_In(widget, scale)) << text.toStdString();
                    EXPECT_LE(metrics.ascent(), widget.height()) << text.toStdString();
                }
                EXPECT_LE(Line(editor->txtTransfer).fontMetrics().height() + (scale < 1 ? 2 : 4),
                          Line(editor->txtTransfer).height());
                editor->Hide();
            });
            editor->Show_Modal();
        }
}

} // namespace

} // namespace window_test
