#include "frmUstawienia.h"

#include "DateText.h"
#include "Dialogs.h"
#include "documents/Firm.h"
#include "Help.h"
#include "Messages.h"
#include "base/ui/WindowUtil.h"
#include "exchange/Elixir.h"
#include "print/ui/PrinterSurface.h"
#include "validation/ui/FieldCheck.h"
#include "print/ui/CalibrationTab.h"
#include "print/PaymentQr.h"
#include "validation/Sprawdz.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

frmUstawienia::FontChooser &fontChooser()
{
    static frmUstawienia::FontChooser chooser;
    return chooser;
}

frmUstawienia::PrinterSource &printerSource()
{
    static frmUstawienia::PrinterSource source;
    return source;
}

QStringList printers()
{
    return printerSource() ? printerSource()() : PrinterSurface::printerNames();
}

std::optional<QString> systemFontChooser(QWidget *parent, const QString &current)
{
    bool ok = false;
    const QFont font = QFontDialog::getFont(&ok, QFont(current), parent, QStringLiteral("Wybierz font"));
    if (!ok)
        return std::nullopt;
    return font.family();
}

QString indexed(const char *name, int i)
{
    return QLatin1String(name) + QLatin1Char('_') + QString::number(i);
}

// A margin as typed: a whole number, possibly written "12,00" or with grouping blanks.
std::optional<int> wholeNumber(const QString &text)
{
    QString t = text.trimmed();
    t.remove(QLatin1Char(' ')).remove(QChar(0x00a0)).replace(QLatin1Char(','), QLatin1Char('.'));
    bool ok = false;
    const double v = t.toDouble(&ok);
    // The margins are 16-bit columns.
    if (!ok || v < -32768 || v > 32767)
        return std::nullopt;
    return qRound(v);
}

struct FlagControl {
    const char *name;
    const char *caption;
};
// In the order of UserOptions::Flag. The third box is stored in the column Nowe although
// it means the old forms: the firms' databases have it so.
const FlagControl FlagControls[UserOptions::FlagCount] = {
    {"chkDrukDaty", "Drukować datę wystawienia na przelewach"},
    {"chkDrukWstawiany", "Wydruk wstawiany w druki z czerwonym kolorem"},
    {"chkDrukStareWzory", "Stare wzory przelewów"},
    {"chkDrukCzteryOdcinki", "Przelew - 4 odcinki (standard - 2 odcinki)"},
    {"chkDrukCzteryNaStronie", "Wydruk 4 odcinków na jednej stronie A4"},
    {"ChkDrukSzary", "Wydruk w skali szarości"},
    {"chkElixir", "Exportuj przelew do pliku"},
};

} // namespace

void frmUstawienia::setFontChooser(FontChooser chooser)
{
    fontChooser() = std::move(chooser);
}

void frmUstawienia::setPrinterSource(PrinterSource source)
{
    printerSource() = std::move(source);
}

frmUstawienia::frmUstawienia(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmUstawienia"));
    setWindowTitle(QStringLiteral("Ustawienia"));

    for (int i = 0; i < UserOptions::FlagCount; ++i) {
        m_flags[i] = new QCheckBox(QString::fromUtf8(FlagControls[i].caption), this);
        m_flags[i]->setObjectName(QLatin1String(FlagControls[i].name));
    }

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("SSTab1"));
    m_tabs->addTab(printingPage(), QStringLiteral("Drukowanie"));
    m_tabs->addTab(documentsPage(), QStringLiteral("Przelewy"));
    m_tabs->addTab(elixirPage(), QStringLiteral("Eliksir"));
    m_tabs->addTab(new CalibrationTab(m_tabs), QStringLiteral("Kalibracja"));
    for (int i = 0; i < m_tabs->count(); ++i)
        m_tabs->widget(i)->setObjectName(indexed("kartka", i));

    auto button = [this](const char *name, const QString &caption) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        return b;
    };
    auto *ok = button("cmdok", Msg(1));
    ok->setDefault(true);
    auto *zmien = button("cmdzmien", Msg(7));
    auto *anuluj = button("cmdanuluj", Msg(2));
    auto *pomoc = button("cmdpomoc", Msg(3));
    auto *koniec = button("cmdkoniec", Msg(4));
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(zmien);
    buttons->addStretch();
    for (QPushButton *b : {ok, anuluj, koniec, pomoc})
        buttons->addWidget(b);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addLayout(buttons);

    connect(ok, &QPushButton::clicked, this, [this] {
        if (save())
            closeWindow(this);
    });
    connect(zmien, &QPushButton::clicked, this, [this] { save(); });
    connect(anuluj, &QPushButton::clicked, this, &frmUstawienia::load);
    connect(koniec, &QPushButton::clicked, this, [this] { closeWindow(this); });
    connect(pomoc, &QPushButton::clicked, this, [] { Help::show(QStringLiteral("ustawienia")); });

    load();
}

