#include "frmImportFirm.h"

#include "AppState.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "base/ui/WindowUtil.h"
#include "exchange/FirmImport.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmImportFirm::frmImportFirm(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmImportFirm"));
    setWindowTitle(QStringLiteral("Import danych z poprzedniej wersji"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Z bazy    (podaj pełną scieżkę dostępu...)"), this));
    auto *fileRow = new QHBoxLayout;
    m_txtPlik = new QLineEdit(this);
    m_txtPlik->setObjectName(QStringLiteral("txtPlik"));
    auto *search = new QPushButton(QStringLiteral("&Szukaj"), this);
    search->setObjectName(QStringLiteral("cmdSzukaj"));
    fileRow->addWidget(m_txtPlik, 1);
    fileRow->addWidget(search);
    layout->addLayout(fileRow);

    auto *frame = new QGroupBox(QStringLiteral("Elementy do zaimportowania"), this);
    auto *frameLayout = new QVBoxLayout(frame);
    const QStringList &captions = FirmImport::captions();
    for (qsizetype i = 0; i < captions.size(); ++i) {
        auto *box = new QCheckBox(captions.at(i), frame);
        box->setObjectName(QStringLiteral("chkImport_") + QString::number(i));
        frameLayout->addWidget(box);
        m_chkImport << box;
    }
    layout->addWidget(frame);
    auto *notice = new QLabel(QStringLiteral("UWAGA! Po zaimportowaniu danych należy ponownie otworzyć daną firmę."), this);
    notice->setWordWrap(true);
    layout->addWidget(notice);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    auto *ok = new QPushButton(QStringLiteral("&Importuj"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    auto *cancel = new QPushButton(QStringLiteral("&Anuluj"), this);
    cancel->setObjectName(QStringLiteral("Command1"));
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);

    connect(search, &QPushButton::clicked, this, &frmImportFirm::chooseFile);
    connect(ok, &QPushButton::clicked, this, &frmImportFirm::import);
    connect(cancel, &QPushButton::clicked, this, [this] { closeWindow(this); });
    resize(520, 300); // room for a full path
}

void frmImportFirm::chooseFile()
{
    const QString path = dialogs().openFileName(QStringLiteral("Wybierz plik z bazą"), appState().bazyPath,
                                                QStringLiteral("Bazy przelewów (*.zlc *.MDB *.mdb);;Wszystkie pliki (*)"));
    if (!path.isEmpty())
        m_txtPlik->setText(path);
}

void frmImportFirm::import()
{
    if (refuseWhenReadOnly())
        return;
    FirmImport::Choice ticked{};
    for (qsizetype i = 0; i < m_chkImport.size(); ++i)
        ticked[size_t(i)] = m_chkImport.at(i)->isChecked();
    if (FirmImport::run(Db(), firmFile(), m_txtPlik->text(), ticked))
        Q_EMIT imported();
}
