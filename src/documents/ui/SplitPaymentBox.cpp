#include "SplitPaymentBox.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QSignalBlocker>

namespace {

QLineEdit *line(QWidget *parent, const QString &name, int max)
{
    auto *f = new QLineEdit(parent);
    f->setObjectName(name);
    f->setMaxLength(max);
    return f;
}

} // namespace

SplitPaymentBox::SplitPaymentBox(QLineEdit *title, QLineEdit *recipientNip, QWidget *parent)
    : QGroupBox(QStringLiteral("Mechanizm podzielonej płatności"), parent), m_title(title),
      m_nip(recipientNip)
{
    setObjectName(QStringLiteral("frmMpp"));
    setCheckable(true);
    setChecked(false);
    using P = PaymentTitles::SplitPayment;
    m_vat = line(this, QStringLiteral("txtMppVat"), 16);
    m_idc = line(this, QStringLiteral("txtMppIdc"), P::IdcMax);
    m_inv = line(this, QStringLiteral("txtMppInv"), P::InvMax);
    m_txt = line(this, QStringLiteral("txtMppTxt"), P::TxtMax);
    auto *form = new QFormLayout(this);
    form->addRow(QStringLiteral("Kwota VAT"), m_vat);
    form->addRow(QStringLiteral("NIP (IDC)"), m_idc);
    form->addRow(QStringLiteral("Nr faktury (INV)"), m_inv);
    form->addRow(QStringLiteral("Tekst (TXT)"), m_txt);

    connect(this, &QGroupBox::toggled, this, [this](bool on) {
        if (m_showing)
            return;
        if (on && m_idc->text().isEmpty()) {
            QString digits;
            for (QChar c : m_nip->text())
                if (c.isDigit())
                    digits += c;
            m_idc->setText(digits);
        }
        if (!on && PaymentTitles::parseSplit(m_title->text()))
            m_title->clear();
        rebuildTitle();
    });
    for (QLineEdit *f : {m_vat, m_idc, m_inv, m_txt})
        connect(f, &QLineEdit::textChanged, this, [this] { rebuildTitle(); });
}

PaymentTitles::SplitPayment SplitPaymentBox::parts() const
{
    return {Money::parse(m_vat->text()).value_or(Money()), m_idc->text(), m_inv->text(), m_txt->text()};
}

void SplitPaymentBox::rebuildTitle()
{
    if (m_showing)
        return;
    // While ticked the title is the box's: typed over, it would no longer be read back.
    m_title->setReadOnly(isChecked() || !isEnabled());
    if (isChecked())
        m_title->setText(PaymentTitles::splitTitle(parts()));
}

void SplitPaymentBox::showTitle(const QString &title)
{
    m_showing = true;
    const std::optional<PaymentTitles::SplitPayment> split = PaymentTitles::parseSplit(title);
    setChecked(split.has_value());
    m_vat->setText(split ? split->vat.plain(QLatin1Char(',')) : QString());
    m_idc->setText(split ? split->idc : QString());
    m_inv->setText(split ? split->inv : QString());
    m_txt->setText(split ? split->txt : QString());
    m_title->setReadOnly(split.has_value() || !isEnabled());
    m_showing = false;
}

QString SplitPaymentBox::problem(Money amount) const
{
    if (!isChecked() || !isVisibleTo(parentWidget()))
        return {};
    if (!Money::parse(m_vat->text()))
        return QStringLiteral("Podzielona płatność: kwota VAT \"%1\" nie jest kwotą.").arg(m_vat->text());
    const QString why = PaymentTitles::splitProblem(parts(), amount);
    return why.isEmpty() ? QString() : QStringLiteral("Podzielona płatność: ") + why + QLatin1Char('.');
}

void SplitPaymentBox::setViewing()
{
    setEnabled(false);
    m_title->setReadOnly(true);
}
