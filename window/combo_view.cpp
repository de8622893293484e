#include "combo_view.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QStyleOptionComboBox>

#include <algorithm>

#include "qt_text.h"
#include "toolkit/user_input.h"

namespace window {

namespace {

// The longest entry by its characters, which is near enough to the widest and costs no measuring.
QString Longest_Entry(const QAbstractItemModel& entries) {
    QString longest;
    for (int row = 0; row < entries.rowCount(); ++row) {
        QString text = entries.index(row, 0).data().toString();
        if (text.size() > longest.size())
            longest = std::move(text);
    }
    return longest;
}

// A combo box whose list is as wide as its entries, with a limit, and does not measure each of them.
class Combo final : public QComboBox {
public:
    using QComboBox::QComboBox;

    void showPopup() override {
        constexpr int Widest = 400;
        auto* list = static_cast<QListView*>(view());
        list->setUniformItemSizes(true);
        const int margins = list->verticalScrollBar()->sizeHint().width() + 16;
        const int wanted = fontMetrics().horizontalAdvance(Longest_Entry(*model())) + margins;
        list->setMinimumWidth(std::max(width(), std::min(wanted, Widest)));
        QComboBox::showPopup();
    }
};

} // namespace

Combo_View::Combo_View(toolkit::Combo_Box& combo, QWidget* parent, Input& input)
    : Control_View(combo, new Combo(parent)), combo(combo), shown(static_cast<QComboBox&>(Widget())),
      entries(combo) {
    shown.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    shown.setEditable(combo.Is_Editable());
    shown.setInsertPolicy(QComboBox::NoInsert);
    shown.setModel(&entries);
    if (combo.Is_Editable()) {
        shown.setCompleter(nullptr);
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
        Fit(To_Qt(combo.Text()), Text_Width());
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
    : Control_View(list, new List(parent,
                                  [this, &input](int index) {
                                      input.Perform([this, index] {
                                          Touch();
                                          toolkit::user_input::Pick(this->list, index);
                                      });
                                  })),
      list(list), shown(static_cast<QListView&>(Widget())), entries(list) {
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
