#pragma once

#include <QWidget>

class QMdiArea;

// The picture behind the windows of the main window's work area: the program's name
// over a drawn payment slip. It lets every click through to the work area.
class frmglowna_img : public QWidget {
    Q_OBJECT
public:
    explicit frmglowna_img(QMdiArea *area);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
};
