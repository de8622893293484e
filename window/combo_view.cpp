#include "combo_view.h"

#include <QCompleter>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QStylePainter>

#include <algorithm>

#include "design_font.h"
#include "qt_text.h"
#include "toolkit/user_input.h"

namespace window {

// A combo box whose list is as wide as its entries, with a limit, and which has one font for the list and
// one for the text in the field: at every change of its own font Qt would lay out the whole list.
class Combo_View::Combo final : public QComboBox {
public:
    Combo(QWidget* parent, const Entry_Model& entries) : QComboBox(parent), entries(entries) {}

    void Set_Field_Font(const QFont& font) { field_font = font; }

    // Makes the combo box editable. It would give the line a completer of the entries, which takes longer
    // than all the rest, if that had none.
    void Add_Line() {
        static QPointer<QCompleter> any;
        if (!any)
            any = new QCompleter(QCoreApplication::instance());
        auto* const line = new QLineEdit(this);
        line->setCompleter(any);
        setLineEdit(line);
        line->setCompleter(nullptr);
    }

    // Whoever asks would have all entries measured.
    QSize sizeHint() const override { return size(); }
    QSize minimumSizeHint() const override { return size(); }

    void showPopup() override {
        constexpr int Widest = 400;
        const int margins = view()->verticalScrollBar()->sizeHint().width() + 16;
        const int wanted = fontMetrics().horizontalAdvance(entries.Longest()) + margins;
        view()->setMinimumWidth(std::max(width(), std::min(wanted, Widest)));
        QComboBox::showPopup();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QStylePainter painter(this);
        QStyleOptionComboBox look;
        initStyleOption(&look);
        painter.drawComplexControl(QStyle::CC_ComboBox, look);
        painter.setFont(field_font);
        look.fontMetrics = QFontMetrics(field_font);
        painter.drawControl(QStyle::CE_ComboBoxLabel, look);
    }

private:
    const Entry_Model& entries;
    QFont field_font;
};

Combo_View::Combo_View(toolkit::Combo_Box& combo, QWidget* parent, Input& input)
    : Control_View(combo, new Combo(parent, entries), input), combo(combo),
      shown(static_cast<Combo&>(Widget())), entries(combo, input) {
    // The list is made at the first thing that wants it, which is the style; it is given everything once.
    shown.setModel(&entries);
    shown.setStyle(parent->window()->style());
    // Qt lays the list out at every change of the font, hidden or not.
    static_cast<QListView*>(shown.view())->setUniformItemSizes(true);
    shown.setInsertPolicy(QComboBox::NoInsert);
    if (combo.Is_Editable()) {
        shown.Add_Line();
        // On leaving the field Qt would pick the entry that equals the text.
        QObject::disconnect(shown.lineEdit(), &QLineEdit::editingFinished, &shown, nullptr);
        editing.emplace(combo, *shown.lineEdit(), *this, input);
    }
    QObject::connect(&shown, &QComboBox::activated, &shown, [this, &input](int index) {
        input.Perform([this, index] {
            Touch();
            toolkit::user_input::Pick(this->combo, index);
        });
    });
}

int Combo_View::Text_Width() const {
    QStyleOptionComboBox look;
    look.initFrom(&shown);
    const QRect field =
        shown.style()->subControlRect(QStyle::CC_ComboBox, &look, QStyle::SC_ComboBoxEditField, &shown);
    return field.width() - 2; // the style keeps a pixel clear on each side
}

void Combo_View::Show() {
    if (shown.currentIndex() != combo.Selected_Index())
        shown.setCurrentIndex(combo.Selected_Index());
    if (editing)
        editing->Show();
    else
        shown.Set_Field_Font(Fitted(combo.Face(), Scale(), To_Qt(combo.Text()), Text_Width()));
    shown.update();
}

namespace {

// Tells of every pick, once: by key or mouse, and of the same entry again by mouse.
class List final : public QListView {
public:
    List(QWidget* parent, std::function<void(int)> picked) : QListView(parent), picked(std::move(picked)) {}

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
        QListView::currentChanged(current, previous);
        told = true;
        if (current.isValid())
            picked(current.row());
    }
    void mousePressEvent(QMouseEvent* event) override {
        told = false;
        QListView::mousePressEvent(event);
        const QModelIndex pressed = indexAt(event->pos());
        if (!told && pressed.isValid())
            picked(pressed.row());
    }

private:
    const std::function<void(int)> picked;
    bool told = false;
};

} // namespace

List_View::List_View(toolkit::List_Box& list, QWidget* parent, Input& input)
    : Control_View(list,
                   new List(parent,
                            [this, &input](int index) {
                                input.Perform([this, index] {
                                    Touch();
                                    toolkit::user_input::Pick(this->list, index);
                                });
                            }),
                   input),
      list(list), shown(static_cast<QListView&>(Widget())), entries(list, input) {
    shown.setUniformItemSizes(true);
    shown.setEditTriggers(QAbstractItemView::NoEditTriggers);
    shown.setModel(&entries);
}

void List_View::Show() {
    const QModelIndex current = entries.index(list.Selected_Index(), 0);
    if (shown.currentIndex() != current)
        shown.setCurrentIndex(current);
}

} // namespace window
