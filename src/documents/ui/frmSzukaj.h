#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

class QButtonGroup;
class QLineEdit;
class frmKontrahenci;

// "Szukaj": finds contractors by a piece of their name, street, town or NIP and shows
// each match in turn, in the order of names, in the dictionary that opened it.
class frmSzukaj : public QWidget {
    Q_OBJECT
public:
    explicit frmSzukaj(frmKontrahenci *dictionary);

private:
    void findNext();

    QPointer<frmKontrahenci> m_dictionary;
    QLineEdit *m_text = nullptr;
    QButtonGroup *m_criteria = nullptr;
    QList<qint32> m_found;
    qsizetype m_next = 0;
    bool m_searched = false; // m_found answers the text and criterion shown
};
