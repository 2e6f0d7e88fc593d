#pragma once

#include <QWidget>

// "Gorąca linia": what to tell support when calling: version, firm file, data folders.
class frmhotline : public QWidget {
    Q_OBJECT
public:
    explicit frmhotline(QWidget *parent = nullptr);
};
