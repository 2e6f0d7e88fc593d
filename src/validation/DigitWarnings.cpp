#include "DigitWarnings.h"

#include "Dialogs.h"
#include "validation/BankNames.h"
#include "validation/CheckDigits.h"

#include <QLabel>
#include <QLineEdit>

namespace DigitWarnings {

namespace {

const char *const MarkProperty = "bledneCyfry";

// Lives as the field's child; holds its check and the text last warned about, so that
// leaving the field again without a change does not repeat the box.
class Watcher : public QObject {
public:
    Watcher(QLineEdit *field, Check check) : QObject(field), m_field(field), m_check(std::move(check))
    {
        setObjectName(QStringLiteral("digitWatcher"));
        connect(field, &QLineEdit::textChanged, this, &Watcher::mark);
        connect(field, &QLineEdit::editingFinished, this, &Watcher::leave);
    }

    std::optional<QString> problem() const
    {
        const QString t = m_field->text().trimmed();
        return t.isEmpty() ? std::nullopt : m_check(t);
    }

    void mark()
    {
        const bool wrong = problem().has_value();
        if (m_field->property(MarkProperty).toBool() == wrong)
            return;
        m_field->setProperty(MarkProperty, wrong);
        m_field->setStyleSheet(wrong ? QStringLiteral("QLineEdit { border: 2px solid #d00000; }")
                                     : QString());
    }

private:
    void leave()
    {
        if (m_field->isReadOnly() || m_telling)
            return;
        const auto p = problem();
        if (!p || m_field->text() == m_told)
            return;
        m_told = m_field->text();
        m_telling = true; // the box takes the focus: that leave is not a new one
        dialogs().exclamation(*p, QStringLiteral("Cyfry kontrolne"));
        m_telling = false;
    }

    QLineEdit *m_field;
    Check m_check;
    QString m_told;
    bool m_telling = false;
};

Watcher *watcherOf(const QWidget *field)
{
    return field ? field->findChild<Watcher *>(QStringLiteral("digitWatcher"), Qt::FindDirectChildrenOnly)
                 : nullptr;
}

// Only what is meant as a Polish account is checked: a foreign IBAN (with letters) or a
// short number of an account kept outside the bank clearing is left alone, while a Polish
// account with a digit too many or too few is told about.
std::optional<QString> accountProblem(const QString &text)
{
    const QString d = CheckDigits::accountDigits(text);
    for (QChar c : d)
        if (!c.isDigit())
            return std::nullopt;
    return d.size() < 20 ? std::nullopt : CheckDigits::nrbProblem(d);
}

} // namespace

void watch(QLineEdit *field, Check check)
{
    (new Watcher(field, std::move(check)))->mark();
}

void watchAccount(QLineEdit *field, QLabel *bankLabel, QLineEdit *bankField)
{
    watch(field, accountProblem);
    if (bankLabel) {
        auto show = [field, bankLabel] { bankLabel->setText(BankNames::bankName(field->text())); };
        QObject::connect(field, &QLineEdit::textChanged, bankLabel, show);
        show();
    }
    if (bankField)
        QObject::connect(field, &QLineEdit::editingFinished, bankField, [field, bankField] {
            if (!field->isReadOnly() && !bankField->isReadOnly() && bankField->text().trimmed().isEmpty())
                bankField->setText(BankNames::bankName(field->text()));
        });
}

void watchNip(QLineEdit *field)
{
    watch(field, CheckDigits::nipProblem);
}

void recheck(QLineEdit *field)
{
    if (Watcher *w = watcherOf(field))
        w->mark();
}

std::optional<QString> problem(const QWidget *field)
{
    const Watcher *w = watcherOf(field);
    return w ? w->problem() : std::nullopt;
}

bool confirmSave(const QList<QWidget *> &fields)
{
    QStringList problems;
    QWidget *first = nullptr;
    for (QWidget *f : fields) {
        if (const auto p = problem(f)) {
            if (!problems.contains(*p))
                problems << *p;
            if (!first)
                first = f;
        }
    }
    if (!first)
        return true;
    if (dialogs().question(problems.join(QLatin1Char('\n')) + QStringLiteral("\n\nZapisać mimo to?"),
                           QStringLiteral("Cyfry kontrolne")))
        return true;
    first->setFocus(Qt::OtherFocusReason);
    if (auto *line = qobject_cast<QLineEdit *>(first))
        line->selectAll();
    return false;
}

bool confirmSave(QWidget *window)
{
    QList<QWidget *> fields;
    for (QLineEdit *f : window->findChildren<QLineEdit *>())
        if (f->isVisibleTo(window) && watcherOf(f))
            fields << f;
    return confirmSave(fields);
}

} // namespace DigitWarnings