QWidget *frmUstawienia::printingPage()
{
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);

    m_drukNa = new QComboBox(page);
    m_drukNa->setObjectName(QStringLiteral("lstdrukna"));
    m_drukNa->addItems({QStringLiteral("Drukarce"), QStringLiteral("Ekranie")});
    form->addRow(QStringLiteral("Drukować na:"), m_drukNa);

    m_drukarki = new QComboBox(page);
    m_drukarki->setObjectName(QStringLiteral("lstDrukarki"));
    form->addRow(QStringLiteral("Drukarka:"), m_drukarki);

    const char *fontLabels[UserOptions::FontCount] = {"Czcionka podglądu:", "Czcionka wydruku:", "Czcionka list:"};
    for (int i = 0; i < UserOptions::FontCount; ++i) {
        m_fonts[i] = new QLineEdit(page);
        m_fonts[i]->setObjectName(indexed("txtFont", i));
        m_fonts[i]->setReadOnly(true);
        auto *change = new QPushButton(QStringLiteral("Zmień"), page);
        change->setObjectName(indexed("cmdZmienFont", i));
        connect(change, &QPushButton::clicked, this, [this, i] { chooseFont(i); });
        auto *row = new QHBoxLayout;
        row->addWidget(m_fonts[i], 1);
        row->addWidget(change);
        form->addRow(QString::fromUtf8(fontLabels[i]), row);
    }

    auto *frame = new QGroupBox(QStringLiteral("Dodatkowe marginesy przy wydrukach:"), page);
    frame->setObjectName(QStringLiteral("fraMarginesy"));
    auto *margins = new QFormLayout(frame);
    const char *marginLabels[2] = {"Lewy:", "Górny:"};
    for (int i = 0; i < 2; ++i) {
        m_margins[i] = new QLineEdit(frame);
        m_margins[i]->setObjectName(indexed("txtMargin", i));
        m_margins[i]->setMaxLength(7);
        FieldCheck::setKind(m_margins[i], QStringLiteral("int"));
        FieldCheck::installKeyFilter(m_margins[i], 1);
        margins->addRow(QString::fromUtf8(marginLabels[i]), m_margins[i]);
    }
    form->addRow(frame);
    return page;
}

QWidget *frmUstawienia::documentsPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    for (int i = 0; i < UserOptions::FlagCount; ++i)
        if (i != UserOptions::Eliksir)
            layout->addWidget(m_flags[i]);

    auto *frame = new QGroupBox(QStringLiteral("Format kwoty na przelewach"), page);
    frame->setObjectName(QStringLiteral("fraDrukZlGr"));
    auto *options = new QHBoxLayout(frame);
    const char *formats[3] = {"123,45", "123,45 zł", "123 zł 45 gr"};
    for (int i = 0; i < 3; ++i) {
        m_zlGr[i] = new QRadioButton(QString::fromUtf8(formats[i]), frame);
        m_zlGr[i]->setObjectName(indexed("optdrukzlgr", i));
        options->addWidget(m_zlGr[i]);
    }
    layout->addWidget(frame);
    m_kodQr = new QCheckBox(QStringLiteral("Kod QR na przelewach"), page);
    m_kodQr->setObjectName(QStringLiteral("ChkKodQR"));
    layout->addWidget(m_kodQr);

    m_dzis = new QLineEdit(page);
    m_dzis->setObjectName(QStringLiteral("txtDataDzis"));
    m_dzis->setMaxLength(10);
    FieldCheck::setKind(m_dzis, QStringLiteral("data"));
    FieldCheck::installKeyFilter(m_dzis, 2);
    FieldCheck::normaliseDateOnLeave(m_dzis);
    auto *dateRow = new QFormLayout;
    dateRow->addRow(QStringLiteral("Data \"Dziś\":"), m_dzis);
    layout->addLayout(dateRow);
    layout->addStretch();
    return page;
}

QWidget *frmUstawienia::elixirPage()
{
    auto *page = new QWidget;
    auto *form = new QFormLayout(page);
    form->addRow(m_flags[UserOptions::Eliksir]);
    // The file's name is set outside the program; here it is only shown.
    m_plik = new QLineEdit(page);
    m_plik->setObjectName(QStringLiteral("txtPlik"));
    m_plik->setReadOnly(true);
    form->addRow(QStringLiteral("Plik:"), m_plik);
    m_path = new QLabel(page);
    m_path->setObjectName(QStringLiteral("lblPath"));
    m_path->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(QStringLiteral("Folder:"), m_path);
    return page;
}

