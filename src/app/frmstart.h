#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

// The splash window shown while the program starts and loads the firm.
class frmstart : public QWidget {
    Q_OBJECT
public:
    explicit frmstart(QWidget *parent = nullptr);
    // Shows a loading step as "text... NN%".
    void showProgress(const QString &text, int percent);

private:
    QLabel *m_step = nullptr;
    QProgressBar *m_bar = nullptr;
};
