#pragma once

#include <QDialog>

class QCheckBox;
class QLineEdit;

// "Wydruk": how many copies, and whether to see the preview first. The number typed is
// kept for the next printout.
class frmPrintkopie : public QDialog {
    Q_OBJECT
public:
    frmPrintkopie(int copies, bool preview, QWidget *parent = nullptr);
    int copies() const;
    bool preview() const;

private:
    QLineEdit *m_copies = nullptr;
    QCheckBox *m_preview = nullptr;
};
