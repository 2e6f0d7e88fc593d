#pragma once

#include "documents/BrowseQuery.h"

#include <QList>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QTreeView;
class QRadioButton;
class SentMarks;

// "Przeglądanie dokumentów": the stored payment documents under a filter of period, kind,
// contractor and firm account, and from the list viewing, correcting, deleting and
// printing them. The query itself is Browse's; the window only gathers the filter.
class frmprzegladanie : public QWidget {
    Q_OBJECT
public:
    explicit frmprzegladanie(QWidget *parent = nullptr);

    // The filter the controls now describe.
    Browse::Filter filter() const;
    // Fills the list anew under the filter.
    void refresh();
    // The contractor filter: `id` and the name shown, or every contractor.
    void setContractor(qint32 id, const QString &name);
    void allContractors();

    const Browse::Model &model() const { return *m_model; }

private:
    void periodChosen();
    void accountChosen(int index);
    void chooseContractor();
    void open(qint16 mode);
    void remove();
    void print();
    void printGroup();
    // cmdDoBanku: the selected documents to a file for the bank.
    void sendToBank();
    // The row of the current line, or -1 (after a beep) when no line is selected.
    int selectedRow();

    QList<QRadioButton *> m_optdata;
    QComboBox *m_lstrok = nullptr;
    QComboBox *m_lstmies = nullptr;
    QList<QLineEdit *> m_txtdata;
    QComboBox *m_lstrodzaj = nullptr;
    QLabel *m_lblkontrahentid = nullptr;
    QLabel *m_lblkontrahent = nullptr;
    QComboBox *m_lstbank = nullptr;
    QLabel *m_lblbankkonto = nullptr;
    QTreeView *m_lstwynik = nullptr;
    Browse::Model *m_model = nullptr;
    SentMarks *m_sentMarks = nullptr;
};
