#pragma once

#include "exchange/BankFile.h"

#include <QHash>
#include <QIdentityProxyModel>

// A list of documents with those that went to the bank marked: a tick before the line and
// the sending (date, file, format) in its tool tip. The document's id is read from the
// source's `idRole`; the marks are read again whenever the source is.
class SentMarks : public QIdentityProxyModel {
    Q_OBJECT
public:
    SentMarks(QAbstractItemModel *source, int idRole, QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool isSent(qint32 id) const { return m_sent.contains(id); }
    void reload();

private:
    int m_idRole;
    QHash<qint32, SentStore::Entry> m_sent; // the latest sending of each document
};
