#include "WindowFields.h"

#include "db/Structure.h"
#include "validation/DigitWarnings.h"
#include "validation/FieldCheck.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <memory>

namespace WindowFields {

QLineEdit *field(QWidget *parent, const QString &name, const QString &table, const QString &column, int mode,
                 const QString &kind)
{
    auto *f = new QLineEdit(parent);
    f->setObjectName(name);
    if (const Structure::Column *c = Structure::findColumn(table, column); c && c->type == Structure::ColumnType::Text)
        f->setMaxLength(c->width);
    FieldCheck::installKeyFilter(f, mode);
    if (!kind.isEmpty())
        FieldCheck::setKind(f, kind);
    return f;
}

void checkOnLeave(QLineEdit *field)
{
    // The box that tells of a wrong value takes the focus from the field once more;
    // that second leave is not checked again.
    auto checking = std::make_shared<bool>(false);
    QObject::connect(field, &QLineEdit::editingFinished, field, [field, checking] {
        if (*checking || field->isReadOnly())
            return;
        *checking = true;
        FieldCheck::SprawdzPole(field);
        *checking = false;
    });
}

QPushButton *button(QWidget *parent, const QString &name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

namespace {

QString column(RecipientFields::Columns columns, const char *contractor, const char *recipient)
{
    return QLatin1String(columns == RecipientFields::Columns::Contractor ? contractor : recipient);
}

} // namespace

RecipientFields::RecipientFields(QWidget *parent, const QString &table, Columns c)
    : nazwa(field(parent, QStringLiteral("txtnazwa"), table, column(c, "NAZWA", "KLIENT_NAZWA"), 5)),
      nazwa1(field(parent, QStringLiteral("txtnazwa1"), table, column(c, "NAZWA1", "KLIENT_NAZWA1"), 5)),
      ulica(field(parent, QStringLiteral("txtulica"), table, column(c, "ULICA", "KLIENT_ULICA"), 5)),
      kod(field(parent, QStringLiteral("txtkod"), table, column(c, "KOD", "KLIENT_KOD"), 3, QStringLiteral("kodpoczt"))),
      miasto(field(parent, QStringLiteral("txtmiasto"), table, column(c, "MIASTO", "KLIENT_MIASTO"), 5)),
      nip(field(parent, QStringLiteral("txtNIP"), table, column(c, "NIP", "KLIENT_NIP"), 3, QStringLiteral("nip"))),
      bank(field(parent, QStringLiteral("txtbank"), table, column(c, "BANK_NAZWA", "KLIENT_BANK"), 5)),
      konto(field(parent, QStringLiteral("txtkonto"), table, column(c, "BANK_KONTO", "KLIENT_KONTO"), 5)),
      bankOfAccount(new QLabel(parent))
{
    checkOnLeave(kod);
    bankOfAccount->setObjectName(QStringLiteral("lblbankkonta"));
    DigitWarnings::watchAccount(konto, bankOfAccount, bank);
    DigitWarnings::watchNip(nip);
}

QList<QLineEdit *> RecipientFields::all() const
{
    return {nazwa, nazwa1, ulica, kod, miasto, nip, bank, konto};
}

void RecipientFields::show(const Contractor &c) const
{
    nazwa->setText(c.nazwa);
    nazwa1->setText(c.nazwa1);
    ulica->setText(c.ulica);
    kod->setText(c.kod);
    miasto->setText(c.miasto);
    nip->setText(c.nip);
    bank->setText(c.bankNazwa);
    konto->setText(c.bankKonto);
}

Contractor RecipientFields::values() const
{
    Contractor c;
    c.nazwa = nazwa->text();
    c.nazwa1 = nazwa1->text();
    c.ulica = ulica->text();
    c.kod = kod->text().trimmed();
    c.miasto = miasto->text();
    c.nip = nip->text().trimmed();
    c.bankNazwa = bank->text();
    c.bankKonto = konto->text();
    return c;
}

void RecipientFields::addRows(QFormLayout *form) const
{
    form->addRow(QStringLiteral("Nazwa:"), nazwa);
    form->addRow(QStringLiteral("Nazwa cd:"), nazwa1);
    form->addRow(QStringLiteral("Ulica:"), ulica);
    form->addRow(QStringLiteral("Kod:"), kod);
    form->addRow(QStringLiteral("Miasto:"), miasto);
    form->addRow(QStringLiteral("NIP:"), nip);
    form->addRow(QStringLiteral("Bank:"), bank);
    form->addRow(QStringLiteral("Konto:"), konto);
    form->addRow(QString(), bankOfAccount);
}

} // namespace WindowFields
