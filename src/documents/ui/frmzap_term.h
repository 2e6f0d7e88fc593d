#pragma once

#include <QWidget>

class QListWidget;
class frmprzelew;

// The alarm of scheduled payments: lists the payments due today ("10 - Czynsz", in the
// order of the payment day) and issues a document from the one chosen.
class frmzap_term : public QWidget {
    Q_OBJECT
public:
    explicit frmzap_term(QWidget *parent = nullptr);

    // Rebuilds the list from the due check of the working date.
    void fillList();
    // cmdwystaw: opens the entry window of a new document filled from the chosen payment
    // and marks the payment issued this month. Beeps and returns nullptr with none chosen.
    frmprzelew *issue();

private:
    QListWidget *m_list = nullptr;
};
