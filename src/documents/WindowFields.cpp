#include "WindowFields.h"

#include "db/Structure.h"
#include "validation/FieldCheck.h"

#include <QLineEdit>
#include <QPushButton>

#include <memory>

namespace WindowFields {

QLineEdit *field(QWidget *parent, const QString &name, const QString &table, const QString &column, int mode,
                 const QString &kind)
{
    auto *f = new QLineEdit(parent);
    f->setObjectName(name);
    if (const Structure::Column *c = Structure::findColumn(table, column); c && c->type == Structure::ColumnType::Text)
        f->setMaxLength(c->width);
    FieldCheck::installKeyFilter(f, mode);
    if (!kind.isEmpty())
        FieldCheck::setKind(f, kind);
    return f;
}

void checkOnLeave(QLineEdit *field)
{
    // The box that tells of a wrong value takes the focus from the field once more;
    // that second leave is not checked again.
    auto checking = std::make_shared<bool>(false);
    QObject::connect(field, &QLineEdit::editingFinished, field, [field, checking] {
        if (*checking || field->isReadOnly())
            return;
        *checking = true;
        FieldCheck::SprawdzPole(field);
        *checking = false;
    });
}

QPushButton *button(QWidget *parent, const QString &name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

} // namespace WindowFields
