// A small form with every kind of control, a window to show it in, and hands to use it with.
#pragma once

#include <QAbstractItemView>
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>
#include <map>

#include "automation/text.h"
#include "toolkit/user_input.h"
#include "window/qt_display.h"

namespace window_test {

using toolkit::String;
using toolkit::String_View;

// Logs its events; `On[name]` is what the handler of that name does after that.
class Small_Form final : public toolkit::Form {
public:
    Small_Form() : Form({u"Small", u"A small form", {4680, 4500}, {90, 435}}) {
        Watch_Text(txtName);
        Watch_Text(cmbNumber);
        for (toolkit::List_Control* list :
             std::initializer_list<toolkit::List_Control*>{&cmbNumber, &cmbPlace, &lstThings}) {
            for (String_View item : {u"one", u"two", u"three"})
                list->Add_Item(item);
            list->On_Click = Logger(*list, "Click");
        }
        for (auto* option : {&optOne, &optTwo, &optThree})
            option->On_Click = Logger(*option, "Click");
        for (auto* button : {&cmdOK, &cmdCancel, &cmdOther})
            button->On_Click = Logger(*button, "Click");
        for (toolkit::Control* control : Controls())
            control->On_Lost_Focus = Logger(*control, "LostFocus");
        Set_Pictures(Drawn_Picture);
        Set_Default_Button(cmdOK);
        Set_Cancel_Button(cmdCancel);
    }

    std::vector<std::string> Take_Log() { return std::exchange(log, {}); }

    std::map<std::string, std::function<void()>> On;
    bool Refuses_To_Close = false;

    // clang-format off
    toolkit::Label lblName{*this, {1, u"lblName", {240, 135, 525, 195}, 0, u"&Name:"}, {.Auto_Size = true}};
    toolkit::Text_Box txtName{*this, {2, u"txtName", {1200, 120, 3375, 285}, 1}};
    toolkit::Combo_Box cmbNumber{*this, {3, u"cmbNumber", {1200, 480, 1455, 315}, 2}, toolkit::Combo_Box::Style::Editable};
    toolkit::Combo_Box cmbPlace{*this, {4, u"cmbPlace", {60, 15, 1000, 315}, 3, {}, &fraPlace}, toolkit::Combo_Box::Style::List_Only};
    toolkit::Frame fraPlace{*this, {14, u"fraPlace", {2640, 450, 1100, 375}, 13}};
    toolkit::Frame fraKind{*this, {5, u"fraKind", {120, 1080, 4455, 975}, 4, u"Kind", nullptr, true, {.Weight = 700}}};
    toolkit::Option_Button optOne{*this, {6, u"optOne", {240, 240, 1335, 255}, 5, u"BLIND", &fraKind}};
    toolkit::Option_Button optTwo{*this, {7, u"optTwo", {2040, 240, 1215, 255}, 6, u"PARTIAL", &fraKind}};
    toolkit::Option_Button optThree{*this, {8, u"optThree", {240, 600, 1455, 195}, 7, u"DIALCONTINUE", &fraKind}};
    toolkit::List_Box lstThings{*this, {9, u"lstThings", {240, 2160, 2000, 1035}, 8}};
    toolkit::Command_Button cmdOK{*this, {10, u"cmdOK", {700, 3480, 855, 372}, 9, u"OK"}};
    toolkit::Command_Button cmdCancel{*this, {11, u"cmdCancel", {1900, 3480, 855, 375}, 10, u"Cancel"}};
    toolkit::Command_Button cmdOther{*this, {12, u"cmdOther", {685, 4000, 370, 315}, 11}, 1};
    toolkit::Label lblPosition{*this, {13, u"lblPosition", {1055, 4000, 875, 315}, 12, u"2 of 3"},
                               {.Line = toolkit::Label::Border::Single, .Align = toolkit::Label::Alignment::Center}};
    // clang-format on

protected:
    void On_Unload(bool& cancel) override {
        log.push_back("Unload");
        cancel = Refuses_To_Close;
    }

private:
    toolkit::Handler Logger(toolkit::Control& control, const std::string& event) {
        const std::string name = automation::To_UTF8(control.Name()) + "_" + event;
        return [this, name] {
            log.push_back(name);
            if (const auto found = On.find(name); found != On.end())
                found->second();
        };
    }
    // A black square in the middle of a silver one, and an icon without any.
    static std::basic_string_view<unsigned char> Drawn_Picture(automation::Long id) {
        static const auto draw = [](QColor middle) {
            QImage image(17, 19, QImage::Format_RGB888);
            image.fill(QColor(192, 192, 192));
            for (int at = 6; at < 13; ++at)
                for (int row = 6; row < 13; ++row)
                    image.setPixelColor(at, row, middle);
            QByteArray bytes;
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::WriteOnly);
            image.save(&buffer, "BMP");
            return std::basic_string<unsigned char>(bytes.begin(), bytes.end());
        };
        static const auto picture = draw(Qt::black);
        static const auto icon = draw(Qt::red);
        if (id != 1 && id != toolkit::Icon_Picture)
            return {};
        return id == 1 ? picture : icon;
    }
    void Watch_Text(toolkit::Text_Control& field) { field.On_Change = Logger(field, "Change"); }

    std::vector<std::string> log;
};

class Window_Test : public testing::Test {
protected:
    Window_Test() {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        display = window::Create_Qt_Display({"style-node"});
        toolkit::Set_Display(display.get());
        form = std::make_shared<Small_Form>();
        form->Take_Log();
    }
    ~Window_Test() override {
        toolkit::Discard_All_Forms();
        toolkit::Set_Display(nullptr);
    }

    // Shows the form and does the steps to its window; closes what is still up afterwards.
    void While_Up(const std::function<void()>& steps) {
        bool done = false;
        QTimer::singleShot(0, [&] {
            EXPECT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
            steps();
            done = true;
            if (form->Is_Visible())
                form->Hide();
        });
        form->Show_Modal();
        EXPECT_TRUE(done) << "the form was not shown";
    }

    QDialog& Dialog() const {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            throw std::logic_error("no dialog is up");
        return *dialog;
    }

    template <typename Widget = QWidget>
    Widget& The(const toolkit::Control& control) const {
        const QString name = QString::fromStdU16String(control.Name());
        auto* widget = Dialog().findChild<Widget*>(name);
        if (!widget)
            throw std::logic_error("no widget " + name.toStdString());
        return *widget;
    }
    QLineEdit& Line(const toolkit::Text_Control& field) const {
        auto* combo = qobject_cast<QComboBox*>(&The(field));
        return combo ? *combo->lineEdit() : The<QLineEdit>(field);
    }

    // A key goes where the focus is.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QWidget* const focused = Dialog().focusWidget();
        QTest::keyClick(focused ? focused : &Dialog(), key, modifiers);
    }
    void Type(const char* text) const { QTest::keyClicks(Dialog().focusWidget(), QLatin1String(text)); }
    void Click(const toolkit::Control& control) const {
        QWidget& widget = The(control);
        QTest::mouseClick(&widget, Qt::LeftButton, {}, {8, widget.height() / 2});
    }
    // Clicks a button of the message box that comes up next.
    static void Answer_With(const std::function<void(QDialog&)>& hand) {
        QTimer::singleShot(0, [hand] { hand(*qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
    }

    using Log = std::vector<std::string>;

    std::unique_ptr<toolkit::Display> display;
    std::shared_ptr<Small_Form> form;
};

} // namespace window_test
