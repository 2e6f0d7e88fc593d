#pragma once

#include <QWidget>

// "Info": the program's name, version and purpose.
class frmo : public QWidget {
    Q_OBJECT
public:
    explicit frmo(QWidget *parent = nullptr);
};
