// How the dialog looks: in light and dark, at every scale, in every language. It runs once more at each of
// the screen's own scales.
#include "window_fixture.h"

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
    return 0.05 + 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) +
           0.0722 * linear(qBlue(color));
}

// Between the lightest and the darkest that a place of the widget shows.
double Drawn_Contrast(QWidget& widget, const QMargins& around) {
    const QImage image = widget.grab(widget.rect().marginsRemoved(around)).toImage();
    double darkest = 2;
    double lightest = 0;
    for (int at = 0; at < image.width() * image.height(); ++at) {
        const double here = Luminance(image.pixel(at % image.width(), at / image.width()));
        darkest = std::min(darkest, here);
        lightest = std::max(lightest, here);
    }
    return lightest / darkest;
}

QPalette Theme(const QColor& window, const QColor& text) {
    QPalette palette;
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::Base})
        palette.setColor(role, window);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
        palette.setColor(role, text);
    return palette;
}

QFont Of_Points(double points) {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    return font;
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
    // clang-format off
    const std::pair<const toolkit::Control*, QMargins> places[] = {
        {&form->lblName, {}}, {&form->txtName, {5, 4, 5, 4}}, {&form->cmbNumber, {5, 4, 30, 5}},
        {&form->optOne, {20, 0, 0, 0}}, {&form->cmdOK, {5, 5, 5, 5}}, {&form->cmdOther, {5, 4, 5, 4}},
        {&form->fraKind, {8, 0, 230, 60}}, {&form->lblPosition, {3, 3, 3, 3}}, {&form->cmbPlace, {5, 4, 18, 4}}};
    // clang-format on
    While_Up([&] {
        for (const char* window : {"#c0c0c0", "#efefef", "#31363b", "#141414"})
            for (const bool enabled : {true, false}) {
                QApplication::setPalette(
                    Theme(window, QColor(window).lightness() < 128 ? Qt::white : Qt::black));
                QCoreApplication::processEvents();
                for (const auto& [control, around] : places) {
                    The(*control).setEnabled(enabled);
                    EXPECT_GE(Drawn_Contrast(The(*control), around), 4.5)
                        << automation::To_UTF8(control->Name()) << " on " << window << ' ' << enabled;
                }
                EXPECT_GE(Drawn_Contrast(The(form->fraKind), {0, 30, 290, 10}), 2)
                    << "its line on " << window;
            }
    });
}

// Also in a host that writes from right to left.
TEST_F(Look_Test, Grows_With_The_Users_Font_As_A_Whole_And_Fits_On_The_Screen) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    for (const double points : {9.0, 11.0, 13.75, 16.5, 22.0, 200.0}) {
        QApplication::setFont(Of_Points(points));
        const double wanted = std::clamp(points / 11, 1.0, 4.0);
        const double scale = std::min({wanted, (screen.width() - 6) / 312.0, (screen.height() - 29) / 300.0});
        While_Up([&] {
            EXPECT_EQ(Dialog().maximumSize(), (QSizeF(312, 300) * scale).toSize()) << points;
            EXPECT_TRUE(QRect({}, screen).contains(Dialog().geometry())) << points;
            for (const toolkit::Control* control : form->Controls()) {
                const QRect place = The(*control).geometry();
                EXPECT_NEAR(place.left(), control->Left() * scale / 15, 1) << points;
                EXPECT_NEAR(place.width(), control->Width() * scale / 15, 1) << points;
                EXPECT_NEAR(The(*control).font().pixelSize(), 11 * scale, 3.01) << points;
            }
            form->optTwo.Set_Value(false);
            Click(form->optTwo); // on its circle, at the left
            EXPECT_TRUE(form->optTwo.Value());
        });
    }
}

TEST_F(Look_Test, Undo_Is_An_Edit_Like_Any_Other) {
    for (toolkit::Text_Control* field :
         std::initializer_list<toolkit::Text_Control*>{&form->txtName, &form->cmbNumber}) {
        const std::string change = automation::To_UTF8(field->Name()) + "_Change";
        const auto undo = [&](Qt::KeyboardModifiers more, String_View text, const Log& log) {
            form->Take_Log();
            Press(Qt::Key_Z, Qt::ControlModifier | more);
            EXPECT_EQ(field->Text(), text);
            EXPECT_EQ(Line(*field).text().toStdU16String(), text);
            EXPECT_EQ(form->Take_Log(), log) << automation::To_UTF8(text);
        };
        While_Up([&] {
            toolkit::user_input::Focus(*field);
            QCoreApplication::processEvents();
            Type("45");
            undo({}, u"", {change});
            undo(Qt::ShiftModifier, u"45", {change});
            form->On[change] = [field] { field->Set_Text(u"45"); };
            undo({}, u"45", {change, change}); // taken back like a key
            Type("x");
            undo({}, u"45", {}); // what was taken back is no edit
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
    void Handle_Error(String_View, String_View procedure, Long, String_View text,
                      dialog::Object_Index) override {
        ADD_FAILURE() << automation::To_UTF8(procedure) << ": " << automation::To_UTF8(text);
    }

private:
    const std::function<String(Long)> text;
};

// Beside its text a widget shows borders and marks, in designed pixels.
int Beside_Text(toolkit::Control_Kind kind) {
    if (kind == toolkit::Control_Kind::Label)
        return 0;
    return kind == toolkit::Control_Kind::Option_Button ? 13 + 4 : 8;
}

TEST_F(Look_Test, Clips_No_Text_In_Any_Language_At_Any_Scale) {
    const auto german = shell::String_Table::Load(GERMAN);
    const std::function<String(Long)> languages[] = {resources::Load_String,
                                                     [&](Long id) { return *german.Find(id % 59 + 59); }};
    for (const auto& language : languages)
        for (const double points : {11.0, 13.75, 16.5, 22.0}) {
            QApplication::setFont(Of_Points(points));
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
                    EXPECT_LE(metrics.horizontalAdvance(text),
                              widget.width() - Beside_Text(control->Kind()) * scale)
                        << text.toStdString();
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
