#include "frmKontrahenci.h"

#include "Dialogs.h"
#include "Firm.h"
#include "Help.h"
#include "Messages.h"
#include "WindowUtil.h"
#include "documents/ContractorStore.h"
#include "documents/WindowFields.h"
#include "documents/frmSzukaj.h"
#include "frmglowna.h"
#include "validation/DigitWarnings.h"
#include "validation/FieldCheck.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString Table = QStringLiteral("KONTRAHENCI");

} // namespace

frmKontrahenci::frmKontrahenci(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmKontrahenci"));
    setWindowTitle(QStringLiteral("Kontrahenci"));

    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstkontrahent"));
    m_recipient.emplace(this, Table, WindowFields::RecipientFields::Columns::Contractor);

    auto *form = new QFormLayout;
    m_recipient->addRows(form);

    using WindowFields::button;
    auto *nowy = button(this, QStringLiteral("cmdnowy"), Msg(6));
    auto *zmien = button(this, QStringLiteral("cmdzmien"), Msg(7));
    auto *usun = button(this, QStringLiteral("cmdusun"), Msg(8));
    auto *szukaj = button(this, QStringLiteral("cmdSzukaj"), QStringLiteral("&Szukaj"));
    m_ok = button(this, QStringLiteral("cmdok"), Msg(1));
    m_anuluj = button(this, QStringLiteral("cmdanuluj"), Msg(2));
    auto *wybierz = button(this, QStringLiteral("cmdwybierz"), QStringLiteral("&Wybierz"));
    auto *pomoc = button(this, QStringLiteral("cmdpomoc"), Msg(3));
    auto *koniec = button(this, QStringLiteral("cmdkoniec"), Msg(4));
    m_browseButtons = {nowy, zmien, usun, szukaj};

    auto *edit = new QHBoxLayout;
    for (QPushButton *b : {nowy, zmien, usun, m_ok, m_anuluj})
        edit->addWidget(b);
    auto *other = new QHBoxLayout;
    for (QPushButton *b : {wybierz, szukaj})
        other->addWidget(b);
    other->addStretch();
    other->addWidget(pomoc);
    other->addWidget(koniec);
    auto *right = new QVBoxLayout;
    right->addLayout(form);
    right->addStretch();
    right->addLayout(edit);
    auto *top = new QHBoxLayout;
    top->addWidget(m_list, 2);
    top->addLayout(right, 3);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(other);

    connect(m_list, &QListWidget::currentItemChanged, this, [this](QListWidgetItem *item) { itemChosen(item); });
    connect(m_list, &QListWidget::itemDoubleClicked, this, &frmKontrahenci::choose);
    connect(nowy, &QPushButton::clicked, this, &frmKontrahenci::startNew);
    connect(zmien, &QPushButton::clicked, this, &frmKontrahenci::startEdit);
    connect(usun, &QPushButton::clicked, this, &frmKontrahenci::remove);
    connect(m_ok, &QPushButton::clicked, this, &frmKontrahenci::save);
    connect(m_anuluj, &QPushButton::clicked, this, &frmKontrahenci::cancel);
    connect(wybierz, &QPushButton::clicked, this, &frmKontrahenci::choose);
    connect(szukaj, &QPushButton::clicked, this, &frmKontrahenci::openSearch);
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("slownikkontrahentow")); });
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });
    // A document saved for a new recipient adds it here too.
    connect(&ContractorEvents::instance(), &ContractorEvents::changed, this, &frmKontrahenci::fillList);

    setEditing(false);
    fillList();
    resize(640, 380);
}

frmKontrahenci *frmKontrahenci::openForChoosing(QWidget *opener, Take take)
{
    frmKontrahenci *dictionary = nullptr;
    if (auto *main = opener ? qobject_cast<frmglowna *>(opener->window()) : nullptr)
        dictionary = qobject_cast<frmKontrahenci *>(main->showChild(new frmKontrahenci));
    if (!dictionary) {
        dictionary = new frmKontrahenci;
        dictionary->setAttribute(Qt::WA_DeleteOnClose);
        dictionary->show();
    }
    dictionary->chooseFor(opener, std::move(take));
    return dictionary;
}

void frmKontrahenci::chooseFor(QWidget *opener, Take take)
{
    m_opener = opener;
    m_take = opener ? std::move(take) : Take();
}

