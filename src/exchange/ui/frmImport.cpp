#include "frmImport.h"

#include "AppState.h"
#include "Dialogs.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "exchange/ExportFile.h"
#include "validation/ui/FieldCheck.h"

#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

frmImport::frmImport(EntryWindow entryWindow, QWidget *parent) : QWidget(parent), m_entryWindow(std::move(entryWindow))
{
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Import z pliku"));
    auto *layout = new QVBoxLayout(this);
    m_lstdok = new QListWidget(this);
    m_lstdok->setObjectName(QStringLiteral("lstdok"));
    layout->addWidget(m_lstdok);
    m_chkusun = new QCheckBox(QStringLiteral("Usuń z pliku po przeniesieniu"), this);
    m_chkusun->setObjectName(QStringLiteral("chkusun"));
    layout->addWidget(m_chkusun);

    auto *buttons = new QHBoxLayout;
    auto button = [&](const char *name, const QString &caption) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        buttons->addWidget(b);
        return b;
    };
    QPushButton *open = button("cmdImport", QStringLiteral("&Plik..."));
    QPushButton *show = button("cmdpokaz", QStringLiteral("&Przenieś"));
    QPushButton *remove = button("cmdusun", Msg(8));
    buttons->addStretch();
    QPushButton *close = button("cmdkoniec", Msg(4));
    show->setDefault(true);
    layout->addLayout(buttons);

    connect(open, &QPushButton::clicked, this, &frmImport::chooseFile);
    connect(show, &QPushButton::clicked, this, &frmImport::takeOver);
    connect(m_lstdok, &QListWidget::itemDoubleClicked, this, &frmImport::takeOver);
    connect(remove, &QPushButton::clicked, this, &frmImport::removeChosen);
    connect(close, &QPushButton::clicked, this, [this] { closeWindow(this); });
    resize(560, 320);
    // The file is asked for as soon as the window stands.
    QTimer::singleShot(0, this, &frmImport::chooseFile);
}

void frmImport::chooseFile()
{
    const QString path = dialogs().openFileName(QStringLiteral("Otwórz plik"), appState().suiteRoot + ExportFile::DefaultName,
                                                QStringLiteral("Plik exportowy (*.EXP *.exp)"));
    if (path.isEmpty())
        return;
    if (!QFileInfo(path).isFile()) {
        dialogs().exclamation(QStringLiteral("Nie ma takiego pliku"));
        return;
    }
    QFile test(path);
    if (!test.open(QIODevice::ReadOnly)) {
        dialogs().exclamation(QStringLiteral("Nieznany format pliku"));
        return;
    }
    test.close();
    m_file = path;
    ListBlocks();
}

void frmImport::ListBlocks()
{
    m_lstdok->clear();
    QString error;
    const auto bytes = ExportFile::read(m_file, &error);
    if (!bytes) {
        ErrorReport(error);
        return;
    }
    const ExportFile::Listing listing = ExportFile::listBlocks(*bytes);
    for (const ExportFile::Entry &e : listing.entries)
        m_lstdok->addItem(e.text());
    if (listing.error)
        ErrorReport(listing.error->description, listing.error->number);
}

void frmImport::takeOver()
{
    const int row = m_lstdok->currentRow();
    if (row < 0) {
        dialogs().beep();
        return;
    }
    if (TakeOverBlock(row) && m_chkusun->isChecked())
        RemoveBlock(row);
}

void frmImport::removeChosen()
{
    const int row = m_lstdok->currentRow();
    if (row < 0) {
        dialogs().beep();
        return;
    }
    RemoveBlock(row);
}

bool frmImport::TakeOverBlock(int index)
{
    QString readError;
    const auto bytes = ExportFile::read(m_file, &readError);
    if (!bytes) {
        ErrorReport(readError);
        return false;
    }
    ExportFile::ReadError error;
    const auto values = ExportFile::takeOverBlock(*bytes, index, &error);
    if (!values) {
        ErrorReport(error.description, error.number);
        return false;
    }
    QWidget *entry = m_entryWindow ? m_entryWindow() : nullptr;
    if (!entry)
        return false;
    // Values go in whole: one longer than its field is shown so and refused on saving.
    const QStringList &names = ExportFile::fieldNames();
    QStringList tooLong;
    for (qsizetype i = 0; i < names.size(); ++i)
        if (auto *field = entry->findChild<QLineEdit *>(names.at(i)); field && FieldCheck::putWhole(field, values->at(i)))
            tooLong << FieldCheck::tooLongMessage(field);
    if (!tooLong.isEmpty())
        dialogs().exclamation(QStringLiteral("Nie wszystko z pliku mieści się w polach dokumentu; skróć te teksty przed "
                                             "wystawieniem:\n") +
                                  tooLong.join(QLatin1Char('\n')),
                              Msg(53));
    return true;
}

void frmImport::RemoveBlock(int index)
{
    delete m_lstdok->takeItem(index);
    QString error;
    if (!ExportFile::removeBlockInFile(m_file, index, m_lstdok->count() == 0, &error)) {
        ErrorReport(error);
        ListBlocks(); // the list shows the file as it stayed
    }
}