void frmUstawienia::load()
{
    const UserOptions o = UserOptionsStore::read(Db());
    m_drukNa->setCurrentIndex(o.drukujNa);

    // The first entry stands for the system's default printer (stored as -1); the others
    // are the printers at their stored positions. A position no longer installed shows
    // as the default printer, which is where printing goes then.
    m_drukarki->clear();
    m_drukarki->addItem(QStringLiteral("Drukarka domyślna systemu"), -1);
    const QStringList names = printers();
    for (int i = 0; i < names.size(); ++i)
        m_drukarki->addItem(names.at(i), i);
    m_drukarki->setCurrentIndex(o.drukarka >= 0 && o.drukarka < names.size() ? o.drukarka + 1 : 0);

    for (int i = 0; i < UserOptions::FontCount; ++i)
        m_fonts[i]->setText(o.fonts[i]);
    m_margins[0]->setText(QString::number(o.margLewy));
    m_margins[1]->setText(QString::number(o.margPrawy));
    m_dzis->setText(DateText::format(o.today));
    for (int i = 0; i < UserOptions::FlagCount; ++i)
        m_flags[i]->setChecked(o.flags[i]);
    m_zlGr[o.drukZlGr]->setChecked(true);
    m_kodQr->setChecked(!isFirmOpen() || PaymentQr::firmSetting(Db()));
    m_plik->setText(Elixir::fileNameSetting());
    m_path->setText(isFirmOpen() ? Elixir::firmFolder(firmFile()) : QString());
}

void frmUstawienia::chooseFont(int row)
{
    const FontChooser &chooser = fontChooser();
    const std::optional<QString> chosen =
        chooser ? chooser(this, m_fonts[row]->text()) : systemFontChooser(this, m_fonts[row]->text());
    if (chosen && !chosen->isEmpty())
        m_fonts[row]->setText(*chosen);
}

bool frmUstawienia::fieldWrong(QLineEdit *field, bool date)
{
    const QString text = field->text().trimmed();
    const bool taken = date ? DateText::parse(text).has_value() : wholeNumber(text).has_value();
    if (taken && Sprawdz::check(FieldCheck::kind(field), text).ok)
        return false;
    // The field must be in view to take the focus.
    for (int i = 0; i < m_tabs->count(); ++i)
        if (m_tabs->widget(i)->isAncestorOf(field))
            m_tabs->setCurrentIndex(i);
    if (text.isEmpty())
        FieldCheck::SprawdzPuste({field});
    else if (FieldCheck::SprawdzPole(field)) {
        // Well formed but not usable: a whole number beyond the column's range, or a date
        // the program cannot read back (a two-digit year).
        field->setFocus(Qt::OtherFocusReason);
        field->selectAll();
        dialogs().exclamation(QLatin1Char('\'') + text +
                              (date ? Msg(102) : QStringLiteral("' przekracza zakres od -32768 do 32767.")));
    }
    return true;
}

UserOptions frmUstawienia::gather() const
{
    UserOptions o;
    o.drukujNa = qMax(0, m_drukNa->currentIndex());
    o.drukarka = m_drukarki->currentData().isValid() ? m_drukarki->currentData().toInt() : -1;
    for (int i = 0; i < UserOptions::FontCount; ++i)
        o.fonts[i] = m_fonts[i]->text();
    o.today = DateText::parse(m_dzis->text().trimmed()).value_or(QDate());
    o.margLewy = wholeNumber(m_margins[0]->text()).value_or(0);
    o.margPrawy = wholeNumber(m_margins[1]->text()).value_or(0);
    for (int i = 0; i < UserOptions::FlagCount; ++i)
        o.flags[i] = m_flags[i]->isChecked();
    for (int i = 0; i < 3; ++i)
        if (m_zlGr[i]->isChecked())
            o.drukZlGr = i;
    return o;
}

bool frmUstawienia::save()
{
    if (refuseWhenReadOnly())
        return false;
    if (fieldWrong(m_margins[0], false) || fieldWrong(m_margins[1], false) || fieldWrong(m_dzis, true))
        return false;
    QString error;
    if (!UserOptionsStore::save(Db(), gather(), &error)) {
        dialogs().exclamation(error, Msg(51));
        return false;
    }
    if (isFirmOpen() && !PaymentQr::saveFirmSetting(Db(), m_kodQr->isChecked())) {
        dialogs().exclamation(QStringLiteral("Nie udało się zapisać ustawienia \"Kod QR na przelewach\"."), Msg(51));
        return false;
    }
    load();
    Q_EMIT saved();
    return true;
}
