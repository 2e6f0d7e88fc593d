#pragma once

#include <QDialog>
#include <QList>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

// "Plik dla banku": writes the chosen transfers to an Elixir-O or XML file for the bank's
// business platform. Every problem is listed by document and nothing is written until
// they are mended; sending a document again and replacing a file are asked first.
class frmDoBanku : public QDialog {
    Q_OBJECT
public:
    frmDoBanku(const QList<qint32> &ids, QWidget *parent = nullptr);

    // cmdzapisz: checks, asks, writes; true when the file was written.
    bool save();

Q_SIGNALS:
    void sent();

private:
    void formatChosen();
    void chooseFile();

    QList<qint32> m_ids;
    QLabel *m_summary = nullptr;
    QComboBox *m_format = nullptr;
    QComboBox *m_encoding = nullptr;
    QLineEdit *m_date = nullptr;
    QLineEdit *m_file = nullptr;
    QListWidget *m_problems = nullptr;
};

// Opens the window for `ids` over `parent`; a beep when there is nothing to send.
frmDoBanku *openBankFileWindow(const QList<qint32> &ids, QWidget *parent);
