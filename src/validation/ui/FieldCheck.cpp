#include "FieldCheck.h"

#include "DateText.h"
#include "Dialogs.h"
#include "Money.h"
#include "validation/Sprawdz.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace FieldCheck {

namespace {

bool g_error = false;

void focusAndSelect(QWidget *field)
{
    field->setFocus(Qt::OtherFocusReason);
    if (auto *line = qobject_cast<QLineEdit *>(field))
        line->selectAll();
    else if (auto *combo = qobject_cast<QComboBox *>(field); combo && combo->lineEdit())
        combo->lineEdit()->selectAll();
    else if (auto *edit = qobject_cast<QTextEdit *>(field))
        edit->selectAll();
    else if (auto *plain = qobject_cast<QPlainTextEdit *>(field))
        plain->selectAll();
}

// The window's fields in its tab order.
QList<QWidget *> tabOrder(QWidget *window)
{
    QList<QWidget *> fields;
    for (QWidget *w = window->nextInFocusChain(); w && w != window; w = w->nextInFocusChain())
        if (window->isAncestorOf(w) && !fields.contains(w))
            fields << w;
    return fields;
}

// Lets through only the keys the field's mode allows; navigation and shortcuts are not text.
class KeyFilter : public QObject {
public:
    KeyFilter(int mode, QObject *parent) : QObject(parent), m_mode(mode) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            const auto *key = static_cast<QKeyEvent *>(event);
            const QString text = key->text();
            const bool shortcut = key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier);
            if (!shortcut && !text.isEmpty() && text.front().unicode() >= 32 &&
                Sprawdz::FiltrKlawisza(text.front().unicode(), m_mode) == 0)
                return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    int m_mode;
};

} // namespace

void setKind(QWidget *field, const QString &kind)
{
    field->setProperty("Tag", kind);
}

QString kind(const QWidget *field)
{
    return field->property("Tag").toString();
}

QString text(const QWidget *field)
{
    if (auto *line = qobject_cast<const QLineEdit *>(field))
        return line->text();
    if (auto *combo = qobject_cast<const QComboBox *>(field))
        return combo->isEditable() ? combo->currentText() : QString();
    if (auto *edit = qobject_cast<const QTextEdit *>(field))
        return edit->toPlainText();
    if (auto *plain = qobject_cast<const QPlainTextEdit *>(field))
        return plain->toPlainText();
    return {};
}

bool SprawdzPole(QWidget *field)
{
    const QString k = kind(field);
    if (!Sprawdz::isKnownKind(k)) {
        dialogs().message(QStringLiteral("Błąd"), QString(), Dialogs::Icon::Exclamation);
        return true; // an unknown kind is skipped
    }
    const Sprawdz::Outcome outcome = Sprawdz::check(k, text(field));
    g_error = !outcome.ok;
    if (g_error) {
        focusAndSelect(field);
        dialogs().message(outcome.message, outcome.reason, Dialogs::Icon::Exclamation);
    }
    return outcome.ok;
}

bool SprawdzPola(QWidget *window)
{
    g_error = false;
    for (QWidget *field : tabOrder(window)) {
        if (kind(field).isEmpty() || !field->isVisibleTo(window))
            continue;
        SprawdzPole(field);
        if (g_error)
            return true;
    }
    return false;
}

bool SprawdzPuste(const QList<QWidget *> &fields)
{
    for (QWidget *field : fields) {
        if (text(field).trimmed().isEmpty()) {
            field->setFocus(Qt::OtherFocusReason);
            dialogs().information(QStringLiteral("To pole nie może być puste"));
            return true;
        }
    }
    return false;
}

bool validationError()
{
    return g_error;
}

void installKeyFilter(QWidget *field, int mode)
{
    QWidget *target = field;
    if (auto *combo = qobject_cast<QComboBox *>(field); combo && combo->lineEdit())
        target = combo->lineEdit();
    target->installEventFilter(new KeyFilter(mode, target));
}

void normaliseDateOnLeave(QLineEdit *field)
{
    QObject::connect(field, &QLineEdit::editingFinished, field, [field] {
        if (const auto d = DateText::parse(field->text()))
            field->setText(DateText::format(*d));
    });
}

void normaliseAmountOnLeave(QLineEdit *field)
{
    QObject::connect(field, &QLineEdit::editingFinished, field, [field] {
        if (const auto m = Money::parse(field->text()))
            field->setText(m->kwota());
    });
}

} // namespace FieldCheck
