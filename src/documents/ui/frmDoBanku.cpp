#include "frmDoBanku.h"

#include "DateText.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Messages.h"
#include "documents/ChoiceLists.h"
#include "WindowFields.h"
#include "exchange/BankFile.h"
#include "exchange/Elixir.h"
#include "validation/ui/FieldCheck.h"

#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString suffixOf(BankFile::Format f)
{
    return f == BankFile::Format::Xml ? QStringLiteral("xml") : QStringLiteral("pli");
}

} // namespace

frmDoBanku::frmDoBanku(const QList<qint32> &ids, QWidget *parent) : QDialog(parent), m_ids(ids)
{
    setObjectName(QStringLiteral("frmDoBanku"));
    setWindowTitle(QStringLiteral("Plik dla banku"));
    using WindowFields::button;

    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("lblpodsumowanie"));
    m_format = new QComboBox(this);
    m_format->setObjectName(QStringLiteral("lstformat"));
    m_format->addItem(QStringLiteral("Elixir-O (plik tekstowy .pli)"), int(BankFile::Format::Elixir));
    m_format->addItem(QStringLiteral("ISO 20022 XML (pain.001.001.03)"), int(BankFile::Format::Xml));
    m_encoding = new QComboBox(this);
    m_encoding->setObjectName(QStringLiteral("lstkodowanie"));
    for (BankFile::Encoding e :
         {BankFile::Encoding::Cp1250, BankFile::Encoding::Iso8859_2, BankFile::Encoding::Cp852})
        m_encoding->addItem(BankFile::encodingCaption(e), int(e));
    m_date = WindowFields::field(this, QStringLiteral("txtdatawykonania"), QStringLiteral("ZLECANKI"),
                                 QStringLiteral("DATA_DOKUMENTU"), 2, QStringLiteral("data"));
    m_date->setPlaceholderText(QStringLiteral("daty dokumentów"));
    WindowFields::checkOnLeave(m_date);
    FieldCheck::normaliseDateOnLeave(m_date);
    m_file = new QLineEdit(this);
    m_file->setObjectName(QStringLiteral("txtplik"));
    auto *wybierz = button(this, QStringLiteral("cmdplik"), QStringLiteral("&Wybierz..."));
    m_problems = new QListWidget(this);
    m_problems->setObjectName(QStringLiteral("lstproblemy"));
    auto *zapisz = button(this, QStringLiteral("cmdzapisz"), QStringLiteral("&Zapisz"));
    auto *koniec = button(this, QStringLiteral("cmdkoniec"), Msg(4));

    auto *fileRow = new QHBoxLayout;
    fileRow->addWidget(m_file, 1);
    fileRow->addWidget(wybierz);
    auto *form = new QFormLayout;
    form->addRow(m_summary);
    auto *formatLabel = new QLabel(QStringLiteral("&Format:"), this);
    formatLabel->setBuddy(m_format);
    form->addRow(formatLabel, m_format);
    auto *encodingLabel = new QLabel(QStringLiteral("K&odowanie:"), this);
    encodingLabel->setBuddy(m_encoding);
    form->addRow(encodingLabel, m_encoding);
    auto *dateLabel = new QLabel(QStringLiteral("&Data wykonania:"), this);
    dateLabel->setBuddy(m_date);
    form->addRow(dateLabel, m_date);
    auto *fileLabel = new QLabel(QStringLiteral("&Plik:"), this);
    fileLabel->setBuddy(m_file);
    form->addRow(fileLabel, fileRow);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(zapisz);
    buttons->addWidget(koniec);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(new QLabel(QStringLiteral("Do poprawienia:"), this));
    layout->addWidget(m_problems, 1);
    layout->addLayout(buttons);

    // What the firm wrote last time.
    const auto [format, encoding] = BankFile::firmChoice(Db());
    m_format->setCurrentIndex(m_format->findData(int(format)));
    m_encoding->setCurrentIndex(m_encoding->findData(int(encoding)));
    formatChosen();

    BankFile::Options o;
    o.today = ChoiceLists::workingDate();
    const BankFile::Checked checked = BankFile::checkStored(Db(), m_ids, o);
    Money total;
    for (const BankFile::Payment &p : checked.payments)
        total += p.amount;
    m_summary->setText(QStringLiteral("Dokumentów: %1, gotowych do wysłania: %2 na kwotę %3 zł")
                           .arg(m_ids.size())
                           .arg(checked.payments.size())
                           .arg(Kwota(total)));
    m_problems->addItems(checked.problems);

    connect(m_format, &QComboBox::currentIndexChanged, this, &frmDoBanku::formatChosen);
    connect(wybierz, &QPushButton::clicked, this, &frmDoBanku::chooseFile);
    connect(zapisz, &QPushButton::clicked, this, &frmDoBanku::save);
    connect(koniec, &QPushButton::clicked, this, &QDialog::reject);
    resize(640, 420);
}

