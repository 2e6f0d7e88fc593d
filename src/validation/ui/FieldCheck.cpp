#include "FieldCheck.h"

#include "DateText.h"
#include "Dialogs.h"
#include "Money.h"
#include "validation/Sprawdz.h"

#include <QComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTextEdit>

namespace FieldCheck {

namespace {

bool g_error = false;

const char *const NormaliseProperty = "FieldCheckNormalise";
const char *const LimitProperty = "FieldCheckLimit";

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

// A field the window itself keeps out of sight (a block of another document kind, a row
// not in use) holds nothing the user gave; a field on a page not in view does.
bool hiddenByWindow(const QWidget *field, const QWidget *window)
{
    for (const QWidget *w = field; w && w != window && !w->isWindow(); w = w->parentWidget())
        if (w->isHidden() && !qobject_cast<const QStackedWidget *>(w->parentWidget()))
            return true;
    return false;
}

// Whether `layout` holds the field, at any depth; `label` is set to a label standing just
// before it in a row of several ("Kod: [..] Miasto: [..]").
bool layoutHolds(QLayout *layout, const QWidget *field, QLabel **label)
{
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->widget() == field) {
            if (i > 0)
                if (auto *before = qobject_cast<QLabel *>(layout->itemAt(i - 1)->widget()))
                    *label = before;
            return true;
        }
        if (item->layout() && layoutHolds(item->layout(), field, label))
            return true;
    }
    return false;
}

QString cleanCaption(QString text)
{
    text.remove(QLatin1Char('&'));
    text = text.trimmed();
    if (text.endsWith(QLatin1Char(':')))
        text.chop(1);
    return text.trimmed();
}

void report(QWidget *field, const QString &text, const QString &title)
{
    g_error = true;
    showPageOf(field);
    focusAndSelect(field);
    dialogs().message(text, title, Dialogs::Icon::Exclamation);
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
    g_error = false;
    if (outcome.ok)
        normalise(field);
    else
        report(field, outcome.message, outcome.reason);
    return outcome.ok;
}

bool SprawdzPola(QWidget *window)
{
    g_error = false;
    for (QWidget *field : tabOrder(window)) {
        if (hiddenByWindow(field, window))
            continue;
        if (const QString tooLong = tooLongMessage(field); !tooLong.isEmpty()) {
            report(field, tooLong, QString());
            return true;
        }
        if (kind(field).isEmpty())
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
    field->setProperty(NormaliseProperty, QStringLiteral("data"));
    QObject::connect(field, &QLineEdit::editingFinished, field, [field] { normalise(field); });
}

void normaliseAmountOnLeave(QLineEdit *field)
{
    field->setProperty(NormaliseProperty, QStringLiteral("cur"));
    QObject::connect(field, &QLineEdit::editingFinished, field, [field] { normalise(field); });
}

void normalise(QWidget *field)
{
    auto *line = qobject_cast<QLineEdit *>(field);
    if (!line)
        return;
    const QString how = line->property(NormaliseProperty).toString();
    QString shown;
    if (how == QLatin1String("data")) {
        if (const auto d = DateText::parse(line->text()))
            shown = DateText::format(*d);
    } else if (how == QLatin1String("cur")) {
        if (const auto m = Money::parse(line->text()))
            shown = m->kwota();
    }
    if (!shown.isEmpty() && shown != line->text())
        line->setText(shown);
}

void setLimit(QLineEdit *field, int limit)
{
    field->setProperty(LimitProperty, limit);
    field->setMaxLength(limit > 0 ? limit : 32767);
}

int limit(const QWidget *field)
{
    return field->property(LimitProperty).toInt();
}

bool putWhole(QLineEdit *field, const QString &text)
{
    const int most = limit(field);
    const bool tooLong = most > 0 && text.size() > most;
    if (tooLong && field->maxLength() < text.size()) {
        field->setMaxLength(int(text.size()));
        // Once the user has shortened it, the field holds no more than its column again.
        auto *watch = new QObject(field);
        QObject::connect(field, &QLineEdit::textChanged, watch, [field, most, watch](const QString &now) {
            if (now.size() > most)
                return;
            field->setMaxLength(most);
            watch->deleteLater();
        });
    }
    field->setText(text);
    return tooLong;
}

QString tooLongMessage(const QWidget *field)
{
    const int most = limit(field);
    if (most <= 0 || text(field).size() <= most)
        return {};
    return QStringLiteral("Tekst w polu %1 jest za długi: pole mieści najwyżej %2 znaków.").arg(caption(field)).arg(most);
}

QString caption(const QWidget *field)
{
    const QWidget *window = field->window();
    for (const QLabel *label : window->findChildren<QLabel *>())
        if (label->buddy() == field && !cleanCaption(label->text()).isEmpty())
            return cleanCaption(label->text());
    if (const QWidget *parent = field->parentWidget()) {
        for (QFormLayout *form : parent->findChildren<QFormLayout *>()) {
            for (int row = 0; row < form->rowCount(); ++row) {
                QLayoutItem *item = form->itemAt(row, QFormLayout::FieldRole);
                QLayoutItem *label = form->itemAt(row, QFormLayout::LabelRole);
                if (!item)
                    continue;
                QLabel *inRow = nullptr;
                if (item->widget() != field && !(item->layout() && layoutHolds(item->layout(), field, &inRow)))
                    continue;
                if (!inRow && label)
                    inRow = qobject_cast<QLabel *>(label->widget());
                if (inRow && !cleanCaption(inRow->text()).isEmpty())
                    return cleanCaption(inRow->text());
            }
        }
    }
    if (!field->accessibleName().isEmpty())
        return cleanCaption(field->accessibleName());
    return field->objectName();
}

void showPageOf(QWidget *field)
{
    for (QWidget *w = field; w && !w->isWindow(); w = w->parentWidget()) {
        auto *stack = qobject_cast<QStackedWidget *>(w->parentWidget());
        if (!stack)
            continue;
        if (auto *tabs = qobject_cast<QTabWidget *>(stack->parentWidget()); tabs && tabs->indexOf(w) >= 0)
            tabs->setCurrentWidget(w);
        else
            stack->setCurrentWidget(w);
    }
}

} // namespace FieldCheck