void frmKontrahenci::fillList()
{
    if (!isFirmOpen())
        return;
    QString error;
    const auto names = ContractorStore::list(Db(), &error);
    if (!names) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    m_filling = true;
    m_list->clear();
    QListWidgetItem *shown = nullptr;
    for (const ContractorName &c : *names) {
        auto *item = new QListWidgetItem(c.nazwa, m_list);
        item->setData(Qt::UserRole, c.id);
        if (c.id == m_shownId)
            shown = item;
    }
    m_list->setCurrentItem(shown);
    m_filling = false;
    // The contractor shown was deleted meanwhile.
    if (!shown && m_shownId != 0 && !m_editing) {
        m_shownId = 0;
        showFields(Contractor{});
    }
}

void frmKontrahenci::itemChosen(QListWidgetItem *item)
{
    if (m_filling || m_editing || !item)
        return;
    showContractor(item->data(Qt::UserRole).toInt());
}

bool frmKontrahenci::showContractor(qint32 id)
{
    if (m_editing) {
        dialogs().beep();
        return false;
    }
    const auto c = ContractorStore::read(Db(), id);
    if (!c) {
        dialogs().beep();
        return false;
    }
    m_shownId = id;
    showFields(*c);
    m_filling = true;
    for (int row = 0; row < m_list->count(); ++row)
        if (m_list->item(row)->data(Qt::UserRole).toInt() == id)
            m_list->setCurrentRow(row);
    m_filling = false;
    return true;
}

void frmKontrahenci::showFields(const Contractor &c)
{
    m_recipient->show(c);
}

void frmKontrahenci::setEditing(bool on)
{
    m_editing = on;
    for (QLineEdit *f : m_recipient->all())
        f->setReadOnly(!on);
    // Moving in the list would drop the edit in hand.
    m_list->setEnabled(!on);
    for (QPushButton *b : std::as_const(m_browseButtons))
        b->setEnabled(!on);
    m_ok->setEnabled(on);
    m_anuluj->setEnabled(on);
}

void frmKontrahenci::startNew()
{
    if (m_editing || refuseWhenReadOnly())
        return;
    m_editedId = 0;
    showFields(Contractor{});
    setEditing(true);
    m_recipient->nazwa->setFocus();
}

void frmKontrahenci::startEdit()
{
    if (m_editing)
        return;
    if (m_shownId == 0) {
        dialogs().beep();
        return;
    }
    if (refuseWhenReadOnly())
        return;
    m_editedId = m_shownId;
    setEditing(true);
    m_recipient->nazwa->setFocus();
}

void frmKontrahenci::save()
{
    if (!m_editing) {
        dialogs().beep();
        return;
    }
    if (FieldCheck::SprawdzPola(this) || FieldCheck::SprawdzPuste({m_recipient->nazwa, m_recipient->bank, m_recipient->konto}) ||
        !DigitWarnings::confirmSave(this))
        return;
    Contractor c = m_recipient->values();
    c.id = m_editedId;
    QString error;
    if (c.id == 0) {
        const auto id = ContractorStore::insert(Db(), c, &error);
        if (!id) {
            dialogs().exclamation(error, Msg(51));
            return;
        }
        c.id = *id;
    } else if (!ContractorStore::update(Db(), c, &error)) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    setEditing(false);
    m_shownId = c.id;
    fillList();
    showContractor(c.id);
}

void frmKontrahenci::cancel()
{
    if (!m_editing)
        return;
    setEditing(false);
    if (m_shownId == 0 || !showContractor(m_shownId))
        showFields(Contractor{});
}

void frmKontrahenci::remove()
{
    if (m_editing || m_shownId == 0) {
        dialogs().beep();
        return;
    }
    if (refuseWhenReadOnly())
        return;
    if (!dialogs().question(Msg(56) + m_recipient->nazwa->text() + QLatin1Char('?'), Msg(53)))
        return;
    QString error;
    if (!ContractorStore::remove(Db(), m_shownId, &error)) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    m_shownId = 0;
    showFields(Contractor{});
    fillList();
}

void frmKontrahenci::choose()
{
    if (m_editing || m_shownId == 0 || !m_opener || !m_take) {
        dialogs().beep();
        return;
    }
    QString error;
    const auto c = ContractorStore::read(Db(), m_shownId, &error);
    if (!c) {
        dialogs().exclamation(error, Msg(51));
        return;
    }
    const Take take = m_take;
    QWidget *opener = m_opener;
    take(*c);
    if (auto *frame = qobject_cast<QMdiSubWindow *>(opener->parentWidget()); frame && frame->mdiArea())
        frame->mdiArea()->setActiveSubWindow(frame);
    else
        opener->activateWindow();
    closeWindow(this);
}

void frmKontrahenci::openSearch()
{
    if (m_editing) {
        dialogs().beep();
        return;
    }
    auto *search = findChild<frmSzukaj *>(QString(), Qt::FindDirectChildrenOnly);
    if (!search)
        search = new frmSzukaj(this);
    search->show();
    search->raise();
    search->activateWindow();
}
