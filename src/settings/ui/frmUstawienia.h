#pragma once

#include "settings/UserOptions.h"

#include <QWidget>

#include <array>
#include <functional>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTabWidget;

// "Ustawienia": where printing goes, the printer, the three fonts, the extra print
// margins, the firm's document and print flags, the amount format on slips, the working
// date and the Elixir export switch. Saving writes each option to its own place and into
// the global state, so it takes effect at once.
//
// The window opens ready for changes. "OK" saves and closes, "Zmień" saves and stays open,
// "Anuluj" puts back what is stored, "Koniec" closes without saving.
class frmUstawienia : public QWidget {
    Q_OBJECT
public:
    // Asks for a font starting from `current`; the chosen face name, nothing when cancelled.
    using FontChooser = std::function<std::optional<QString>(QWidget *parent, const QString &current)>;
    // The installed printers, in the order the stored position "Drukarka" counts.
    using PrinterSource = std::function<QStringList()>;
    // Replace the system's font chooser and printer list (an empty function restores them),
    // so that nothing modal or machine-dependent stands in the way of a scripted run.
    static void setFontChooser(FontChooser chooser);
    static void setPrinterSource(PrinterSource source);

    explicit frmUstawienia(QWidget *parent = nullptr);

    // Fills every control from the options' places.
    void load();
    // Checks the fields and saves; false (the user told) when refused or failed.
    bool save();

Q_SIGNALS:
    void saved();

private:
    QWidget *printingPage();
    QWidget *documentsPage();
    QWidget *elixirPage();
    void chooseFont(int row);
    // A margin or the date that cannot be taken: its page shown, the user told, focus in it.
    bool fieldWrong(QLineEdit *field, bool date);
    UserOptions gather() const;

    QTabWidget *m_tabs = nullptr;
    QCheckBox *m_kodQr = nullptr;
    QComboBox *m_drukNa = nullptr;
    QComboBox *m_drukarki = nullptr;
    std::array<QLineEdit *, UserOptions::FontCount> m_fonts{};
    std::array<QLineEdit *, 2> m_margins{};
    QLineEdit *m_dzis = nullptr;
    std::array<QCheckBox *, UserOptions::FlagCount> m_flags{};
    std::array<QRadioButton *, 3> m_zlGr{};
    QLineEdit *m_plik = nullptr;
    QLabel *m_path = nullptr;
};