void frmDoBanku::formatChosen()
{
    const auto format = BankFile::Format(m_format->currentData().toInt());
    // XML is always UTF-8; the code page is Elixir-O's alone.
    m_encoding->setEnabled(format == BankFile::Format::Elixir);
    const QString name =
        QStringLiteral("przelewy-%1.%2")
            .arg(ChoiceLists::workingDate().toString(QStringLiteral("yyyyMMdd")), suffixOf(format));
    const QString current = m_file->text();
    if (current.isEmpty())
        m_file->setText(Elixir::firmFolder(firmFile()) + name);
    else if (current.endsWith(QLatin1String(".pli")) || current.endsWith(QLatin1String(".xml")))
        m_file->setText(current.left(current.size() - 3) + suffixOf(format));
}

void frmDoBanku::chooseFile()
{
    const QString chosen = dialogs().saveFileName(
        QStringLiteral("Plik dla banku"), m_file->text(),
        QStringLiteral("Pliki Elixir-O (*.pli *.txt);;Pliki XML (*.xml);;Wszystkie pliki (*)"));
    if (!chosen.isEmpty())
        m_file->setText(chosen);
}

bool frmDoBanku::save()
{
    BankFile::Options o;
    o.format = BankFile::Format(m_format->currentData().toInt());
    o.encoding = BankFile::Encoding(m_encoding->currentData().toInt());
    o.today = ChoiceLists::workingDate();
    if (!m_date->text().trimmed().isEmpty()) {
        o.executionDate = DateText::parse(m_date->text());
        if (!o.executionDate) {
            m_date->setFocus(Qt::OtherFocusReason);
            dialogs().exclamation(QStringLiteral("Data wykonania musi mieć postać dd-mm-rrrr."), Msg(51));
            return false;
        }
    }
    const QString path = m_file->text().trimmed();
    if (path.isEmpty()) {
        m_file->setFocus(Qt::OtherFocusReason);
        dialogs().information(QStringLiteral("Podaj nazwę pliku."), Msg(50));
        return false;
    }

    m_problems->clear();
    const BankFile::Checked checked = BankFile::checkStored(Db(), m_ids, o);
    if (!checked.ok()) {
        m_problems->addItems(checked.problems);
        dialogs().exclamation(QStringLiteral("Plik nie został zapisany. Popraw dokumenty z listy "
                                             "\"Do poprawienia\" (problemów: %1).")
                                  .arg(checked.problems.size()),
                              Msg(51));
        return false;
    }
    const QList<qint32> before = SentStore::sentAmong(Db(), m_ids);
    if (!before.isEmpty()) {
        QStringList numbers;
        for (qint32 id : before)
            numbers << QString::number(id);
        if (!dialogs().question(
                QStringLiteral("Dokumenty nr %1 zostały już wysłane do banku. Wysłać je ponownie?")
                    .arg(numbers.join(QStringLiteral(", "))),
                Msg(53)))
            return false;
    }
    const bool exists = QFileInfo::exists(path);
    if (exists &&
        !dialogs().question(QStringLiteral("Plik %1 już istnieje. Zastąpić go?").arg(path), Msg(53)))
        return false;

    const BankFile::Outcome out = BankFile::send(Db(), m_ids, o, path, exists);
    if (!out.written) {
        m_problems->addItems(out.problems);
        dialogs().exclamation(out.problems.join(QLatin1Char('\n')), Msg(51));
        return false;
    }
    BankFile::saveFirmChoice(Db(), o.format, o.encoding);
    dialogs().information(QStringLiteral("Zapisano przelewów: %1 na kwotę %2 zł do pliku %3.")
                              .arg(out.count)
                              .arg(Kwota(out.total), path),
                          QStringLiteral("Plik dla banku"));
    Q_EMIT sent();
    accept();
    return true;
}

frmDoBanku *openBankFileWindow(const QList<qint32> &ids, QWidget *parent)
{
    if (ids.isEmpty() || !isFirmOpen()) {
        dialogs().beep();
        return nullptr;
    }
    auto *w = new frmDoBanku(ids, parent);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowModality(Qt::WindowModal);
    w->show();
    return w;
}
