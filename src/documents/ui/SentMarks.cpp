#include "SentMarks.h"

#include "DateText.h"
#include "documents/Firm.h"

#include <QApplication>
#include <QStyle>

SentMarks::SentMarks(QAbstractItemModel *source, int idRole, QObject *parent)
    : QIdentityProxyModel(parent), m_idRole(idRole)
{
    setSourceModel(source);
    connect(source, &QAbstractItemModel::modelAboutToBeReset, this, [this] { reload(); });
    reload();
}

void SentMarks::reload()
{
    m_sent.clear();
    if (!isFirmOpen())
        return;
    for (const SentStore::Entry &e : SentStore::entries(Db()))
        m_sent.insert(e.documentId, e);
}

QVariant SentMarks::data(const QModelIndex &index, int role) const
{
    if (index.column() == 0 && (role == Qt::DecorationRole || role == Qt::ToolTipRole)) {
        const auto it = m_sent.constFind(QIdentityProxyModel::data(index, m_idRole).toInt());
        if (it != m_sent.constEnd()) {
            if (role == Qt::DecorationRole)
                return QApplication::style()->standardIcon(QStyle::SP_DialogApplyButton);
            return QStringLiteral("Wysłany do banku %1, plik %2 (%3)")
                .arg(DateText::format(it->date), it->fileName,
                     it->format == QLatin1String("xml") ? QStringLiteral("XML") : QStringLiteral("Elixir-O"));
        }
    }
    return QIdentityProxyModel::data(index, role);
}
