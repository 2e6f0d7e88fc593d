#pragma once

#include <QWidget>

class QCheckBox;
class QLineEdit;

// "Import danych z poprzedniej wersji": copies the firm data, documents, scheduled payments
// and contractors of another firm database (one of ours or an Access file of the earlier
// Windows version) into the open firm.
class frmImportFirm : public QWidget {
    Q_OBJECT
public:
    explicit frmImportFirm(QWidget *parent = nullptr);

    // cmdSzukaj: the source chosen in a file dialog.
    void chooseFile();
    // cmdOK: the import.
    void import();

Q_SIGNALS:
    // The open firm's tables were written to: its views need refreshing.
    void imported();

private:
    QLineEdit *m_txtPlik = nullptr;
    QList<QCheckBox *> m_chkImport;
};
